#include "TextChecks.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace {

/// Takes the next character off the front of a text; nothing if it does not begin with one.
std::optional<std::uint32_t> takeCharacter(std::string_view& text) {
    const auto first = static_cast<unsigned char>(text.front());
    std::size_t length = 1;
    std::uint32_t code = first;
    std::uint32_t smallest = 0;
    if (first >= 0xF8 || (first >= 0x80 && first < 0xC0)) {
        return std::nullopt;
    }
    if (first >= 0xF0) {
        length = 4;
        code = first & 0x07U;
        smallest = 0x10000;
    } else if (first >= 0xE0) {
        length = 3;
        code = first & 0x0FU;
        smallest = 0x800;
    } else if (first >= 0xC0) {
        length = 2;
        code = first & 0x1FU;
        smallest = 0x80;
    }
    if (text.size() < length) {
        return std::nullopt;
    }
    for (std::size_t index = 1; index < length; ++index) {
        const auto byte = static_cast<unsigned char>(text[index]);
        if ((byte & 0xC0U) != 0x80U) {
            return std::nullopt;
        }
        code = (code << 6U) | (byte & 0x3FU);
    }
    const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
    if (code < smallest || code > 0x10FFFF || isSurrogate) {
        return std::nullopt;
    }
    text.remove_prefix(length);
    return code;
}

bool isControl(std::uint32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

} // namespace

bool TextChecks::isUtf8(std::string_view text) {
    while (!text.empty()) {
        if (!takeCharacter(text)) {
            return false;
        }
    }
    return true;
}

bool TextChecks::isOneLine(std::string_view text) {
    if (text.empty()) {
        return false;
    }
    while (!text.empty()) {
        const std::optional<std::uint32_t> character = takeCharacter(text);
        if (!character || isControl(*character)) {
            return false;
        }
    }
    return true;
}
