#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// A paragraph broken between words into lines of at most a width, as far as its words allow. No
/// line end behind the last line.
std::string wrapped(std::string_view paragraph, std::size_t width);
