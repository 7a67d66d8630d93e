#pragma once

#include "CallLog.h"

/// The part of every simulated neighbour that records its calls.
class CallRecorder {
public:
    /// Records every further call to a log; null stops that and then costs one comparison a call.
    /// Not to be called while another thread uses the neighbour.
    void recordTo(CallLog* log) { m_log = log; }

    CallRecorder(const CallRecorder&) = delete;
    CallRecorder& operator=(const CallRecorder&) = delete;

protected:
    /// @param interface name of the neighbour's interface, a string literal.
    explicit CallRecorder(const char* interface)
        : m_interface(interface) {}
    ~CallRecorder() = default;

    /// Records a call, if there is a log.
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
