#include "Sweep.h"

#include "Decibels.h"
#include "ExplanationForms.h"

#include <algorithm>

namespace {

using enum Shown;
using TableRow = PowerTable::Row;

bool holdsEverywhere(const Heading::value_type& line, const Sweep& sweep) {
    return std::ranges::all_of(sweep.points, [&line](const Sweep::Point& point) {
        const Heading heading = headingOf(point.powers.table);
        return !point.trouble.empty() || std::ranges::find(heading, line) != heading.end();
    });
}

/// What holds for all powers; what does not, as it is without the sweep.
Heading commonHeading(const Sweep& sweep) {
    Heading heading = headingOf(sweep.asIs);
    for (auto& line : heading) {
        if (!holdsEverywhere(line, sweep)) {
            line.second = "varies; of the radio as it is: " + line.second;
        }
    }
    return heading;
}

/// Whether the values of the sweep lead to different families of calculators.
bool isOverFamilies(const Sweep& sweep) {
    return std::ranges::any_of(sweep.points, [&sweep](const Sweep::Point& point) {
        return point.powers.table.family.className != sweep.asIs.family.className;
    });
}

std::string powerText(const std::optional<long>& power) {
    return power ? Decibels::format(*power) : "-";
}

/// The powers at one point beside the rows of the radio as it is. Where the service gave none, the
/// trouble stands for them.
Field<TableRow> columnOf(const Sweep& sweep, const Sweep::Point& point) {
    const PowerTable& table = point.powers.table;
    const auto rowAt = [&sweep, &table](const TableRow& row) {
        const auto index = static_cast<std::size_t>(&row - sweep.asIs.rows.data());
        return index < table.rows.size() ? &table.rows[index] : nullptr;
    };
    const auto power = [rowAt](const TableRow& row) {
        const TableRow* const own = rowAt(row);
        return powerText(own == nullptr ? std::nullopt : own->maxPower);
    };
    const auto remark = [rowAt, &point](const TableRow& row) {
        const TableRow* const own = rowAt(row);
        return own == nullptr ? point.trouble : remarkOf(*own);
    };
    Field<TableRow> column{{},      power,
                           Nowhere, Inputs::textOf(point.values.front()),
                           remark,  {powerText(table.minOutputPower)}};
    if (isOverFamilies(sweep)) {
        column.below.emplace_back(table.family.className);
    }
    return column;
}

/// The powers at one value of the second input: a column for each value of the first one.
std::string blockOf(const Sweep& sweep, std::size_t second, FootNotes& notes,
                    const TextLook& look) {
    Fields<TableRow> fields = codeFields<TableRow>();
    const TableRoom room{look.width, fields.size()};
    fields[1].below = {"Minimum power"};
    if (isOverFamilies(sweep)) {
        fields[1].below.emplace_back("Calculator");
    }
    for (std::size_t first = 0; first < sweep.lines.front().values.size(); ++first) {
        fields.push_back(columnOf(sweep, sweep.at(first, second)));
    }
    return textColumns(fields, sweep.asIs.rows, "-", &notes, room);
}

/// What each line of a point says, behind the values of the inputs there.
Fields<PowerTableLine> fieldsAt(const Sweep::Point& point) {
    Fields<PowerTableLine> fields;
    for (const Inputs::Value& value : point.values) {
        const InputAxis& axis = InputAxis::of(value);
        const auto text = [&value](const PowerTableLine&) { return Inputs::textOf(value); };
        fields.push_back({{axis.name(), axis.unit()}, text, InCsv});
    }
    const Fields<PowerTableLine> own = lineFields(true);
    fields.insert(fields.end(), own.begin(), own.end());
    return fields;
}

/// The lines of a point, also of one whose service gave none.
std::vector<PowerTableLine> linesAt(const Sweep& sweep, const Sweep::Point& point) {
    if (!point.powers.table.rows.empty()) {
        return linesOf(point.powers);
    }
    std::vector<PowerTableLine> lines = linesOf(sweep.asIs);
    for (PowerTableLine& line : lines) {
        line = {{line.modulationAndCode, line.modulation, {}, point.trouble, {}},
                point.powers.table.minOutputPower};
    }
    return lines;
}

Datum datumOf(const Sweep::Point& point) {
    Datum::Object inputs;
    for (const Inputs::Value& value : point.values) {
        inputs.push_back(InputAxis::memberOf(value));
    }
    return Datum::Object{
        {"inputs", std::move(inputs)},
        {"failure", Datum::orNothing(point.trouble)},
        {"minPowerCentiDbm", point.powers.table.minOutputPower},
        {"rows", listOf(lineFields(true), linesOf(point.powers))},
    };
}

Datum datumOf(const Sweep::Line& line) {
    Datum::List values;
    for (const Inputs::Value& value : line.values) {
        values.emplace_back(Inputs::textOf(value));
    }
    return Datum::Object{{"input", line.axis->name()},
                         {"unit", Datum::orNothing(line.axis->unit())},
                         {"values", std::move(values)}};
}

} // namespace

std::string textForm(const Sweep& sweep, const TextLook& look) {
    std::string text = textOf(commonHeading(sweep));
    text += "\nMax power in dBm over " + sweep.lines.front().axis->heading() + '\n';
    FootNotes notes;
    if (sweep.lines.size() == 1) {
        text += '\n' + blockOf(sweep, 0, notes, look);
        return text + notes.text();
    }
    const Sweep::Line& blocks = sweep.lines.back();
    for (std::size_t second = 0; second < blocks.values.size(); ++second) {
        text += '\n' + blocks.axis->words() + ' ' + InputAxis::labelOf(blocks.values[second]) +
                '\n' + blockOf(sweep, second, notes, look);
    }
    return text + notes.text();
}

std::string csvForm(const Sweep& sweep) {
    std::string text = csvHeader(fieldsAt(sweep.points.front()));
    for (const Sweep::Point& point : sweep.points) {
        const Fields<PowerTableLine> fields = fieldsAt(point);
        for (const PowerTableLine& line : linesAt(sweep, point)) {
            text += csvLine(fields, line);
        }
    }
    return text;
}

std::string jsonForm(const Sweep& sweep) {
    Datum::List over;
    for (const Sweep::Line& line : sweep.lines) {
        over.push_back(datumOf(line));
    }
    const Datum::Made points{sweep.points.size(),
                             [&sweep](std::size_t index) { return datumOf(sweep.points[index]); }};
    return jsonDocument(answerOf(
        "sweep",
        {{"radioFile", sweep.asIs.radioFile}, {"over", std::move(over)}, {"points", points}}));
}
