#include "CalculatorVo4.h"

#include "Calculation.h"
#include "TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CalculatorVo4Test : public ::testing::Test {
protected:
    static CalculationData calculation(EReferenceSEC rsec, Modulation actual) {
        CalculationData data = emptyCalculation();
        data.rsec = rsec;
        data.actualModulation = actual;
        data.refMaxModulation = Modulation::QAM256;
        data.pmaxActualModulation = 9000;
        data.pmaxRefMaxModulation = 2000;
        return data;
    }

    long powerOf(const CalculationData& data, int presence = 0, int gain = 0,
                 int maxInputPower = 0) {
        long power = 4711;
        EXPECT_EQ(sut.getMaxPower(data, power, presence, gain, maxInputPower, Modulation::QAM4096),
                  0);
        return power;
    }

    Calculator& sut = *CalculatorVo4::getInstance();
};

TEST_F(CalculatorVo4Test, TracesNothingForItsReferenceModulation) {
    TraceCapture trace(6);

    EXPECT_EQ(sut.getMaxRefModulation(Modulation::QAM1024, Modulation::QAM64), Modulation::QAM256);

    EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(CalculatorVo4Test, GivesQpsk3DecibelsAtRsec2And1From5BOn) {
    EXPECT_EQ(powerOf(calculation(EReferenceSEC::Class2, Modulation::QAM4)), 2300);
    for (int rsec = 3; rsec <= 9; ++rsec) {
        EXPECT_EQ(powerOf(calculation(EReferenceSEC{rsec}, Modulation::QAM4)), 2100) << rsec;
    }
}

TEST_F(CalculatorVo4Test, Gives256QamNoOffsetAnd4096Qam2DecibelsLess) {
    for (int rsec = 0; rsec <= 9; ++rsec) {
        EXPECT_EQ(powerOf(calculation(EReferenceSEC{rsec}, Modulation::QAM256)), 2000) << rsec;
        EXPECT_EQ(powerOf(calculation(EReferenceSEC{rsec}, Modulation::QAM4096)), 1800) << rsec;
    }
}

TEST_F(CalculatorVo4Test, TakesGainAndInputPowerIntoAccountWhereTheBoosterAddsNothing) {
    for (const Modulation modulation : {Modulation::QAM2048, Modulation::QAM4096}) {
        const CalculationData data = calculation(EReferenceSEC::Class6B, modulation);

        EXPECT_EQ(powerOf(data, 1, 0, 5000), 1800);
        EXPECT_EQ(powerOf(data, 1, 300, 5000), 1500);
        EXPECT_EQ(powerOf(data, 1, 300, 1200), 1200);
        EXPECT_EQ(powerOf(data, 7, 300, 5000), 1500);
    }
}

TEST_F(CalculatorVo4Test, FailsForAnyReferenceBut256Qam) {
    std::vector<std::int32_t> references = allModulations();
    for (std::int32_t reference = -300; reference <= 17000; ++reference) {
        references.push_back(reference);
    }
    references.push_back(std::numeric_limits<std::int32_t>::min());
    references.push_back(std::numeric_limits<std::int32_t>::max());
    std::vector<std::int32_t> wrong;
    for (const std::int32_t reference : references) {
        CalculationData data = calculation(EReferenceSEC::Class7B, Modulation::QAM16);
        data.refMaxModulation = Modulation{reference};
        long power = 4711;

        const int result = sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW);

        const bool isRight =
            reference == 256 ? result == 0 && power == 2100 : result == 32770 && power == 4711;
        if (!isRight) {
            wrong.push_back(reference);
        }
    }
    EXPECT_THAT(wrong, IsEmpty());
}

TEST_F(CalculatorVo4Test, TracesAReferenceWithoutOffsets) {
    CalculationData data = calculation(EReferenceSEC::Class4L, Modulation::QAM16);
    data.refMaxModulation = Modulation::QAM512;
    long power = 4711;
    TraceCapture trace(6);

    EXPECT_EQ(sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW), 32770);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre("6 msg CalculatorVo4.getMaxPower: data.refMaxModulation=512QAM, "
                    "data.actualModulation=16QAM, data.rsec=1, data.pmaxActualModulation=9000, "
                    "data.pmaxRefMaxModulation=2000, boosterBand=0",
                    "1 msg CalculatorVo4.getMaxPower: No power offset found for ref acm=512QAM, "
                    "rsec=4L, acm=16QAM"));
}

TEST_F(CalculatorVo4Test, FailsForAModulationWithoutAColumn) {
    const std::vector<std::pair<std::int32_t, std::string>> modulations = {
        {0, "CW"},           {2, "BPSK"},           {8192, "8192QAM"}, {16384, "16384QAM"},
        {65536, "65536QAM"}, {100000, "UNDEFINED"}, {8, "UNDEFINED"}};
    for (const auto& [modulation, text] : modulations) {
        const CalculationData data = calculation(EReferenceSEC::Class2, Modulation{modulation});
        long power = 4711;
        TraceCapture trace(1);

        EXPECT_EQ(sut.getMaxPower(data, power, 1, 0, 5000, Modulation::UNDEFINED), 32770) << text;

        EXPECT_EQ(power, 4711);
        EXPECT_THAT(trace.lines(), ElementsAre("1 msg CalculatorVo4.getMaxPower: No power offset "
                                               "found for ref acm=256QAM, rsec=2, acm=" +
                                               text));
    }
}

TEST_F(CalculatorVo4Test, FailsForAnRsecWithoutARow) {
    for (const std::int32_t rsec : {-1, 10, 999, 1000}) {
        const CalculationData data = calculation(EReferenceSEC{rsec}, Modulation::QAM16);
        long power = 4711;
        TraceCapture trace(6);

        EXPECT_EQ(sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW), 32770);

        EXPECT_EQ(power, 4711);
        EXPECT_THAT(trace.lines(),
                    ElementsAre("6 msg CalculatorVo4.getMaxPower: data.refMaxModulation=256QAM, "
                                "data.actualModulation=16QAM, data.rsec=" +
                                    std::to_string(rsec) +
                                    ", data.pmaxActualModulation=9000, "
                                    "data.pmaxRefMaxModulation=2000, boosterBand=0",
                                "1 msg CalculatorVo4.getMaxPower: No power offset found for ref "
                                "acm=256QAM, rsec=UNDEFINED, acm=16QAM"));
    }
}

TEST_F(CalculatorVo4Test, LooksForTheOffsetBeforeItAsksTheBooster) {
    const CalculationData data = calculation(EReferenceSEC::Class2, Modulation::QAM8192);
    long power = 4711;

    EXPECT_EQ(sut.getMaxPower(data, power, 1, 0, 5000, Modulation::QAM4), 32770);

    EXPECT_EQ(power, 4711);
}

TEST_F(CalculatorVo4Test, TakesNoNoticeOfTheSelectedMaximum) {
    for (const Modulation selected : {Modulation::CW, Modulation::QAM4, Modulation::UNDEFINED}) {
        CalculationData data = calculation(EReferenceSEC::Class2, Modulation::QAM16);
        data.selectedMaxModulation = selected;

        EXPECT_EQ(powerOf(data), 2200);
    }
}

} // namespace
