#include "PlotScale.h"

#include "Decibels.h"

#include <algorithm>

namespace {

/// The quotient rounded towards negative infinity.
std::int64_t floorDivided(std::int64_t number, std::int64_t divisor) {
    const std::int64_t quotient = number / divisor;
    return number % divisor < 0 ? quotient - 1 : quotient;
}

/// The round step above another one: 1, 2, 5, 10, 20 ... dB.
std::int64_t nextStep(std::int64_t step) {
    std::int64_t leading = step;
    while (leading % 10 == 0) {
        leading /= 10;
    }
    return leading == 2 ? step / 2 * 5 : step * 2;
}

} // namespace

PlotScale::PlotScale(std::int64_t least, std::int64_t greatest, std::int64_t maxTicks)
    : m_step(Decibels::one) {
    // Around a power that is itself a tick there are two steps, however wide: three ticks.
    constexpr std::int64_t fewestTicks = 3;
    for (;; m_step = nextStep(m_step)) {
        // A step of room below, so that the lowest step of the picture has a height.
        m_low = (floorDivided(least, m_step) - (least % m_step == 0 ? 1 : 0)) * m_step;
        m_high = (floorDivided(greatest, m_step) + 1) * m_step;
        if ((m_high - m_low) / m_step < std::max(maxTicks, fewestTicks)) {
            break;
        }
    }
}

std::vector<std::int64_t> PlotScale::ticks() const {
    std::vector<std::int64_t> ticks;
    for (std::int64_t tick = m_low; tick <= m_high; tick += m_step) {
        ticks.push_back(tick);
    }
    return ticks;
}

std::int64_t PlotScale::placeOf(std::int64_t power, std::int64_t length) const {
    const std::int64_t range = m_high - m_low;
    return ((power - m_low) * length * 2 + range) / (range * 2);
}
