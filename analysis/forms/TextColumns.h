#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

enum class Align {
    Left,
    Right
};

/// How many columns of a terminal a text takes: its characters, of whatever length in bytes.
std::size_t textWidth(std::string_view text);

/// A text with blanks on one side, at least `width` wide.
std::string padded(const std::string& text, std::size_t width, Align align);

/// Lines of cells as aligned columns, two blanks apart, without blanks at the ends of lines. A cell
/// of more than 200 characters sticks out of its column.
/// @param align of every column; each line has as many cells.
std::string alignedColumns(const std::vector<Align>& align,
                           const std::vector<std::vector<std::string>>& lines);
