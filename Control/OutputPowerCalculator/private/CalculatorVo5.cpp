#include "CalculatorVo5.h"

#include "Power.h"
#include "ResultCode.h"
#include "Trace.h"

#include <algorithm>
#include <array>

namespace {

TraceSource s_trace("Control/OutputPowerCalculator/private/CalculatorVo5");

/// The modulation columns of all tables.
constexpr std::array<Modulation, 12> modulations = {
    Modulation::QAM4,    Modulation::QAM16,   Modulation::QAM32,   Modulation::QAM64,
    Modulation::QAM128,  Modulation::QAM256,  Modulation::QAM512,  Modulation::QAM1024,
    Modulation::QAM2048, Modulation::QAM4096, Modulation::QAM8192, Modulation::QAM16384};

// Power offsets relative to a reference modulation in dB, one block for each reference from 128QAM,
// with the columns up to it. For example: at RSEC 2 16QAM may have 1 dB more than a 128QAM
// reference. The rows of every table stand in the order of a printed sheet, 5HB before 5LB and 6B.
//
// The irregular cells are meant, because links are planned with them: against 8192QAM the reference
// itself has -1 dB, and so has 4096QAM, while 4096QAM has 0 dB against 16384QAM; against 128QAM the
// classes from 5B on have no offset.
// clang-format off
constexpr std::array offsetsTo128 = {
    //                              4  16  32  64  128
    dbRow(EReferenceSEC::Class2,    2,  1,  1,  0,   0),
    dbRow(EReferenceSEC::Class4L,   1,  1,  1,  0,   0),
    dbRow(EReferenceSEC::Class4H,   1,  1,  1,  0,   0),
    dbRow(EReferenceSEC::Class5B,   0,  0,  0,  0,   0),
    dbRow(EReferenceSEC::Class5HB,  0,  0,  0,  0,   0),
    dbRow(EReferenceSEC::Class5LB,  0,  0,  0,  0,   0),
    dbRow(EReferenceSEC::Class6B,   0,  0,  0,  0,   0),
    dbRow(EReferenceSEC::Class6LB,  0,  0,  0,  0,   0),
    dbRow(EReferenceSEC::Class6HB,  0,  0,  0,  0,   0),
    dbRow(EReferenceSEC::Class7B,   0,  0,  0,  0,   0)};
static_assert(offsetsTo128.size() == 10 && offsetsTo128[0].dB.size() == 5, "4QAM to 128QAM");

constexpr std::array offsetsTo256 = {
    //                              4  16  32  64  128  256
    dbRow(EReferenceSEC::Class2,    3,  2,  2,  1,   1,   0),
    dbRow(EReferenceSEC::Class4L,   2,  2,  2,  1,   1,   0),
    dbRow(EReferenceSEC::Class4H,   2,  2,  2,  1,   1,   0),
    dbRow(EReferenceSEC::Class5B,   1,  1,  1,  1,   1,   0),
    dbRow(EReferenceSEC::Class5HB,  1,  1,  1,  1,   1,   0),
    dbRow(EReferenceSEC::Class5LB,  1,  1,  1,  1,   1,   0),
    dbRow(EReferenceSEC::Class6B,   1,  1,  1,  1,   1,   0),
    dbRow(EReferenceSEC::Class6LB,  1,  1,  1,  1,   1,   0),
    dbRow(EReferenceSEC::Class6HB,  1,  1,  1,  1,   1,   0),
    dbRow(EReferenceSEC::Class7B,   1,  1,  1,  1,   1,   0)};
static_assert(offsetsTo256.size() == 10 && offsetsTo256[0].dB.size() == 6, "4QAM to 256QAM");

constexpr std::array offsetsTo512 = {
    //                              4  16  32  64  128  256  512
    dbRow(EReferenceSEC::Class2,    3,  2,  2,  1,   1,   0,   0),
    dbRow(EReferenceSEC::Class4L,   2,  2,  2,  1,   1,   0,   0),
    dbRow(EReferenceSEC::Class4H,   2,  2,  2,  1,   1,   0,   0),
    dbRow(EReferenceSEC::Class5B,   1,  1,  1,  1,   1,   0,   0),
    dbRow(EReferenceSEC::Class5HB,  1,  1,  1,  1,   1,   0,   0),
    dbRow(EReferenceSEC::Class5LB,  1,  1,  1,  1,   1,   0,   0),
    dbRow(EReferenceSEC::Class6B,   1,  1,  1,  1,   1,   0,   0),
    dbRow(EReferenceSEC::Class6LB,  1,  1,  1,  1,   1,   0,   0),
    dbRow(EReferenceSEC::Class6HB,  1,  1,  1,  1,   1,   0,   0),
    dbRow(EReferenceSEC::Class7B,   1,  1,  1,  1,   1,   0,   0)};
static_assert(offsetsTo512.size() == 10 && offsetsTo512[0].dB.size() == 7, "4QAM to 512QAM");

constexpr std::array offsetsTo1024 = {
    //                              4  16  32  64  128  256  512  1024
    dbRow(EReferenceSEC::Class2,    4,  3,  3,  2,   2,   1,   0,    0),
    dbRow(EReferenceSEC::Class4L,   3,  3,  3,  2,   2,   1,   0,    0),
    dbRow(EReferenceSEC::Class4H,   3,  3,  3,  2,   2,   1,   0,    0),
    dbRow(EReferenceSEC::Class5B,   2,  2,  2,  2,   2,   1,   0,    0),
    dbRow(EReferenceSEC::Class5HB,  2,  2,  2,  2,   2,   1,   0,    0),
    dbRow(EReferenceSEC::Class5LB,  2,  2,  2,  2,   2,   1,   0,    0),
    dbRow(EReferenceSEC::Class6B,   2,  2,  2,  2,   2,   1,   0,    0),
    dbRow(EReferenceSEC::Class6LB,  2,  2,  2,  2,   2,   1,   0,    0),
    dbRow(EReferenceSEC::Class6HB,  2,  2,  2,  2,   2,   1,   0,    0),
    dbRow(EReferenceSEC::Class7B,   2,  2,  2,  2,   2,   1,   0,    0)};
static_assert(offsetsTo1024.size() == 10 && offsetsTo1024[0].dB.size() == 8, "4QAM to 1024QAM");

constexpr std::array offsetsTo2048 = {
    //                              4  16  32  64  128  256  512  1024  2048
    dbRow(EReferenceSEC::Class2,    4,  3,  3,  2,   2,   1,   0,    0,    0),
    dbRow(EReferenceSEC::Class4L,   3,  3,  3,  2,   2,   1,   0,    0,    0),
    dbRow(EReferenceSEC::Class4H,   3,  3,  3,  2,   2,   1,   0,    0,    0),
    dbRow(EReferenceSEC::Class5B,   2,  2,  2,  2,   2,   1,   0,    0,    0),
    dbRow(EReferenceSEC::Class5HB,  2,  2,  2,  2,   2,   1,   0,    0,    0),
    dbRow(EReferenceSEC::Class5LB,  2,  2,  2,  2,   2,   1,   0,    0,    0),
    dbRow(EReferenceSEC::Class6B,   2,  2,  2,  2,   2,   1,   0,    0,    0),
    dbRow(EReferenceSEC::Class6LB,  2,  2,  2,  2,   2,   1,   0,    0,    0),
    dbRow(EReferenceSEC::Class6HB,  2,  2,  2,  2,   2,   1,   0,    0,    0),
    dbRow(EReferenceSEC::Class7B,   2,  2,  2,  2,   2,   1,   0,    0,    0)};
static_assert(offsetsTo2048.size() == 10 && offsetsTo2048[0].dB.size() == 9, "4QAM to 2048QAM");

constexpr std::array offsetsTo4096 = {
    //                              4  16  32  64  128  256  512  1024  2048  4096
    dbRow(EReferenceSEC::Class2,    5,  4,  4,  3,   3,   2,   1,    1,    0,    0),
    dbRow(EReferenceSEC::Class4L,   4,  4,  4,  3,   3,   2,   1,    1,    0,    0),
    dbRow(EReferenceSEC::Class4H,   4,  4,  4,  3,   3,   2,   1,    1,    0,    0),
    dbRow(EReferenceSEC::Class5B,   3,  3,  3,  3,   3,   2,   1,    1,    0,    0),
    dbRow(EReferenceSEC::Class5HB,  3,  3,  3,  3,   3,   2,   1,    1,    0,    0),
    dbRow(EReferenceSEC::Class5LB,  3,  3,  3,  3,   3,   2,   1,    1,    0,    0),
    dbRow(EReferenceSEC::Class6B,   3,  3,  3,  3,   3,   2,   1,    1,    0,    0),
    dbRow(EReferenceSEC::Class6LB,  3,  3,  3,  3,   3,   2,   1,    1,    0,    0),
    dbRow(EReferenceSEC::Class6HB,  3,  3,  3,  3,   3,   2,   1,    1,    0,    0),
    dbRow(EReferenceSEC::Class7B,   3,  3,  3,  3,   3,   2,   1,    1,    0,    0)};
static_assert(offsetsTo4096.size() == 10 && offsetsTo4096[0].dB.size() == 10, "4QAM to 4096QAM");

constexpr std::array offsetsTo8192 = {
    //                              4  16  32  64  128  256  512  1024  2048  4096  8192
    dbRow(EReferenceSEC::Class2,    5,  4,  4,  3,   3,   2,   1,    1,    0,   -1,   -1),
    dbRow(EReferenceSEC::Class4L,   4,  4,  4,  3,   3,   2,   1,    1,    0,   -1,   -1),
    dbRow(EReferenceSEC::Class4H,   4,  4,  4,  3,   3,   2,   1,    1,    0,   -1,   -1),
    dbRow(EReferenceSEC::Class5B,   3,  3,  3,  3,   3,   2,   1,    1,    0,   -1,   -1),
    dbRow(EReferenceSEC::Class5HB,  3,  3,  3,  3,   3,   2,   1,    1,    0,   -1,   -1),
    dbRow(EReferenceSEC::Class5LB,  3,  3,  3,  3,   3,   2,   1,    1,    0,   -1,   -1),
    dbRow(EReferenceSEC::Class6B,   3,  3,  3,  3,   3,   2,   1,    1,    0,   -1,   -1),
    dbRow(EReferenceSEC::Class6LB,  3,  3,  3,  3,   3,   2,   1,    1,    0,   -1,   -1),
    dbRow(EReferenceSEC::Class6HB,  3,  3,  3,  3,   3,   2,   1,    1,    0,   -1,   -1),
    dbRow(EReferenceSEC::Class7B,   3,  3,  3,  3,   3,   2,   1,    1,    0,   -1,   -1)};
static_assert(offsetsTo8192.size() == 10 && offsetsTo8192[0].dB.size() == 11, "4QAM to 8192QAM");

constexpr std::array offsetsTo16384 = {
    //                              4  16  32  64  128  256  512  1024  2048  4096  8192  16384
    dbRow(EReferenceSEC::Class2,    5,  4,  4,  3,   3,   2,   1,    1,    0,    0,   -1,    -1),
    dbRow(EReferenceSEC::Class4L,   4,  4,  4,  3,   3,   2,   1,    1,    0,    0,   -1,    -1),
    dbRow(EReferenceSEC::Class4H,   4,  4,  4,  3,   3,   2,   1,    1,    0,    0,   -1,    -1),
    dbRow(EReferenceSEC::Class5B,   3,  3,  3,  3,   3,   2,   1,    1,    0,    0,   -1,    -1),
    dbRow(EReferenceSEC::Class5HB,  3,  3,  3,  3,   3,   2,   1,    1,    0,    0,   -1,    -1),
    dbRow(EReferenceSEC::Class5LB,  3,  3,  3,  3,   3,   2,   1,    1,    0,    0,   -1,    -1),
    dbRow(EReferenceSEC::Class6B,   3,  3,  3,  3,   3,   2,   1,    1,    0,    0,   -1,    -1),
    dbRow(EReferenceSEC::Class6LB,  3,  3,  3,  3,   3,   2,   1,    1,    0,    0,   -1,    -1),
    dbRow(EReferenceSEC::Class6HB,  3,  3,  3,  3,   3,   2,   1,    1,    0,    0,   -1,    -1),
    dbRow(EReferenceSEC::Class7B,   3,  3,  3,  3,   3,   2,   1,    1,    0,    0,   -1,    -1)};
static_assert(offsetsTo16384.size() == 10 && offsetsTo16384[0].dB.size() == 12, "4QAM to 16384QAM");

// What a booster adds, in dB. Every class has the same row, which is meant, because a booster adds
// its power whatever the class; the rows stand here as the sheet has them, to be compared with it.
constexpr std::array boosterAdjustments = {
    //                              4  16  32  64  128  256  512  1024  2048  4096  8192  16384
    dbRow(EReferenceSEC::Class2,    7,  7,  6,  5,   5,   5,   6,    7,    0,    0,    0,     0),
    dbRow(EReferenceSEC::Class4L,   7,  7,  6,  5,   5,   5,   6,    7,    0,    0,    0,     0),
    dbRow(EReferenceSEC::Class4H,   7,  7,  6,  5,   5,   5,   6,    7,    0,    0,    0,     0),
    dbRow(EReferenceSEC::Class5B,   7,  7,  6,  5,   5,   5,   6,    7,    0,    0,    0,     0),
    dbRow(EReferenceSEC::Class5HB,  7,  7,  6,  5,   5,   5,   6,    7,    0,    0,    0,     0),
    dbRow(EReferenceSEC::Class5LB,  7,  7,  6,  5,   5,   5,   6,    7,    0,    0,    0,     0),
    dbRow(EReferenceSEC::Class6B,   7,  7,  6,  5,   5,   5,   6,    7,    0,    0,    0,     0),
    dbRow(EReferenceSEC::Class6LB,  7,  7,  6,  5,   5,   5,   6,    7,    0,    0,    0,     0),
    dbRow(EReferenceSEC::Class6HB,  7,  7,  6,  5,   5,   5,   6,    7,    0,    0,    0,     0),
    dbRow(EReferenceSEC::Class7B,   7,  7,  6,  5,   5,   5,   6,    7,    0,    0,    0,     0)};
static_assert(boosterAdjustments.size() == 10, "one row for each RSEC class");
static_assert(boosterAdjustments[0].dB.size() == modulations.size(), "one column each");

// What a booster's band adds, in dB, labelled by the band.
constexpr std::array boosterBandAdjustments = {
    //                              4  16  32  64  128  256  512  1024  2048  4096  8192  16384
    dbRow(0,                        2,  2,  2,  2,   2,   2,   2,    2,    0,    0,    0,     0),
    dbRow(1,                        0,  0,  0,  0,   0,   0,   0,    0,    0,    0,    0,     0)};
static_assert(boosterBandAdjustments.size() == 2, "one row for each band");
static_assert(boosterBandAdjustments[0].dB.size() == modulations.size(), "one column each");
// clang-format on

constexpr DenseOffsets<Modulation::QAM128, Modulation::QAM16384> denseOffsets = [] {
    DenseOffsets<Modulation::QAM128, Modulation::QAM16384> dense;
    dense.enter(Modulation::QAM128, offsetsTo128, modulations);
    dense.enter(Modulation::QAM256, offsetsTo256, modulations);
    dense.enter(Modulation::QAM512, offsetsTo512, modulations);
    dense.enter(Modulation::QAM1024, offsetsTo1024, modulations);
    dense.enter(Modulation::QAM2048, offsetsTo2048, modulations);
    dense.enter(Modulation::QAM4096, offsetsTo4096, modulations);
    dense.enter(Modulation::QAM8192, offsetsTo8192, modulations);
    dense.enter(Modulation::QAM16384, offsetsTo16384, modulations);
    return dense;
}();

constexpr BoosterTables boosterTables = {
    denseTable<rsecCount>(boosterAdjustments, modulations),
    denseTable<bandCount>(boosterBandAdjustments, modulations)};

/// The entry of initialize(), which log readers look for at the family's first power query.
/// @return true, so that a static can see to it that it comes once.
bool traceInitialize() {
    TRACE_ENTER_OF(s_trace, "initialize", "");
    return true;
}

} // namespace

