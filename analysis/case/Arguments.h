#pragma once

#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "ModulationAndCoding.h"
#include "OperatingInputs.h"

#include <cstdint>
#include <string>
#include <vector>

/// Values of command-line options, from their text. What cannot be read is a QuestionError that
/// names the option, shows the text and says what is wanted.
namespace Arguments {

/// The word for an input that is not there: no cutback in force, no booster, no product number.
inline constexpr const char* none = "none";

/// A decimal integer within a range.
std::int64_t integer(const std::string& option, const std::string& text, std::int64_t least,
                     std::int64_t greatest);

/// A cutback in dB with at most two decimals, as hundredths; 0 to 42949672.95 dB.
std::uint32_t cutback(const std::string& option, const std::string& text);

/// Likewise, or "none" for a temporary cutback that is not in force.
OperatingInputs::TemporaryCutback temporaryCutback(const std::string& option,
                                                   const std::string& text);

/// "PRESENCE,GAIN,MAXINPUT,MAXMODULATION", or "none".
OperatingInputs::Booster booster(const std::string& option, const std::string& text);

/// A power in dBm with at most two decimals, as hundredths; of 32 bits.
std::int32_t power(const std::string& option, const std::string& text);

/// The text of a class; "UNDEFINED" leaves the choice to the system power controller.
EReferenceSEC rsec(const std::string& option, const std::string& text);

/// The text of a market.
EFrameFormatMarket market(const std::string& option, const std::string& text);

/// The text of a modulation-and-code; "UNDEFINED" is none.
ModulationAndCoding modulationAndCode(const std::string& option, const std::string& text);

/// One word out of a list.
std::string word(const std::string& option, const std::string& text,
                 const std::vector<std::string>& known);

} // namespace Arguments
