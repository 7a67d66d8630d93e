#pragma once

#include "Command.h"

#include <vector>

/// Reads the words behind the tool's name and does what they say.
/// @throw AnalysisError, a QuestionError for what the words ask in vain.
Outcome runCommandLine(std::vector<Command> commands, int argc, const char* const* argv,
                       Output& output);
