#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

enum class Align {
    Left,
    Right
};

/// How many columns of a terminal a text takes: its characters, of whatever length in bytes.
std::size_t textWidth(std::string_view text);

/// A text with blanks on one side, at least `width` wide.
std::string padded(const std::string& text, std::size_t width, Align align);

/// How wide a table may be, and what it does about it.
struct TableRoom {
    std::size_t width = 0;      ///< in columns of the terminal; 0: no bound
    std::size_t keyColumns = 1; ///< the first ones, which say what a line is about
};

/// Lines of cells as aligned columns, two blanks apart, without blanks at the ends of lines. Where
/// the room is bounded, texts are broken within their columns; if that does not do, the columns
/// stand in several blocks below each other, each with the key columns in front. Without a bound a
/// cell of more than 200 characters sticks out of its column.
/// @param align of every column; each line has as many cells.
std::string alignedColumns(const std::vector<Align>& align,
                           const std::vector<std::vector<std::string>>& lines,
                           const TableRoom& room = {});

/// A text whose lines are at most so wide: those that are wider are broken between words, or
/// within a word where nothing else helps, and go on below the column in which they end.
/// @param width 0: the text as it is.
std::string fitted(const std::string& text, std::size_t width);

/// A paragraph broken between words into lines of at most a width, as far as its words allow. No
/// line end behind the last line.
std::string wrapped(std::string_view paragraph, std::size_t width);

/// Labels and values, one line each.
using Heading = std::vector<std::pair<std::string, std::string>>;

/// A heading with its values below each other.
std::string textOf(const Heading& heading);

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
