#include "Terminal.h"

#include <cstdlib>
#include <string_view>

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
