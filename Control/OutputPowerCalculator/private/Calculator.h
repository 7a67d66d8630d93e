#pragma once

#include "CalculationData.h"
#include "EChannelSpacingType.h"
#include "Modulation.h"
#include "RadioChannel.h"

/// The power rules of one radio hardware family: offsets, compensations and bounds.
///
/// Each family is one class with one instance, which its static getInstance() creates on the first
/// call and nobody ever destroys. getInstance() takes no lock: call it from one thread first. The
/// instance has no state, and a family's tables are constants.
class Calculator {
public:
    Calculator() = default;
    Calculator(const Calculator&) = delete;
    Calculator& operator=(const Calculator&) = delete;
    virtual ~Calculator();

    /// The modulation whose Pmax is the reference for the family's power offsets.
    /// @param availableMaxModulation highest modulation that the radio makes available.
    /// @param selectedMaxModulation highest modulation that the operator selected.
    virtual Modulation getMaxRefModulation(Modulation availableMaxModulation,
                                           Modulation selectedMaxModulation) = 0;

    /// Maximum output power at data.actualModulation, in hundredths of a dBm.
    ///
    /// The booster's arguments are as IOutputPowerCalculator::setBoosterPresence() took them;
    /// families without a booster ignore them.
    /// @param[in,out] maxPower written on success; each family says what else may happen to it.
    /// @return 0; 2 if the family does not apply to the modulation; 32768 and more on a failure, of
    ///         which the calculator has traced why.
    virtual int getMaxPower(CalculationData data, long& maxPower, int boosterPresence,
                            int boosterGain, int boosterMaxInputPower,
                            Modulation boosterMaxModulation) = 0;

    /// Power compensation for a channel spacing on a radio channel, in hundredths of a dB.
    ///
    /// This body serves the families that need none: compensation 0.
    /// @param[out] compensation untouched on failure.
    /// @return 0, also for a spacing without an entry; 32768 if the calibration cannot be read.
    virtual int getCompensationForChannelSpacing(RadioChannel channel,
                                                 EChannelSpacingType channelSpacing,
                                                 long& compensation) const;
};
