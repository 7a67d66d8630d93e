#include "Trace.h"

TraceSource::TraceSource(const char* path)
    : m_trace("QOR.SPC.Calculator", 3, 256)
    , m_path(path) {}

void TraceSource::message(int level, const char* function, int line,
                          const std::ostringstream& text) {
    m_trace.logMsg(level, {m_path, line, function}, text.str());
}

void TraceSource::enter(const char* function, int line, const std::ostringstream& text) {
    m_trace.logEnterMsg(TraceLevel::Detail, {m_path, line, function}, text.str());
}

TraceText::TraceText() = default;

TraceText::~TraceText() = default;
