#pragma once

#include <cstdint>

/// Channel spacing of the radio channel. The value is the spacing in whole MHz, as messages print
/// it ("28MHz") and as the stored compensation arrays and the minimum-power offsets key it.
///
/// The library never switches on the enumerators: any other number travels through unchanged. A
/// fractional spacing stands at the nearest whole number that is free.
enum class EChannelSpacingType : std::int32_t {
    MHz3p5 = 3,   ///< ETSI
    MHz3p75 = 4,  ///< ANSI
    MHz5 = 5,     ///< ANSI
    MHz7 = 7,     ///< ETSI
    MHz10 = 10,   ///< ANSI
    MHz14 = 14,   ///< ETSI
    MHz20 = 20,   ///< ANSI
    MHz27p5 = 27, ///< ETSI; 28 is taken
    MHz28 = 28,   ///< ETSI
    MHz29 = 29,   ///< ETSI
    MHz30 = 30,   ///< ETSI and ANSI
    MHz40 = 40,   ///< ETSI and ANSI
    MHz50 = 50,   ///< ANSI
    MHz56 = 56,   ///< ETSI
    MHz60 = 60,   ///< ANSI
    MHz80 = 80,   ///< ANSI
    MHz112 = 112  ///< ETSI
};
