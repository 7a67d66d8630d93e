#pragma once

#include "Command.h"

#include <string>
#include <string_view>
#include <vector>

/// What shells have to know in order to complete the tool's commands, options and values: a script
/// for each, made of the same descriptions as the help.
namespace ShellCompletion {

std::string forBash(const std::vector<Command>& commands);
std::string forFish(const std::vector<Command>& commands);
std::string forZsh(const std::vector<Command>& commands);

/// Words with blanks between them.
std::string joined(const std::vector<std::string>& words);

/// A text with something in place of each occurrence of a character.
std::string replaced(std::string_view text, char character, std::string_view with);

} // namespace ShellCompletion
