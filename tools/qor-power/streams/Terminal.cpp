#include "Terminal.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>

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

/// Whether the locale's characters are those of Unicode, as far as the environment says: a locale
/// that is asked for need not be installed here.
bool environmentAllowsBlocks() {
    for (const char* const name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* const value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            std::string locale(value);
            std::erase(locale, '-');
            std::ranges::transform(locale, locale.begin(), [](unsigned char letter) {
                return static_cast<char>(std::tolower(letter));
            });
            return locale.find("utf8") != std::string::npos;
        }
    }
    return false;
}

/// What the user or the shell says; 0 if nothing.
std::size_t environmentColumns() {
    const char* const value = std::getenv("COLUMNS");
    const std::string_view text = value == nullptr ? "" : value;
    std::size_t columns = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), columns);
    return error == std::errc() && end == text.data() + text.size() ? columns : 0;
}

} // namespace

Terminal::Terminal(int descriptor, ColorChoice choice)
    : m_descriptor(descriptor)
    , m_isTerminal(::isatty(descriptor) == 1)
    , m_allowsColor(allows(choice, m_isTerminal)) {}

std::size_t Terminal::width() const {
    constexpr std::size_t least = 20; // below it no text reads well
    if (const std::size_t columns = environmentColumns(); columns > 0) {
        return std::max(columns, least);
    }
    winsize size{};
    const bool isKnown =
        m_isTerminal && ::ioctl(m_descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? std::max<std::size_t>(size.ws_col, least) : 0;
}

TextLook Terminal::look() const {
    return {m_allowsColor, width(), environmentAllowsBlocks()};
}
