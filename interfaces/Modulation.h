#pragma once

#include "Export.h"

#include <cstdint>
#include <iosfwd>
#include <string>

/// Modulation of the radio link. The value is the number of constellation points (CW and UNDEFINED
/// apart), so a higher modulation is a larger number and UNDEFINED compares above every real one:
/// minima and maxima of modulations rely on that. There is no 8-point and no 32768-point value.
enum class Modulation : std::int32_t {
    CW = 0,
    BPSK = 2,
    QAM4 = 4,
    QAM16 = 16,
    QAM32 = 32,
    QAM64 = 64,
    QAM128 = 128,
    QAM256 = 256,
    QAM512 = 512,
    QAM1024 = 1024,
    QAM2048 = 2048,
    QAM4096 = 4096,
    QAM8192 = 8192,
    QAM16384 = 16384,
    QAM65536 = 65536,
    /// No answer. As a limit it means "no limit", because it lies above every modulation.
    UNDEFINED = 100000
};

/// Text of a modulation as traces show it: "CW", "BPSK", "4QAM" ... "65536QAM"; "UNDEFINED" for
/// UNDEFINED and for every value that no enumerator has.
QOR_EXPORT std::string convertAcmEnumToString(Modulation modulation);

/// Writes the text of convertAcmEnumToString().
QOR_EXPORT std::ostream& operator<<(std::ostream& stream, Modulation modulation);
