#include "TextLook.h"

namespace {

const char* sequenceOf(TextStyle style) {
    switch (style) {
    case TextStyle::Bold:
        return "\x1b[1m";
    case TextStyle::Dim:
        return "\x1b[2m";
    case TextStyle::Red:
        return "\x1b[31m";
    case TextStyle::Green:
        return "\x1b[32m";
    case TextStyle::Yellow:
        return "\x1b[33m";
    case TextStyle::Blue:
        return "\x1b[34m";
    case TextStyle::Magenta:
        return "\x1b[35m";
    case TextStyle::Cyan:
        return "\x1b[36m";
    }
    return "";
}

} // namespace

std::string TextLook::styled(std::string_view text, TextStyle style) const {
    if (!allowsColor) {
        return std::string(text);
    }
    std::string painted = sequenceOf(style);
    painted += text;
    painted += "\x1b[0m";
    return painted;
}
