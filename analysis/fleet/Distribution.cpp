#include "Distribution.h"

#include <algorithm>
#include <utility>

namespace {

std::int64_t roundedDown(std::int64_t figure, std::int64_t step) {
    const std::int64_t rest = figure % step;
    return figure - rest - (rest < 0 ? step : 0);
}

} // namespace

void Distribution::add(std::int64_t figure) {
    ++m_count;
    m_sum += figure;
    m_least = std::min(m_least.value_or(figure), figure);
    m_greatest = std::max(m_greatest.value_or(figure), figure);
    ++m_bins[roundedDown(figure, m_step)];
    while (m_bins.size() > maxBins) {
        m_step *= 2;
        std::map<std::int64_t, std::uint64_t> wider;
        for (const auto& [low, count] : m_bins) {
            wider[roundedDown(low, m_step)] += count;
        }
        m_bins = std::move(wider);
    }
}

std::optional<std::int64_t> Distribution::mean() const {
    if (m_count == 0) {
        return std::nullopt;
    }
    const auto count = static_cast<std::int64_t>(m_count);
    return (m_sum + (m_sum < 0 ? -count : count) / 2) / count;
}

std::optional<std::int64_t> Distribution::at(unsigned percent) const {
    const std::uint64_t rank = std::max<std::uint64_t>((m_count * percent + 99) / 100, 1);
    std::uint64_t below = 0;
    for (const auto& [low, count] : m_bins) {
        below += count;
        if (below >= rank) {
            return std::max(low, *m_least);
        }
    }
    return std::nullopt;
}

std::uint64_t Distribution::outside(std::int64_t low, std::int64_t high) const {
    std::uint64_t count = 0;
    for (const auto& [figure, figures] : m_bins) {
        count += figure < low || figure > high ? figures : 0;
    }
    return count;
}
