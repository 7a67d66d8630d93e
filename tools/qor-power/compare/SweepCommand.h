#pragma once

#include "Command.h"
#include "QueryOptions.h"

#include <string>
#include <vector>

/// `qor-power sweep`: the powers of a radio over one or two of its inputs, side by side.
class SweepCommand {
public:
    struct Options {
        std::string file;
        std::string format = "text";
        std::vector<std::string> over;
        QueryOptions query;
    };

    static Command describe();

    /// @throw UsageError
    explicit SweepCommand(const Options& options);

    /// @throw ToolError
    ExitStatus run(Output& output) const;

private:
    Options m_options;
    PowerTableQuery m_query;
};
