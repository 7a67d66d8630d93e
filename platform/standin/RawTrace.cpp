#include "RawTrace.h"

#include "DeskTrace.h"
#include "ResultCode.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

namespace {

/// The record that this thread has opened and not yet closed.
thread_local TraceRecord openRecord{};

/// The code that a record is keyed by stands only in its text, as "code: " and a hexadecimal number
/// in the last line.
std::uint32_t codeIn(const std::string& text) {
    const std::string label = "code: ";
    const std::size_t place = text.rfind(label);
    if (place == std::string::npos) {
        return 0;
    }
    return static_cast<std::uint32_t>(
        std::strtoul(text.c_str() + place + label.size(), nullptr, 16));
}

} // namespace

int SPC_trace = 3;

int CPexTraceHandler_DmLevel2VtLevel(std::uint32_t code) {
    return ResultCode::isFailure(code) ? 1 : 5;
}

void VT_beginImpl(const int*, int level, const TraceHeader* header) {
    openRecord = {TraceRecord::Kind::Raw, level,        0, header->file, header->function,
                  header->line,           std::string()};
}

void VT_rawprintf(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    if (length <= 0) {
        return;
    }
    // Making room may throw: the arguments are not open meanwhile.
    std::string& text = openRecord.text;
    const std::size_t start = text.size();
    text.resize(start + static_cast<std::size_t>(length) + 1);
    va_start(arguments, format);
    std::vsnprintf(&text[start], static_cast<std::size_t>(length) + 1, format, arguments);
    va_end(arguments);
    text.pop_back();
}

void VT_endImpl() {
    openRecord.code = codeIn(openRecord.text);
    DeskTrace::getInstance().write(std::move(openRecord));
    openRecord = {};
}
