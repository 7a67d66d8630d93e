#pragma once

#include "Arguments.h"
#include "Command.h"
#include "Terminal.h"
#include "TraceLog.h"

#include <optional>
#include <string>
#include <vector>

/// Options and arguments that mean the same in every command that has them.
namespace CommonOptions {

/// FILE, one radio file; required.
CommandOption radioFile(std::string& file);

/// FILE..., any number of radio files but none; required.
CommandOption radioFiles(std::vector<std::string>& files);

/// --format FORMAT. The first one is the default, which the target holds already.
CommandOption format(std::string& format, const std::vector<std::string>& formats);

/// --over, what a sweep varies.
CommandOption over(std::vector<std::string>& overs, bool isRequired);

/// --help, which the tool and every command have. The command line answers it by itself.
CommandOption help();

/// --version of the tool.
CommandOption version();

/// The options of a command, with those that every command has.
std::vector<CommandOption> allOf(const Command& command);

/// --color WHEN, which the command line adds to every command; only text for people is coloured.
/// @param when null where only the description is wanted.
CommandOption color(std::string* when);

/// @throw QuestionError
ColorChoice colorChoice(const std::string& when);

/// Refuses files of which more than one is standard input.
/// @throw QuestionError
void expectOneStandardInput(const std::vector<std::string>& files);

} // namespace CommonOptions

/// The options by which a command line says which powers are asked for and under which operating
/// inputs.
struct QueryOptions : AskedInputs {
    QueryOptions() { prefix = "--"; }

    /// For a Command, behind options of its own; they are read into this object, which must outlive
    /// them.
    std::vector<CommandOption> behind(std::vector<CommandOption> own);
};

/// The options that say whose calls of a log are meant.
struct LogSourceOptions {
    std::optional<std::string> channel;
    std::optional<std::string> process;

    bool isGiven() const { return channel || process; }

    /// @throw QuestionError
    LogSource source() const;

    /// @param what of the log is chosen, as in "the queries".
    CommandOption channelOption(const std::string& what);
    CommandOption processOption(const std::string& what);
};
