#pragma once

#include "Command.h"
#include "ExitStatus.h"
#include "Output.h"
#include "QueryOptions.h"

#include <optional>
#include <string>
#include <vector>

/// `qor-power explain`: how the powers of a radio come about, step by step; or, from a log that was
/// captured on a node, how those came about that were asked for there.
class ExplainCommand {
public:
    /// As on the command line. What is not given is left to the radio file.
    struct Options {
        std::vector<std::string> words; ///< a radio file, then modulations and codes
        std::string format = "text";
        std::optional<std::string> traceLog;
        QueryOptions query;
    };

    static Command describe();

    /// @throw UsageError
    explicit ExplainCommand(const Options& options);

    /// @throw ToolError
    ExitStatus run(Output& output) const;

private:
    ExitStatus explainFile(Output& output) const;
    ExitStatus explainLog(Output& output) const;

    Options m_options;
    PowerTableQuery m_query;
};
