#include "TextColumns.h"

#include "Utf8.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr const char* columnGap = "  ";

/// A cell beyond it does not widen its column: each other line would be filled up to it.
constexpr std::size_t widest = 200;

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
                           const std::vector<std::vector<std::string>>& lines) {
    std::vector<std::size_t> widths(align.size(), 0);
    for (const std::vector<std::string>& line : lines) {
        for (std::size_t column = 0; column < align.size(); ++column) {
            const std::size_t width = textWidth(line[column]);
            widths[column] = std::max(widths[column], width <= widest ? width : 0);
        }
    }
    std::string text;
    for (const std::vector<std::string>& line : lines) {
        std::string row;
        for (std::size_t column = 0; column < align.size(); ++column) {
            row += (column == 0 ? "" : columnGap) +
                   padded(line[column], widths[column], align[column]);
        }
        row.resize(row.find_last_not_of(' ') + 1);
        text += row + '\n';
    }
    return text;
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
