#pragma once

#include "Explanation.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// What became of one line of a batch.
struct BatchResult {
    std::string id;                       ///< that the line gives; may be empty
    std::string radioFile;                ///< path on one line; empty: the line was a radio file
    std::optional<ExplainedTable> powers; ///< nothing if there are not even rows
    std::string error;                    ///< why the line is bad, on one line; empty if it is not
    std::string place;                    ///< of the error in the radio file; may be empty

    bool isBad() const { return !error.empty(); }

    /// What is wrong with powers; empty if nothing is.
    static std::string errorOf(const ExplainedTable& powers);
};

/// A result as one JSON object on one line.
std::string batchJsonLine(const BatchResult& result);

/// The names of the columns of batchCsvLine(), as a line.
std::string batchCsvHeader();

/// A result as one line of comma-separated values: a column for each modulation-and-code.
std::string batchCsvLine(const BatchResult& result);

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

    /// The rules that decided at all, the one with most nodes or codes first; of equals the one
    /// that comes first in the enumeration.
    std::vector<Count> sortedBy(std::uint64_t Count::*number) const;

private:
    std::map<Rule, Count> m_counts;
};
