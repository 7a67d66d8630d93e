#pragma once

#include <cstdint>
#include <vector>

/// The axis of powers: round ends and round ticks in hundredths of a dBm.
class PlotScale {
public:
    /// @param least lowest figure that has to be shown, @param greatest the highest.
    /// @param maxTicks as many ticks fit at most; three are always there.
    PlotScale(std::int64_t least, std::int64_t greatest, std::int64_t maxTicks);

    std::int64_t low() const { return m_low; }
    std::int64_t high() const { return m_high; }
    std::vector<std::int64_t> ticks() const;

    /// Where a power stands between the ends, as a share of a length, rounded.
    std::int64_t placeOf(std::int64_t power, std::int64_t length) const;

private:
    std::int64_t m_low = 0;
    std::int64_t m_high = 0;
    std::int64_t m_step;
};
