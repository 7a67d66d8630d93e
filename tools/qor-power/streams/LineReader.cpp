#include "LineReader.h"

#include "AnalysisError.h"

#include <utility>

LineReader::LineReader(const std::string& path, std::size_t limit)
    : m_file(path, InputFile::Growth::IsLeftOut)
    , m_limit(limit) {
    if (m_file.isStandardOutput()) {
        throw AnalysisError(Outcome::OtherTrouble,
                            inputName(path) + ": the answers would be added to it, and be read as "
                                              "lines; let them go to another file");
    }
}

void LineReader::append(Line& line, std::string_view text) const {
    const std::size_t room = m_limit - line.text.size();
    line.isTooLong = line.isTooLong || text.size() > room;
    line.text += text.substr(0, room);
}

std::optional<LineReader::Line> LineReader::next() {
    Line line;
    bool isBegun = false;
    while (true) {
        const std::size_t length = pending().find('\n');
        append(line, pending().substr(0, length));
        isBegun = isBegun || m_start < m_end;
        if (length != std::string_view::npos) {
            m_start += length + 1;
            if (line.text.ends_with('\r')) {
                line.text.pop_back();
            }
            return line;
        }
        m_start = 0;
        m_end = m_file.read(m_block.data(), m_block.size());
        if (m_end == 0) {
            return isBegun ? std::optional(std::move(line)) : std::nullopt;
        }
    }
}
