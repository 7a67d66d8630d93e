#pragma once

#include "Export.h"

#include <cstdint>
#include <string>

/// Reference spectral efficiency class (RSEC) of the link.
///
/// The numbers are not in the order of spectral efficiency (5LB and 5HB come after 6B): never
/// compare classes by "less than".
enum class EReferenceSEC : std::int32_t {
    Class2 = 0,
    Class4L = 1,
    Class4H = 2,
    Class5B = 3,
    Class6B = 4,
    Class5LB = 5,
    Class5HB = 6,
    Class6LB = 7,
    Class6HB = 8,
    Class7B = 9,
    UNDEFINED = 1000
};

/// Text of a class as traces show it: "2", "4L" ... "7B"; "UNDEFINED" for UNDEFINED and for every
/// value that no enumerator has.
QOR_EXPORT std::string convertRsecEnumToString(EReferenceSEC rsec);
