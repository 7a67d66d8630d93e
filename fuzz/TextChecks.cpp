#include "TextChecks.h"

#include <cstdint>
#include <utf8cpp/utf8.h>

bool TextChecks::isUtf8(std::string_view text) {
    return utf8::is_valid(text.begin(), text.end());
}

bool TextChecks::isOneLine(std::string_view text) {
    if (text.empty() || !isUtf8(text)) {
        return false;
    }
    for (auto at = text.begin(); at != text.end();) {
        const std::uint32_t code = utf8::unchecked::next(at);
        if (code < 0x20 || (code >= 0x7F && code < 0xA0)) {
            return false;
        }
    }
    return true;
}
