#pragma once

#include <cstddef>
#include <string>
#include <string_view>

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

/// How text for people may look where it will be read.
struct TextLook {
    bool allowsColor = false;
    std::size_t width = 80; ///< in columns

    /// The text in a style where colours are allowed, else as it is.
    std::string styled(std::string_view text, TextStyle style) const;
};
