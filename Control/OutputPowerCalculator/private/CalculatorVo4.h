#pragma once

#include "BoosterSteps.h"
#include "Calculator.h"
#include "DbTable.h"

/// The older radio-unit family: power offsets by modulation and RSEC relative to 256QAM, and the
/// rules of an external booster.
class CalculatorVo4 : public Calculator {
public:
    /// The one instance.
    static CalculatorVo4* getInstance();

    /// Always 256QAM: the family has one fixed reference.
    Modulation getMaxRefModulation(Modulation availableMaxModulation,
                                   Modulation selectedMaxModulation) override;

    /// @return 0; 2 above the booster's highest modulation; 32770 without a
    ///         table entry. `maxPower` is untouched by 2 and by a missing
    ///         offset; a missing booster entry leaves the power before the
    ///         booster in it.
    int getMaxPower(CalculationData data, long& maxPower, int boosterPresence, int boosterGain,
                    int boosterMaxInputPower, Modulation boosterMaxModulation) override;

    /// Builds the table of power offsets: 10 RSEC classes by 10 modulations, relative to 256QAM.
    static PowerOffsets initialize();

    /// Builds the booster's adjustments: 10 RSEC classes by 10 modulations.
    static BoosterAdjustments initializeBoosterAdjs();

    /// Builds the booster's band adjustments: 2 bands by 10 modulations.
    static BoosterBandAdjustments initializeBoosterBandAdjs();

private:
    CalculatorVo4() = default;

    static CalculatorVo4* s_instance;
};
