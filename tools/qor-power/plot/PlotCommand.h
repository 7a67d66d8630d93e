#pragma once

#include "Command.h"
#include "QueryOptions.h"

#include <optional>
#include <string>
#include <vector>

/// `qor-power plot`: a picture of the maximum powers over modulation, as SVG or in the terminal.
class PlotCommand {
public:
    struct Options {
        std::string file;
        std::optional<std::string> output;
        std::vector<std::string> over;
        QueryOptions query;
    };

    static Command describe();

    /// @throw UsageError
    explicit PlotCommand(const Options& options);

    /// @throw ToolError
    ExitStatus run(Output& output) const;

private:
    Options m_options;
    PowerTableQuery m_query;
};
