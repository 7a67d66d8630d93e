#pragma once

#include "Command.h"

#include <vector>

/// Every command of the tool, in the order in which they are shown.
///
/// A new command is a function below, in a source file of its own, and its place in
/// DocumentCommands.cpp. It keeps its options alive in what it runs:
///
///     Command Commands::table() {
///         const auto options = std::make_shared<RadioQuestion>(Question::Topic::Table);
///         return {
///             .name = "table",
///             .options = options->query.behind({CommonOptions::radioFile(options->file), ...}),
///             .run = [options](Output& output) { return options->run(output); },
///         };
///     }
///
/// Help, manual page and completions come from the description, and options that several commands
/// share from CommonOptions and RadioQuestion.
std::vector<Command> allCommands();

/// The descriptions of the commands, one by one.
namespace Commands {

Command table();      ///< the powers of one frame format of a radio
Command explain();    ///< how powers came about, from a radio file or from a log
Command whyNot();     ///< which single changes would allow a power that a radio does not give
Command sweep();      ///< the powers over one or two inputs, side by side
Command diff();       ///< what tells the powers of two radios apart, and why
Command plot();       ///< a picture of the powers over modulation
Command check();      ///< what is wrong with radio files, or likely not meant
Command replay();     ///< what a node answered, call by call
Command importLog();  ///< a radio file of what a log tells
Command batch();      ///< the powers of many radio files, a line for each
Command fleet();      ///< what the answers of a batch say of the fleet
Command report();     ///< radio files with the page that explains them, as one HTML file
Command page();       ///< where that page is
Command examples();   ///< the example radio files
Command manual();     ///< the manual page
Command completion(); ///< a script for a shell

} // namespace Commands
