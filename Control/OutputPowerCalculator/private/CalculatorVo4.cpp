#include "CalculatorVo4.h"

#include "Power.h"
#include "ResultCode.h"
#include "Trace.h"

#include <algorithm>
#include <array>

namespace {

TraceSource s_trace("Control/OutputPowerCalculator/private/CalculatorVo4");

/// The modulation columns of all tables.
constexpr std::array<Modulation, 10> modulations = {
    Modulation::QAM4,    Modulation::QAM16,  Modulation::QAM32,  Modulation::QAM64,
    Modulation::QAM128,  Modulation::QAM256, Modulation::QAM512, Modulation::QAM1024,
    Modulation::QAM2048, Modulation::QAM4096};

// Power offsets relative to 256QAM in dB. For example: at RSEC 2 16QAM may have 2 dB more than
// 256QAM. The rows of every table stand in the order of a printed sheet, 5HB before 5LB and 6B.
// clang-format off
constexpr std::array offsets = {
    //                              4  16  32  64  128  256  512  1024  2048  4096
    dbRow(EReferenceSEC::Class2,    3,  2,  2,  1,   1,   0,  -1,   -1,   -2,   -2),
    dbRow(EReferenceSEC::Class4L,   2,  2,  2,  1,   1,   0,  -1,   -1,   -2,   -2),
    dbRow(EReferenceSEC::Class4H,   2,  2,  2,  1,   1,   0,  -1,   -1,   -2,   -2),
    dbRow(EReferenceSEC::Class5B,   1,  1,  1,  1,   1,   0,  -1,   -1,   -2,   -2),
    dbRow(EReferenceSEC::Class5HB,  1,  1,  1,  1,   1,   0,  -1,   -1,   -2,   -2),
    dbRow(EReferenceSEC::Class5LB,  1,  1,  1,  1,   1,   0,  -1,   -1,   -2,   -2),
    dbRow(EReferenceSEC::Class6B,   1,  1,  1,  1,   1,   0,  -1,   -1,   -2,   -2),
    dbRow(EReferenceSEC::Class6LB,  1,  1,  1,  1,   1,   0,  -1,   -1,   -2,   -2),
    dbRow(EReferenceSEC::Class6HB,  1,  1,  1,  1,   1,   0,  -1,   -1,   -2,   -2),
    dbRow(EReferenceSEC::Class7B,   1,  1,  1,  1,   1,   0,  -1,   -1,   -2,   -2)};
static_assert(offsets.size() == 10, "one row for each RSEC class");
static_assert(offsets[0].dB.size() == modulations.size(), "one column each");

// What a booster adds, in dB. Every class has the same row, which is meant, because a booster adds
// its power whatever the class; the rows stand here as the sheet has them, to be compared with it.
constexpr std::array boosterAdjustments = {
    //                              4  16  32  64  128  256  512  1024  2048  4096
    dbRow(EReferenceSEC::Class2,    7,  7,  6,  5,   5,   5,   6,    7,    0,    0),
    dbRow(EReferenceSEC::Class4L,   7,  7,  6,  5,   5,   5,   6,    7,    0,    0),
    dbRow(EReferenceSEC::Class4H,   7,  7,  6,  5,   5,   5,   6,    7,    0,    0),
    dbRow(EReferenceSEC::Class5B,   7,  7,  6,  5,   5,   5,   6,    7,    0,    0),
    dbRow(EReferenceSEC::Class5HB,  7,  7,  6,  5,   5,   5,   6,    7,    0,    0),
    dbRow(EReferenceSEC::Class5LB,  7,  7,  6,  5,   5,   5,   6,    7,    0,    0),
    dbRow(EReferenceSEC::Class6B,   7,  7,  6,  5,   5,   5,   6,    7,    0,    0),
    dbRow(EReferenceSEC::Class6LB,  7,  7,  6,  5,   5,   5,   6,    7,    0,    0),
    dbRow(EReferenceSEC::Class6HB,  7,  7,  6,  5,   5,   5,   6,    7,    0,    0),
    dbRow(EReferenceSEC::Class7B,   7,  7,  6,  5,   5,   5,   6,    7,    0,    0)};
static_assert(boosterAdjustments.size() == 10, "one row for each RSEC class");
static_assert(boosterAdjustments[0].dB.size() == modulations.size(), "one column each");

// What a booster's band adds, in dB, labelled by the band.
constexpr std::array boosterBandAdjustments = {
    //                              4  16  32  64  128  256  512  1024  2048  4096
    dbRow(0,                        2,  2,  2,  2,   2,   2,   2,    2,    0,    0),
    dbRow(1,                        0,  0,  0,  0,   0,   0,   0,    0,    0,    0)};
static_assert(boosterBandAdjustments.size() == 2, "one row for each band");
static_assert(boosterBandAdjustments[0].dB.size() == modulations.size(), "one column each");
// clang-format on

constexpr DenseOffsets<Modulation::QAM256, Modulation::QAM256> denseOffsets = [] {
    DenseOffsets<Modulation::QAM256, Modulation::QAM256> dense;
    dense.enter(Modulation::QAM256, offsets, modulations);
    return dense;
}();

constexpr BoosterTables boosterTables = {
    denseTable<rsecCount>(boosterAdjustments, modulations),
    denseTable<bandCount>(boosterBandAdjustments, modulations)};

} // namespace

