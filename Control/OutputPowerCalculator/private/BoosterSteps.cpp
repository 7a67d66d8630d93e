#include "BoosterSteps.h"

#include "Power.h"
#include "ResultCode.h"
#include "Trace.h"

#include <algorithm>

namespace {

constexpr const char* functionName = "getMaxPower";

/// The one presence that stands for a booster whose band adds nothing.
constexpr int presenceOfBand1 = 7;

/// The adjustment under a key, or null after a trace that names what is missing.
template <class Adjustments>
const int* findAdjustment(TraceSource& trace, const Adjustments& adjustments,
                          const typename Adjustments::key_type& key, const char* complaint,
                          const CalculationData& data) {
    const auto found = adjustments.find(key);
    if (found == adjustments.end()) {
        TRACE_MSG_OF(trace, functionName, TraceLevel::Error,
                     complaint << data.refMaxModulation
                               << ", rsec=" << convertRsecEnumToString(data.rsec)
                               << ", acm=" << data.actualModulation);
        return nullptr;
    }
    return &found->second;
}

} // namespace

int applyBooster(TraceSource& trace, const BoosterAdjustments& adjustments,
                 const BoosterBandAdjustments& bandAdjustments, const CalculationData& data,
                 const Booster& booster, long& maxPower) {
    if (!booster.isPresent()) {
        return ResultCode::Success;
    }

    const int* const adjustment =
        findAdjustment(trace, adjustments, {data.rsec, data.actualModulation},
                       "No boosted power offset found for ref acm=", data);
    if (adjustment == nullptr) {
        return ResultCode::NoRadioUnitEntry;
    }
    const int band = booster.presence == presenceOfBand1 ? 1 : 0;
    const int* const bandAdjustment =
        findAdjustment(trace, bandAdjustments, {band, data.actualModulation},
                       "No boosted band power offset found for ref acm=", data);
    if (bandAdjustment == nullptr) {
        return ResultCode::NoRadioUnitEntry;
    }

    TRACE_MSG_OF(trace, functionName, TraceLevel::Detail,
                 "boosterPowerAdjustments: " << *adjustment);
    maxPower = Power::add(maxPower, *adjustment);
    TRACE_MSG_OF(trace, functionName, TraceLevel::Detail, "maxPower (boosted.1): " << maxPower);

    TRACE_MSG_OF(trace, functionName, TraceLevel::Detail,
                 "boosterBandPowerAdjustments: " << *bandAdjustment);
    maxPower = Power::add(maxPower, *bandAdjustment);
    TRACE_MSG_OF(trace, functionName, TraceLevel::Detail, "maxPower (boosted.2): " << maxPower);

    maxPower = std::min<long>(Power::subtract(maxPower, booster.gain), booster.maxInputPower);
    TRACE_MSG_OF(trace, functionName, TraceLevel::Detail, "maxPower (boosted.3): " << maxPower);

    maxPower = std::min(maxPower, data.pmaxActualModulation);
    TRACE_MSG_OF(trace, functionName, TraceLevel::Detail, "maxPower (boosted.4): " << maxPower);
    return ResultCode::Success;
}
