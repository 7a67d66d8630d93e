#include "Trace.h"

#include <charconv>
#include <cstring>
#include <new>

TraceSource::TraceSource(const char* path)
    : m_trace("QOR.SPC.Calculator", 3, 256)
    , m_path(path) {}

void TraceSource::write(int level, const char* function, int line, const char* const* texts,
                        std::size_t count) {
    std::size_t size = 0;
    for (std::size_t i = 0; i < count; ++i) {
        size += std::strlen(texts[i]);
    }
    std::string text;
    try {
        text.reserve(size);
    } catch (const std::bad_alloc&) {
        // No answer fails for the sake of a trace, which goes without its text.
        count = 0;
    }
    for (std::size_t i = 0; i < count; ++i) {
        text += texts[i];
    }
    const TraceHeader header = {m_path, line, function};
    if (level == entry) {
        m_trace.logEnterMsg(TraceLevel::Detail, header, text);
    } else {
        m_trace.logMsg(level, header, text);
    }
}

namespace {

template <class Number>
void writeDigits(std::array<char, 24>& digits, Number number) {
    *std::to_chars(digits.data(), digits.data() + digits.size() - 1, number).ptr = '\0';
}

} // namespace

TraceNumber::TraceNumber(long number) {
    writeDigits(m_digits, number);
}

TraceNumber::TraceNumber(unsigned long number) {
    writeDigits(m_digits, number);
}
