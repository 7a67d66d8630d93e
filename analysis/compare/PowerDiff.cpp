#include "PowerDiff.h"

#include <algorithm>
#include <cstddef>

namespace {

using Step = Explanation::Step;

/// What a step says of itself, whatever came before it.
std::int64_t figureOf(const Step& step) {
    return step.kind == Step::Kind::Change ? step.amount : step.bound.value_or(step.running);
}

/// The step of a list that does the same as another one: the n-th of its rule and kind.
const Step* counterpart(const std::vector<Step>& steps, const std::vector<Step>& others,
                        const Step& other) {
    const auto isAlike = [&other](const Step& step) {
        return step.rule == other.rule && step.kind == other.kind;
    };
    const auto place = others.begin() + (&other - others.data());
    auto before = std::count_if(others.begin(), place, isAlike);
    for (const Step& step : steps) {
        if (isAlike(step) && before-- == 0) {
            return &step;
        }
    }
    return nullptr;
}

std::vector<PowerDiff::StepChange> stepChanges(const std::vector<Step>& before,
                                               const std::vector<Step>& after) {
    std::vector<PowerDiff::StepChange> changes;
    for (const Step& step : before) {
        const Step* const other = counterpart(after, before, step);
        if (other == nullptr) {
            changes.push_back({step.rule, step.kind, figureOf(step), std::nullopt});
        } else if (figureOf(*other) != figureOf(step)) {
            changes.push_back({step.rule, step.kind, figureOf(step), figureOf(*other)});
        }
    }
    for (const Step& step : after) {
        if (counterpart(before, after, step) == nullptr) {
            changes.push_back({step.rule, step.kind, std::nullopt, figureOf(step)});
        }
    }
    return changes;
}

/// Where a code stands in a table, for the n-th time; one past the end if it does not.
std::size_t indexOf(const PowerTable& table, const ModulationAndCoding& code, std::size_t nth) {
    std::size_t index = 0;
    for (; index < table.rows.size(); ++index) {
        if (table.rows[index].modulationAndCode == code && nth-- == 0) {
            break;
        }
    }
    return index;
}

std::size_t repetitionOf(const PowerTable& table, std::size_t index) {
    const auto begin = table.rows.begin();
    const ModulationAndCoding& code = table.rows[index].modulationAndCode;
    return static_cast<std::size_t>(std::count_if(
        begin, begin + static_cast<std::ptrdiff_t>(index),
        [&code](const PowerTable::Row& row) { return row.modulationAndCode == code; }));
}

/// A row from two tables, each index one past the end where the table does not have it.
PowerDiff::Row rowOf(const ExplainedTable& before, std::size_t indexBefore,
                     const ExplainedTable& after, std::size_t indexAfter) {
    const bool isBefore = indexBefore < before.table.rows.size();
    const bool isAfter = indexAfter < after.table.rows.size();
    const PowerTable::Row& any =
        isBefore ? before.table.rows[indexBefore] : after.table.rows[indexAfter];
    PowerDiff::Row row{any.modulationAndCode, any.modulation, {}, {}, {}, {}, {}};
    if (isBefore) {
        row.before = any;
        row.ruleBefore = before.explanations[indexBefore].decisiveRule();
    }
    if (isAfter) {
        row.after = after.table.rows[indexAfter];
        row.ruleAfter = after.explanations[indexAfter].decisiveRule();
    }
    if (isBefore && isAfter) {
        row.steps = stepChanges(before.explanations[indexBefore].steps,
                                after.explanations[indexAfter].steps);
    }
    return row;
}

} // namespace

std::optional<long> PowerDiff::Row::powerOf(const std::optional<PowerTable::Row>& row) {
    return row ? row->maxPower : std::nullopt;
}

std::optional<std::int64_t> PowerDiff::Row::difference() const {
    if (!powerBefore() || !powerAfter()) {
        return std::nullopt;
    }
    return std::int64_t{*powerAfter()} - std::int64_t{*powerBefore()};
}

bool PowerDiff::Row::isSamePower() const {
    return before.has_value() == after.has_value() && powerBefore() == powerAfter();
}

PowerDiff PowerDiff::between(const RadioCase& before, const RadioCase& after) {
    const ExplainedTable explainedBefore = before.explain();
    const ExplainedTable explainedAfter = after.explain();
    PowerDiff diff;
    diff.mismatches = mismatchesOf(explainedBefore);
    const std::vector<std::string> mismatchesAfter = mismatchesOf(explainedAfter);
    diff.mismatches.insert(diff.mismatches.end(), mismatchesAfter.begin(), mismatchesAfter.end());
    diff.before = explainedBefore.table;
    diff.after = explainedAfter.table;
    diff.inputs = changesBetween(inputsOf(before, diff.before), inputsOf(after, diff.after));
    for (std::size_t index = 0; index < diff.before.rows.size(); ++index) {
        const std::size_t other = indexOf(diff.after, diff.before.rows[index].modulationAndCode,
                                          repetitionOf(diff.before, index));
        diff.rows.push_back(rowOf(explainedBefore, index, explainedAfter, other));
    }
    for (std::size_t index = 0; index < diff.after.rows.size(); ++index) {
        const std::size_t other = indexOf(diff.before, diff.after.rows[index].modulationAndCode,
                                          repetitionOf(diff.after, index));
        if (other == diff.before.rows.size()) {
            diff.rows.push_back(rowOf(explainedBefore, other, explainedAfter, index));
        }
    }
    return diff;
}

bool PowerDiff::isEqual() const {
    return before.minOutputPower == after.minOutputPower &&
           std::ranges::all_of(rows, [](const Row& row) { return row.isSamePower(); });
}
