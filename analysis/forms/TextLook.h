#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// By their numbers in a terminal's control sequences.
enum class TextStyle {
    Bold = 1,
    Dim = 2,
    Red = 31,
    Green,
    Yellow,
    Blue,
    Magenta,
    Cyan
};

/// How text for people may look where it will be read.
struct TextLook {
    bool allowsColor = false;
    std::size_t width = 0;    ///< in columns; 0: lines may be of any length
    bool allowsBlocks = true; ///< characters of Unicode that draw blocks and lines

    /// The text in a style where colours are allowed, else as it is.
    std::string styled(std::string_view text, TextStyle style) const {
        const std::string plain(text);
        return allowsColor
                   ? "\x1b[" + std::to_string(static_cast<int>(style)) + 'm' + plain + "\x1b[0m"
                   : plain;
    }
};
