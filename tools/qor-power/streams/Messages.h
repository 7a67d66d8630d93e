#pragma once

#include <string_view>

/// Says one line on standard error, behind the tool's name. The line must not hold a line end.
void complain(std::string_view line);
