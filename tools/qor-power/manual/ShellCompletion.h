#pragma once

#include "Command.h"

#include <string>
#include <vector>

/// What shells have to know in order to complete the tool's commands, options and values: a script
/// for each, made of the same descriptions as the help.
namespace ShellCompletion {

std::string forBash(const std::vector<Command>& commands);
std::string forFish(const std::vector<Command>& commands);
std::string forZsh(const std::vector<Command>& commands);

} // namespace ShellCompletion
