#pragma once

#include "DbTable.h"
#include "EReferenceSEC.h"
#include "Modulation.h"

#include <array>
#include <cstddef>
#include <cstdint>

// How the families look their tables up: dense, so that a look-up is a few checks and one load, and
// takes no more room than the cells. The compiler makes them of the rows that a family writes down.

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
    constexpr DenseTable()
        : m_cells() {
        for (auto& row : m_cells) {
            for (std::int16_t& cell : row) {
                cell = absent;
            }
        }
    }

    /// Enters a cell. Row and modulation must exist, as those of the families' tables do.
    constexpr void set(unsigned int row, Modulation modulation, int value) {
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

/// A booster has two bands, 0 and 1.
constexpr unsigned int bandCount = 2;

/// A table whose labels are its rows.
template <unsigned int rowCount, class Label, std::size_t columnCount, std::size_t tableRowCount,
          std::size_t modulationCount>
constexpr DenseTable<rowCount> denseTable(const DbTable<Label, columnCount, tableRowCount>& table,
                                          const std::array<Modulation, modulationCount>& columns) {
    DenseTable<rowCount> dense;
    forEachCell(table, columns, [&dense](Label label, Modulation modulation, int value) {
        dense.set(static_cast<unsigned int>(label), modulation, value);
    });
    return dense;
}

/// Power offsets relative to the modulations from a lowest to a highest reference.
template <Modulation lowestReference, Modulation highestReference>
class DenseOffsets {
public:
    /// Enters a cell. Reference, class and modulation must exist.
    constexpr void set(Modulation reference, EReferenceSEC rsec, Modulation modulation,
                       int offset) {
        m_table.set(rowOf(reference, rsec), modulation, offset);
    }

    /// Enters the block of one reference modulation.
    template <std::size_t columnCount, std::size_t rowCount, std::size_t modulationCount>
    constexpr void enter(Modulation reference,
                         const DbTable<EReferenceSEC, columnCount, rowCount>& table,
                         const std::array<Modulation, modulationCount>& columns) {
        forEachCell(table, columns,
                    [this, reference](EReferenceSEC rsec, Modulation modulation, int value) {
                        set(reference, rsec, modulation, value);
                    });
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
