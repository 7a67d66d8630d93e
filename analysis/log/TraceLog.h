#pragma once

#include "CalculationStory.h"
#include "DeskTrace.h"
#include "OperatingInputs.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
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
    nlohmann::json answer; ///< the line of the replay; null in a log of plain traces
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
/// out.
class TraceLog {
public:
    using CallSink = std::function<void(const LoggedCall& call)>;

    // Bounds that no real node comes near. They keep what any log can ask for, its explanations
    // included, below 64 MiB of memory.

    /// In bytes: of a line, and of what is kept of all traces of one call.
    static constexpr std::size_t maxSize = std::size_t{8} << 20;

    /// Bytes of one trace.
    static constexpr std::size_t maxTraceSize = std::size_t{64} << 10;

    /// Traces of one call.
    static constexpr std::size_t maxTraces = 32768;

    /// Calculations of one call.
    static constexpr std::size_t maxCalculations = 8192;

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

    std::size_t lines() const { return m_line; }
    std::size_t records() const { return m_records; } ///< traces that were found
    std::size_t leftOut() const {
        return m_leftOut;
    } ///< lines that are no traces, but for empty ones

    /// The trace in a line of text; nothing if it holds none.
    static std::optional<TraceRecord> recordIn(const std::string& line);

    /// Whether an operation of that name answers with powers.
    static bool isQuery(const std::string& name);

private:
    [[noreturn]] void fail(const std::string& problem) const;
    /// The object that a line holds; null if the line is no JSON.
    nlohmann::json objectIn(const std::string& line) const;
    bool readReplayLine(const std::string& line);
    void keep(const TraceRecord& record);
    void readRecord(const TraceRecord& record);
    void begin(const std::string& name, const std::string& arguments);

    CallSink m_sink;
    LoggedCall m_call;
    std::size_t m_callSize = 0;     ///< bytes of its traces
    std::size_t m_calculations = 0; ///< of the call
    bool m_isOpen = false;
    std::size_t m_line = 0;
    std::size_t m_records = 0;
    std::size_t m_leftOut = 0;
};

/// The operating inputs as far as a log tells them. A log that begins with the service's
/// initialize() starts from the inputs that a new service has.
class LoggedInputs {
public:
    /// @param isFirst whether the call is the first of its log.
    void follow(const LoggedCall& call, bool isFirst);

    /// Holds whatever the log says.
    void fix(const OperatingInputs& inputs);

    /// Nothing for what is not known.
    std::optional<ExplanationContext::Cutback> cutback() const;
    std::optional<ExplanationContext::Booster> booster() const;

private:
    void followRecord(const TraceRecord& record);

    std::optional<std::uint32_t> m_permanent;
    std::optional<OperatingInputs::TemporaryCutback> m_temporary;
    std::optional<ExplanationContext::Booster> m_booster;
    OperatingInputs m_fixed;
};
