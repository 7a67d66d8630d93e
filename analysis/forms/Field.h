#pragma once

#include "Datum.h"
#include "TextColumns.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The forms that show a field beside the text, which shows those with a heading.
enum class Shown {
    Nowhere,
    InJson,
    InCsv,
    InBoth
};

/// How a field is called in each form. Its key "maxPower" with the unit "dBm" is "maxPowerCentiDbm"
/// in JSON, which counts in hundredths, "max_power_dBm" in CSV, and the heading "Max power" is "Max
/// power/dBm".
struct FieldNames {
    std::string key;
    std::string unit = {}; ///< "dB" and "dBm": whole numbers count hundredths; "MHz"; empty: none

    std::string inJson() const;
    std::string inCsv() const;
    std::string inText(const std::string& heading) const;

    /// A value as a cell of CSV; nothing is an empty one. A text that begins like a formula, with
    /// "=", "+", "-" or "@", has an apostrophe in front: spreadsheets take it for a text then.
    std::string csvCell(const Datum& value) const;

    /// A value as a cell of a text column. What is added, in dB, has its sign.
    /// @param nothing stands for a value that is nothing.
    std::string textCell(const Datum& value, const std::string& nothing) const;

private:
    /// A value on one line.
    std::string cell(const Datum& value) const;
};

/// One thing that each row of an answer says, once for all forms.
template <class Row>
struct Field : FieldNames {
    using Get = std::function<Datum(const Row& row)>;
    using Remark = std::function<std::string(const Row& row)>;

    Field(FieldNames names, Get get, Shown where = Shown::InJson,
          std::optional<std::string> title = std::nullopt, Remark note = nullptr,
          std::vector<Datum> cells = {})
        : FieldNames(std::move(names))
        , value(std::move(get))
        , shown(where)
        , heading(std::move(title))
        , remark(std::move(note))
        , below(std::move(cells)) {}

    bool isInJson() const { return shown == Shown::InJson || shown == Shown::InBoth; }
    bool isInCsv() const { return shown == Shown::InCsv || shown == Shown::InBoth; }

    Get value;
    Shown shown;
    std::optional<std::string> heading; ///< of the text column, without the unit; nothing: has none
    Remark remark;            ///< what must be said below the text columns about a row's value
    std::vector<Datum> below; ///< cells of the text column below those of the rows
};

template <class Row>
using Fields = std::vector<Field<Row>>;

/// A member whose empty text says nothing.
template <class Row, class Class>
std::function<Datum(const Row&)> orNothing(std::string Class::*text) {
    return [text](const Row& row) { return Datum::orNothing(row.*text); };
}

/// A line of comma-separated values with its line end. Cells that hold a comma or a quotation mark
/// are quoted as RFC 4180 says. None may hold a line end.
std::string csvLine(const std::vector<std::string>& cells);

/// A row for programs.
template <class Row>
Datum::Object objectOf(const Fields<Row>& fields, const Row& row) {
    Datum::Object object;
    object.reserve(fields.size());
    for (const Field<Row>& field : fields) {
        if (field.isInJson()) {
            object.emplace_back(field.inJson(), field.value(row));
        }
    }
    return object;
}

template <class Row>
Datum::List listOf(const Fields<Row>& fields, const std::vector<Row>& rows) {
    Datum::List list;
    list.reserve(rows.size());
    for (const Row& row : rows) {
        list.emplace_back(objectOf(fields, row));
    }
    return list;
}

/// The names of the columns of csvLine(), as a line.
template <class Row>
std::string csvHeader(const Fields<Row>& fields) {
    std::vector<std::string> names;
    for (const Field<Row>& field : fields) {
        if (field.isInCsv()) {
            names.push_back(field.inCsv());
        }
    }
    return csvLine(names);
}

/// A row for spreadsheets.
template <class Row>
std::string csvLine(const Fields<Row>& fields, const Row& row) {
    std::vector<std::string> cells;
    for (const Field<Row>& field : fields) {
        if (field.isInCsv()) {
            cells.push_back(field.csvCell(field.value(row)));
        }
    }
    return csvLine(cells);
}

template <class Row>
std::string csvForm(const Fields<Row>& fields, const std::vector<Row>& rows) {
    std::string text = csvHeader(fields);
    for (const Row& row : rows) {
        text += csvLine(fields, row);
    }
    return text;
}

/// Rows for people, as aligned columns under their headings; numbers stand at the right.
/// @param nothing stands for a value that is nothing.
/// @param notes gets the remarks; without it there are none.
template <class Row>
std::string textColumns(const Fields<Row>& fields, const std::vector<Row>& rows,
                        const std::string& nothing, FootNotes* notes = nullptr,
                        const TableRoom& room = {}) {
    std::vector<Align> align;
    std::size_t below = 0;
    for (const Field<Row>& field : fields) {
        below = std::max(below, field.below.size());
    }
    std::vector<std::vector<std::string>> lines(1 + rows.size() + below);
    for (const Field<Row>& field : fields) {
        if (!field.heading) {
            continue;
        }
        std::vector<MarkedCell> cells{{field.inText(*field.heading), ""}};
        bool isNumber = !field.unit.empty() || field.remark != nullptr;
        for (const Row& row : rows) {
            const Datum datum = field.value(row);
            isNumber = isNumber || datum.isNumber();
            cells.push_back(
                {field.textCell(datum, nothing), field.remark == nullptr || notes == nullptr
                                                     ? ""
                                                     : notes->markOf(field.remark(row))});
        }
        for (const Datum& datum : field.below) {
            cells.push_back({field.textCell(datum, nothing), ""});
        }
        cells.resize(lines.size());
        align.push_back(isNumber ? Align::Right : Align::Left);
        const std::vector<std::string> column = markedColumn(cells);
        for (std::size_t line = 0; line < lines.size(); ++line) {
            lines[line].push_back(column[line]);
        }
    }
    return alignedColumns(align, lines, room);
}
