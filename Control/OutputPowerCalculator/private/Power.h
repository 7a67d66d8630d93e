#pragma once

#include <cstdint>

/// Arithmetic of powers and offsets, in hundredths of a dB.
///
/// They are signed 32-bit numbers that wrap, as on the board, where a `long` has 32 bits. Computing
/// them in unsigned 32 bits keeps that defined for every input, and the same where `long` is wider.
namespace Power {

/// Whole decibels of a family table to hundredths of a dB.
constexpr int fromDb(int dB) {
    return 100 * dB;
}

constexpr long fromBits(std::uint32_t bits) {
    return static_cast<std::int32_t>(bits);
}

constexpr long add(long left, long right) {
    return fromBits(static_cast<std::uint32_t>(left) + static_cast<std::uint32_t>(right));
}

constexpr long subtract(long left, long right) {
    return fromBits(static_cast<std::uint32_t>(left) - static_cast<std::uint32_t>(right));
}

/// A cutback is unsigned: one of 2^31 and more wraps around as well.
constexpr long cutBack(long power, unsigned long cutback) {
    return fromBits(static_cast<std::uint32_t>(power) - static_cast<std::uint32_t>(cutback));
}

} // namespace Power
