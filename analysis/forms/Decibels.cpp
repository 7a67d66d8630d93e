#include "Decibels.h"

#include <cstddef>
#include <limits>

namespace {

constexpr std::size_t decimals = 2;

/// Takes the digits off the beginning of a text.
std::string_view takeDigits(std::string_view& text) {
    const std::string_view digits = text.substr(0, text.find_first_not_of("0123456789"));
    text.remove_prefix(digits.size());
    return digits;
}

} // namespace

std::optional<std::int64_t> Decibels::parse(std::string_view text) {
    const bool isNegative = !text.empty() && text.front() == '-';
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        text.remove_prefix(1);
    }
    const std::string_view whole = takeDigits(text);
    std::string_view fraction;
    if (!text.empty() && text.front() == '.') {
        text.remove_prefix(1);
        fraction = takeDigits(text);
        if (fraction.empty()) {
            return std::nullopt;
        }
    }
    if ((whole.empty() && fraction.empty()) || fraction.size() > decimals || !text.empty()) {
        return std::nullopt;
    }

    std::string digits(whole);
    digits += fraction;
    digits.append(decimals - fraction.size(), '0');
    // Counted below zero, where there is one number more.
    constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
    std::int64_t negated = 0;
    for (const char letter : digits) {
        const int digit = letter - '0';
        const bool fits = negated >= (least + digit) / 10;
        negated = fits ? negated * 10 - digit : least;
        if (!fits) {
            break;
        }
    }
    if (isNegative) {
        return negated;
    }
    return negated == least ? std::numeric_limits<std::int64_t>::max() : -negated;
}

std::string Decibels::format(std::int64_t hundredths) {
    const bool isNegative = hundredths < 0;
    // The least number has no positive counterpart of its own type.
    const auto bits = static_cast<std::uint64_t>(hundredths);
    std::string digits = std::to_string(isNegative ? 0 - bits : bits);
    if (digits.size() <= decimals) {
        digits.insert(0, decimals + 1 - digits.size(), '0');
    }
    digits.insert(digits.size() - decimals, 1, '.');
    return isNegative ? '-' + digits : digits;
}

std::string Decibels::formatSigned(std::int64_t hundredths) {
    return (hundredths > 0 ? "+" : "") + format(hundredths);
}

std::string Decibels::dB(std::int64_t hundredths) {
    return format(hundredths) + " dB";
}

std::string Decibels::dBm(std::int64_t hundredths) {
    return format(hundredths) + " dBm";
}
