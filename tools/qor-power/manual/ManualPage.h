#pragma once

#include "Command.h"

#include <string>
#include <vector>

/// The tool's manual page for man(1), in the language of its formatters. It is made of the same
/// descriptions as the help, and its date is that of the version: the same sources give the same
/// bytes.
std::string manualPage(const std::vector<Command>& commands);
