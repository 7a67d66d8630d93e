#include "VelTrace.h"

#include "DeskTrace.h"

namespace {

void write(TraceRecord::Kind kind, int level, const TraceHeader& header, const std::string& text) {
    DeskTrace::getInstance().write(
        {kind, level, 0, header.file, header.function, header.line, text});
}

} // namespace

VelTrace::VelTrace(const char* channelName, int level, int headerOption)
    : m_channelName(channelName)
    , m_level(level)
    , m_headerOption(headerOption) {
    DeskTrace::getInstance().add(*this);
}

VelTrace::~VelTrace() {
    DeskTrace::getInstance().remove(*this);
}

// NOLINTBEGIN(readability-convert-member-functions-to-static): the platform's contract has them so.
void VelTrace::logMsg(int level, const TraceHeader& header, const std::string& text) {
    write(TraceRecord::Kind::Message, level, header, text);
}

void VelTrace::logEnterMsg(int level, const TraceHeader& header, const std::string& text) {
    write(TraceRecord::Kind::Enter, level, header, text);
}
// NOLINTEND(readability-convert-member-functions-to-static)
