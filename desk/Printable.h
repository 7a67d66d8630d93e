#pragma once

#include <string>
#include <string_view>

/// Text out of a radio file as an error message shows it: control characters as "\u000a", and
/// shortened with "..." when it is longer than some 80 bytes.
std::string printable(std::string_view text);

/// JSON without blanks as it may be printed: characters that steer a terminal, which JSON allows
/// within texts, as
/// "\\u202e".
std::string printableJson(std::string written);
