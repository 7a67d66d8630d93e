#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// A place in a text as editors count it: lines and columns from 1, a column being a character of
/// UTF-8. A byte order mark at the start takes no column.
struct TextPlace {
    std::size_t line = 1;
    std::size_t column = 1;
};

/// The place of the byte at an index.
TextPlace textPlaceOf(std::string_view text, std::size_t index);

/// "LINE:COLUMN".
std::string placeText(const TextPlace& place);
