#pragma once

#include "RadioFileError.h"

#include <string_view>

/// What a text that people or programs read has to be.
namespace TextChecks {

/// Well-formed UTF-8.
bool isUtf8(std::string_view text);

/// Not empty, well-formed UTF-8, and without any control character, line ends included.
bool isOneLine(std::string_view text);

/// Requires of an error that it is one line and names a place that the text has.
void checkError(const RadioFileError& error, std::string_view text);

} // namespace TextChecks
