#include "Csv.h"
#include "Decibels.h"
#include "PowerTableForms.h"

namespace {

std::string powerOrNothing(const std::optional<long>& power) {
    return power ? Decibels::format(*power) : std::string();
}

} // namespace

std::string csvForm(const PowerTable& table) {
    std::string text = csvLine(
        {"code", "name", "modulation", "max_power_dBm", "min_power_dBm", "reason", "warning"});
    for (const PowerTable::Row& row : table.rows) {
        text += csvLine({std::to_string(row.modulationAndCode.code),
                         convertCodeAndModulationEnumToString(row.modulationAndCode),
                         convertAcmEnumToString(row.modulation), powerOrNothing(row.maxPower),
                         powerOrNothing(table.minOutputPower), row.reason, row.warning});
    }
    return text;
}
