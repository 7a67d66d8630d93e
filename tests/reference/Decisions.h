#pragma once

#include <cstdint>

namespace reference {

// What chooses when a radio file is made up: a random engine, or a fuzzer's bytes.
class Decisions {
public:
    Decisions() = default;
    Decisions(const Decisions&) = delete;
    Decisions& operator=(const Decisions&) = delete;
    virtual ~Decisions() = default;

    // 0 to count - 1.
    virtual std::uint64_t below(std::uint64_t count) = 0;

    virtual bool chance(std::uint64_t percent) = 0;

    // Whether to take anything at all where one of a few odd values is asked for.
    virtual bool anything() = 0;

    // Whether there is nothing left to decide with, so that no more requests are worth while.
    virtual bool areUsedUp() const = 0;
};

} // namespace reference
