#pragma once

#include "Calculator.h"
#include "DbTable.h"

/// The first outdoor family: power offsets by modulation and RSEC relative to 256QAM, bounded by
/// the radio's Pmax, with a calibrated channel-spacing compensation.
class CalculatorKam : public Calculator {
public:
    /// The one instance.
    static CalculatorKam* getInstance();

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
    CalculatorKam() = default;

    static CalculatorKam* s_instance;
};
