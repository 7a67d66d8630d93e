#include "FootNotes.h"

#include "TextColumns.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace {

std::string markWith(std::size_t number) {
    return '[' + std::to_string(number) + ']';
}

} // namespace

std::string FootNotes::markOf(const std::string& remark) {
    if (remark.empty()) {
        return {};
    }
    const auto found = std::find(m_remarks.begin(), m_remarks.end(), remark);
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
