#pragma once

#include "EReferenceSEC.h"
#include "Modulation.h"
#include "TxRfMaxPowerCapability.h"

/// Everything that the service already knows when it asks a calculator for a maximum power.
///
/// Powers in hundredths of a dBm, the compensation in hundredths of a dB. "Cut back" means that the
/// service has lowered the value by the cutback in force, if its caller asked for that.
struct CalculationData {
    EReferenceSEC rsec;                        ///< always Class2 for the ANSI market
    Modulation selectedMinModulation;          ///< lowest modulation that the operator selected
    Modulation selectedMaxModulation;          ///< highest modulation that the operator selected
    Modulation actualModulation;               ///< modulation for which the power is asked
    Modulation refMaxModulation;               ///< the same calculator's getMaxRefModulation()
    long pmaxSelectedMinModulation;            ///< Pmax at selectedMinModulation, cut back
    long pmaxSelectedMaxModulation;            ///< always 0; no calculator reads it
    long pmaxActualModulation;                 ///< Pmax at actualModulation, cut back
    long pmaxRefMaxModulation;                 ///< Pmax at refMaxModulation, never cut back
    long csPowerCompensation;                  ///< channel-spacing compensation, cut back
    TxRfMaxPowerCapability maxPowerCapability; ///< the radio's Pmax table
};
