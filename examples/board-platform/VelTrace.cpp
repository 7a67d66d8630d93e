// Levelled traces. This template prints them; a board hands them to its own facility.
//
// - The library makes its trace objects when it is loaded, before main() and before the program's
// own
//   objects of static lifetime: constructor and destructor may not use those.
// - The library tests the level itself, inline, with the layout of VelTrace.h. A class with other
//   members, another order or another compiler's packing needs a library that was compiled with it.
// - Levels are set at any time and by any thread, so the threshold is atomic.
// - A header's texts are literals of the library, valid as long as it is loaded. The text of a
//   record is valid during the call only.
// - Nothing may be thrown: a trace has no answer to spoil.

#include "VelTrace.h"

#include <cstdio>

namespace {

/// One call of the C library writes a whole line, also beside other threads.
void print(const char* kind, int level, const TraceHeader& header, const std::string& text) {
    std::fprintf(stderr, "%d %s %s:%d %s: %s\n", level, kind, header.file, header.line,
                 header.function, text.c_str());
}

} // namespace

VelTrace::VelTrace(const char* channelName, int level, int headerOption)
    : m_channelName(channelName)
    , m_level(level)
    , m_headerOption(headerOption) {}

VelTrace::~VelTrace() = default;

void VelTrace::logMsg(int level, const TraceHeader& header, const std::string& text) {
    print("msg", level, header, text);
}

void VelTrace::logEnterMsg(int level, const TraceHeader& header, const std::string& text) {
    print("enter", level, header, text);
}
