#include "Decibels.h"
#include "FootNotes.h"
#include "PowerDiff.h"
#include "PowerTableForms.h"
#include "TextColumns.h"

#include <algorithm>
#include <cstddef>

namespace {

using Line = std::vector<std::string>;

constexpr const char* noFigure = "none";
constexpr const char* arrow = " -> ";

std::string orNone(const std::string& text) {
    return text.empty() ? noFigure : text;
}

std::string inputsText(const PowerDiff& diff) {
    if (diff.inputs.empty()) {
        return "No input differs.\n";
    }
    std::vector<Line> lines = {{"Input", "A", "B"}};
    for (const InputChange& input : diff.inputs) {
        lines.push_back({input.name, orNone(input.before), orNone(input.after)});
    }
    return alignedColumns({Align::Left, Align::Left, Align::Left}, lines);
}

/// A power, or "-" with the mark of why there is none.
MarkedCell powerCell(const std::optional<PowerTable::Row>& row, FootNotes& notes) {
    if (!row) {
        return {"-", notes.markOf("the radio does not have the code")};
    }
    return {row->maxPower ? Decibels::format(*row->maxPower) : "-", notes.markOf(remarkOf(*row))};
}

/// The column of one radio: its heading, a cell for each row and the minimum power.
std::vector<std::string> powerColumn(const PowerDiff& diff, const std::string& heading,
                                     std::optional<PowerTable::Row> PowerDiff::Row::*side,
                                     const std::optional<long>& minimum, FootNotes& notes) {
    std::vector<MarkedCell> cells = {{heading, ""}};
    for (const PowerDiff::Row& row : diff.rows) {
        cells.push_back(powerCell(row.*side, notes));
    }
    cells.push_back({minimum ? Decibels::format(*minimum) : "-", ""});
    return markedColumn(cells);
}

std::string differenceText(const std::optional<std::int64_t>& difference) {
    return difference ? Decibels::formatSigned(*difference) : "-";
}

std::string ruleText(const std::optional<Rule>& rule) {
    return rule ? wordsFor(*rule) : noFigure;
}

std::string rulesText(const PowerDiff::Row& row) {
    return row.isSameRule() ? ruleText(row.ruleBefore)
                            : ruleText(row.ruleBefore) + arrow + ruleText(row.ruleAfter);
}

std::optional<std::int64_t> minimumDifference(const PowerDiff& diff) {
    if (!diff.before.minOutputPower || !diff.after.minOutputPower) {
        return std::nullopt;
    }
    return std::int64_t{*diff.after.minOutputPower} - *diff.before.minOutputPower;
}

std::string powersText(const PowerDiff& diff) {
    FootNotes notes;
    const std::vector<std::string> before =
        powerColumn(diff, "A/dBm", &PowerDiff::Row::before, diff.before.minOutputPower, notes);
    const std::vector<std::string> after =
        powerColumn(diff, "B/dBm", &PowerDiff::Row::after, diff.after.minOutputPower, notes);
    std::vector<Line> lines = {
        {"Code", "Name", "Modulation", before.front(), after.front(), "Difference/dB", "Rule"}};
    for (std::size_t index = 0; index < diff.rows.size(); ++index) {
        const PowerDiff::Row& row = diff.rows[index];
        lines.push_back({std::to_string(row.modulationAndCode.code),
                         convertCodeAndModulationEnumToString(row.modulationAndCode),
                         convertAcmEnumToString(row.modulation), before[index + 1],
                         after[index + 1], differenceText(row.difference()), rulesText(row)});
    }
    lines.push_back({"", "Minimum power", "", before.back(), after.back(),
                     differenceText(minimumDifference(diff)), ""});
    return alignedColumns({Align::Right, Align::Left, Align::Left, Align::Right, Align::Right,
                           Align::Right, Align::Left},
                          lines) +
           notes.text();
}

std::string figureText(const PowerDiff::StepChange& change,
                       const std::optional<std::int64_t>& figure) {
    if (!figure) {
        return noFigure;
    }
    return change.kind == Explanation::Step::Kind::Change ? Decibels::formatSigned(*figure) + " dB"
                                                          : Decibels::format(*figure) + " dBm";
}

/// The changed steps of one code, one line each.
std::string stepsText(const PowerDiff::Row& row) {
    std::vector<Line> lines;
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
            std::find_if(namesAndSteps.begin(), namesAndSteps.end(),
                         [&steps](const auto& known) { return known.second == steps; });
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
    const auto count = std::count_if(diff.rows.begin(), diff.rows.end(),
                                     [](const PowerDiff::Row& row) { return !row.isSamePower(); });
    const bool isSameMinimum = diff.before.minOutputPower == diff.after.minOutputPower;
    return std::to_string(count) + " of " + std::to_string(diff.rows.size()) +
           " maximum powers differ, the minimum power does " + (isSameMinimum ? "not" : "too") +
           ".\n";
}

} // namespace

std::string textForm(const PowerDiff& diff) {
    return "A  " + diff.before.radioFile + "\nB  " + diff.after.radioFile + "\n\n" +
           inputsText(diff) + '\n' + powersText(diff) + changesText(diff) + '\n' + verdict(diff);
}
