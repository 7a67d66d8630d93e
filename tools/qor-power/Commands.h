#pragma once

#include "Command.h"

#include <vector>

/// What the tool is for, in one line.
inline constexpr const char* toolSummary =
    "Transmit output power of a microwave radio, from a radio file that describes it";

/// Every command of the tool, in the order in which they are shown.
///
/// A new command is a class in files of its own, with a static describe() that returns a Command.
/// It keeps its options alive in what it runs:
///
///     Command TableCommand::describe() {
///         const auto options = std::make_shared<Options>();
///         Command command;
///         command.name = "table";
///         command.options = {radioFileArgument(options->file), ...};
///         command.run = [options](Output& output) { return TableCommand(*options).run(output); };
///         return command;
///     }
///
/// and one line in Commands.cpp. Help, manual page and completions come from the description, and
/// options that several commands share from CommonOptions and QueryOptions.
std::vector<Command> allCommands();
