#include "TextColumns.h"

#include "Utf8.h"

#include <algorithm>

namespace {

constexpr const char* gap = "  ";

/// A cell beyond it does not widen its column: each other line would be filled up to it.
constexpr std::size_t widest = 200;

} // namespace

std::size_t textWidth(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), Utf8::beginsCharacter));
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
            row += (column == 0 ? "" : gap) + padded(line[column], widths[column], align[column]);
        }
        row.resize(row.find_last_not_of(' ') + 1);
        text += row + '\n';
    }
    return text;
}
