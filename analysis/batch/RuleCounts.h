#pragma once

#include "Explanation.h"

#include <cstdint>
#include <map>
#include <vector>

/// How often each rule decides, over any number of nodes.
class RuleCounts {
public:
    struct Count {
        Rule rule;
        std::uint64_t nodes = 0; ///< with at least one such code
        std::uint64_t codes = 0; ///< whose power it decides or denies
    };

    /// Counts a node.
    void add(const ExplainedTable& powers);

    /// The rules that decided at all, the one with most codes or nodes first; of equals the one
    /// that comes first in the enumeration.
    std::vector<Count> sortedByCodes() const;
    std::vector<Count> sortedByNodes() const;

private:
    std::vector<Count> sortedBy(std::uint64_t Count::*number) const;

    std::map<Rule, Count> m_counts;
};
