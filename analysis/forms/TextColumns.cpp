#include "TextColumns.h"

#include "Utf8.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <sstream>
#include <string_view>

namespace {

constexpr const char* columnGap = "  ";

/// A cell beyond it does not widen its column: each other line would be filled up to it.
constexpr std::size_t widest = 200;

/// No text reads well in less.
constexpr std::size_t narrowest = 10;

/// How many columns a text takes; sequences that style it take none.
std::size_t shownWidth(std::string_view line) {
    std::size_t columns = 0;
    bool isSequence = false;
    for (const char byte : line) {
        isSequence = isSequence || byte == '\x1b';
        columns += !isSequence && Utf8::beginsCharacter(byte) ? 1U : 0U;
        isSequence = isSequence && byte != 'm';
    }
    return columns;
}

/// Breaks a text into lines, the first one of a width of its own.
std::vector<std::string> brokenLines(std::string_view text, std::size_t first, std::size_t width) {
    std::vector<std::string> lines;
    std::string line;
    std::size_t columns = 0;
    std::size_t place = 0; ///< where the line can be broken; 0: nowhere yet
    bool isSequence = false;
    const auto trimmed = [](const std::string& part) {
        return part.substr(0, part.find_last_not_of(' ') + 1);
    };
    for (const char byte : text) {
        isSequence = isSequence || byte == '\x1b';
        const bool takesColumn = !isSequence && Utf8::beginsCharacter(byte);
        const bool hasWord = line.find_first_not_of(' ') != std::string::npos;
        if (takesColumn && hasWord && (line.back() == ' ' || line.back() == ',' || byte == '/')) {
            place = byte == ' ' ? place : line.size();
        }
        if (takesColumn && columns == (lines.empty() ? first : width) && hasWord) {
            if (byte == ' ') {
                place = line.size();
            }
            const std::size_t end = place == 0 ? line.size() : place;
            const std::string rest = line.substr(end);
            lines.push_back(trimmed(line.substr(0, end)));
            line = rest;
            columns = shownWidth(rest);
            place = 0;
        }
        isSequence = isSequence && byte != 'm';
        if (byte == ' ' && line.empty() && !lines.empty()) {
            continue;
        }
        line += byte;
        columns += takesColumn ? 1U : 0U;
    }
    lines.push_back(trimmed(line));
    return lines;
}

/// Where a line that is too wide goes on: below its last column, or a little further in than it
/// begins.
std::size_t hangOf(const std::string& line, std::size_t width) {
    const std::size_t gap = line.rfind(columnGap, width / 2);
    const std::size_t column = gap == std::string::npos ? gap : line.find_first_not_of(' ', gap);
    const std::size_t begin = line.find_first_not_of(' ');
    if (column != std::string::npos && column > begin && column <= width / 2) {
        return column;
    }
    constexpr std::size_t further = 4;
    return std::min(begin + further, width / 2);
}

using Columns = std::vector<std::size_t>;

std::size_t widthOf(const Columns& block, const std::vector<std::size_t>& widths) {
    std::size_t sum = 0;
    for (const std::size_t column : block) {
        sum += widths[column] + (column == block.front() ? 0 : std::string_view(columnGap).size());
    }
    return sum;
}

/// Takes room from the widest texts of a block until it fits, as far as they go.
void narrow(const Columns& block, const std::vector<Align>& align, std::size_t width,
            std::vector<std::size_t>& widths) {
    for (std::size_t all = widthOf(block, widths); all > width; --all) {
        std::size_t* widestText = nullptr;
        for (const std::size_t column : block) {
            const bool isText = align[column] == Align::Left && widths[column] > narrowest;
            if (isText && (widestText == nullptr || widths[column] > *widestText)) {
                widestText = &widths[column];
            }
        }
        if (widestText == nullptr) {
            return;
        }
        --*widestText;
    }
}

/// The columns in blocks that fit, each with the key columns in front.
std::vector<Columns> blocksOf(const std::vector<std::size_t>& widths, const TableRoom& room) {
    Columns keys(std::min(room.keyColumns, widths.size()));
    std::iota(keys.begin(), keys.end(), 0);
    std::vector<Columns> blocks{keys};
    for (std::size_t column = keys.size(); column < widths.size(); ++column) {
        Columns wider = blocks.back();
        wider.push_back(column);
        if (widthOf(wider, widths) > room.width && blocks.back().size() > keys.size()) {
            blocks.push_back(keys);
            blocks.back().push_back(column);
        } else {
            blocks.back() = wider;
        }
    }
    return blocks;
}

/// One line of a table, which texts that are broken make several.
std::string rowOf(const std::vector<std::string>& cells, const Columns& block,
                  const std::vector<Align>& align, const std::vector<std::size_t>& widths,
                  bool isBounded) {
    std::vector<std::vector<std::string>> parts;
    std::size_t height = 1;
    for (const std::size_t column : block) {
        const bool fits = !isBounded || textWidth(cells[column]) <= widths[column];
        parts.push_back(fits ? std::vector<std::string>{cells[column]}
                             : brokenLines(cells[column], widths[column], widths[column]));
        height = std::max(height, parts.back().size());
    }
    std::string text;
    for (std::size_t line = 0; line < height; ++line) {
        std::string row;
        for (std::size_t index = 0; index < block.size(); ++index) {
            const std::size_t column = block[index];
            row += (index == 0 ? "" : columnGap) +
                   padded(line < parts[index].size() ? parts[index][line] : "", widths[column],
                          align[column]);
        }
        row.resize(row.find_last_not_of(' ') + 1);
        text += row + '\n';
    }
    return text;
}

std::string markWith(std::size_t number) {
    return '[' + std::to_string(number) + ']';
}

} // namespace

