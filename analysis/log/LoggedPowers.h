#pragma once

#include "CallCheck.h"
#include "Explanation.h"
#include "QueryTrace.h"
#include "TextLook.h"
#include "TraceLog.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// The powers of one query in a log, explained as far as the log tells.
struct LoggedPowers {
    /// Explains what can be relied on. Powers are told only of calculations whose traces are all
    /// there; cutback and booster of earlier lines count only where figures of the query confirm
    /// them, because a line that sets another one may be missing.
    /// @param inputs that are in force at the call, by the log.
    static LoggedPowers of(const LoggedCall& call, const LoggedInputs& inputs,
                           const CallCheck& check);

    /// Takes every trace and every input for true.
    static LoggedPowers asTold(const LoggedCall& call, const LoggedInputs& inputs);

    std::string call;      ///< name of the operation, or empty
    std::size_t line = 0;  ///< of the log
    std::string arguments; ///< in the library's words
    QueryTrace trace;
    std::vector<Explanation> explanations; ///< one for each calculation, in order
    std::vector<std::string> gaps;         ///< what the log does not hold, in words
    std::string process = {};
    std::size_t number = 0;                    ///< among the queries of the log, from 1
    std::vector<std::string> unconfirmed = {}; ///< see CallCheck

    bool isComplete() const { return gaps.empty(); }

    /// Keeps the explanations of the calculations before this one.
    void keepFirst(std::size_t calculations);
};

/// The queries of a log, one after the other, each with what is known of the inputs from its own
/// process since the start of its service. A gap ends what is known.
class LoggedQueries {
public:
    struct Choice {
        LogSource source = {};
        std::string since = {}; ///< of the time of the first trace; empty: from the beginning
        std::optional<std::size_t> query = {}; ///< its number; nothing: all
        OperatingInputs inputs = {};           ///< hold whatever the log says
    };
    using Sink = std::function<void(const LoggedPowers& powers)>;

    LoggedQueries(Choice choice, Sink sink);

    /// As TraceLog::read() and end().
    void read(const std::string& line, bool isTooLong = false) { m_log.read(line, isTooLong); }
    void end() { m_log.end(); }

    const TraceLog& log() const { return m_log; }
    std::size_t found() const { return m_found; } ///< queries, whether chosen or not

private:
    struct Process {
        LoggedInputs inputs;
        std::size_t brokenOff = 0; ///< line of the call before, if lines of it may follow; else 0
    };

    void take(const LoggedCall& call);
    bool isChosen(const LoggedCall& call, const Process& process);

    Choice m_choice;
    Sink m_sink;
    TraceLog m_log;
    std::map<std::string, Process> m_processes;
    std::size_t m_found = 0;
    bool m_isSince = false; ///< the time has come
};

/// The powers of one query in a log, for people.
std::string textForm(const LoggedPowers& powers, const TextLook& look);

/// The same for programs: one JSON object, without line ends but for the last.
std::string jsonLine(const LoggedPowers& powers);
