#pragma once

#include "Finding.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

/// Findings in the order made, each of them once. More than a hundred of one kind are of no help to
/// anybody: the others are left out.
class FindingList {
public:
    static constexpr std::size_t maxPerRule = 100;

    void add(const CheckRule& rule, const FilePlace& place, const std::string& message,
             const std::string& remedy = std::string());

    /// Whether no further finding of a kind is taken.
    bool isFull(const CheckRule& rule) const;

    bool has(const CheckRule& rule, const FilePlace& place) const;

    const std::vector<Finding>& findings() const { return m_findings; }

private:
    std::vector<Finding> m_findings;
    std::set<std::string> m_seen; ///< rule, place and message
    std::map<const CheckRule*, std::size_t> m_counts;
};
