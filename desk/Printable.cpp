#include "Printable.h"

#include "Utf8.h"

#include <array>
#include <cstddef>
#include <cstdio>

namespace {

constexpr std::size_t maxLength = 80;

std::string escaped(std::uint32_t code) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "\\u%04x", code & 0xFFFFU);
    return text.data();
}

bool isControl(std::uint32_t code) {
    return code < 0x20 || (code >= 0x7F && code < 0xA0);
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
    std::string result;
    Utf8::forEachCharacter(
        text.substr(0, end), [&result](std::optional<std::uint32_t> code, std::string_view bytes) {
            result += code && isControl(*code) ? escaped(*code) : std::string(bytes);
        });
    return end == text.size() ? result : result + "...";
}
