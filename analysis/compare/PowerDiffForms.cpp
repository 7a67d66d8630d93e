#include "PowerDiff.h"

#include "Decibels.h"
#include "ExplanationForms.h"
#include "OneLine.h"

#include <algorithm>
#include <cstddef>
#include <functional>

namespace {

using enum Shown;
using DiffRow = PowerDiff::Row;

constexpr const char* noFigure = "none";
constexpr const char* noCode = "the radio does not have the code";

/// How a row of the diff has one of the two radios.
using Side = std::optional<PowerTable::Row> DiffRow::*;

Datum powerOf(const std::optional<PowerTable::Row>& row) {
    return row ? Datum(row->maxPower) : Datum();
}

/// One code in one of the two radios; nothing if the radio does not have it.
Datum datumOf(const std::optional<PowerTable::Row>& row, const std::optional<Rule>& rule) {
    if (!row) {
        return {};
    }
    return Datum::Object{{"maxPowerCentiDbm", row->maxPower},
                         {"rule", datumOf(rule)},
                         {"reason", Datum::orNothing(row->reason)},
                         {"warning", Datum::orNothing(row->warning)}};
}

Datum datumOf(const PowerDiff::StepChange& change) {
    // What a step adds is in dB, what it starts from and what it allows in dBm.
    const bool isChange = change.kind == Explanation::Step::Kind::Change;
    const std::string unit = isChange ? "dB" : "dBm";
    return Datum::Object{{"rule", codeOf(change.rule)},
                         {"kind", codeOf(change.kind)},
                         {FieldNames{"a", unit}.inJson(), change.before},
                         {FieldNames{"b", unit}.inJson(), change.after}};
}

Datum stepsOf(const DiffRow& row) {
    Datum::List steps;
    for (const PowerDiff::StepChange& change : row.steps) {
        steps.push_back(datumOf(change));
    }
    return steps;
}

Datum datumOf(const PowerTable& table) {
    return Datum::Object{{"radioFile", table.radioFile},
                         {"failure", Datum::orNothing(table.failure)},
                         {"minPowerCentiDbm", table.minOutputPower}};
}

std::string ruleText(const std::optional<Rule>& rule) {
    return rule ? wordsFor(*rule) : noFigure;
}

std::string rulesText(const DiffRow& row) {
    return row.isSameRule() ? ruleText(row.ruleBefore)
                            : ruleText(row.ruleBefore) + " -> " + ruleText(row.ruleAfter);
}

Datum minimumDifference(const PowerDiff& diff) {
    if (!diff.before.minOutputPower || !diff.after.minOutputPower) {
        return {};
    }
    return std::int64_t{*diff.after.minOutputPower} - *diff.before.minOutputPower;
}

/// The power in one of the two radios, and what must be said about it.
Field<DiffRow> powerField(const FieldNames& names, const char* heading, Side side, Datum minimum) {
    return {names,
            [side](const DiffRow& row) { return powerOf(row.*side); },
            InCsv,
            heading,
            [side](const DiffRow& row) { return row.*side ? remarkOf(*(row.*side)) : noCode; },
            {std::move(minimum)}};
}

Field<DiffRow> reasonField(const FieldNames& names, Side side) {
    return {names, [side](const DiffRow& row) { return row.*side ? (row.*side)->reason : noCode; },
            InCsv};
}

/// What each row says.
Fields<DiffRow> rowFields(const PowerDiff& diff) {
    const Datum minimumBefore = diff.before.minOutputPower;
    const Datum minimumAfter = diff.after.minOutputPower;
    Fields<DiffRow> fields = codeFields<DiffRow>();
    fields[1].below = {"Minimum power"};
    const Fields<DiffRow> own = {
        {{"equal"}, &DiffRow::isSamePower},
        powerField({"maxPowerA", "dBm"}, "A", &DiffRow::before, minimumBefore),
        powerField({"maxPowerB", "dBm"}, "B", &DiffRow::after, minimumAfter),
        {{"difference", "dB"},
         &DiffRow::difference,
         InBoth,
         "Difference",
         {},
         {minimumDifference(diff)}},
        {{"rule"}, rulesText, Nowhere, "Rule"},
        {{"ruleA"}, [](const DiffRow& row) { return datumOf(row.ruleBefore); }, InCsv},
        {{"ruleB"}, [](const DiffRow& row) { return datumOf(row.ruleAfter); }, InCsv},
        {{"minPowerA", "dBm"},
         [minimumBefore](const DiffRow&) { return Datum(minimumBefore); },
         InCsv},
        {{"minPowerB", "dBm"},
         [minimumAfter](const DiffRow&) { return Datum(minimumAfter); },
         InCsv},
        reasonField({"reasonA"}, &DiffRow::before),
        reasonField({"reasonB"}, &DiffRow::after),
        {{"a"}, [](const DiffRow& row) { return datumOf(row.before, row.ruleBefore); }},
        {{"b"}, [](const DiffRow& row) { return datumOf(row.after, row.ruleAfter); }},
        {{"steps"}, stepsOf},
    };
    fields.insert(fields.end(), own.begin(), own.end());
    return fields;
}

Fields<InputChange> inputFields() {
    return {
        {{"input"}, &InputChange::name, InJson, "Input"},
        {{"a"}, orNothing<InputChange>(&InputChange::before), InJson, "A"},
        {{"b"}, orNothing<InputChange>(&InputChange::after), InJson, "B"},
    };
}

std::string powersText(const PowerDiff& diff, const TextLook& look) {
    FootNotes notes;
    const std::string columns = textColumns(rowFields(diff), diff.rows, "-", &notes,
                                            {look.width, codeFields<DiffRow>().size()});
    return columns + notes.text();
}

std::string figureText(const PowerDiff::StepChange& change,
                       const std::optional<std::int64_t>& figure) {
    if (!figure) {
        return noFigure;
    }
    return change.kind == Explanation::Step::Kind::Change ? Decibels::formatSigned(*figure) + " dB"
                                                          : Decibels::dBm(*figure);
}

/// The changed steps of one code, one line each.
std::string stepsText(const PowerDiff::Row& row) {
    std::vector<std::vector<std::string>> lines;
    for (const PowerDiff::StepChange& change : row.steps) {
        const bool isBound = change.kind == Explanation::Step::Kind::Bound;
        lines.push_back({isBound ? "  bound:" : " ", wordsFor(change.rule),
                         figureText(change, change.before), "->",
                         figureText(change, change.after)});
    }
    return alignedColumns({Align::Left, Align::Left, Align::Right, Align::Left, Align::Right},
                          lines);
}

/// What changed in the calculation; codes with the same changes share them.
std::string changesText(const PowerDiff& diff) {
    std::vector<std::pair<std::string, std::string>> namesAndSteps;
    for (const PowerDiff::Row& row : diff.rows) {
        if (row.steps.empty()) {
            continue;
        }
        const std::string name = convertCodeAndModulationEnumToString(row.modulationAndCode);
        const std::string steps = stepsText(row);
        const auto same =
            std::ranges::find(namesAndSteps, steps, &std::pair<std::string, std::string>::second);
        if (same == namesAndSteps.end()) {
            namesAndSteps.emplace_back(name, steps);
        } else {
            same->first += ", " + name;
        }
    }
    std::string text;
    for (const auto& [names, steps] : namesAndSteps) {
        text += '\n' + names + '\n' + steps;
    }
    return text.empty() ? text : "\nSteps of the calculation that differ, A -> B\n" + text;
}

std::string verdict(const PowerDiff& diff) {
    if (diff.isEqual()) {
        return "The powers are equal.\n";
    }
    const auto count = std::ranges::count_if(
        diff.rows, [](const PowerDiff::Row& row) { return !row.isSamePower(); });
    const bool isSameMinimum = diff.before.minOutputPower == diff.after.minOutputPower;
    return std::to_string(count) + " of " + std::to_string(diff.rows.size()) +
           " maximum powers differ, the minimum power does " + (isSameMinimum ? "not" : "too") +
           ".\n";
}

} // namespace

std::string textForm(const PowerDiff& diff, const TextLook& look) {
    return "A  " + oneLine(diff.before.radioFile) + "\nB  " + oneLine(diff.after.radioFile) +
           "\n\n" +
           (diff.inputs.empty()
                ? "No input differs.\n"
                : textColumns(inputFields(), diff.inputs, noFigure, nullptr, {look.width})) +
           '\n' + powersText(diff, look) + changesText(diff) + '\n' + verdict(diff);
}

std::string csvForm(const PowerDiff& diff) {
    return csvForm(rowFields(diff), diff.rows);
}

std::string jsonForm(const PowerDiff& diff) {
    return jsonDocument(answerOf("diff", {
                                             {"equal", diff.isEqual()},
                                             {"a", datumOf(diff.before)},
                                             {"b", datumOf(diff.after)},
                                             {"inputs", listOf(inputFields(), diff.inputs)},
                                             {"rows", listOf(rowFields(diff), diff.rows)},
                                         }));
}
