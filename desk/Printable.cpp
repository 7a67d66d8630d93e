#include "Printable.h"

#include <array>
#include <cstddef>
#include <cstdio>

namespace {

constexpr std::size_t maxLength = 80;

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::string escaped(unsigned code) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "\\u%04x", code & 0xFFFFU);
    return text.data();
}

} // namespace

std::string printable(std::string_view text) {
    std::size_t end = text.size();
    if (end > maxLength) {
        end = maxLength;
        while (end > 0 && isContinuation(text[end])) {
            --end;
        }
    }

    std::string result;
    for (std::size_t index = 0; index < end; ++index) {
        const auto byte = static_cast<unsigned char>(text[index]);
        const auto next = static_cast<unsigned char>(index + 1 < end ? text[index + 1] : '\0');
        if (byte < 0x20 || byte == 0x7F) {
            result += escaped(byte);
        } else if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {
            result +=
                escaped(next); // the second set of control characters, two bytes each in UTF-8
            ++index;
        } else {
            result += text[index];
        }
    }
    return end == text.size() ? result : result + "...";
}
