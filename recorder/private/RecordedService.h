#pragma once

#include "Decorator.h"
#include "IOutputPowerCalculator.h"

/// Stands before a service and records what it is asked and what it answers.
class RecordedService final : public IOutputPowerCalculator, public Decorator {
public:
    explicit RecordedService(IOutputPowerCalculator& real)
        : Decorator(real)
        , m_real(real) {}
    IInterface* face() override { return this; }

    unsigned getMinMaxOutputPowerVsModulationArray(
        long frameFormatId, ModulationAndCoding minModulationAndCodeIn,
        ModulationAndCoding maxModulationAndCodeIn, EReferenceSEC referenceSec,
        long& minOutputPower, std::map<ModulationAndCoding, long>& powerMap) const override;
    unsigned setTemporaryPowerCutback(bool use, unsigned long cutback) override;
    unsigned setPowerCutback(unsigned long cutback) override;
    int calculatePowerCapabilities(Modulation modulation, long& minPower,
                                   long& maxPower) const override;
    int calculateAdmodPowerCapabilities(Modulation actualModulation, EReferenceSEC rsec,
                                        long& minPower, long& maxPower) override;
    int findPminPmax(long& pmin, long& pmax) const override;
    int getUnrestrictedPmax(long& pmax) const override;
    unsigned setTemperature(long temperature) override;
    unsigned setBoosterPresence(int presence, int gain, int maxInputPower,
                                Modulation maxModulation) override;

private:
    friend class Decorators<IOutputPowerCalculator, RecordedService>;

    IOutputPowerCalculator& m_real;
};
