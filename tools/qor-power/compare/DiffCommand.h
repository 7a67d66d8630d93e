#pragma once

#include "Command.h"
#include "QueryOptions.h"

#include <string>

/// `qor-power diff`: what tells the powers of two radios apart, and why.
class DiffCommand {
public:
    struct Options {
        std::string before;
        std::string after;
        std::string format = "text";
        QueryOptions query; ///< for both radios
    };

    static Command describe();

    /// @throw UsageError
    explicit DiffCommand(const Options& options);

    /// @return AnswerIsNo if the powers differ.
    /// @throw ToolError
    ExitStatus run(Output& output) const;

private:
    Options m_options;
    PowerTableQuery m_query;
};
