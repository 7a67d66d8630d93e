#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

/// How bad a finding is.
enum class Severity {
    Hint,    ///< worth knowing; the file may well be meant so
    Warning, ///< most likely not what was meant
    Error    ///< a query cannot be answered, or this is no radio file
};

/// "hint", "warning" or "error".
const char* textOf(Severity severity);

/// One thing that `qor-power check` looks for. The code is for good: it is never given to anything
/// else.
struct CheckRule {
    const char* code;
    Severity severity;
    const char* title; ///< a few words, without a full stop
};

/// Where something stands in a radio file: the keys and indexes that lead to it.
struct FilePlace {
    std::vector<std::string> path;

    FilePlace operator/(const std::string& key) const;
    FilePlace operator/(std::size_t index) const;
    bool isWithin(const FilePlace& outer) const; ///< or is the same
    bool operator==(const FilePlace& other) const = default;
};

/// What a rule found. Message and remedy are one line each, without a full stop at the end.
struct Finding {
    const CheckRule* rule;
    FilePlace place;
    std::string message;
    std::string remedy; ///< may be empty
};

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
