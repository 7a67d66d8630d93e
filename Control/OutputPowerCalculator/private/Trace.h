#pragma once

#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"
#include "VelTrace.h"
#include "private/Literals.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

/// Levels of trace records.
namespace TraceLevel {

constexpr int Error = 1;
constexpr int Warning = 2;
constexpr int InvalidInput = 4;
constexpr int Result = 5; ///< results, limits and changes of state
constexpr int Detail = 6; ///< function entries, inputs and intermediate values

} // namespace TraceLevel

/// A number in a trace, as its digits.
class TraceNumber {
public:
    explicit TraceNumber(long number);
    explicit TraceNumber(unsigned long number);

    const char* digits() const { return m_digits.data(); }

private:
    std::array<char, 24> m_digits; ///< 21 at most: a sign, 19 digits and the final zero
};

/// An RSEC in a trace that shows its text.
struct RsecText {
    EReferenceSEC rsec;
};

/// A modulation-and-code in a trace that shows its text.
struct CodeText {
    ModulationAndCoding code;
};

inline RsecText textOf(EReferenceSEC rsec) {
    return {rsec};
}

inline CodeText textOf(ModulationAndCoding code) {
    return {code};
}

// What a trace makes of a part of its text.

inline const char* tracePart(const char* text) {
    return text;
}
inline const char* tracePart(Modulation modulation) {
    return literalOf(modulation);
}
inline const char* tracePart(EFrameFormatMarket market) {
    return literalOf(market);
}
inline const char* tracePart(RsecText text) {
    return literalOf(text.rsec);
}
inline const char* tracePart(CodeText text) {
    return literalOf(text.code);
}
/// `true` is 1.
template <class Number>
TraceNumber tracePart(Number number) {
    using Widest = std::conditional_t<std::is_signed_v<Number>, long, unsigned long>;
    return TraceNumber(static_cast<Widest>(number));
}

inline const char* charactersOf(const char* text) {
    return text;
}
inline const char* charactersOf(const TraceNumber& number) {
    return number.digits();
}

/// What a source file traces through: its trace object and the path that its records show. Code
/// that several families share traces through the family's.
///
/// The parts of a text are passed by value and put together out of the way of the code that hardly
/// ever traces: nothing that is traced has to lie in memory for it. The one thing that a trace
/// takes from the heap is the text that it hands out.
class TraceSource {
public:
    explicit TraceSource(const char* path);

    bool isEnabled(int level) const { return m_trace.isEnabled(level); }

    template <class... Parts>
    __attribute__((noinline, cold)) void message(int level, const char* function, int line,
                                                 Parts... parts) {
        writeParts(level, function, line, tracePart(parts)...);
    }

    template <class... Parts>
    __attribute__((noinline, cold)) void enter(const char* function, int line, Parts... parts) {
        writeParts(entry, function, line, tracePart(parts)...);
    }

private:
    /// The level of a function entry, apart from those of messages.
    static constexpr int entry = 0;

    template <class... Parts>
    void writeParts(int level, const char* function, int line, const Parts&... parts) {
        const std::array<const char*, sizeof...(parts)> texts = {charactersOf(parts)...};
        write(level, function, line, texts.data(), texts.size());
    }

    void write(int level, const char* function, int line, const char* const* texts,
               std::size_t count);

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
