#include "Csv.h"
#include "Decibels.h"
#include "PowerDiff.h"

namespace {

template <class Number>
std::string decibelsOrNothing(const std::optional<Number>& hundredths) {
    return hundredths ? Decibels::format(*hundredths) : std::string();
}

std::string codeOrNothing(const std::optional<Rule>& rule) {
    return rule ? codeOf(*rule) : "";
}

std::string reasonOf(const std::optional<PowerTable::Row>& row) {
    return row ? row->reason : "the radio does not have the code";
}

} // namespace

std::string csvForm(const PowerDiff& diff) {
    std::string text = csvLine({"code", "name", "modulation", "max_power_a_dBm", "max_power_b_dBm",
                                "difference_dB", "rule_a", "rule_b", "min_power_a_dBm",
                                "min_power_b_dBm", "reason_a", "reason_b"});
    for (const PowerDiff::Row& row : diff.rows) {
        text +=
            csvLine({std::to_string(row.modulationAndCode.code),
                     convertCodeAndModulationEnumToString(row.modulationAndCode),
                     convertAcmEnumToString(row.modulation), decibelsOrNothing(row.powerBefore()),
                     decibelsOrNothing(row.powerAfter()), decibelsOrNothing(row.difference()),
                     codeOrNothing(row.ruleBefore), codeOrNothing(row.ruleAfter),
                     decibelsOrNothing(diff.before.minOutputPower),
                     decibelsOrNothing(diff.after.minOutputPower), reasonOf(row.before),
                     reasonOf(row.after)});
    }
    return text;
}
