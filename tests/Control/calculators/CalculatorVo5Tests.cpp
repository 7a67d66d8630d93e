#include "CalculatorVo5.h"

#include "Calculation.h"
#include "TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CalculatorVo5Test : public ::testing::Test {
protected:
    CalculatorVo5Test() {
        // The tables come to life at the first query, which traces that.
        long power = 0;
        sut.getMaxPower(emptyCalculation(), power, 0, 0, 0, Modulation::CW);
    }

    static CalculationData calculation(Modulation selected, Modulation actual) {
        CalculationData data = emptyCalculation();
        data.selectedMaxModulation = selected;
        data.actualModulation = actual;
        data.refMaxModulation = Modulation::QAM4096;
        data.pmaxActualModulation = 9000;
        data.pmaxRefMaxModulation = 2000;
        return data;
    }

    long powerOf(const CalculationData& data, int presence = 0, int gain = 0,
                 int maxInputPower = 0) {
        long power = 4711;
        EXPECT_EQ(
            sut.getMaxPower(data, power, presence, gain, maxInputPower, Modulation::UNDEFINED), 0);
        return power;
    }

    /// The first message of a query about a calculation with the powers above.
    static std::string inputs(const std::string& selected, const std::string& actual,
                              const std::string& rsec, const std::string& booster = "0") {
        return "6 msg CalculatorVo5.getMaxPower: data.selectedMaxModulation=" + selected +
               ", data.actualModulation=" + actual + ", data.rsec=" + rsec +
               ", data.pmaxActualModulation=9000, data.pmaxRefMaxModulation=2000, boosterBand=" +
               booster;
    }

    Calculator& sut = *CalculatorVo5::getInstance();
};

// --- The reference modulation

TEST_F(CalculatorVo5Test, TracesItsReferenceModulationWithoutABlankAndAsItWasCut) {
    const std::string enter = "6 enter CalculatorVo5.getMaxRefModulation: availableMaxAcm=";
    const std::string result =
        "5 msg CalculatorVo5.getMaxRefModulation: getMaxRefModulationmax power = ";
    TraceCapture trace(6);

    sut.getMaxRefModulation(Modulation::QAM256, Modulation::QAM1024);
    sut.getMaxRefModulation(Modulation::CW, Modulation::UNDEFINED);

    EXPECT_THAT(trace.lines(),
                ElementsAre(enter + "256QAM, selectedMaxAcm=1024QAM", result + "1024QAM",
                            enter + "CW, selectedMaxAcm=UNDEFINED", result + "4096QAM"));
}

TEST_F(CalculatorVo5Test, CutsTheReferenceModulationAt4096Qam) {
    const auto reference = [this](std::int32_t selected) {
        return static_cast<std::int32_t>(
            sut.getMaxRefModulation(Modulation::QAM16384, Modulation{selected}));
    };

    EXPECT_EQ(reference(1024), 1024);
    EXPECT_EQ(reference(2048), 2048);
    EXPECT_EQ(reference(4095), 4095);
    EXPECT_EQ(reference(4096), 4096);
    EXPECT_EQ(reference(4097), 4096);
    EXPECT_EQ(reference(8192), 4096);
    EXPECT_EQ(reference(65536), 4096);
    EXPECT_EQ(reference(-1), -1);
}

// --- Modulations that it does not apply to

TEST_F(CalculatorVo5Test, DoesNotApplyToAnUndefinedModulationOrAboveTheSelectedMaximum) {
    const struct {
        Modulation selected;
        Modulation actual;
        std::string inputs;
        const char* line;
    } cases[] = {
        {Modulation::QAM256, Modulation::UNDEFINED, inputs("256QAM", "UNDEFINED", "0"),
         "4 msg CalculatorVo5.getMaxPower: getMaxPowerUNDEFINED type invalid, selected max 256QAM"},
        {Modulation::UNDEFINED, Modulation::QAM16, inputs("UNDEFINED", "16QAM", "0"),
         "4 msg CalculatorVo5.getMaxPower: getMaxPower16QAM type invalid, selected max UNDEFINED"},
        {Modulation::QAM4, Modulation::QAM16, inputs("4QAM", "16QAM", "0"),
         "5 msg CalculatorVo5.getMaxPower: getMaxPower16QAM is higher than selected max ACM "
         "(4QAM)"}};
    for (const auto& each : cases) {
        long power = 4711;
        TraceCapture trace(6);

        EXPECT_EQ(sut.getMaxPower(calculation(each.selected, each.actual), power, 0, 0, 0,
                                  Modulation::CW),
                  2);

        EXPECT_EQ(power, 4711);
        EXPECT_THAT(trace.lines(), ElementsAre(each.inputs, each.line));
    }
}

