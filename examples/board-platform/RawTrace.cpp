// Raw traces, keyed by a result code. They have names of C, which are linked whatever the arguments
// are.
//
// - The caller compares SPC_trace with the code's level itself and begins no record that is off.
// - Begin, text and end come on one thread; other threads may trace between them.
// - The header is valid until the record ends, texts and arguments during their call only.

#include "RawTrace.h"

#include "ResultCode.h"

#include <cstdarg>
#include <cstdio>

namespace {

/// What this thread has begun. A line that is too long is cut: a trace takes nothing from the heap.
struct Record {
    char text[512];
    std::size_t size;
};
thread_local Record record;

} // namespace

int SPC_trace = 3;

int CPexTraceHandler_DmLevel2VtLevel(std::uint32_t code) {
    return ResultCode::isFailure(code) ? 1 : 5;
}

void VT_beginImpl(const int*, int level, const TraceHeader* header) {
    record.size = 0;
    VT_rawprintf("%d raw %s:%d %s: ", level, header->file, header->line, header->function);
}

void VT_rawprintf(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::size_t room = sizeof record.text - record.size;
    const int length = std::vsnprintf(record.text + record.size, room, format, arguments);
    va_end(arguments);
    if (length > 0) {
        const auto wanted = static_cast<std::size_t>(length);
        record.size += wanted < room ? wanted : room - 1;
    }
}

void VT_endImpl() {
    std::fputs(record.text, stderr);
}
