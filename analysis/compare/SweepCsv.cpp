#include "Csv.h"
#include "Decibels.h"
#include "SweepForms.h"

#include <algorithm>

namespace {

/// "channel_spacing_MHz"
std::string columnOf(const InputAxis& axis) {
    std::string name = axis.name();
    std::replace(name.begin(), name.end(), '-', '_');
    return axis.unit().empty() ? name : name + '_' + axis.unit();
}

std::string decibelsOrNothing(const std::optional<long>& power) {
    return power ? Decibels::format(*power) : std::string();
}

std::vector<std::string> valuesOf(const Sweep::Point& point) {
    std::vector<std::string> fields;
    fields.reserve(point.values.size());
    for (const Inputs::Value& value : point.values) {
        fields.push_back(Inputs::textOf(value));
    }
    return fields;
}

std::string linesOf(const Sweep::Point& point, const std::vector<PowerTable::Row>& rows) {
    std::string text;
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const PowerTable::Row& row = rows[index];
        std::vector<std::string> fields = valuesOf(point);
        const bool isExplained = index < point.powers.explanations.size();
        fields.insert(fields.end(),
                      {std::to_string(row.modulationAndCode.code),
                       convertCodeAndModulationEnumToString(row.modulationAndCode),
                       convertAcmEnumToString(row.modulation), decibelsOrNothing(row.maxPower),
                       decibelsOrNothing(point.powers.table.minOutputPower),
                       isExplained ? codeOf(point.powers.explanations[index].decisiveRule()) : "",
                       row.reason, row.warning});
        text += csvLine(fields);
    }
    return text;
}

/// The rows of a point, also of one whose service gave none.
std::vector<PowerTable::Row> rowsOf(const Sweep& sweep, const Sweep::Point& point) {
    std::vector<PowerTable::Row> rows = point.powers.table.rows;
    if (rows.empty()) {
        rows = sweep.asIs.rows;
        for (PowerTable::Row& row : rows) {
            row = {row.modulationAndCode, row.modulation, {}, point.trouble, {}};
        }
    }
    return rows;
}

} // namespace

std::string csvForm(const Sweep& sweep) {
    std::vector<std::string> names;
    names.reserve(sweep.lines.size());
    for (const Sweep::Line& line : sweep.lines) {
        names.push_back(columnOf(*line.axis));
    }
    names.insert(names.end(), {"code", "name", "modulation", "max_power_dBm", "min_power_dBm",
                               "rule", "reason", "warning"});
    std::string text = csvLine(names);
    for (const Sweep::Point& point : sweep.points) {
        text += linesOf(point, rowsOf(sweep, point));
    }
    return text;
}