CalculatorVo4* CalculatorVo4::s_instance = nullptr;

CalculatorVo4* CalculatorVo4::getInstance() {
    if (s_instance == nullptr) {
        s_instance = new CalculatorVo4;
    }
    return s_instance;
}

Modulation CalculatorVo4::getMaxRefModulation(Modulation, Modulation) {
    return Modulation::QAM256;
}

int CalculatorVo4::getMaxPower(CalculationData data, long& maxPower, int boosterPresence,
                               int boosterGain, int boosterMaxInputPower,
                               Modulation boosterMaxModulation) {
    const Booster booster = {boosterPresence, boosterGain, boosterMaxInputPower,
                             boosterMaxModulation};

    TRACE_MSG(TraceLevel::Detail, "data.refMaxModulation=", data.refMaxModulation,
              ", data.actualModulation=", data.actualModulation,
              ", data.rsec=", numberOf(data.rsec),
              ", data.pmaxActualModulation=", data.pmaxActualModulation,
              ", data.pmaxRefMaxModulation=", data.pmaxRefMaxModulation,
              ", boosterBand=", boosterPresence);

    int offset = 0;
    if (!denseOffsets.find(data.refMaxModulation, data.rsec, data.actualModulation, offset)) {
        TRACE_MSG(TraceLevel::Error, "No power offset found for ref acm=", data.refMaxModulation,
                  ", rsec=", textOf(data.rsec), ", acm=", data.actualModulation);
        return ResultCode::NoRadioUnitEntry;
    }
    if (booster.isTooHigh(data.actualModulation)) {
        TRACE_MSG(TraceLevel::Result, data.actualModulation, " is higher than booster max ACM (",
                  boosterMaxModulation, ")");
        return ResultCode::NotApplicable;
    }

    const long adjusted = Power::add(data.pmaxRefMaxModulation, offset);
    maxPower = std::min(adjusted, data.pmaxActualModulation);
    if (s_trace.isEnabled(TraceLevel::Result)) {
        TRACE_MSG(TraceLevel::Detail, "Static power for ", data.actualModulation, " = ", adjusted);
        TRACE_MSG(TraceLevel::Detail, "ACM adjusted power = (", data.pmaxRefMaxModulation, " + ",
                  offset, ") = ", adjusted);
        s_trace.message(TraceLevel::Result, __func__, __LINE__, "Max power = ", maxPower, " for ",
                        data.actualModulation, ", RSEC-", textOf(data.rsec), ", using ref acm ",
                        data.refMaxModulation);
    }

    return applyBooster(s_trace, boosterTables, data, booster, maxPower);
}

PowerOffsets CalculatorVo4::initialize() {
    PowerOffsets powerOffsets;
    enterOffsets(powerOffsets, Modulation::QAM256, offsets, modulations);
    return powerOffsets;
}

BoosterAdjustments CalculatorVo4::initializeBoosterAdjs() {
    BoosterAdjustments adjustments;
    enterTable(adjustments, boosterAdjustments, modulations,
               [](EReferenceSEC rsec, Modulation modulation) {
                   return std::make_tuple(rsec, modulation);
               });
    return adjustments;
}

BoosterBandAdjustments CalculatorVo4::initializeBoosterBandAdjs() {
    BoosterBandAdjustments adjustments;
    enterTable(adjustments, boosterBandAdjustments, modulations,
               [](int band, Modulation modulation) { return std::make_tuple(band, modulation); });
    return adjustments;
}
