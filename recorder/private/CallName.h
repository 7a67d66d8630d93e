#pragma once

#include "Tape.h"

/// The name of an operation, as radio files have it.
inline const char* nameOf(Call call) {
    static const char* const callNames[] = {"initialize",
                                            "setPowerCutback",
                                            "setTemporaryPowerCutback",
                                            "setTemperature",
                                            "setBoosterPresence",
                                            "calculatePowerCapabilities",
                                            "calculateAdmodPowerCapabilities",
                                            "findPminPmax",
                                            "getUnrestrictedPmax",
                                            "getMinMaxOutputPowerVsModulationArray"};
    return callNames[static_cast<std::size_t>(call)];
}
