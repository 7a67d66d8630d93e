#pragma once

#include "BoosterSteps.h"
#include "Calculator.h"
#include "DbTable.h"

/// The newer radio-unit family: power offsets by modulation and RSEC relative to the selected
/// maximum modulation, and the rules of an external booster.
class CalculatorVo5 : public Calculator {
public:
    /// The one instance.
    static CalculatorVo5* getInstance();

    /// The selected maximum modulation, but never more than 4096QAM.
    Modulation getMaxRefModulation(Modulation availableMaxModulation,
                                   Modulation selectedMaxModulation) override;

    /// @return 0; 2 for an undefined modulation, above the selected maximum or above the booster's
    ///         highest modulation; 32770 without a table entry. `maxPower` is untouched by 2 and by
    ///         a missing offset; a missing booster entry leaves the power before the booster in it.
    int getMaxPower(CalculationData data, long& maxPower, int boosterPresence, int boosterGain,
                    int boosterMaxInputPower, Modulation boosterMaxModulation) override;

    /// Builds the table of power offsets: for each reference modulation from 128QAM to 16384QAM
    /// 10 RSEC classes by the modulations from 4QAM up to the reference, 680 in all.
    static PowerOffsets initialize();

    /// Builds the booster's adjustments: 10 RSEC classes by 12 modulations.
    static BoosterAdjustments initializeBoosterAdjs();

    /// Builds the booster's band adjustments: 2 bands by 12 modulations.
    static BoosterBandAdjustments initializeBoosterBandAdjs();

private:
    CalculatorVo5() = default;

    static CalculatorVo5* s_instance;
};
