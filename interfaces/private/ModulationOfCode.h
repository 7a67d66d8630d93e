#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace Codes {

/// A code, its text, and the number of its modulation, which is that of the constellation's points.
struct CodeRow {
    std::int32_t code;
    const char* text;
    std::int32_t modulation;
};

/// The number of the undefined modulation.
inline constexpr std::int32_t undefinedModulation = 100000;

// One row for each code, a block for each modulation group. The ultra-strong coding of a square
// constellation is numbered with the group below it, because it sits between the two. There is no
// group 15, and the ultra-strong coding of 65536QAM is 143 although its group is 16.
// clang-format off
inline constexpr CodeRow codeRows[] = {
    // HALF_BPSK
    { 10, "HALF_BPSK_STRONG", 2},
    { 11, "HALF_BPSK", 2},
    { 12, "HALF_BPSK_LIGHT", 2},
    // BPSK
    { 20, "BPSK_STRONG", 2},
    { 21, "BPSK", 2},
    { 22, "BPSK_LIGHT", 2},
    // 4QAM
    { 23, "4QAM_ULTRA_STRONG", 4},
    { 30, "4QAM_STRONG", 4},
    { 31, "4QAM", 4},
    { 32, "4QAM_LIGHT", 4},
    // 16QAM
    { 33, "16QAM_ULTRA_STRONG", 16},
    { 40, "16QAM_STRONG", 16},
    { 41, "16QAM", 16},
    { 42, "16QAM_LIGHT", 16},
    // 32QAM
    { 50, "32QAM_STRONG", 32},
    { 51, "32QAM", 32},
    { 52, "32QAM_LIGHT", 32},
    // 64QAM
    { 53, "64QAM_ULTRA_STRONG", 64},
    { 60, "64QAM_STRONG", 64},
    { 61, "64QAM", 64},
    { 62, "64QAM_LIGHT", 64},
    // 128QAM
    { 70, "128QAM_STRONG", 128},
    { 71, "128QAM", 128},
    { 72, "128QAM_LIGHT", 128},
    // 256QAM
    { 73, "256QAM_ULTRA_STRONG", 256},
    { 80, "256QAM_STRONG", 256},
    { 81, "256QAM", 256},
    { 82, "256QAM_LIGHT", 256},
    // 512QAM
    { 90, "512QAM_STRONG", 512},
    { 91, "512QAM", 512},
    { 92, "512QAM_LIGHT", 512},
    // 1024QAM
    { 93, "1024QAM_ULTRA_STRONG", 1024},
    {100, "1024QAM_STRONG", 1024},
    {101, "1024QAM", 1024},
    {102, "1024QAM_LIGHT", 1024},
    // 2048QAM
    {110, "2048QAM_STRONG", 2048},
    {111, "2048QAM", 2048},
    {112, "2048QAM_LIGHT", 2048},
    // 4096QAM
    {113, "4096QAM_ULTRA_STRONG", 4096},
    {120, "4096QAM_STRONG", 4096},
    {121, "4096QAM", 4096},
    {122, "4096QAM_LIGHT", 4096},
    // 8192QAM
    {130, "8192QAM_STRONG", 8192},
    {131, "8192QAM", 8192},
    {132, "8192QAM_LIGHT", 8192},
    // 16384QAM
    {133, "16384QAM_ULTRA_STRONG", 16384},
    {140, "16384QAM_STRONG", 16384},
    {141, "16384QAM", 16384},
    {142, "16384QAM_LIGHT", 16384},
    // 65536QAM
    {143, "65536QAM_ULTRA_STRONG", 65536},
    {160, "65536QAM_STRONG", 65536},
    {161, "65536QAM", 65536},
    {162, "65536QAM_LIGHT", 65536},
};
// clang-format on

inline constexpr std::int32_t lowestCode = 10;
inline constexpr std::int32_t highestCode = 163;
inline constexpr std::size_t codeCount = highestCode - lowestCode + 1;

static_assert(std::size(codeRows) == 53, "a code is missing from the table or stands in it twice");
static_assert(codeCount == 154, "the codes are numbered from 10 to 163");

/// The modulations by code, the undefined one between the codes, so that a look-up is one index.
inline constexpr std::array<std::int32_t, codeCount> modulationsByCode = [] {
    std::array<std::int32_t, codeCount> modulations{};
    for (std::int32_t& modulation : modulations) {
        modulation = undefinedModulation;
    }
    for (const CodeRow& row : codeRows) {
        modulations[static_cast<std::size_t>(row.code - lowestCode)] = row.modulation;
    }
    return modulations;
}();

/// The number of a code's modulation, for code that asks for every code of an array.
inline std::int32_t modulationOf(std::int32_t code) {
    // A code below the lowest wraps to above all of them.
    const std::uint32_t place =
        static_cast<std::uint32_t>(code) - static_cast<std::uint32_t>(lowestCode);
    return place < codeCount ? modulationsByCode[place] : undefinedModulation;
}

} // namespace Codes
