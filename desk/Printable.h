#pragma once

#include <string>
#include <string_view>

/// Text out of a radio file as an error message shows it: control characters as "\u000a", and
/// shortened with "..." when it is longer than some 80 bytes.
std::string printable(std::string_view text);
