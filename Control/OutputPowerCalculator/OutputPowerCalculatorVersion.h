#pragma once

#include "Export.h"

/// @file
/// The version of the library: of its headers, for who compiles, and of the one that is loaded, for
/// who runs. A host may be compiled with an older one than it meets; docs/reference/abi.md of the
/// sources says what a number promises.

/// Moves when callers have to be compiled anew.
#define QOR_OUTPUT_POWER_CALCULATOR_VERSION_MAJOR 1
/// Moves when something was added.
#define QOR_OUTPUT_POWER_CALCULATOR_VERSION_MINOR 0
/// Moves when nothing but the inside has changed.
#define QOR_OUTPUT_POWER_CALCULATOR_VERSION_PATCH 0

/// The version of these headers as one number, for comparisons: 1.2.3 is 10203.
#define QOR_OUTPUT_POWER_CALCULATOR_VERSION                                                        \
    (QOR_OUTPUT_POWER_CALCULATOR_VERSION_MAJOR * 10000 +                                           \
     QOR_OUTPUT_POWER_CALCULATOR_VERSION_MINOR * 100 + QOR_OUTPUT_POWER_CALCULATOR_VERSION_PATCH)

extern "C" {

/// The version of the library that is loaded, as one number. It has a name of C, so that a host
/// that opens the library at run time finds it before all else.
QOR_EXPORT int qorOutputPowerCalculatorVersion(void);
}
