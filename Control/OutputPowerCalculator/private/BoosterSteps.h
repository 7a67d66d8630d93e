#pragma once

#include "CalculationData.h"
#include "DenseTable.h"
#include "ResultCode.h"

#include <map>
#include <tuple>

class TraceSource;

/// What a booster adds, in hundredths of a dB, by RSEC and modulation.
using BoosterAdjustments = std::map<std::tuple<EReferenceSEC, Modulation>, int>;

/// What a booster's band adds, in hundredths of a dB, by band (0 or 1) and modulation.
using BoosterBandAdjustments = std::map<std::tuple<int, Modulation>, int>;

/// The same as getMaxPower() looks them up.
struct BoosterTables {
    DenseTable<rsecCount> adjustments;
    DenseTable<bandCount> bandAdjustments;
};

/// An external booster, as the service passes it on.
struct Booster {
    int presence;             ///< not 0: there is one; 7 selects band 1, everything else band 0
    int gain;                 ///< in hundredths of a dB
    int maxInputPower;        ///< in hundredths of a dBm
    Modulation maxModulation; ///< highest modulation that it carries

    bool isPresent() const { return presence != 0; }
    bool isTooHigh(Modulation modulation) const {
        return isPresent() && modulation > maxModulation;
    }
};

/// applyBooster() with one.
int applyPresentBooster(TraceSource& trace, const BoosterTables& tables,
                        const CalculationData& data, Booster booster, long& maxPower);

/// The last steps of getMaxPower() of the radio-unit families: turns the power without a booster
/// into the radio's own output power at the booster's input.
/// @param[in,out] maxPower the power without a booster; stays that if a table has no entry.
/// @return 0, also without a booster; 32770 if a table has no entry.
inline int applyBooster(TraceSource& trace, const BoosterTables& tables,
                        const CalculationData& data, Booster booster, long& maxPower) {
    return booster.isPresent() ? applyPresentBooster(trace, tables, data, booster, maxPower)
                               : static_cast<int>(ResultCode::Success);
}