TEST_F(CalculatorVo5Test, AppliesUpToTheSelectedMaximum) {
    long power = 4711;

    EXPECT_EQ(sut.getMaxPower(calculation(Modulation{15}, Modulation::QAM16), power, 0, 0, 0,
                              Modulation::CW),
              2);
    EXPECT_EQ(sut.getMaxPower(calculation(Modulation{16}, Modulation::QAM16), power, 0, 0, 0,
                              Modulation::CW),
              0);
    EXPECT_EQ(sut.getMaxPower(calculation(Modulation{17}, Modulation::QAM16), power, 0, 0, 0,
                              Modulation::CW),
              0);
}

TEST_F(CalculatorVo5Test, ChecksUndefinedThenSelectedThenBoosterThenTheTable) {
    CalculationData undefined = calculation(Modulation::QAM4, Modulation::UNDEFINED);
    CalculationData aboveSelected = calculation(Modulation::QAM4, Modulation::QAM64);
    CalculationData aboveBooster = calculation(Modulation::QAM64, Modulation::QAM64);
    undefined.rsec = EReferenceSEC::UNDEFINED;
    aboveSelected.rsec = EReferenceSEC::UNDEFINED;
    aboveBooster.rsec = EReferenceSEC::UNDEFINED;
    long power = 4711;
    TraceCapture trace(5);

    EXPECT_EQ(sut.getMaxPower(undefined, power, 1, 0, 0, Modulation::CW), 2);
    EXPECT_EQ(sut.getMaxPower(aboveSelected, power, 1, 0, 0, Modulation::CW), 2);
    EXPECT_EQ(sut.getMaxPower(aboveBooster, power, 1, 0, 0, Modulation::CW), 2);
    EXPECT_EQ(sut.getMaxPower(aboveBooster, power, 0, 0, 0, Modulation::CW), 32770);

    EXPECT_EQ(power, 4711);
    EXPECT_THAT(
        trace.lines(),
        ElementsAre("4 msg CalculatorVo5.getMaxPower: getMaxPowerUNDEFINED type invalid, selected "
                    "max 4QAM",
                    "5 msg CalculatorVo5.getMaxPower: getMaxPower64QAM is higher than selected max "
                    "ACM (4QAM)",
                    "5 msg CalculatorVo5.getMaxPower: getMaxPower64QAM is higher than booster max "
                    "ACM (CW)",
                    "1 msg CalculatorVo5.getMaxPower: No power offset found for selected max "
                    "acm=128QAM, rsec=UNDEFINED, acm=64QAM"));
}

// --- The reference block

TEST_F(CalculatorVo5Test, CountsALowSelectedMaximumFromTheBlockOf128Qam) {
    TraceCapture trace(6);

    // Against 128QAM, 64QAM has no offset, at RSEC 2 either.
    EXPECT_EQ(powerOf(calculation(Modulation::QAM64, Modulation::QAM64)), 2000);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre(inputs("64QAM", "64QAM", "0"),
                    "6 msg CalculatorVo5.getMaxPower: Static power for 64QAM = 2000",
                    "6 msg CalculatorVo5.getMaxPower: ACM adjusted power for selected max "
                    "64QAM(2000 + 0) = 2000",
                    "5 msg CalculatorVo5.getMaxPower: Max power = 2000 for 64QAM, RSEC-2, using "
                    "selected max 64QAM"));
}

