#include "RadioLine.h"

#include "AnalysisError.h"
#include "Input.h"
#include "RadioFileReader.h"

#include <cstddef>

RadioLine::RadioLine(const LineReader::Line& line)
    : m_text(line.text)
    , m_isTooLong(line.isTooLong) {
    // Inside a document a tab is nothing special.
    const std::size_t tab = m_text.starts_with('{') ? std::string::npos : m_text.find('\t');
    if (tab != std::string::npos) {
        m_id = m_text.substr(0, tab);
        m_text.erase(0, tab + 1);
    }
    if (!m_text.starts_with('{') && !m_isTooLong) {
        m_path = m_text;
    }
}

std::string RadioLine::text() const {
    const auto fail = [](const std::string& why) -> std::string {
        throw AnalysisError(Outcome::OtherTrouble, why);
    };
    if (m_isTooLong) {
        return fail("longer than " + std::to_string(RadioFileReader::maxSize) + " bytes");
    }
    if (m_text.empty()) {
        return fail("an empty line");
    }
    if (m_path.empty()) {
        return m_text;
    }
    if (m_path.find('\0') != std::string::npos) {
        return fail("cannot be read: a path holds no NUL");
    }
    // Standard input is not for radio files here.
    return readText(m_path == standardInput ? "./-" : m_path);
}
