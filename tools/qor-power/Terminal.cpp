#include "Terminal.h"

#include <cstdlib>

#include <sys/ioctl.h>
#include <unistd.h>

namespace {

bool environmentAllowsColor() {
    const char* const noColor = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    const bool isRefused = noColor != nullptr && *noColor != '\0';
    const bool isDumb = terminal == nullptr || std::string_view(terminal) == "dumb";
    return !isRefused && !isDumb;
}

bool allows(ColorChoice choice, bool isTerminal) {
    return choice == ColorChoice::Always ||
           (choice == ColorChoice::Auto && isTerminal && environmentAllowsColor());
}

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

Terminal::Terminal(int descriptor, ColorChoice choice)
    : m_descriptor(descriptor)
    , m_isTerminal(::isatty(descriptor) == 1)
    , m_allowsColor(allows(choice, m_isTerminal)) {}

std::size_t Terminal::width() const {
    constexpr std::size_t usual = 80;
    winsize size{};
    const bool isKnown =
        m_isTerminal && ::ioctl(m_descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usual;
}

std::string Terminal::styled(std::string_view text, TextStyle style) const {
    if (!m_allowsColor) {
        return std::string(text);
    }
    std::string painted = sequenceOf(style);
    painted += text;
    painted += "\x1b[0m";
    return painted;
}
