#pragma once

#include <cstddef>

/// Counts what the whole program takes from the heap: it stands in front of the C library's
/// allocator.
///
/// Counted are blocks, and the bytes that the allocator spends on them, its own header included.
/// One thread at a time.
namespace HeapCount {

struct Use {
    std::size_t blocks = 0;
    std::size_t bytes = 0;
};

/// What is taken now.
Use held();

/// The most bytes that were held at once, and all blocks taken, since the last restart().
Use peak();

/// Forgets the past: peak() counts from here.
void restart();

/// What was taken before main() and is not the C++ runtime's or the loader's own. To be asked first
/// thing in main().
Use atLoad();

} // namespace HeapCount
