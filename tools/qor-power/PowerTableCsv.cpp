#include "Decibels.h"
#include "PowerTableForms.h"

#include <cstddef>
#include <initializer_list>

namespace {

std::string field(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string quotedText = "\"";
    for (const char letter : text) {
        quotedText.append(letter == '"' ? 2 : 1, letter);
    }
    return quotedText + '"';
}

std::string lineOf(std::initializer_list<std::string> fields) {
    std::string line;
    for (const std::string& text : fields) {
        line += (line.empty() ? "" : ",") + field(text);
    }
    return line + '\n';
}

std::string powerOrNothing(const std::optional<long>& power) {
    return power ? Decibels::format(*power) : std::string();
}

} // namespace

std::string csvForm(const PowerTable& table) {
    std::string text = lineOf(
        {"code", "name", "modulation", "max_power_dBm", "min_power_dBm", "reason", "warning"});
    for (const PowerTable::Row& row : table.rows) {
        text += lineOf({std::to_string(row.modulationAndCode.code),
                        convertCodeAndModulationEnumToString(row.modulationAndCode),
                        convertAcmEnumToString(row.modulation), powerOrNothing(row.maxPower),
                        powerOrNothing(table.minOutputPower), row.reason, row.warning});
    }
    return text;
}
