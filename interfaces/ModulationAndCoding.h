#pragma once

#include "Export.h"
#include "Modulation.h"

#include <cstdint>
#include <string>

/// One step of adaptive coding and modulation: ten times a modulation group plus a coding strength
/// (0 strong, 1 normal, 2 light, 3 the ultra-strong coding of the next square constellation).
///
/// Numeric order is the order of increasing spectral efficiency, so codes are compared as numbers.
/// The groups run from 1 (half-rate BPSK) to 14 (16384QAM) and then jump to 16 (65536QAM).
struct ModulationAndCoding {
    /// The code that stands for "nothing selected"; also the text of it and of any unknown code.
    static constexpr std::int32_t UNDEFINED = 163;

    std::int32_t code; ///< 10 to 162, or UNDEFINED

    /// Whether a code comes before another in spectral efficiency.
    friend constexpr bool operator<(const ModulationAndCoding& left,
                                    const ModulationAndCoding& right) {
        return left.code < right.code;
    }
    /// Whether two codes are equal.
    friend constexpr bool operator==(const ModulationAndCoding& left,
                                     const ModulationAndCoding& right) {
        return left.code == right.code;
    }
    /// Whether two codes differ.
    friend constexpr bool operator!=(const ModulationAndCoding& left,
                                     const ModulationAndCoding& right) {
        return !(left == right);
    }
};

static_assert(sizeof(ModulationAndCoding) == 4, "neighbours exchange the record as four bytes");

/// Text of a code as traces show it ("HALF_BPSK_STRONG", "4QAM", "65536QAM_LIGHT" ...);
/// "UNDEFINED" for 163 and for every number that is no code.
QOR_EXPORT std::string
convertCodeAndModulationEnumToString(const ModulationAndCoding& modulationAndCoding);

/// Modulation that a code uses; Modulation::UNDEFINED for 163, for numbers between the codes and
/// for everything outside 10 to 163.
QOR_EXPORT Modulation convertCodeToModulation(const ModulationAndCoding& modulationAndCoding);
