#pragma once

#include "EReferenceSEC.h"
#include "Modulation.h"
#include "Power.h"

#include <array>
#include <cstddef>
#include <map>
#include <tuple>

// How the families write their tables down and turn them into look-ups: rows of whole decibels, one
// column for each modulation, in the order of a printed sheet.

/// Offset of a modulation relative to a reference modulation, in hundredths of a dB, by reference
/// modulation, RSEC and modulation.
using PowerOffsets = std::map<std::tuple<Modulation, EReferenceSEC, Modulation>, int>;

/// A labelled row of whole decibels.
template <class Label, std::size_t columnCount>
struct DbRow {
    Label label;
    std::array<int, columnCount> dB;
};

/// A row with as many columns as it has values, so that a table whose rows differ in length does
/// not compile.
template <class Label, class... Db>
constexpr DbRow<Label, sizeof...(Db)> dbRow(Label label, Db... dB) {
    return {label, {dB...}};
}

template <class Label, std::size_t columnCount, std::size_t rowCount>
using DbTable = std::array<DbRow<Label, columnCount>, rowCount>;

/// Hands every cell to `use`: the row's label, the column's modulation and the value in hundredths
/// of a dB. A table may have fewer columns than there are modulations, never more.
template <class Label, std::size_t columnCount, std::size_t rowCount, std::size_t modulationCount,
          class Use>
constexpr void forEachCell(const DbTable<Label, columnCount, rowCount>& table,
                           const std::array<Modulation, modulationCount>& columns, const Use& use) {
    static_assert(columnCount <= modulationCount, "a column without a modulation");
    for (const auto& row : table) {
        for (std::size_t column = 0; column < columnCount; ++column) {
            use(row.label, columns[column], Power::fromDb(row.dB[column]));
        }
    }
}

/// Enters a table into a map. `keyOf` makes the key of a cell from the row's label and the column's
/// modulation.
template <class Map, class Label, std::size_t columnCount, std::size_t rowCount,
          std::size_t modulationCount, class KeyOf>
void enterTable(Map& map, const DbTable<Label, columnCount, rowCount>& table,
                const std::array<Modulation, modulationCount>& columns, const KeyOf& keyOf) {
    forEachCell(table, columns, [&map, &keyOf](Label label, Modulation modulation, int value) {
        map[keyOf(label, modulation)] = value;
    });
}

/// Enters the block of one reference modulation into a map of power offsets.
template <std::size_t columnCount, std::size_t rowCount, std::size_t modulationCount>
void enterOffsets(PowerOffsets& offsets, Modulation reference,
                  const DbTable<EReferenceSEC, columnCount, rowCount>& table,
                  const std::array<Modulation, modulationCount>& columns) {
    enterTable(offsets, table, columns, [reference](EReferenceSEC rsec, Modulation modulation) {
        return std::make_tuple(reference, rsec, modulation);
    });
}
