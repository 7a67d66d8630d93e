#pragma once

/// Marks what is counted, for whoever counts: callgrind here, the emulator's counting plugin on the
/// board.
namespace CountedRegion {

#ifdef __arm__

inline void begin(const char*) {
    asm volatile("mov r11, r11" ::: "memory");
}

inline void end(const char*) {
    asm volatile("mov r12, r12" ::: "memory");
}

#else

} // namespace CountedRegion

#include <valgrind/callgrind.h>

namespace CountedRegion {

inline void begin(const char*) {
    CALLGRIND_ZERO_STATS;
    CALLGRIND_TOGGLE_COLLECT;
}

/// @param name what the counts are written under.
inline void end(const char* name) {
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(name);
}

#endif

} // namespace CountedRegion
