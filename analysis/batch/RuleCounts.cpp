#include "RuleCounts.h"

#include <algorithm>
#include <set>

void RuleCounts::add(const ExplainedTable& powers) {
    std::set<Rule> ofNode;
    for (const Explanation& explanation : powers.explanations) {
        const Rule rule = explanation.decisiveRule();
        Count& count = m_counts.try_emplace(rule, Count{rule}).first->second;
        ++count.codes;
        if (ofNode.insert(rule).second) {
            ++count.nodes;
        }
    }
}

std::vector<RuleCounts::Count> RuleCounts::sortedByCodes() const {
    return sortedBy(&Count::codes);
}

std::vector<RuleCounts::Count> RuleCounts::sortedByNodes() const {
    return sortedBy(&Count::nodes);
}

std::vector<RuleCounts::Count> RuleCounts::sortedBy(std::uint64_t Count::*number) const {
    std::vector<Count> counts;
    counts.reserve(m_counts.size());
    for (const auto& [rule, count] : m_counts) {
        counts.push_back(count);
    }
    std::stable_sort(counts.begin(), counts.end(), [number](const Count& left, const Count& right) {
        return left.*number > right.*number;
    });
    return counts;
}
