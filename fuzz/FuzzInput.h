#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// The fuzzer's bytes as a source of decisions.
///
/// Choices are taken from the front, one byte each, and free numbers from the back, four bytes
/// each. A choice that changes its mind about a number therefore leaves every later choice as it
/// was, so that one changed byte changes one thing. When the bytes are used up every decision is 0.
class FuzzInput {
public:
    FuzzInput(const std::uint8_t* bytes, std::size_t size)
        : m_next(bytes)
        , m_end(bytes + size) {}

    bool isUsedUp() const { return m_next == m_end; }

    unsigned choice() { return isUsedUp() ? 0U : *m_next++; }

    /// 0 to count - 1; at most 256 different values.
    std::size_t below(std::size_t count) { return choice() % count; }

    /// True for this many of the 256 values of a byte, and not for 0.
    bool once(unsigned in256) { return choice() > 255 - in256; }

    bool flag() { return (choice() & 1U) != 0; }

    std::uint32_t number() {
        std::uint32_t value = 0;
        for (int byte = 0; byte < 4; ++byte) {
            value = (value << 8U) | (isUsedUp() ? 0U : *--m_end);
        }
        return value;
    }

    std::int32_t signedNumber() { return static_cast<std::int32_t>(number()); }

    template <class Value, std::size_t count>
    const Value& pick(const std::array<Value, count>& values) {
        return values[below(count)];
    }

private:
    const std::uint8_t* m_next;
    const std::uint8_t* m_end;
};
