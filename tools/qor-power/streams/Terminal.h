#pragma once

#include "TextLook.h"

#include <cstddef>

/// What the user says about colours with --color.
enum class ColorChoice {
    Auto, ///< on a terminal, unless NO_COLOR or TERM=dumb says otherwise
    Always,
    Never
};

/// Where a stream leads, and so how text on it may look.
class Terminal {
public:
    explicit Terminal(int descriptor, ColorChoice choice = ColorChoice::Auto);

    bool isTerminal() const { return m_isTerminal; }

    /// In columns, by COLUMNS or else by the terminal; 0, no bound, where neither says. Asked anew
    /// every time, because a window may be resized.
    std::size_t width() const;

    /// How text may look there now.
    TextLook look() const;

private:
    int m_descriptor;
    bool m_isTerminal;
    bool m_allowsColor;
};
