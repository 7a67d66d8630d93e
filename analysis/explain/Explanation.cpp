#include "Explanation.h"

#include "OneLine.h"

#include <algorithm>

Rule Explanation::decisiveRule() const {
    if (const Bound* const bound = binding()) {
        return bound->rule;
    }
    return refusal.value_or(Rule::Unexplained);
}

std::string Explanation::bindingFigure() const {
    const Bound* const bound = binding();
    if (bound == nullptr) {
        return {};
    }
    // What holds the power of the selected modulation holds this one.
    return bound->rule == Rule::SelectedModulation && !ofSelected.empty()
               ? ofSelected.front().bindingFigure()
               : bound->figure;
}

RuledTable::RuledTable(const ExplainedTable& explained)
    : table(explained.table)
    , mismatches(mismatchesOf(explained)) {
    rules.reserve(explained.explanations.size());
    for (const Explanation& explanation : explained.explanations) {
        rules.push_back(explanation.decisiveRule());
        headrooms.push_back(explanation.headroom);
        cutbacks.push_back(explanation.cutback);
    }
}

std::vector<std::string> mismatchesOf(const std::vector<Explanation>& explanations) {
    std::vector<std::string> lines;
    for (const Explanation& explanation : explanations) {
        const std::string line = "the steps for " + convertAcmEnumToString(explanation.modulation) +
                                 " do not add up: " + explanation.mismatch;
        if (!explanation.addsUp() && std::ranges::find(lines, line) == lines.end()) {
            lines.push_back(line);
        }
    }
    return lines;
}

std::vector<std::string> mismatchesOf(const ExplainedTable& explained) {
    std::vector<std::string> lines = mismatchesOf(explained.explanations);
    const std::string name = oneLine(explained.table.radioFile);
    for (std::string& line : lines) {
        line.insert(0, name.empty() ? "" : name + ": ");
    }
    return lines;
}
