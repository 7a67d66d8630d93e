#pragma once

#include "CalculationStory.h"
#include "DeskTrace.h"
#include "OperatingInputs.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

/// One call of the service as a log holds it.
struct LoggedCall {
    std::string name;      ///< of the operation; empty for traces whose call the log does not show
    std::size_t line = 0;  ///< of the log, where it begins
    std::string arguments; ///< the text of its entry, in the library's words
    std::vector<TraceRecord> records;
    nlohmann::json answer;    ///< the line of the replay; null in a log of plain traces
    std::string process = {}; ///< the words before its traces that name who traced; or empty
    std::string time = {};    ///< before its first trace; or empty
    std::vector<std::size_t> lines = {}; ///< of the log, one for each record
    bool isBehindGap = false; ///< a line before it could not be read: calls may be missing
};

/// What cannot be read of a log: "line N: PROBLEM; REMEDY".
class TraceLogError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Takes a log apart, line by line, into calls of the service.
///
/// Two forms of lines are known, also mixed: a line of `qor-power replay --trace 6`, which is a
/// call with its answer and its traces, and a trace as a line of text, "LEVEL KIND FILE:LINE
/// FUNCTION: TEXT", whatever stands before it (a time, a process). Other lines are counted and left
/// out. Traces of several processes are told apart by the words before them: a time and plain
/// numbers aside, the same words are the same process.
class TraceLog {
public:
    using CallSink = std::function<void(const LoggedCall& call)>;

    // Bounds that no real node comes near. They keep what any log can ask for, its explanations
    // included, below 64 MiB of memory.

    /// In bytes: of a line, and of what is kept of all traces of one call.
    static constexpr std::size_t maxSize = std::size_t{8} << 20;

    /// The level of function entries, by which steps are told.
    static constexpr int neededLevel = 6;

    /// Bytes of one trace.
    static constexpr std::size_t maxTraceSize = std::size_t{64} << 10;

    /// Traces of one call.
    static constexpr std::size_t maxTraces = 32768;

    /// Calculations of one call.
    static constexpr std::size_t maxCalculations = 8192;

    /// Processes that trace into one log.
    static constexpr std::size_t maxProcesses = 64;

    /// Bytes of what tells processes apart.
    static constexpr std::size_t maxProcessName = 256;

    /// Values in a line of a replay, which has six for each trace.
    static constexpr std::size_t maxValues = 200000;

    /// @param sink gets each call when the log goes on to the next one.
    explicit TraceLog(CallSink sink)
        : m_sink(std::move(sink)) {}

    /// @param isTooLong whether this is only the beginning of a line beyond maxSize.
    /// @throw TraceLogError for a line that goes beyond a bound.
    void read(const std::string& line, bool isTooLong = false);

    /// Hands out what is still open at the end of the log.
    void end();

    /// The highest level of a trace so far; 0 without one.
    int highestLevel() const { return m_highestLevel; }

    /// How many traces there were, and what to do about it: for a log without a call.
    std::string tracesAndRemedy() const;

    std::size_t lines() const { return m_line; }
    std::size_t records() const { return m_records; } ///< traces that were found
    std::size_t leftOut() const {
        return m_leftOut;
    } ///< lines that are no traces, but for empty ones

    /// The trace in a line of text; nothing if it holds none.
    /// @param before gets what stands before it.
    static std::optional<TraceRecord> recordIn(const std::string& line,
                                               std::string* before = nullptr);

    /// The words before a trace that name who traced: all but times, dates and plain numbers.
    static std::string processIn(const std::string& before);

    /// The time before a trace, with its date if that is part of the same word; or empty.
    static std::string timeIn(const std::string& before);

    /// Whether an operation of that name answers with powers.
    static bool isQuery(const std::string& name);

private:
    [[noreturn]] void fail(const std::string& problem) const;
    /// The object that a line holds; null if the line is no JSON.
    nlohmann::json objectIn(const std::string& line) const;
    bool readReplayLine(const std::string& line);
    /// A call that is being read.
    struct OpenCall {
        LoggedCall call;
        std::size_t calculations = 0;
    };

    void keep(OpenCall& open, const TraceRecord& record);
    void readRecord(const TraceRecord& record, const std::string& before);
    OpenCall& begin(const std::string& process, const std::string& name,
                    const std::string& arguments);
    void end(const std::string& process);

    CallSink m_sink;
    std::map<std::string, OpenCall> m_open; ///< by process
    std::map<std::string, bool> m_isBehindGap;
    std::size_t m_size = 0; ///< bytes of the traces of all open calls
    int m_highestLevel = 0;
    std::size_t m_line = 0;
    std::size_t m_records = 0;
    std::size_t m_leftOut = 0;
};

/// The operating inputs of one process as far as a log tells them. They are known from the
/// service's initialize() on, up to a gap in the log. As a line that sets one may be missing
/// unseen, they are only what the log says; see LoggedPowers.
class LoggedInputs {
public:
    void follow(const LoggedCall& call);

    /// Nothing of before is known any more.
    void forget();

    /// Holds whatever the log says.
    void fix(const OperatingInputs& inputs);

    /// Nothing for what is not known.
    std::optional<ExplanationContext::Cutback> cutback() const;
    std::optional<ExplanationContext::Booster> booster() const;

    bool isCutbackGiven() const { return m_fixed.permanentCutback || m_fixed.temporaryCutback; }
    bool isBoosterGiven() const { return m_fixed.booster.has_value(); }

    /// The radio channel that the start of the service names; nothing if the log does not hold it.
    const std::optional<std::int64_t>& channel() const { return m_channel; }

private:
    void followRecord(const TraceRecord& record);

    std::optional<std::uint32_t> m_permanent;
    std::optional<OperatingInputs::TemporaryCutback> m_temporary;
    std::optional<ExplanationContext::Booster> m_booster;
    std::optional<std::int64_t> m_channel;
    OperatingInputs m_fixed;
};

/// Whose calls of a log are wanted.
struct LogSource {
    std::optional<std::int64_t> channel; ///< of the service; nothing: all
    std::string process = {};            ///< a part of the process's words, with * for anything

    /// @param inputs of the call's process, which know the channel of its service.
    bool includes(const LoggedCall& call, const LoggedInputs& inputs) const;
};
