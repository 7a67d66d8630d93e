#pragma once

#include "CallLog.h"
#include "EChannelSpacingType.h"
#include "EFrameFormatMarket.h"

#include <string>
#include <type_traits>
#include <vector>

/// How arguments of a recorded call are written: numbers in decimal, flags as "false" and "true", a
/// market by its text (by its number if it has none), lists as "[1, 2]".
namespace CallText {

std::string textOf(bool flag);
std::string textOf(EFrameFormatMarket market);
std::string textOf(EChannelSpacingType channelSpacing);
std::string textOf(const std::vector<short>& values);

template <class Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
std::string textOf(Number value) {
    return std::to_string(value);
}

inline std::string listOf() {
    return {};
}

template <class First, class... Rest>
std::string listOf(const First& first, const Rest&... rest) {
    std::string text = textOf(first);
    ((text += ", " + textOf(rest)), ...);
    return text;
}

} // namespace CallText

/// The part of every simulated neighbour that records its calls.
class CallRecorder {
public:
    /// Records every further call to a log; null stops that and then costs one comparison a call.
    /// Not to be called while another thread uses the neighbour.
    void recordTo(CallLog* log) { m_log = log; }

    CallRecorder(const CallRecorder&) = delete;
    CallRecorder& operator=(const CallRecorder&) = delete;

protected:
    explicit CallRecorder(const char* interface)
        : m_interface(interface) {}
    ~CallRecorder() = default;

    template <class... Arguments>
    void record(const char* operation, const Arguments&... arguments) const {
        if (m_log != nullptr) {
            m_log->add({m_interface, operation, CallText::listOf(arguments...)});
        }
    }

private:
    const char* m_interface;
    CallLog* m_log = nullptr;
};