TEST_F(CalculatorVo5Test, CountsEverySelectedMaximumBelow128QamFromItsBlock) {
    for (const std::int32_t selected : {4, 8, 16, 32, 64, 127, 128}) {
        EXPECT_EQ(powerOf(calculation(Modulation{selected}, Modulation::QAM4)), 2200) << selected;
    }
    EXPECT_EQ(powerOf(calculation(Modulation::QAM256, Modulation::QAM4)), 2300);
}

TEST_F(CalculatorVo5Test, Gives16384QamAnd8192QamOneDecibelLessThanTheirPmax) {
    EXPECT_EQ(powerOf(calculation(Modulation::QAM16384, Modulation::QAM16384)), 1900);
    EXPECT_EQ(powerOf(calculation(Modulation::QAM8192, Modulation::QAM8192)), 1900);
    EXPECT_EQ(powerOf(calculation(Modulation::QAM8192, Modulation::QAM4096)), 1900);
    EXPECT_EQ(powerOf(calculation(Modulation::QAM16384, Modulation::QAM4096)), 2000);
}

TEST_F(CalculatorVo5Test, TracesANegativeOffsetWithItsSign) {
    CalculationData data = calculation(Modulation::QAM8192, Modulation::QAM8192);
    data.rsec = EReferenceSEC::Class6HB;
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(data), 1900);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre(inputs("8192QAM", "8192QAM", "8"),
                    "6 msg CalculatorVo5.getMaxPower: Static power for 8192QAM = 1900",
                    "6 msg CalculatorVo5.getMaxPower: ACM adjusted power for selected max "
                    "8192QAM(2000 + -100) = 1900",
                    "5 msg CalculatorVo5.getMaxPower: Max power = 1900 for 8192QAM, RSEC-6HB, "
                    "using selected max 8192QAM"));
}

TEST_F(CalculatorVo5Test, FailsForASelectedMaximumWithoutABlock) {
    const std::vector<std::pair<std::int32_t, std::string>> selections = {
        {129, "UNDEFINED"}, {16385, "UNDEFINED"}, {65536, "65536QAM"}, {100001, "UNDEFINED"}};
    for (const auto& [selected, text] : selections) {
        CalculationData data = calculation(Modulation{selected}, Modulation::QAM4);
        data.rsec = EReferenceSEC::Class5LB;
        long power = 4711;
        TraceCapture trace(6);

        EXPECT_EQ(sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW), 32770) << selected;

        EXPECT_EQ(power, 4711);
        EXPECT_THAT(trace.lines(),
                    ElementsAre(inputs(text, "4QAM", "5"),
                                "1 msg CalculatorVo5.getMaxPower: No power offset found for "
                                "selected max acm=" +
                                    text + ", rsec=5LB, acm=4QAM"));
    }
}

TEST_F(CalculatorVo5Test, HasBlocksForItsReferencesAndForNoOtherNumber) {
    const std::set<std::int32_t> references = {256, 512, 1024, 2048, 4096, 8192, 16384};
    std::vector<std::int32_t> selections = {
        32768, 65535, 65536, 65537, 131072, std::numeric_limits<std::int32_t>::max()};
    for (std::int32_t selected = 4; selected <= 17000; ++selected) {
        selections.push_back(selected);
    }
    std::vector<std::int32_t> wrong;
    for (const std::int32_t selected : selections) {
        for (const EReferenceSEC rsec : {EReferenceSEC::Class2, EReferenceSEC::Class7B}) {
            CalculationData data = calculation(Modulation{selected}, Modulation::QAM4);
            data.rsec = rsec;
            long power = 4711;

            const int result = sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW);

            const bool hasBlock = selected <= 128 || references.count(selected) == 1;
            if (result != (hasBlock ? 0 : 32770)) {
                wrong.push_back(selected);
            }
        }
    }
    EXPECT_THAT(wrong, IsEmpty());
}

