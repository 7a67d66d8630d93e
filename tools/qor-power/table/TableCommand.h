#pragma once

#include "Command.h"
#include "PowerTableQuery.h"
#include "QueryOptions.h"

#include <string>

/// `qor-power table`: the powers of one frame format of a radio.
class TableCommand {
public:
    /// As on the command line.
    struct Options {
        std::string file;
        std::string format = "text";
        QueryOptions query;
    };

    static Command describe();

    /// @throw UsageError
    explicit TableCommand(const Options& options);

    /// @throw ToolError
    ExitStatus run(Output& output) const;

private:
    std::string m_file;
    std::string m_format;
    PowerTableQuery m_query;
};
