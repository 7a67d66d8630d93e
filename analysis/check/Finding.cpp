#include "Finding.h"

#include <algorithm>

const char* textOf(Severity severity) {
    static constexpr const char* texts[] = {"hint", "warning", "error"};
    return texts[static_cast<std::size_t>(severity)];
}

FilePlace FilePlace::operator/(const std::string& key) const {
    FilePlace place = *this;
    place.path.push_back(key);
    return place;
}

FilePlace FilePlace::operator/(std::size_t index) const {
    return *this / std::to_string(index);
}

bool FilePlace::isWithin(const FilePlace& outer) const {
    return path.size() >= outer.path.size() &&
           std::equal(outer.path.begin(), outer.path.end(), path.begin());
}

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
    return std::ranges::any_of(m_findings, [&](const Finding& finding) {
        return finding.rule == &rule && finding.place == place;
    });
}
