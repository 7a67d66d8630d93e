#include "ModulationAndCoding.h"

#include <array>
#include <cstddef>
#include <iterator>

namespace {

struct CodeRow {
    std::int32_t code;
    const char* text;
    Modulation modulation;
};

// One row for each code, a block for each modulation group. The ultra-strong coding of a square
// constellation is numbered with the group below it, because it sits between the two. There is no
// group 15, and the ultra-strong coding of 65536QAM is 143 although its group is 16.
// clang-format off
constexpr CodeRow codeRows[] = {
    // HALF_BPSK
    { 10, "HALF_BPSK_STRONG", Modulation::BPSK},
    { 11, "HALF_BPSK", Modulation::BPSK},
    { 12, "HALF_BPSK_LIGHT", Modulation::BPSK},
    // BPSK
    { 20, "BPSK_STRONG", Modulation::BPSK},
    { 21, "BPSK", Modulation::BPSK},
    { 22, "BPSK_LIGHT", Modulation::BPSK},
    // 4QAM
    { 23, "4QAM_ULTRA_STRONG", Modulation::QAM4},
    { 30, "4QAM_STRONG", Modulation::QAM4},
    { 31, "4QAM", Modulation::QAM4},
    { 32, "4QAM_LIGHT", Modulation::QAM4},
    // 16QAM
    { 33, "16QAM_ULTRA_STRONG", Modulation::QAM16},
    { 40, "16QAM_STRONG", Modulation::QAM16},
    { 41, "16QAM", Modulation::QAM16},
    { 42, "16QAM_LIGHT", Modulation::QAM16},
    // 32QAM
    { 50, "32QAM_STRONG", Modulation::QAM32},
    { 51, "32QAM", Modulation::QAM32},
    { 52, "32QAM_LIGHT", Modulation::QAM32},
    // 64QAM
    { 53, "64QAM_ULTRA_STRONG", Modulation::QAM64},
    { 60, "64QAM_STRONG", Modulation::QAM64},
    { 61, "64QAM", Modulation::QAM64},
    { 62, "64QAM_LIGHT", Modulation::QAM64},
    // 128QAM
    { 70, "128QAM_STRONG", Modulation::QAM128},
    { 71, "128QAM", Modulation::QAM128},
    { 72, "128QAM_LIGHT", Modulation::QAM128},
    // 256QAM
    { 73, "256QAM_ULTRA_STRONG", Modulation::QAM256},
    { 80, "256QAM_STRONG", Modulation::QAM256},
    { 81, "256QAM", Modulation::QAM256},
    { 82, "256QAM_LIGHT", Modulation::QAM256},
    // 512QAM
    { 90, "512QAM_STRONG", Modulation::QAM512},
    { 91, "512QAM", Modulation::QAM512},
    { 92, "512QAM_LIGHT", Modulation::QAM512},
    // 1024QAM
    { 93, "1024QAM_ULTRA_STRONG", Modulation::QAM1024},
    {100, "1024QAM_STRONG", Modulation::QAM1024},
    {101, "1024QAM", Modulation::QAM1024},
    {102, "1024QAM_LIGHT", Modulation::QAM1024},
    // 2048QAM
    {110, "2048QAM_STRONG", Modulation::QAM2048},
    {111, "2048QAM", Modulation::QAM2048},
    {112, "2048QAM_LIGHT", Modulation::QAM2048},
    // 4096QAM
    {113, "4096QAM_ULTRA_STRONG", Modulation::QAM4096},
    {120, "4096QAM_STRONG", Modulation::QAM4096},
    {121, "4096QAM", Modulation::QAM4096},
    {122, "4096QAM_LIGHT", Modulation::QAM4096},
    // 8192QAM
    {130, "8192QAM_STRONG", Modulation::QAM8192},
    {131, "8192QAM", Modulation::QAM8192},
    {132, "8192QAM_LIGHT", Modulation::QAM8192},
    // 16384QAM
    {133, "16384QAM_ULTRA_STRONG", Modulation::QAM16384},
    {140, "16384QAM_STRONG", Modulation::QAM16384},
    {141, "16384QAM", Modulation::QAM16384},
    {142, "16384QAM_LIGHT", Modulation::QAM16384},
    // 65536QAM
    {143, "65536QAM_ULTRA_STRONG", Modulation::QAM65536},
    {160, "65536QAM_STRONG", Modulation::QAM65536},
    {161, "65536QAM", Modulation::QAM65536},
    {162, "65536QAM_LIGHT", Modulation::QAM65536},
};
// clang-format on

constexpr std::int32_t lowestCode = 10;
constexpr std::int32_t highestCode = 163;
constexpr std::size_t codeCount = highestCode - lowestCode + 1;

static_assert(std::size(codeRows) == 53, "a code is missing from the table or stands in it twice");
static_assert(codeCount == 154, "the codes are numbered from 10 to 163");

constexpr CodeRow undefinedRow = {ModulationAndCoding::UNDEFINED, "UNDEFINED",
                                  Modulation::UNDEFINED};

/// The rows by their code, so that a look-up is one index.
constexpr std::array<CodeRow, codeCount> rowsByCode = [] {
    std::array<CodeRow, codeCount> rows{};
    for (CodeRow& row : rows) {
        row = undefinedRow;
    }
    for (const CodeRow& row : codeRows) {
        rows[static_cast<std::size_t>(row.code - lowestCode)] = row;
    }
    return rows;
}();

const CodeRow& rowOf(const ModulationAndCoding& modulationAndCoding) {
    const std::int32_t code = modulationAndCoding.code;
    if (code < lowestCode || code > highestCode) {
        return undefinedRow;
    }
    return rowsByCode[static_cast<std::size_t>(code - lowestCode)];
}

} // namespace

std::string convertCodeAndModulationEnumToString(const ModulationAndCoding& modulationAndCoding) {
    return rowOf(modulationAndCoding).text;
}

Modulation convertCodeToModulation(const ModulationAndCoding& modulationAndCoding) {
    return rowOf(modulationAndCoding).modulation;
}
