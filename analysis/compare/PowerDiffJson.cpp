#include "ExplanationForms.h"
#include "PowerDiff.h"
#include "PowerTableJson.h"

#include <utility>

namespace {

OrderedJson sideOf(const PowerTable& table) {
    OrderedJson side;
    side["radioFile"] = table.radioFile;
    side["failure"] = textOrNull(table.failure);
    side["minPowerCentiDbm"] = orNull(table.minOutputPower);
    return side;
}

OrderedJson inputOf(const InputChange& input) {
    OrderedJson object;
    object["input"] = input.name;
    object["a"] = textOrNull(input.before);
    object["b"] = textOrNull(input.after);
    return object;
}

/// One code in one of the two radios; null if the radio does not have it.
OrderedJson powerOf(const std::optional<PowerTable::Row>& row, const std::optional<Rule>& rule) {
    if (!row) {
        return nullptr;
    }
    OrderedJson power;
    power["maxPowerCentiDbm"] = orNull(row->maxPower);
    power["rule"] = ruleOrNull(rule);
    power["reason"] = textOrNull(row->reason);
    power["warning"] = textOrNull(row->warning);
    return power;
}

OrderedJson stepOf(const PowerDiff::StepChange& change) {
    // What a step adds is in dB, what it starts from and what it allows in dBm.
    const bool isChange = change.kind == Explanation::Step::Kind::Change;
    const std::string unit = isChange ? "CentiDb" : "CentiDbm";
    OrderedJson step;
    step["rule"] = codeOf(change.rule);
    step["kind"] = codeOf(change.kind);
    step["a" + unit] = orNull(change.before);
    step["b" + unit] = orNull(change.after);
    return step;
}

OrderedJson rowOf(const PowerDiff::Row& row) {
    OrderedJson object;
    object["code"] = row.modulationAndCode.code;
    object["name"] = convertCodeAndModulationEnumToString(row.modulationAndCode);
    object["modulation"] = convertAcmEnumToString(row.modulation);
    object["equal"] = row.isSamePower();
    object["differenceCentiDb"] = orNull(row.difference());
    object["a"] = powerOf(row.before, row.ruleBefore);
    object["b"] = powerOf(row.after, row.ruleAfter);
    OrderedJson& steps = object["steps"] = OrderedJson::array();
    for (const PowerDiff::StepChange& change : row.steps) {
        steps.push_back(stepOf(change));
    }
    return object;
}

} // namespace

std::string jsonForm(const PowerDiff& diff) {
    OrderedJson object;
    object["equal"] = diff.isEqual();
    object["a"] = sideOf(diff.before);
    object["b"] = sideOf(diff.after);
    OrderedJson& inputs = object["inputs"] = OrderedJson::array();
    for (const InputChange& input : diff.inputs) {
        inputs.push_back(inputOf(input));
    }
    OrderedJson& rows = object["rows"] = OrderedJson::array();
    for (const PowerDiff::Row& row : diff.rows) {
        rows.push_back(rowOf(row));
    }
    return printed(object);
}
