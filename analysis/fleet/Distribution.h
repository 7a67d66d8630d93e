#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>

/// How figures are spread, in memory that does not grow. Number, least, greatest and mean are
/// exact. What lies at a share of the figures is exact as long as there are at most 200 different
/// ones; then neighbours are counted together, in steps that double where that is not enough.
class Distribution {
public:
    static constexpr std::size_t maxBins = 200;

    void add(std::int64_t figure);

    std::uint64_t count() const { return m_count; }
    std::optional<std::int64_t> least() const { return m_least; }
    std::optional<std::int64_t> greatest() const { return m_greatest; }

    /// Rounded to a whole number.
    std::optional<std::int64_t> mean() const;

    /// The smallest figure that so many per cent of all do not exceed; of figures that are counted
    /// together the least.
    std::optional<std::int64_t> at(unsigned percent) const;

    /// The width of a step; 1: all is exact.
    std::int64_t step() const { return m_step; }

    /// How many figures lie outside of a range, as far as they are told apart.
    std::uint64_t outside(std::int64_t low, std::int64_t high) const;

private:
    std::map<std::int64_t, std::uint64_t> m_bins; ///< by the least figure of each
    std::int64_t m_step = 1;
    std::uint64_t m_count = 0;
    std::int64_t m_sum = 0;
    std::optional<std::int64_t> m_least;
    std::optional<std::int64_t> m_greatest;
};
