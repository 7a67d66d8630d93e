#include "FindingList.h"

#include <algorithm>

void FindingList::add(const CheckRule& rule, const FilePlace& place, const std::string& message,
                      const std::string& remedy) {
    if (isFull(rule)) {
        return;
    }
    std::string identity = rule.code;
    for (const std::string& key : place.path) {
        identity += '\0' + key;
    }
    identity += std::string(2, '\0') + message;
    if (!m_seen.insert(identity).second) {
        return;
    }
    m_findings.push_back({&rule, place, message, remedy});
    if (++m_counts[&rule] == maxPerRule) {
        m_findings.push_back(
            {&rule,
             {},
             "no more than " + std::to_string(maxPerRule) + " findings of this kind are shown",
             "repair those that are shown first"});
    }
}

bool FindingList::isFull(const CheckRule& rule) const {
    const auto count = m_counts.find(&rule);
    return count != m_counts.end() && count->second >= maxPerRule;
}

bool FindingList::has(const CheckRule& rule, const FilePlace& place) const {
    return std::any_of(m_findings.begin(), m_findings.end(), [&](const Finding& finding) {
        return finding.rule == &rule && finding.place == place;
    });
}
