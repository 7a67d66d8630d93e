#include "CalculatorKamV3.h"

#include "ChannelSpacingCompensation.h"
#include "Power.h"
#include "ResultCode.h"
#include "Trace.h"

#include <algorithm>

namespace {

TraceSource s_trace("Control/OutputPowerCalculator/private/CalculatorKamV3");

/// The modulation whose Pmax caps the power of an RSEC class.
struct Cap {
    Modulation modulation;
    const char* text; ///< as the trace names it
};

constexpr Cap capAt16Qam = {Modulation::QAM16, "tmuMaxPowerFor16Qam"};
constexpr Cap capAt32Qam = {Modulation::QAM32, "tmuMaxPowerFor32Qam"};
constexpr Cap capAt64Qam = {Modulation::QAM64, "tmuMaxPowerFor64Qam"};

/// The lesser of a power and a cap's Pmax. A cap without a row in the radio's table counts as 0.
long capped(const CalculationData& data, long uncompensated, const Cap& cap) {
    long capPower = 0;
    data.maxPowerCapability.getPower(cap.modulation, &capPower);
    const long power = std::min(capPower, uncompensated);
    TRACE_MSG_OF(s_trace, "getMaxPower", TraceLevel::Detail, "min() of uncompensated Pmax and ",
                 cap.text, " = ", power, " will be used");
    return power;
}

} // namespace

CalculatorKamV3* CalculatorKamV3::s_instance = nullptr;

CalculatorKamV3* CalculatorKamV3::getInstance() {
    if (s_instance == nullptr) {
        s_instance = new CalculatorKamV3;
    }
    return s_instance;
}

Modulation CalculatorKamV3::getMaxRefModulation(Modulation availableMaxModulation, Modulation) {
    return availableMaxModulation;
}

int CalculatorKamV3::getMaxPower(CalculationData data, long& maxPower, int, int, int, Modulation) {
    // The Pmax of this family's radios contains the compensation: it is taken out for the cap and
    // put back afterwards. The other outdoor families add theirs instead; the sign is meant,
    // because with theirs the compensation would count twice.
    const long uncompensated = Power::subtract(data.pmaxActualModulation, data.csPowerCompensation);
    if (s_trace.isEnabled(TraceLevel::Detail)) {
        s_trace.enter(__func__, __LINE__, "");
        s_trace.message(TraceLevel::Detail, __func__, __LINE__,
                        "uncompensated Pmax for modulation: ", data.actualModulation, " = ",
                        uncompensated);
    }

    switch (data.rsec) {
    case EReferenceSEC::Class2:
        maxPower = uncompensated;
        break;
    case EReferenceSEC::Class4L:
        maxPower = capped(data, uncompensated, capAt16Qam);
        break;
    case EReferenceSEC::Class4H:
        maxPower = capped(data, uncompensated, capAt32Qam);
        break;
    case EReferenceSEC::Class5B:
    case EReferenceSEC::Class6B:
    case EReferenceSEC::Class5LB:
    case EReferenceSEC::Class5HB:
    case EReferenceSEC::Class6LB:
    case EReferenceSEC::Class6HB:
    case EReferenceSEC::Class7B:
        maxPower = capped(data, uncompensated, capAt64Qam);
        break;
    case EReferenceSEC::UNDEFINED:
    default:
        // The power that came in stays, the compensation is added to it, and the result is a
        // success: that is meant, because a failure would leave a link without a class without any
        // power. Nor is there a blank between the two words: log readers know them as they are.
        TRACE_MSG(TraceLevel::Error, "getMaxPowerNo matching RSEC");
        break;
    }

    maxPower = Power::add(maxPower, data.csPowerCompensation);
    // Called power cutback in this line, although it is the compensation: log readers know it as it
    // is.
    TRACE_MSG(TraceLevel::Result, "getMaxPower Calculated max power = ", maxPower, " for ",
              data.actualModulation, " with rsec ", textOf(data.rsec),
              " and power cutback: ", data.csPowerCompensation);
    return ResultCode::Success;
}

int CalculatorKamV3::getCompensationForChannelSpacing(RadioChannel channel,
                                                      EChannelSpacingType channelSpacing,
                                                      long& compensation) const {
    TRACE_ENTER("channel=", channel, ", channelSpacing=", numberOf(channelSpacing));
    return channelSpacingCompensation(s_trace, channel, channelSpacing, compensation);
}
