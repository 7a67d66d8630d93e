#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What the user says about colours with --color.
enum class ColorChoice {
    Auto, ///< on a terminal, unless NO_COLOR or TERM=dumb says otherwise
    Always,
    Never
};

enum class TextStyle {
    Bold,
    Dim,
    Red,
    Green,
    Yellow,
    Blue,
    Magenta,
    Cyan
};

/// Where a stream leads, and so how text on it may look.
class Terminal {
public:
    explicit Terminal(int descriptor, ColorChoice choice = ColorChoice::Auto);

    bool isTerminal() const { return m_isTerminal; }
    bool allowsColor() const { return m_allowsColor; }

    /// In columns; 80 where there is no terminal or it does not say. Asked anew every time, because
    /// a window may be resized.
    std::size_t width() const;

    /// The text in a style where colours are allowed, else as it is.
    std::string styled(std::string_view text, TextStyle style) const;

private:
    int m_descriptor;
    bool m_isTerminal;
    bool m_allowsColor;
};
