#include "OffsetMaxPower.h"

#include "Power.h"
#include "ResultCode.h"
#include "Trace.h"

#include <algorithm>

namespace {

constexpr const char* functionName = "getMaxPower";

} // namespace

int offsetMaxPower(TraceSource& trace, const OutdoorOffsets& offsets, const CalculationData& data,
                   long& maxPower) {
    // A reference modulation without an offset is no failure: the power then counts from 0.
    int refOffset = 0;
    const long refPower =
        offsets.find(Modulation::QAM256, data.rsec, data.refMaxModulation, refOffset)
            ? Power::subtract(data.pmaxRefMaxModulation, refOffset)
            : 0;
    const long base = Power::add(data.csPowerCompensation, refPower);

    int actualOffset = 0;
    if (!offsets.find(Modulation::QAM256, data.rsec, data.actualModulation, actualOffset)) {
        TRACE_MSG_OF(trace, functionName, TraceLevel::Error,
                     "No power offset found for rsec=", textOf(data.rsec),
                     ", acm=", data.actualModulation);
        return ResultCode::NoEntry;
    }
    const long actualPower = Power::add(base, actualOffset);

    long lowest =
        std::min({data.pmaxActualModulation, actualPower, data.pmaxSelectedMinModulation});
    int minOffset = 0;
    if (offsets.find(Modulation::QAM256, data.rsec, data.selectedMinModulation, minOffset)) {
        const long minModPower = Power::add(base, minOffset);
        lowest = std::min(lowest, minModPower);
        TRACE_MSG_OF(trace, functionName, TraceLevel::Result, functionName,
                     " std::min parameters: ", data.pmaxActualModulation, ",", minModPower, ",",
                     actualPower, ",", data.pmaxSelectedMinModulation);
    } else {
        // A selected minimum modulation without an offset bounds nothing.
        TRACE_MSG_OF(trace, functionName, TraceLevel::Result, functionName,
                     " std::min parameters: ", data.pmaxActualModulation, ",", actualPower, ",",
                     data.pmaxSelectedMinModulation);
    }
    maxPower = lowest;

    // The label says modulation, the value is the Pmax at the reference modulation: log readers
    // know the line as it is.
    TRACE_MSG_OF(trace, functionName, TraceLevel::Result, functionName,
                 " Max power for modulation ", data.actualModulation, ", rsec ",
                 numberOf(data.rsec), " and max modulation ", data.pmaxRefMaxModulation, " = ",
                 maxPower);
    return ResultCode::Success;
}
