#include "CalculatorKam.h"

#include "ChannelSpacingCompensation.h"
#include "OffsetMaxPower.h"
#include "Trace.h"

#include <array>

namespace {

TraceSource s_trace("Control/OutputPowerCalculator/private/CalculatorKam");

// Power offsets relative to 256QAM in dB. For example: at RSEC 2
// 16QAM may have 2 dB more than 256QAM, and 16384QAM 3 dB less.
// The rows stand in the order of a printed sheet, 5HB before 5LB and 6B.
// clang-format off
constexpr std::array offsets = {
    //                             BPSK  4  16  32  64  128  256  512  1024  2048  4096  8192  16384
    dbRow(EReferenceSEC::Class2,      3, 3,  2,  2,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3),
    dbRow(EReferenceSEC::Class4L,     2, 2,  2,  2,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3),
    dbRow(EReferenceSEC::Class4H,     2, 2,  2,  2,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3),
    dbRow(EReferenceSEC::Class5B,     1, 1,  1,  1,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3),
    dbRow(EReferenceSEC::Class5HB,    1, 1,  1,  1,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3),
    dbRow(EReferenceSEC::Class5LB,    1, 1,  1,  1,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3),
    dbRow(EReferenceSEC::Class6B,     1, 1,  1,  1,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3),
    dbRow(EReferenceSEC::Class6LB,    1, 1,  1,  1,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3),
    dbRow(EReferenceSEC::Class6HB,    1, 1,  1,  1,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3),
    dbRow(EReferenceSEC::Class7B,     1, 1,  1,  1,  1,   1,   0,   0,   -1,   -2,   -2,   -3,    -3)};
// clang-format on
static_assert(offsets.size() == 10, "one row for each RSEC class");
static_assert(offsets[0].dB.size() == outdoorModulations.size(), "one column for each modulation");

constexpr OutdoorOffsets denseOffsets = [] {
    OutdoorOffsets dense;
    dense.enter(Modulation::QAM256, offsets, outdoorModulations);
    return dense;
}();

} // namespace

CalculatorKam* CalculatorKam::s_instance = nullptr;

CalculatorKam* CalculatorKam::getInstance() {
    if (s_instance == nullptr) {
        s_instance = new CalculatorKam;
    }
    return s_instance;
}

Modulation CalculatorKam::getMaxRefModulation(Modulation availableMaxModulation, Modulation) {
    return availableMaxModulation;
}

int CalculatorKam::getMaxPower(CalculationData data, long& maxPower, int, int, int, Modulation) {
    return offsetMaxPower(s_trace, denseOffsets, data, maxPower);
}

int CalculatorKam::getCompensationForChannelSpacing(RadioChannel channel,
                                                    EChannelSpacingType channelSpacing,
                                                    long& compensation) const {
    TRACE_ENTER(numberOf(channelSpacing));
    return channelSpacingCompensation(s_trace, channel, channelSpacing, compensation);
}

PowerOffsets CalculatorKam::initialize() {
    PowerOffsets powerOffsets;
    enterOffsets(powerOffsets, Modulation::QAM256, offsets, outdoorModulations);
    return powerOffsets;
}