std::size_t textWidth(std::string_view text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, Utf8::beginsCharacter));
}

std::string padded(const std::string& text, std::size_t width, Align align) {
    const std::string blanks(width - std::min(width, textWidth(text)), ' ');
    return align == Align::Left ? text + blanks : blanks + text;
}

std::string alignedColumns(const std::vector<Align>& align,
                           const std::vector<std::vector<std::string>>& lines,
                           const TableRoom& room) {
    const bool isBounded = room.width != 0;
    std::vector<std::size_t> widths(align.size(), 0);
    for (const std::vector<std::string>& line : lines) {
        for (std::size_t column = 0; column < align.size(); ++column) {
            const std::size_t width = textWidth(line[column]);
            widths[column] = std::max(widths[column], isBounded || width <= widest ? width : 0);
        }
    }
    Columns all(align.size());
    std::iota(all.begin(), all.end(), 0);
    std::vector<Columns> blocks{all};
    if (isBounded) {
        std::vector<std::size_t> narrowed = widths;
        narrow(all, align, room.width, narrowed);
        blocks = widthOf(all, narrowed) <= room.width ? blocks : blocksOf(widths, room);
    }
    std::string text;
    for (const Columns& block : blocks) {
        std::vector<std::size_t> own = widths;
        if (isBounded) {
            narrow(block, align, room.width, own);
        }
        text += text.empty() ? "" : "\n";
        for (const std::vector<std::string>& line : lines) {
            text += rowOf(line, block, align, own, isBounded);
        }
    }
    return text;
}

std::string fitted(const std::string& text, std::size_t width) {
    if (width == 0) {
        return text;
    }
    std::string result;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (shownWidth(line) <= width) {
            result += line + '\n';
            continue;
        }
        const std::size_t hang = hangOf(line, width);
        std::size_t indent = 0;
        for (const std::string& part : brokenLines(line, width, width - hang)) {
            result += std::string(indent, ' ') + part + '\n';
            indent = hang;
        }
    }
    return result;
}

std::string wrapped(std::string_view paragraph, std::size_t width) {
    std::string text;
    std::size_t column = 0;
    while (!paragraph.empty()) {
        const std::string_view word = paragraph.substr(0, paragraph.find(' '));
        paragraph.remove_prefix(word.size());
        paragraph.remove_prefix(paragraph.empty() ? 0 : 1);
        const bool fits = column == 0 || column + 1 + word.size() <= width;
        if (!text.empty()) {
            text += fits ? ' ' : '\n';
        }
        column = fits && column > 0 ? column + 1 + word.size() : word.size();
        text += word;
    }
    return text;
}

std::string textOf(const Heading& heading) {
    std::size_t width = 0;
    for (const auto& [label, value] : heading) {
        width = std::max(width, label.size());
    }
    std::string text;
    for (const auto& [label, value] : heading) {
        text += padded(label, width, Align::Left) + "  " + value + '\n';
    }
    return text;
}

std::string FootNotes::markOf(const std::string& remark) {
    if (remark.empty()) {
        return {};
    }
    const auto found = std::ranges::find(m_remarks, remark);
    const auto index = static_cast<std::size_t>(std::distance(m_remarks.begin(), found));
    if (found == m_remarks.end()) {
        m_remarks.push_back(remark);
    }
    return markWith(index + 1);
}

std::string FootNotes::text() const {
    const std::size_t width = markWith(m_remarks.size()).size();
    std::string text = m_remarks.empty() ? "" : "\n";
    for (std::size_t index = 0; index < m_remarks.size(); ++index) {
        text += padded(markWith(index + 1), width, Align::Left) + ' ' + m_remarks[index] + '\n';
    }
    return text;
}

std::vector<std::string> markedColumn(const std::vector<MarkedCell>& cells) {
    std::size_t width = 0;
    for (const MarkedCell& cell : cells) {
        width = std::max(width, cell.mark.size());
    }
    std::vector<std::string> column;
    for (const MarkedCell& cell : cells) {
        const std::string mark = padded(cell.mark, width, Align::Left);
        column.push_back(width == 0 ? cell.text : cell.text + ' ' + mark);
    }
    return column;
}
