#pragma once

#include "EReferenceSEC.h"
#include "ModulationAndCoding.h"
#include "VelTrace.h"

#include <cstdint>
#include <iosfwd>
#include <sstream>

/// Levels of trace records.
namespace TraceLevel {

constexpr int Error = 1;
constexpr int Warning = 2;
constexpr int InvalidInput = 4;
constexpr int Result = 5; ///< results, limits and changes of state
constexpr int Detail = 6; ///< function entries, inputs and intermediate values

} // namespace TraceLevel

/// The stream in which a trace builds its text.
class TraceText {
public:
    TraceText();
    ~TraceText();
    TraceText(const TraceText&) = delete;
    TraceText& operator=(const TraceText&) = delete;

    std::ostringstream stream;
};

/// What a source file traces through: its trace object and the path that its records show. Code
/// that several families share traces through the family's.
///
/// The parts of a text are passed by value and put together out of the way of the code that hardly
/// ever traces: nothing that is traced has to lie in memory for it.
class TraceSource {
public:
    explicit TraceSource(const char* path);

    bool isEnabled(int level) const { return m_trace.isEnabled(level); }

    // NOLINTBEGIN(performance-unnecessary-value-param): nothing then has to lie in memory
    template <class... Parts>
    __attribute__((noinline, cold)) void message(int level, const char* function, int line,
                                                 Parts... parts) {
        TraceText text;
        (text.stream << ... << parts);
        writeMessage(level, function, line, text.stream);
    }

    template <class... Parts>
    __attribute__((noinline, cold)) void enter(const char* function, int line, Parts... parts) {
        TraceText text;
        (text.stream << ... << parts);
        writeEntry(function, line, text.stream);
    }
    // NOLINTEND(performance-unnecessary-value-param)

private:
    void writeMessage(int level, const char* function, int line, const std::ostringstream& text);
    void writeEntry(const char* function, int line, const std::ostringstream& text);

    VelTrace m_trace;
    const char* m_path;
};

// Macros, because the parts of a trace that is off must not even be worked out.

/// Traces a message of `function` through a source; the parts of its text follow.
#define TRACE_MSG_OF(source, function, level, ...)                                                 \
    do {                                                                                           \
        if ((source).isEnabled(level)) {                                                           \
            (source).message(level, function, __LINE__, __VA_ARGS__);                              \
        }                                                                                          \
    } while (false)

/// Traces the entry of `function` through a source; the parts of its text, the arguments, follow.
#define TRACE_ENTER_OF(source, function, ...)                                                      \
    do {                                                                                           \
        if ((source).isEnabled(TraceLevel::Detail)) {                                              \
            (source).enter(function, __LINE__, __VA_ARGS__);                                       \
        }                                                                                          \
    } while (false)

/// Traces a message of this function through the source file's own `s_trace`.
#define TRACE_MSG(level, ...) TRACE_MSG_OF(s_trace, __func__, level, __VA_ARGS__)

/// Traces the entry of this function through the source file's own `s_trace`.
#define TRACE_ENTER(...) TRACE_ENTER_OF(s_trace, __func__, __VA_ARGS__)

/// The number of an enumerator, for traces that show it without its text.
template <class Enumeration>
constexpr std::int32_t numberOf(Enumeration value) {
    return static_cast<std::int32_t>(value);
}

/// An RSEC in a trace that shows its text.
struct RsecText {
    EReferenceSEC rsec;
};
std::ostream& operator<<(std::ostream& stream, RsecText text);

/// A modulation-and-code in a trace that shows its text.
struct CodeText {
    ModulationAndCoding code;
};
std::ostream& operator<<(std::ostream& stream, CodeText text);

inline RsecText textOf(EReferenceSEC rsec) {
    return {rsec};
}

inline CodeText textOf(ModulationAndCoding code) {
    return {code};
}
