#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Powers and offsets as people write them, in dB or dBm with up to two decimals, and as the
/// library counts them, in hundredths. Nothing goes through floating point.
namespace Decibels {

/// One dB, as it is counted.
constexpr std::int64_t one = 100;

/// Hundredths of a text: an optional sign, digits, and if wanted a point with one or two digits,
/// before which there need be none. "1.5" is 150, "-.05" is -5. Digits beyond what 64 bits hold
/// give the largest or least number.
/// @return nothing for any other text.
std::optional<std::int64_t> parse(std::string_view text);

/// Always with two decimals: 150 is "1.50", -5 is "-0.05".
std::string format(std::int64_t hundredths);

/// Likewise, with the unit of an offset or of a power: "1.50 dB", "-0.05 dBm".
std::string dB(std::int64_t hundredths);
std::string dBm(std::int64_t hundredths);

/// Likewise, with a plus in front of what is above zero. Nothing at all has no sign.
std::string formatSigned(std::int64_t hundredths);

} // namespace Decibels
