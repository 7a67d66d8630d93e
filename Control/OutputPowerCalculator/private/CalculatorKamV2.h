#pragma once

#include "Calculator.h"
#include "DbTable.h"

/// The second outdoor family: the rules of the first (CalculatorKam) with offsets of its own. No
/// product number leads here yet; the family is complete, so that one can be mapped to it.
class CalculatorKamV2 : public Calculator {
public:
    /// The one instance.
    static CalculatorKamV2* getInstance();

    /// The highest available modulation, whatever is selected.
    Modulation getMaxRefModulation(Modulation availableMaxModulation,
                                   Modulation selectedMaxModulation) override;

    /// See offsetMaxPower(). Without effect: the booster arguments.
    int getMaxPower(CalculationData data, long& maxPower, int boosterPresence, int boosterGain,
                    int boosterMaxInputPower, Modulation boosterMaxModulation) override;

    int getCompensationForChannelSpacing(RadioChannel channel, EChannelSpacingType channelSpacing,
                                         long& compensation) const override;

    /// Builds the table of power offsets: 10 RSEC classes by 13 modulations, relative to 256QAM.
    static PowerOffsets initialize();

private:
    CalculatorKamV2() = default;

    static CalculatorKamV2* s_instance;
};
