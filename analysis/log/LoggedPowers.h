#pragma once

#include "Explanation.h"
#include "QueryTrace.h"
#include "TextLook.h"
#include "TraceLog.h"

#include <string>
#include <vector>

/// The powers of one query in a log, explained as far as the log tells.
struct LoggedPowers {
    /// @param inputs that are in force at the call.
    static LoggedPowers of(const LoggedCall& call, const LoggedInputs& inputs);

    std::string call;      ///< name of the operation, or empty
    std::size_t line = 0;  ///< of the log
    std::string arguments; ///< in the library's words
    QueryTrace trace;
    std::vector<Explanation> explanations; ///< one for each calculation, in order
    std::vector<std::string> gaps;         ///< what the log does not hold, in words
};

/// The powers of one query in a log, for people.
std::string textForm(const LoggedPowers& powers, const TextLook& look);

/// The same for programs: one JSON object, without line ends but for the last.
std::string jsonLine(const LoggedPowers& powers);