TEST_F(CalculatorVo5Test, FailsForAModulationWithoutAColumn) {
    const std::vector<std::pair<std::int32_t, std::string>> modulations = {
        {-1, "UNDEFINED"}, {0, "CW"}, {2, "BPSK"}, {3, "UNDEFINED"}, {8, "UNDEFINED"}};
    for (const auto& [modulation, text] : modulations) {
        const CalculationData data = calculation(Modulation::QAM64, Modulation{modulation});
        long power = 4711;
        TraceCapture trace(6);

        EXPECT_EQ(sut.getMaxPower(data, power, 1, 0, 5000, Modulation::UNDEFINED), 32770) << text;

        EXPECT_EQ(power, 4711);
        EXPECT_THAT(trace.lines(),
                    ElementsAre(inputs("64QAM", text, "0", "1"),
                                "1 msg CalculatorVo5.getMaxPower: No power offset found for "
                                "selected max acm=128QAM, rsec=2, acm=" +
                                    text));
    }
}

TEST_F(CalculatorVo5Test, ReadsNoReferenceModulationButTheSelectedMaximum) {
    for (const std::int32_t reference : allModulations()) {
        CalculationData data = calculation(Modulation::QAM1024, Modulation::QAM4);
        data.refMaxModulation = Modulation{reference};

        EXPECT_EQ(powerOf(data), 2400) << reference;
    }
}

// --- The booster

TEST_F(CalculatorVo5Test, AddsNothingForABoosterFrom2048QamOn) {
    for (const Modulation modulation :
         {Modulation::QAM2048, Modulation::QAM4096, Modulation::QAM8192, Modulation::QAM16384}) {
        CalculationData data = calculation(Modulation::QAM16384, modulation);
        data.pmaxRefMaxModulation = 3000;
        const long withoutBooster = powerOf(data);

        for (const int presence : {1, 7}) {
            EXPECT_EQ(powerOf(data, presence, 0, 5000), withoutBooster);
            EXPECT_EQ(powerOf(data, presence, 250, 5000), withoutBooster - 250);
            EXPECT_EQ(powerOf(data, presence, 250, 1000), 1000);
        }
    }
}

TEST_F(CalculatorVo5Test, TracesTheBoosterStepsOfAHighModulation) {
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(calculation(Modulation::QAM16384, Modulation::QAM16384), 2, 100, 5000), 1800);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre(inputs("16384QAM", "16384QAM", "0", "2"),
                    "6 msg CalculatorVo5.getMaxPower: Static power for 16384QAM = 1900",
                    "6 msg CalculatorVo5.getMaxPower: ACM adjusted power for selected max "
                    "16384QAM(2000 + -100) = 1900",
                    "5 msg CalculatorVo5.getMaxPower: Max power = 1900 for 16384QAM, RSEC-2, using "
                    "selected max 16384QAM",
                    "6 msg CalculatorVo5.getMaxPower: boosterPowerAdjustments: 0",
                    "6 msg CalculatorVo5.getMaxPower: maxPower (boosted.1): 1900",
                    "6 msg CalculatorVo5.getMaxPower: boosterBandPowerAdjustments: 0",
                    "6 msg CalculatorVo5.getMaxPower: maxPower (boosted.2): 1900",
                    "6 msg CalculatorVo5.getMaxPower: maxPower (boosted.3): 1800",
                    "6 msg CalculatorVo5.getMaxPower: maxPower (boosted.4): 1800"));
}

// --- The builder

TEST_F(CalculatorVo5Test, TracesTheEntryOfItsBuilderAlone) {
    TraceCapture trace(6);

    CalculatorVo5::initialize();
    EXPECT_THAT(trace.lines(), ElementsAre("6 enter CalculatorVo5.initialize: "));

    CalculatorVo5::initializeBoosterAdjs();
    CalculatorVo5::initializeBoosterBandAdjs();
    EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(CalculatorVo5Test, DoesNotTraceTheEntryOfItsBuilderBelowLevel6) {
    TraceCapture trace(5);

    CalculatorVo5::initialize();

    EXPECT_THAT(trace.lines(), IsEmpty());
}

} // namespace
