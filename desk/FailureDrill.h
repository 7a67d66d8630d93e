#pragma once

#include "ResultCode.h"

#include <atomic>
#include <optional>

/// The part of a simulated neighbour that fails on demand.
class FailureDrill {
public:
    /// Makes one call fail: it answers a result code (or that nothing is known, where the operation
    /// has no code), and writes nothing.
    /// @param call which one, counted from now over those operations of the
    ///        neighbour that can fail: 1 is the next. 0 calls an outstanding failure
    ///        off.
    /// @param code what the call returns.
    void failAt(unsigned call, unsigned code = ResultCode::Failure) {
        m_code = code;
        m_callsLeft = call;
    }

    FailureDrill(const FailureDrill&) = delete;
    FailureDrill& operator=(const FailureDrill&) = delete;

protected:
    FailureDrill() = default;
    ~FailureDrill() = default;

    /// Counts a call.
    /// @return the code to fail with, if this is the call.
    std::optional<unsigned> countCall() const {
        unsigned left = m_callsLeft;
        while (left != 0 && !m_callsLeft.compare_exchange_weak(left, left - 1)) {
        }
        return left == 1 ? std::optional<unsigned>(m_code) : std::nullopt;
    }

private:
    mutable std::atomic<unsigned> m_callsLeft{0};
    unsigned m_code = ResultCode::Failure;
};
