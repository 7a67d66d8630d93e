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

} // namespace

int applyBooster(TraceSource& trace, const BoosterTables& tables, const CalculationData& data,
                 const Booster& booster, long& maxPower) {
    if (!booster.isPresent()) {
        return ResultCode::Success;
    }

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

    TRACE_MSG_OF(trace, functionName, TraceLevel::Detail, "boosterPowerAdjustments: ", adjustment);
    maxPower = Power::add(maxPower, adjustment);
    TRACE_MSG_OF(trace, functionName, TraceLevel::Detail, "maxPower (boosted.1): ", maxPower);

    TRACE_MSG_OF(trace, functionName, TraceLevel::Detail,
                 "boosterBandPowerAdjustments: ", bandAdjustment);
    maxPower = Power::add(maxPower, bandAdjustment);
    TRACE_MSG_OF(trace, functionName, TraceLevel::Detail, "maxPower (boosted.2): ", maxPower);

    maxPower = std::min<long>(Power::subtract(maxPower, booster.gain), booster.maxInputPower);
    TRACE_MSG_OF(trace, functionName, TraceLevel::Detail, "maxPower (boosted.3): ", maxPower);

    maxPower = std::min(maxPower, data.pmaxActualModulation);
    TRACE_MSG_OF(trace, functionName, TraceLevel::Detail, "maxPower (boosted.4): ", maxPower);
    return ResultCode::Success;
}
