#pragma once

#include "DbTable.h"
#include "EReferenceSEC.h"
#include "Modulation.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <tuple>

// How the families keep their tables once they are built: dense, so that a look-up is a few checks
// and one load, and takes no more room than the cells.

/// Exponents of the modulations, which are powers of two but for CW and UNDEFINED.
constexpr unsigned int exponentCount = 17;

/// Exponent of a modulation, from 0 to 16; exponentCount for a value that is no power of two up to
/// 65536.
constexpr unsigned int exponentOf(Modulation modulation) {
    const auto points = static_cast<std::uint32_t>(modulation);
    const bool isPowerOfTwo = (points & (points - 1)) == 0;
    // 0 passes for a power of two, and wraps to above all of them.
    if (!isPowerOfTwo || points - 1 > 65535) {
        return exponentCount;
    }
    return static_cast<unsigned int>(__builtin_ctz(points));
}

/// Rows of cells, one column for each exponent of a modulation.
template <unsigned int rowCount>
class DenseTable {
public:
    DenseTable() {
        for (auto& row : m_cells) {
            row.fill(absent);
        }
    }

    /// Enters a cell. Row and modulation must exist, as those of the families' tables do.
    void set(unsigned int row, Modulation modulation, int value) {
        m_cells.at(row).at(exponentOf(modulation)) = static_cast<std::int16_t>(value);
    }

    /// @param[out] value untouched if the answer is false.
    /// @return whether there is a cell for the row and the modulation.
    bool find(unsigned int row, Modulation modulation, int& value) const {
        const unsigned int column = exponentOf(modulation);
        if (row >= rowCount || column == exponentCount || m_cells[row][column] == absent) {
            return false;
        }
        value = m_cells[row][column];
        return true;
    }

private:
    static constexpr std::int16_t absent = INT16_MIN;

    std::array<std::array<std::int16_t, exponentCount>, rowCount> m_cells;
};

/// The RSEC classes have the numbers 0 to 9, which are their rows.
constexpr unsigned int rsecCount = 10;

/// Power offsets relative to the modulations from a lowest to a highest reference.
template <Modulation lowestReference, Modulation highestReference>
class DenseOffsets {
public:
    explicit DenseOffsets(const PowerOffsets& offsets) {
        for (const auto& [key, offset] : offsets) {
            const auto& [reference, rsec, modulation] = key;
            m_table.set(rowOf(reference, rsec), modulation, offset);
        }
    }

    /// @param[out] offset untouched if the answer is false.
    /// @return whether the table has the key.
    bool find(Modulation reference, EReferenceSEC rsec, Modulation modulation, int& offset) const {
        // An RSEC outside the classes must not reach into the next reference's rows.
        return static_cast<unsigned int>(rsec) < rsecCount &&
               m_table.find(rowOf(reference, rsec), modulation, offset);
    }

private:
    static constexpr unsigned int referenceCount =
        exponentOf(highestReference) - exponentOf(lowestReference) + 1;

    /// A reference outside the table has a row outside it: below the lowest it wraps.
    static constexpr unsigned int rowOf(Modulation reference, EReferenceSEC rsec) {
        return (exponentOf(reference) - exponentOf(lowestReference)) * rsecCount +
               static_cast<unsigned int>(rsec);
    }

    DenseTable<referenceCount * rsecCount> m_table;
};

/// What a booster adds, by RSEC class or by band. The map's keys start with the row.
template <unsigned int rowCount>
class DenseAdjustments {
public:
    template <class Adjustments>
    explicit DenseAdjustments(const Adjustments& adjustments) {
        for (const auto& [key, adjustment] : adjustments) {
            const auto& [row, modulation] = key;
            m_table.set(static_cast<unsigned int>(row), modulation, adjustment);
        }
    }

    /// @param[out] adjustment untouched if the answer is false.
    /// @return whether the table has the key.
    bool find(unsigned int row, Modulation modulation, int& adjustment) const {
        return m_table.find(row, modulation, adjustment);
    }

private:
    DenseTable<rowCount> m_table;
};

/// A booster has two bands, 0 and 1.
constexpr unsigned int bandCount = 2;
