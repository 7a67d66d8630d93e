#pragma once

#include "CalculationData.h"
#include "DenseTable.h"

class TraceSource;

/// The modulation columns of the tables of the first two outdoor families.
constexpr std::array<Modulation, 13> outdoorModulations = {
    Modulation::BPSK,    Modulation::QAM4,    Modulation::QAM16,   Modulation::QAM32,
    Modulation::QAM64,   Modulation::QAM128,  Modulation::QAM256,  Modulation::QAM512,
    Modulation::QAM1024, Modulation::QAM2048, Modulation::QAM4096, Modulation::QAM8192,
    Modulation::QAM16384};

/// The offsets of an outdoor family as getMaxPower() looks them up: all are relative to 256QAM.
using OutdoorOffsets = DenseOffsets<Modulation::QAM256, Modulation::QAM256>;

/// getMaxPower() of the first two outdoor families, which differ in their offsets alone.
///
/// The power comes from the Pmax at the reference modulation and the offsets of the actual
/// modulation relative to it. It is bounded by what the same rule gives for the selected minimum
/// modulation and by the radio's own Pmax at both, so that under adaptive modulation the lowest
/// selected modulation bounds every higher one.
/// @param[out] maxPower untouched on failure.
/// @return 0; 32776 if there is no offset for the RSEC and the actual modulation.
int offsetMaxPower(TraceSource& trace, const OutdoorOffsets& offsets, const CalculationData& data,
                   long& maxPower);
