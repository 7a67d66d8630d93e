#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// Tells names that came before, in memory that does not grow: at least the last 393,216 different
/// ones are remembered. Of names only 64 bits are kept; that two unlike ones share them happens
/// once in a hundred million fleets of that size.
class RecentNames {
public:
    static constexpr std::size_t slots = std::size_t{1} << 19;
    static constexpr std::size_t remembered = slots / 4 * 3;

    /// @return whether it is new, as far as is remembered.
    bool add(std::string_view name);

private:
    static std::size_t placeOf(const std::vector<std::uint64_t>& table, std::uint64_t mark);

    std::vector<std::uint64_t> m_young;
    std::vector<std::uint64_t> m_old; ///< forgotten when the young ones are as many as fit
    std::size_t m_count = 0;          ///< of the young ones
};
