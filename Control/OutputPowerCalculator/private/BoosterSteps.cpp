#include "BoosterSteps.h"

#include "Power.h"
#include "ResultCode.h"
#include "Trace.h"

#include <algorithm>

namespace {

constexpr const char* functionName = "getMaxPower";

/// The one presence that stands for a booster whose band adds nothing.
constexpr int presenceOfBand1 = 7;

/// Traces what is missing from a table.
void traceMissing(TraceSource& trace, const char* complaint, const CalculationData& data) {
    TRACE_MSG_OF(trace, functionName, TraceLevel::Error, complaint, data.refMaxModulation,
                 ", rsec=", textOf(data.rsec), ", acm=", data.actualModulation);
}

void traceStep(TraceSource& trace, const char* step, long value) {
    trace.message(TraceLevel::Detail, functionName, __LINE__, step, value);
}

} // namespace

int applyPresentBooster(TraceSource& trace, const BoosterTables& tables,
                        const CalculationData& data, Booster booster, long& maxPower) {
    int adjustment = 0;
    if (!tables.adjustments.find(static_cast<unsigned int>(data.rsec), data.actualModulation,
                                 adjustment)) {
        traceMissing(trace, "No boosted power offset found for ref acm=", data);
        return ResultCode::NoRadioUnitEntry;
    }
    const unsigned int band = booster.presence == presenceOfBand1 ? 1 : 0;
    int bandAdjustment = 0;
    if (!tables.bandAdjustments.find(band, data.actualModulation, bandAdjustment)) {
        traceMissing(trace, "No boosted band power offset found for ref acm=", data);
        return ResultCode::NoRadioUnitEntry;
    }

    const long adjusted = Power::add(maxPower, adjustment);
    const long bandAdjusted = Power::add(adjusted, bandAdjustment);
    const long atInput =
        std::min<long>(Power::subtract(bandAdjusted, booster.gain), booster.maxInputPower);
    maxPower = std::min(atInput, data.pmaxActualModulation);
    if (trace.isEnabled(TraceLevel::Detail)) {
        traceStep(trace, "boosterPowerAdjustments: ", adjustment);
        traceStep(trace, "maxPower (boosted.1): ", adjusted);
        traceStep(trace, "boosterBandPowerAdjustments: ", bandAdjustment);
        traceStep(trace, "maxPower (boosted.2): ", bandAdjusted);
        traceStep(trace, "maxPower (boosted.3): ", atInput);
        traceStep(trace, "maxPower (boosted.4): ", maxPower);
    }
    return ResultCode::Success;
}
