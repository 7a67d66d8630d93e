#pragma once

#include "Field.h"
#include "PowerTable.h"
#include "TextLook.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What the powers of a table hold for.
Heading headingOf(const PowerTable& table);

/// What the reader of a row must not miss: why there is no power, or what is odd about it.
std::string remarkOf(const PowerTable::Row& row);

/// A booster for people; "none" without one.
std::string textOf(const std::optional<OperatingInputs::Booster>& booster);

/// Likewise for programs; nothing without one.
Datum datumOf(const std::optional<OperatingInputs::Booster>& booster);

/// Which code a row is of.
template <class Row>
Fields<Row> codeFields() {
    using enum Shown;
    const auto code = [](const Row& row) { return row.modulationAndCode.code; };
    return {
        {{"code"}, code, InBoth, "Code"},
        {{"name"}, &Row::modulationAndCode, InBoth, "Name"},
        {{"modulation"}, &Row::modulation, InBoth, "Modulation"},
    };
}

/// A row with what its forms say beside it.
struct PowerTableLine : PowerTable::Row {
    std::optional<long> minPower;
    const char* rule = "";                     ///< code of the one that decides
    std::optional<std::int64_t> headroom = {}; ///< in hundredths of a dB, up to the next bound
    std::string cutbackRule = {};              ///< of a cutback that lowers the power; or empty
};

std::vector<PowerTableLine> linesOf(const PowerTable& table);

/// What each row says.
Fields<PowerTableLine> lineFields(bool withRule);

/// A whole table for programs.
Datum::Object objectOf(const PowerTable& table, Datum rows);

/// A table for people: the heading, a blank line, aligned columns.
std::string textForm(const PowerTable& table, const TextLook& look = {});

/// A table for spreadsheets: one line of column names, then one line for each row. Fields are
/// quoted as RFC 4180 says; lines end as everywhere on the system, with a line feed.
std::string csvForm(const PowerTable& table);

/// A table for programs: one JSON object and a line end. Keys stay as they are; new ones may come.
std::string jsonForm(const PowerTable& table);
