#pragma once

#include "VelTrace.h"

#include <cstdint>
#include <sstream>
#include <string>

/// Levels of trace records.
namespace TraceLevel {

constexpr int Error = 1;
constexpr int Warning = 2;
constexpr int InvalidInput = 4;
constexpr int Result = 5; ///< results, limits and changes of state
constexpr int Detail = 6; ///< function entries, inputs and intermediate values

} // namespace TraceLevel

/// What a source file traces through: its trace object and the path that its records show. Code
/// that several families share traces through the family's.
class TraceSource {
public:
    explicit TraceSource(const char* path)
        : m_trace("QOR.SPC.Calculator", 3, 256)
        , m_path(path) {}

    bool isEnabled(int level) const { return m_trace.isEnabled(level); }

    void message(int level, const char* function, int line, const std::string& text) {
        m_trace.logMsg(level, {m_path, line, function}, text);
    }

    void enter(const char* function, int line, const std::string& text) {
        m_trace.logEnterMsg(TraceLevel::Detail, {m_path, line, function}, text);
    }

private:
    VelTrace m_trace;
    const char* m_path;
};

// Macros, because the text of a trace that is off must not be built: `text` is what follows a
// stream.

/// Traces a message of `function` through a source.
#define TRACE_MSG_OF(source, function, level, text)                                                \
    do {                                                                                           \
        if ((source).isEnabled(level)) {                                                           \
            std::ostringstream stream;                                                             \
            stream << text;                                                                        \
            (source).message(level, function, __LINE__, stream.str());                             \
        }                                                                                          \
    } while (false)

/// Traces the entry of `function` through a source, with the arguments as text.
#define TRACE_ENTER_OF(source, function, text)                                                     \
    do {                                                                                           \
        if ((source).isEnabled(TraceLevel::Detail)) {                                              \
            std::ostringstream stream;                                                             \
            stream << text;                                                                        \
            (source).enter(function, __LINE__, stream.str());                                      \
        }                                                                                          \
    } while (false)

/// Traces a message of this function through the source file's own `s_trace`.
#define TRACE_MSG(level, text) TRACE_MSG_OF(s_trace, __func__, level, text)

/// Traces the entry of this function through the source file's own `s_trace`.
#define TRACE_ENTER(text) TRACE_ENTER_OF(s_trace, __func__, text)

/// The number of an enumerator, for traces that show it without its text.
template <class Enumeration>
constexpr std::int32_t numberOf(Enumeration value) {
    return static_cast<std::int32_t>(value);
}
