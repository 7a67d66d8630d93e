#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// A text as it may stand in one line of a message or a heading: what would end the line or steer a
/// terminal is shown as "\n", "\r", "\t", "\x1b" or "\u0085", and a byte that is no UTF-8 as
/// "\xff".
std::string oneLine(std::string_view text);

/// The same in quotation marks.
std::string inQuotes(std::string_view text);

/// A number of things: "1 line", "2 lines".
std::string counted(std::uint64_t count, const std::string& noun);
