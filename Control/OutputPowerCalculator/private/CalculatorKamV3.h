#pragma once

#include "Calculator.h"

/// The third outdoor family: no offsets. The radio's Pmax at the actual modulation, without its
/// channel-spacing compensation, is capped by the Pmax of one low modulation that the RSEC chooses.
class CalculatorKamV3 : public Calculator {
public:
    /// The one instance.
    static CalculatorKamV3* getInstance();

    /// The highest available modulation, whatever is selected.
    Modulation getMaxRefModulation(Modulation availableMaxModulation,
                                   Modulation selectedMaxModulation) override;

    /// Never fails. An RSEC outside the ten classes leaves `maxPower` as it came and adds the
    /// compensation to it.
    int getMaxPower(CalculationData data, long& maxPower, int boosterPresence, int boosterGain,
                    int boosterMaxInputPower, Modulation boosterMaxModulation) override;

    int getCompensationForChannelSpacing(RadioChannel channel, EChannelSpacingType channelSpacing,
                                         long& compensation) const override;

private:
    CalculatorKamV3() = default;

    static CalculatorKamV3* s_instance;
};
