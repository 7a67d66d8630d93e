#include "Trace.h"

#include <ostream>

TraceSource::TraceSource(const char* path)
    : m_trace("QOR.SPC.Calculator", 3, 256)
    , m_path(path) {}

void TraceSource::writeMessage(int level, const char* function, int line,
                               const std::ostringstream& text) {
    m_trace.logMsg(level, {m_path, line, function}, text.str());
}

void TraceSource::writeEntry(const char* function, int line, const std::ostringstream& text) {
    m_trace.logEnterMsg(TraceLevel::Detail, {m_path, line, function}, text.str());
}

TraceText::TraceText() = default;

TraceText::~TraceText() = default;

std::ostream& operator<<(std::ostream& stream, RsecText text) {
    return stream << convertRsecEnumToString(text.rsec);
}

std::ostream& operator<<(std::ostream& stream, CodeText text) {
    return stream << convertCodeAndModulationEnumToString(text.code);
}
