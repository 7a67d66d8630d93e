#pragma once

#include <string>
#include <vector>

/// Remarks that do not fit into a cell of a table: the cell holds a number, the text stands below.
class FootNotes {
public:
    /// The mark of a remark, for example "[1]"; empty for an empty one. Equal remarks share one.
    std::string markOf(const std::string& remark);

    /// The remarks with their marks, one line each, below a blank line; empty without remarks.
    std::string text() const;

private:
    std::vector<std::string> m_remarks;
};

/// A cell of a table that may have a mark behind it.
struct MarkedCell {
    std::string text;
    std::string mark;
};

/// The cells of one column, to be aligned at the right: marks stand behind, below each other.
std::vector<std::string> markedColumn(const std::vector<MarkedCell>& cells);