CalculatorVo5* CalculatorVo5::s_instance = nullptr;

CalculatorVo5* CalculatorVo5::getInstance() {
    if (s_instance == nullptr) {
        s_instance = new CalculatorVo5;
    }
    return s_instance;
}

Modulation CalculatorVo5::getMaxRefModulation(Modulation availableMaxModulation,
                                              Modulation selectedMaxModulation) {
    TRACE_ENTER("availableMaxAcm=", availableMaxModulation,
                ", selectedMaxAcm=", selectedMaxModulation);
    const Modulation reference = std::min(selectedMaxModulation, Modulation::QAM4096);
    // Without a blank between the two, as log readers know it.
    TRACE_MSG(TraceLevel::Result, "getMaxRefModulationmax power = ", reference);
    return reference;
}

int CalculatorVo5::getMaxPower(CalculationData data, long& maxPower, int boosterPresence,
                               int boosterGain, int boosterMaxInputPower,
                               Modulation boosterMaxModulation) {
    [[maybe_unused]] static const bool isTraced = traceInitialize();
    const Booster booster = {boosterPresence, boosterGain, boosterMaxInputPower,
                             boosterMaxModulation};

    TRACE_MSG(TraceLevel::Detail, "data.selectedMaxModulation=", data.selectedMaxModulation,
              ", data.actualModulation=", data.actualModulation,
              ", data.rsec=", numberOf(data.rsec),
              ", data.pmaxActualModulation=", data.pmaxActualModulation,
              ", data.pmaxRefMaxModulation=", data.pmaxRefMaxModulation,
              ", boosterBand=", boosterPresence);

    // The function's name runs into the modulation in the next three messages: log readers know
    // them so.
    if (data.selectedMaxModulation == Modulation::UNDEFINED ||
        data.actualModulation == Modulation::UNDEFINED) {
        TRACE_MSG(TraceLevel::InvalidInput, "getMaxPower", data.actualModulation,
                  " type invalid, selected max ", data.selectedMaxModulation);
        return ResultCode::NotApplicable;
    }
    if (data.selectedMaxModulation < data.actualModulation) {
        TRACE_MSG(TraceLevel::Result, "getMaxPower", data.actualModulation,
                  " is higher than selected max ACM (", data.selectedMaxModulation, ")");
        return ResultCode::NotApplicable;
    }
    if (booster.isTooHigh(data.actualModulation)) {
        TRACE_MSG(TraceLevel::Result, "getMaxPower", data.actualModulation,
                  " is higher than booster max ACM (", boosterMaxModulation, ")");
        return ResultCode::NotApplicable;
    }

    // No block is lower than 128QAM's.
    const Modulation reference = std::max(data.selectedMaxModulation, Modulation::QAM128);
    int offset = 0;
    if (!denseOffsets.find(reference, data.rsec, data.actualModulation, offset)) {
        TRACE_MSG(TraceLevel::Error, "No power offset found for selected max acm=", reference,
                  ", rsec=", textOf(data.rsec), ", acm=", data.actualModulation);
        return ResultCode::NoRadioUnitEntry;
    }

    const long adjusted = Power::add(data.pmaxRefMaxModulation, offset);
    maxPower = std::min(adjusted, data.pmaxActualModulation);
    if (s_trace.isEnabled(TraceLevel::Result)) {
        TRACE_MSG(TraceLevel::Detail, "Static power for ", data.actualModulation, " = ", adjusted);
        TRACE_MSG(TraceLevel::Detail, "ACM adjusted power for selected max ",
                  data.selectedMaxModulation, "(", data.pmaxRefMaxModulation, " + ", offset,
                  ") = ", adjusted);
        s_trace.message(TraceLevel::Result, __func__, __LINE__, "Max power = ", maxPower, " for ",
                        data.actualModulation, ", RSEC-", textOf(data.rsec),
                        ", using selected max ", data.selectedMaxModulation);
    }

    return applyBooster(s_trace, boosterTables, data, booster, maxPower);
}

