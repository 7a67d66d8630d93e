#include "OneLine.h"

#include "Utf8.h"

#include <array>
#include <cstdint>
#include <cstdio>

namespace {

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
    Utf8::forEachCharacter(text, [&](std::optional<std::uint32_t> code, std::string_view bytes) {
        if (!code) {
            line += escaped(static_cast<unsigned char>(bytes.front()), true);
        } else if (Utf8::steers(*code)) {
            line += escaped(*code, bytes.size() == 1);
        } else {
            line += bytes;
        }
    });
    return line;
}

std::string inQuotes(std::string_view text) {
    return '"' + oneLine(text) + '"';
}

std::string counted(std::uint64_t count, const std::string& noun) {
    return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}
