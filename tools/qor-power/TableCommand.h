#pragma once

#include "ExitStatus.h"
#include "Output.h"
#include "PowerTableQuery.h"

#include <optional>
#include <string>
#include <vector>

/// `qor-power table`: the powers of one frame format of a radio.
class TableCommand {
public:
    /// As on the command line. What is not given is left to the radio file.
    struct Options {
        std::string file;
        std::optional<std::string> frameFormat;
        std::string format = "text";
        std::optional<std::string> cutback;
        std::optional<std::string> temporaryCutback;
        std::optional<std::string> booster;
        std::optional<std::string> rsec;
    };

    /// @throw UsageError
    explicit TableCommand(const Options& options);

    /// @throw ToolError
    ExitStatus run(Output& output) const;

private:
    std::string m_file;
    std::string m_format;
    PowerTableQuery m_query;
};
