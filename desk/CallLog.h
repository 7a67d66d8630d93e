#pragma once

#include "EChannelSpacingType.h"
#include "EFrameFormatMarket.h"

#include <iosfwd>
#include <mutex>
#include <string>
#include <type_traits>
#include <vector>

/// How arguments of a recorded call are written: numbers in decimal, flags as "false" and "true", a
/// market by its text (by its number if it has none), lists as "[1, 2]".
namespace CallText {

/// "false" or "true".
std::string textOf(bool flag);
/// Text of a market, its number if it has none.
std::string textOf(EFrameFormatMarket market);
/// Number of a channel spacing.
std::string textOf(EChannelSpacingType channelSpacing);
/// "[1, 2]"
std::string textOf(const std::vector<short>& values);

/// A number in decimal.
template <class Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
std::string textOf(Number value) {
    return std::to_string(value);
}

/// No arguments: an empty text.
inline std::string listOf() {
    return {};
}

/// Arguments, separated by ", ".
template <class First, class... Rest>
std::string listOf(const First& first, const Rest&... rest) {
    std::string text = textOf(first);
    ((text += ", " + textOf(rest)), ...);
    return text;
}

} // namespace CallText

/// One call that a simulated neighbour received.
struct RecordedCall {
    std::string interface; ///< for example "IFrameFormat"
    std::string operation; ///< for example "getDpdVersion"
    std::string arguments; ///< the input arguments as text, separated by ", "

    /// "IFrameFormat::getDpdVersion()"
    std::string text() const;
};

/// Whether all three texts are equal.
bool operator==(const RecordedCall& left, const RecordedCall& right);
/// Writes text().
std::ostream& operator<<(std::ostream& stream, const RecordedCall& call);

/// What was asked of the simulated neighbours, in order.
///
/// Several neighbours can share one log, which then shows the order across them. A neighbour
/// records only while a log is set (CallRecorder::recordTo()). The log must outlive that. May be
/// used from several threads.
class CallLog {
public:
    /// Adds a call at the end.
    void add(RecordedCall call);

    /// A copy of the calls, in order.
    std::vector<RecordedCall> calls() const;

    /// The calls as RecordedCall::text() writes them.
    std::vector<std::string> texts() const;

    /// Forgets the calls.
    void clear();

private:
    mutable std::mutex m_mutex;
    std::vector<RecordedCall> m_calls;
};
