#include "Printable.h"

#include "Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <utility>

namespace {

constexpr std::size_t maxLength = 80;

std::string escaped(std::uint32_t code) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "\\u%04x", code & 0xFFFFU);
    return text.data();
}

std::string withoutSteering(std::string_view text) {
    if (Utf8::isPlain(text)) {
        return std::string(text);
    }
    std::string result;
    Utf8::forEachCharacter(
        text, [&result](std::optional<std::uint32_t> code, std::string_view bytes) {
            result += code && Utf8::steers(*code) ? escaped(*code) : std::string(bytes);
        });
    return result;
}

} // namespace

std::string printable(std::string_view text) {
    std::size_t end = text.size();
    if (end > maxLength) {
        end = maxLength;
        while (end > 0 && !Utf8::beginsCharacter(text[end])) {
            --end;
        }
    }
    std::string result = withoutSteering(text.substr(0, end));
    if (end < text.size()) {
        result += "...";
    }
    return result;
}

std::string printableJson(std::string written) {
    // Below DEL the package has escaped what is within texts; outside of them only blanks stand.
    const bool isPlain = std::none_of(written.begin(), written.end(), [](char byte) {
        return static_cast<unsigned char>(byte) >= 0x7F;
    });
    return isPlain ? std::move(written) : withoutSteering(written);
}
