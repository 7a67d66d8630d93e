#pragma once

#include "reference/Decisions.h"

#include <cstddef>
#include <cstdint>

/// The fuzzer's bytes as a source of decisions.
///
/// Choices are taken from the front, one byte each, and free numbers from the back, four bytes
/// each. A choice that changes its mind about a number therefore leaves every later choice as it
/// was, so that one changed byte changes one thing. When the bytes are used up every decision is
/// the usual one, that of a byte 0.
class FuzzInput : public reference::Decisions {
public:
    FuzzInput(const std::uint8_t* bytes, std::size_t size)
        : m_next(bytes)
        , m_end(bytes + size) {}

    bool areUsedUp() const override { return m_next == m_end; }

    unsigned choice() { return areUsedUp() ? 0U : *m_next++; }

    std::uint64_t below(std::uint64_t count) override {
        return (count <= 256 ? choice() : number()) % count;
    }

    bool chance(std::uint64_t percent) override {
        const std::uint64_t drawn = choice() * 100U / 256U;
        return percent < 50 ? drawn >= 100 - percent : drawn < percent;
    }

    bool anything() override { return chance(25); }

    std::uint32_t number() {
        std::uint32_t value = 0;
        for (int byte = 0; byte < 4; ++byte) {
            value = (value << 8U) | (areUsedUp() ? 0U : *--m_end);
        }
        return value;
    }

private:
    const std::uint8_t* m_next;
    const std::uint8_t* m_end;
};
