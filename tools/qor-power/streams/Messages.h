#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Says one line on standard error, behind the tool's name. The line must not hold a line end. On a
/// terminal it is broken to fit; anywhere else one message is one line, whatever COLUMNS says,
/// because programs read it there.
void complain(std::string_view line);

/// A message broken into lines of at most a width, the later ones a little further in. It is broken
/// at blanks only, and not in the file and the JSON Pointer that it may begin with nor between
/// quotation marks, so that these can be copied whole; such a piece may be wider.
/// @param width in columns; 0: one line.
std::string fittedMessage(std::string_view message, std::size_t width);
