#pragma once

#include "VelTrace.h"

#include <cstdint>
#include <sstream>

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
    explicit TraceSource(const char* path);

    bool isEnabled(int level) const { return m_trace.isEnabled(level); }

    void message(int level, const char* function, int line, const std::ostringstream& text);
    void enter(const char* function, int line, const std::ostringstream& text);

private:
    VelTrace m_trace;
    const char* m_path;
};

/// The stream in which a trace builds its text. Its construction stays out of the callers: there
/// are many, and each would hold a copy of code that hardly ever runs.
class TraceText {
public:
    TraceText();
    ~TraceText();
    TraceText(const TraceText&) = delete;
    TraceText& operator=(const TraceText&) = delete;

    std::ostringstream stream;
};

// Macros, because the text of a trace that is off must not be built: `text` is what follows a
// stream.

/// Traces a message of `function` through a source.
#define TRACE_MSG_OF(source, function, level, text)                                                \
    do {                                                                                           \
        if ((source).isEnabled(level)) {                                                           \
            TraceText built;                                                                       \
            built.stream << text;                                                                  \
            (source).message(level, function, __LINE__, built.stream);                             \
        }                                                                                          \
    } while (false)

/// Traces the entry of `function` through a source, with the arguments as text.
#define TRACE_ENTER_OF(source, function, text)                                                     \
    do {                                                                                           \
        if ((source).isEnabled(TraceLevel::Detail)) {                                              \
            TraceText built;                                                                       \
            built.stream << text;                                                                  \
            (source).enter(function, __LINE__, built.stream);                                      \
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
