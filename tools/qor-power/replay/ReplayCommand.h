#pragma once

#include "Command.h"

#include <string>
#include <vector>

/// `qor-power replay`: plays the requests of radio files and reports every call as a line of JSON.
///
/// Each file has a service of its own. A file that is bad, cannot be read, or whose service does
/// not start is complained about, and the next one is played.
class ReplayCommand {
public:
    struct Options {
        std::vector<std::string> files;
        std::string traceLevel = "0";
    };

    static Command describe();

    /// @throw UsageError
    explicit ReplayCommand(const Options& options);

    /// @return the worst status of all files.
    /// @throw OutputError
    ExitStatus run(Output& output) const;

private:
    ExitStatus play(const std::string& file, Output& output) const;

    std::vector<std::string> m_files;
    int m_traceLevel;
};