PowerOffsets CalculatorVo5::initialize() {
    traceInitialize();
    PowerOffsets powerOffsets;
    enterOffsets(powerOffsets, Modulation::QAM128, offsetsTo128, modulations);
    enterOffsets(powerOffsets, Modulation::QAM256, offsetsTo256, modulations);
    enterOffsets(powerOffsets, Modulation::QAM512, offsetsTo512, modulations);
    enterOffsets(powerOffsets, Modulation::QAM1024, offsetsTo1024, modulations);
    enterOffsets(powerOffsets, Modulation::QAM2048, offsetsTo2048, modulations);
    enterOffsets(powerOffsets, Modulation::QAM4096, offsetsTo4096, modulations);
    enterOffsets(powerOffsets, Modulation::QAM8192, offsetsTo8192, modulations);
    enterOffsets(powerOffsets, Modulation::QAM16384, offsetsTo16384, modulations);
    return powerOffsets;
}

BoosterAdjustments CalculatorVo5::initializeBoosterAdjs() {
    BoosterAdjustments adjustments;
    enterTable(adjustments, boosterAdjustments, modulations,
               [](EReferenceSEC rsec, Modulation modulation) {
                   return std::make_tuple(rsec, modulation);
               });
    return adjustments;
}

BoosterBandAdjustments CalculatorVo5::initializeBoosterBandAdjs() {
    BoosterBandAdjustments adjustments;
    enterTable(adjustments, boosterBandAdjustments, modulations,
               [](int band, Modulation modulation) { return std::make_tuple(band, modulation); });
    return adjustments;
}
