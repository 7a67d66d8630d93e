#include "LineReader.h"

#include "AnalysisError.h"

#include <utility>

LineReader::LineReader(const std::string& path, std::size_t limit, int output)
    : m_name(inputName(path))
    , m_file(path, InputFile::Growth::IsLeftOut)
    , m_limit(limit) {
    if (m_file.isSameAs(output)) {
        throw AnalysisError(Outcome::OtherTrouble,
                            m_name + ": the answers would be added to it, and be read as "
                                     "lines; let them go to another file");
    }
}

void LineReader::append(std::string_view text) {
    const std::size_t room = m_limit - m_begun.text.size();
    m_begun.isTooLong = m_begun.isTooLong || text.size() > room;
    m_begun.text += text.substr(0, room);
    m_isBegun = true;
}

void LineReader::readOn() {
    if (m_start < m_end) {
        append(pending());
    }
    m_start = 0;
    m_end = m_file.read(m_block.data(), m_block.size());
    m_isAtEnd = m_end == 0;
}

bool LineReader::isReady() {
    while (!m_isAtEnd && !holdsLine()) {
        if (!m_file.isReady()) {
            return false;
        }
        readOn();
    }
    return true;
}

void LineReader::dropMark() {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (!std::exchange(m_isFirst, false)) {
        return;
    }
    if (m_begun.text.starts_with(byteOrderMark)) {
        m_begun.text.erase(0, byteOrderMark.size());
    }
    if (m_begun.text.starts_with("\xFF\xFE") || m_begun.text.starts_with("\xFE\xFF")) {
        throw AnalysisError(Outcome::OtherTrouble,
                            m_name + ": the text is UTF-16; save it as UTF-8");
    }
}

std::optional<LineReader::Line> LineReader::next() {
    while (!m_isAtEnd && !holdsLine()) {
        readOn();
    }
    if (holdsLine()) {
        const std::size_t length = pending().find('\n');
        append(pending().substr(0, length));
        m_start += length + 1;
        if (m_begun.text.ends_with('\r')) {
            m_begun.text.pop_back();
        }
    } else if (!m_isBegun) {
        return std::nullopt;
    }
    dropMark();
    m_isBegun = false;
    return std::exchange(m_begun, Line());
}
