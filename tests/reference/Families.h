#pragma once

#include "Types.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace reference {

enum class Family {
    Kam,
    KamV2,
    KamV3,
    Vo4,
    Vo5
};

// What a calculator is told. Powers in hundredths of a dB or dBm.
struct CalculationInput {
    std::int32_t rsec = 0;
    std::int32_t selectedMin = 0;
    std::int32_t selectedMax = 0;
    std::int32_t actual = 0;
    std::int32_t refMax = 0;
    std::int32_t pmaxSelectedMin = 0;
    std::int32_t pmaxActual = 0;
    std::int32_t pmaxRefMax = 0;
    std::int32_t csPowerCompensation = 0;
    std::vector<std::int32_t> pmaxTable; // pairs (modulation, power)
    std::int32_t pmaxCount = 0;          // integers of the table that count
};

struct Booster {
    std::int32_t presence = 0;
    std::int32_t gain = 0;
    std::int32_t maxInputPower = 0;
    std::int32_t maxModulation = 0;
};

struct PowerAnswer {
    std::uint32_t code = 0;
    std::int32_t maxPower = 0;
    Trace trace;
};

struct CompensationAnswer {
    std::uint32_t code = 0;
    std::int32_t compensation = 0;
    Trace trace;
};

struct ModulationAnswer {
    std::int32_t modulation = 0;
    Trace trace;
};

// The named stored variables: a single value is a list of one.
using StoredVariables = std::map<std::string, std::vector<std::int32_t>>;

ModulationAnswer getMaxRefModulation(Family family, std::int32_t availableMax,
                                     std::int32_t selectedMax);

// `vo5TablesBuilt` says whether the newer radio-unit family has already been asked for a power in
// this process: its table builder leaves an entry trace, once.
PowerAnswer getMaxPower(Family family, const CalculationInput& data, std::int32_t maxPowerOnEntry,
                        const Booster& booster, bool& vo5TablesBuilt);

CompensationAnswer getCompensationForChannelSpacing(Family family, std::uint32_t channel,
                                                    std::int32_t channelSpacing,
                                                    std::int32_t compensationOnEntry,
                                                    const StoredVariables& variables);

} // namespace reference
