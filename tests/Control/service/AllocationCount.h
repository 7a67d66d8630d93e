#pragma once

#include <cstddef>

/// Counts what the program takes by operator new. One thread at a time.
namespace AllocationCount {

/// Blocks taken since the program started, but for those taken elsewhere.
std::size_t taken();

/// While it lives the program is elsewhere, in a neighbour for example, and nothing is counted.
class Elsewhere {
public:
    Elsewhere();
    ~Elsewhere();
    Elsewhere(const Elsewhere&) = delete;
    Elsewhere& operator=(const Elsewhere&) = delete;
};

} // namespace AllocationCount
