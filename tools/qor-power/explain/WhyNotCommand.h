#pragma once

#include "Command.h"
#include "ExitStatus.h"
#include "Output.h"
#include "QueryOptions.h"

#include <cstdint>
#include <string>

/// `qor-power why-not`: which single changes would allow a power that a radio does not give.
class WhyNotCommand {
public:
    /// As on the command line. What is not given is left to the radio file.
    struct Options {
        std::string file;
        std::string modulation;
        std::string power;
        std::string format = "text";
        QueryOptions query;
    };

    static Command describe();

    /// @throw UsageError
    explicit WhyNotCommand(const Options& options);

    /// @throw ToolError
    ExitStatus run(Output& output) const;

private:
    Options m_options;
    PowerTableQuery m_query;
    std::int32_t m_wanted;
};
