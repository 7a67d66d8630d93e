#include "Decibels.h"
#include "FootNotes.h"
#include "PowerTableForms.h"
#include "SweepForms.h"
#include "TextColumns.h"

#include <algorithm>

namespace {

using Lines = std::vector<std::vector<std::string>>;

/// The columns in front of the powers.
constexpr std::size_t leading = 3;

bool holdsEverywhere(const Heading::value_type& line, const Sweep& sweep) {
    return std::all_of(sweep.points.begin(), sweep.points.end(),
                       [&line](const Sweep::Point& point) {
                           const Heading heading = headingOf(point.powers.table);
                           return !point.trouble.empty() ||
                                  std::find(heading.begin(), heading.end(), line) != heading.end();
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

/// A power or "-", and the mark of what must be said about it.
MarkedCell cellOf(const Sweep::Point& point, std::size_t row, FootNotes& notes) {
    const std::vector<PowerTable::Row>& rows = point.powers.table.rows;
    if (row >= rows.size()) {
        return {"-", notes.markOf(point.trouble)};
    }
    return {rows[row].maxPower ? Decibels::format(*rows[row].maxPower) : "-",
            notes.markOf(remarkOf(rows[row]))};
}

/// Whether the values of the sweep lead to different families of calculators.
bool isOverFamilies(const Sweep& sweep) {
    return std::any_of(
        sweep.points.begin(), sweep.points.end(), [&sweep](const Sweep::Point& point) {
            return point.powers.table.family.className != sweep.asIs.family.className;
        });
}

/// Adds a column: its heading, a cell for each row of the table, the minimum power and, where they
/// differ, the calculator.
void addColumn(const Sweep& sweep, std::size_t first, std::size_t second, FootNotes& notes,
               Lines& lines) {
    const Sweep::Point& point = sweep.at(first, second);
    std::vector<MarkedCell> cells = {{Inputs::textOf(sweep.lines.front().values[first]), ""}};
    for (std::size_t row = 0; row < sweep.asIs.rows.size(); ++row) {
        cells.push_back(cellOf(point, row, notes));
    }
    const std::optional<long>& minimum = point.powers.table.minOutputPower;
    cells.push_back({minimum ? Decibels::format(*minimum) : "-", ""});
    if (isOverFamilies(sweep)) {
        cells.push_back({point.powers.table.family.className, ""});
    }

    const std::vector<std::string> column = markedColumn(cells);
    for (std::size_t index = 0; index < column.size(); ++index) {
        lines[index].push_back(column[index]);
    }
}

/// The powers at one value of the second input.
std::string blockOf(const Sweep& sweep, std::size_t second, FootNotes& notes) {
    Lines lines = {{"Code", "Name", "Modulation"}};
    for (const PowerTable::Row& row : sweep.asIs.rows) {
        lines.push_back({std::to_string(row.modulationAndCode.code),
                         convertCodeAndModulationEnumToString(row.modulationAndCode),
                         convertAcmEnumToString(row.modulation)});
    }
    lines.push_back({"", "Minimum power", ""});
    if (isOverFamilies(sweep)) {
        lines.push_back({"", "Calculator", ""});
    }
    for (std::size_t first = 0; first < sweep.lines.front().values.size(); ++first) {
        addColumn(sweep, first, second, notes, lines);
    }
    std::vector<Align> align(lines.front().size(), Align::Right);
    std::fill_n(align.begin() + 1, leading - 1, Align::Left);
    return alignedColumns(align, lines);
}

} // namespace

std::string textForm(const Sweep& sweep) {
    std::string text = textOf(commonHeading(sweep));
    text += "\nMax power in dBm over " + sweep.lines.front().axis->heading() + '\n';
    FootNotes notes;
    if (sweep.lines.size() == 1) {
        text += '\n' + blockOf(sweep, 0, notes);
        return text + notes.text();
    }
    const Sweep::Line& blocks = sweep.lines.back();
    for (std::size_t second = 0; second < blocks.values.size(); ++second) {
        text += '\n' + blocks.axis->words() + ' ' + InputAxis::labelOf(blocks.values[second]) +
                '\n' + blockOf(sweep, second, notes);
    }
    return text + notes.text();
}
