#include "OneLine.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace {

/// One character of UTF-8.
struct Character {
    std::uint32_t code;
    std::size_t length; ///< in bytes; 0: the bytes are no UTF-8
};

Character characterAt(std::string_view text) {
    const auto byteAt = [&text](std::size_t index) -> std::uint32_t {
        return static_cast<unsigned char>(text[index]);
    };
    const std::uint32_t first = byteAt(0);
    if (first < 0x80) {
        return {first, 1};
    }
    // The least code that needs a length; what a shorter form could say is no UTF-8.
    std::size_t length = 0;
    std::uint32_t least = 0;
    std::uint32_t code = 0;
    if ((first & 0xE0U) == 0xC0U) {
        length = 2;
        least = 0x80;
        code = first & 0x1FU;
    } else if ((first & 0xF0U) == 0xE0U) {
        length = 3;
        least = 0x800;
        code = first & 0x0FU;
    } else if ((first & 0xF8U) == 0xF0U) {
        length = 4;
        least = 0x10000;
        code = first & 0x07U;
    }
    if (length == 0 || length > text.size()) {
        return {0, 0};
    }
    for (std::size_t index = 1; index < length; ++index) {
        if ((byteAt(index) & 0xC0U) != 0x80U) {
            return {0, 0};
        }
        code = (code << 6U) | (byteAt(index) & 0x3FU);
    }
    const bool isSurrogate = code >= 0xD800 && code < 0xE000;
    if (code < least || code > 0x10FFFF || isSurrogate) {
        return {0, 0};
    }
    return {code, length};
}

bool endsLineOrSteers(std::uint32_t code) {
    const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool isSeparator = code == 0x2028 || code == 0x2029;
    // They turn the direction in which the rest of the line is shown.
    const bool isDirection =
        (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    return isControl || isSeparator || isDirection;
}

std::string escaped(std::uint32_t code, bool isByte) {
    switch (code) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        break;
    }
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), isByte ? "\\x%02x" : "\\u%04x",
                  static_cast<unsigned>(code));
    return text.data();
}

} // namespace

std::string oneLine(std::string_view text) {
    std::string line;
    while (!text.empty()) {
        const Character character = characterAt(text);
        if (character.length == 0) {
            line += escaped(static_cast<unsigned char>(text.front()), true);
            text.remove_prefix(1);
            continue;
        }
        if (endsLineOrSteers(character.code)) {
            line += escaped(character.code, character.length == 1);
        } else {
            line += text.substr(0, character.length);
        }
        text.remove_prefix(character.length);
    }
    return line;
}

std::string inQuotes(std::string_view text) {
    return '"' + oneLine(text) + '"';
}
