#include "OffsetMaxPower.h"

#include "Power.h"
#include "ResultCode.h"
#include "Trace.h"

#include <algorithm>

namespace {

constexpr const char* functionName = "getMaxPower";

/// The offset of a modulation relative to 256QAM, or null.
const int* findOffset(const PowerOffsets& offsets, EReferenceSEC rsec, Modulation modulation) {
    const auto found = offsets.find({Modulation::QAM256, rsec, modulation});
    return found == offsets.end() ? nullptr : &found->second;
}

} // namespace

int offsetMaxPower(TraceSource& trace, const PowerOffsets& offsets, const CalculationData& data,
                   long& maxPower) {
    // A reference modulation without an offset is no failure: the power then counts from 0.
    const int* const refOffset = findOffset(offsets, data.rsec, data.refMaxModulation);
    const long refPower =
        refOffset == nullptr ? 0 : Power::subtract(data.pmaxRefMaxModulation, *refOffset);
    const long base = Power::add(data.csPowerCompensation, refPower);

    const int* const actualOffset = findOffset(offsets, data.rsec, data.actualModulation);
    if (actualOffset == nullptr) {
        TRACE_MSG_OF(trace, functionName, TraceLevel::Error,
                     "No power offset found for rsec="
                         << convertRsecEnumToString(data.rsec)
                         << ", acm=" << convertAcmEnumToString(data.actualModulation));
        return ResultCode::NoEntry;
    }
    const long actualPower = Power::add(base, *actualOffset);

    // A selected minimum modulation without an offset (one that no table column has) bounds
    // nothing.
    const int* const minOffset = findOffset(offsets, data.rsec, data.selectedMinModulation);
    long lowest =
        std::min({data.pmaxActualModulation, actualPower, data.pmaxSelectedMinModulation});
    if (minOffset == nullptr) {
        TRACE_MSG_OF(trace, functionName, TraceLevel::Result,
                     functionName << " std::min parameters: " << data.pmaxActualModulation << ","
                                  << actualPower << "," << data.pmaxSelectedMinModulation);
    } else {
        const long minModPower = Power::add(base, *minOffset);
        lowest = std::min(lowest, minModPower);
        TRACE_MSG_OF(trace, functionName, TraceLevel::Result,
                     functionName << " std::min parameters: " << data.pmaxActualModulation << ","
                                  << minModPower << "," << actualPower << ","
                                  << data.pmaxSelectedMinModulation);
    }
    maxPower = lowest;

    // The label says modulation, the value is the Pmax at the reference modulation: log readers
    // know the line as it is.
    TRACE_MSG_OF(trace, functionName, TraceLevel::Result,
                 functionName << " Max power for modulation "
                              << convertAcmEnumToString(data.actualModulation) << ", rsec "
                              << numberOf(data.rsec) << " and max modulation "
                              << data.pmaxRefMaxModulation << " = " << maxPower);
    return ResultCode::Success;
}
