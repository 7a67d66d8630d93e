#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utf8cpp/utf8.h>

/// Texts character by character. They may hold bytes that are no UTF-8: names of files and comments
/// come as they are.
namespace Utf8 {

/// Whether a byte is the first of a character, or no UTF-8 at all.
constexpr bool beginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

/// Whether a character ends a line, steers a terminal, or turns the direction in which the rest of
/// a line is shown. None of them may come out of the tool as it is: a name must not rewrite what
/// stands around it.
constexpr bool steers(std::uint32_t code) {
    const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool isSeparator = code == 0x2028 || code == 0x2029;
    const bool isMark = code == 0x061C || code == 0x200E || code == 0x200F;
    const bool isDirection =
        (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x206F);
    return isControl || isSeparator || isMark || isDirection;
}

/// Whether a character, or a whole text, is printable ASCII, as nearly all are: it needs no second
/// look.
constexpr bool isPlain(char byte) {
    return byte >= 0x20 && byte < 0x7F;
}

inline bool isPlain(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char byte) { return isPlain(byte); });
}

/// Whether JSON writes a text as it stands, without an escape.
inline bool isPlainInJson(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char byte) { return isPlain(byte) && byte != '"' && byte != '\\'; });
}

/// Whether a character is a blank, or takes no room at all.
constexpr bool isBlank(std::uint32_t code) {
    return code == ' ' || code == '\t' || code == 0xA0 || (code >= 0x2000 && code <= 0x200D) ||
           code == 0x202F || code == 0x205F || code == 0x3000 || code == 0xFEFF;
}

/// Calls visit(code, bytes) for each character. A byte that is no UTF-8 comes alone and has no
/// code.
template <class Visit>
void forEachCharacter(std::string_view text, Visit visit) {
    while (!text.empty()) {
        const char* const begin = text.data();
        const char* const good = utf8::find_invalid(begin, begin + text.size());
        for (const char* at = begin; at != good;) {
            const char* const start = at;
            const std::uint32_t code = utf8::unchecked::next(at);
            visit(std::optional(code),
                  std::string_view(start, static_cast<std::size_t>(at - start)));
        }
        text.remove_prefix(static_cast<std::size_t>(good - begin));
        if (!text.empty()) {
            visit(std::optional<std::uint32_t>(), text.substr(0, 1));
            text.remove_prefix(1);
        }
    }
}

} // namespace Utf8
