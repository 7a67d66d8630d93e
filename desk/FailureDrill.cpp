#include "FailureDrill.h"

void FailureDrill::failAt(unsigned call, unsigned code) {
    m_code = code;
    m_callsLeft = call;
}

std::optional<unsigned> FailureDrill::countCall() const {
    unsigned left = m_callsLeft;
    while (left != 0 && !m_callsLeft.compare_exchange_weak(left, left - 1)) {
    }
    return left == 1 ? std::optional<unsigned>(m_code) : std::nullopt;
}
