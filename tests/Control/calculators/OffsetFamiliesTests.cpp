#include "Calculation.h"
#include "CalculatorKam.h"
#include "CalculatorKamV2.h"
#include "TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// 16QAM at RSEC 2 with 256QAM (2000) as reference and 4QAM as selected minimum.
CalculationData ordinaryCalculation() {
    CalculationData data = emptyCalculation();
    data.selectedMinModulation = Modulation::QAM4;
    data.selectedMaxModulation = Modulation::QAM256;
    data.actualModulation = Modulation::QAM16;
    data.refMaxModulation = Modulation::QAM256;
    data.pmaxSelectedMinModulation = 2800;
    data.pmaxActualModulation = 2700;
    data.pmaxRefMaxModulation = 2000;
    return data;
}

/// One of the two families that count from offsets relative to 256QAM, by the rules that they
/// share. The offsets used here are the same for both where nothing else is said.
struct OffsetFamily {
    std::string name;
    Calculator* (*calculator)();
    int at4;  ///< offset of 4QAM at RSEC 2, in hundredths of a dB
    int at16; ///< that of 16QAM
};

class OffsetFamilies : public ::testing::TestWithParam<OffsetFamily> {
protected:
    /// Power at the data's actual modulation; fails the test if there is an error.
    long powerOf(const CalculationData& data) const {
        long power = 4711;
        EXPECT_EQ(sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW), 0);
        return power;
    }

    std::string line(const std::string& kind, const std::string& text) const {
        return kind + " " + GetParam().name + ".getMaxPower: " + text;
    }

    Calculator& sut = *GetParam().calculator();
};

TEST_P(OffsetFamilies, TraceTheFourBoundsAndTheResult) {
    const std::string minPower = std::to_string(2000 + GetParam().at4);
    const std::string actualPower = std::to_string(2000 + GetParam().at16);
    TraceCapture trace(6);

    const long power = powerOf(ordinaryCalculation());

    EXPECT_EQ(power, 2000 + GetParam().at16);
    EXPECT_THAT(
        trace.lines(),
        ElementsAre(line("5 msg", "getMaxPower std::min parameters: 2700," + minPower + "," +
                                      actualPower + ",2800"),
                    line("5 msg", "getMaxPower Max power for modulation 16QAM, rsec 0 and max "
                                  "modulation 2000 = " +
                                      actualPower)));
}

TEST_P(OffsetFamilies, TakeTheLeastOfTheFourBoundsWhicheverItIs) {
    CalculationData lowActualPmax = ordinaryCalculation();
    lowActualPmax.pmaxActualModulation = 1500;
    CalculationData lowMinPmax = ordinaryCalculation();
    lowMinPmax.pmaxSelectedMinModulation = 1400;
    CalculationData lowMinOffset = ordinaryCalculation();
    lowMinOffset.selectedMinModulation = Modulation::QAM1024;
    CalculationData lowActualOffset = ordinaryCalculation();
    lowActualOffset.actualModulation = Modulation::QAM1024;

    EXPECT_EQ(powerOf(lowActualPmax), 1500);
    EXPECT_EQ(powerOf(lowMinPmax), 1400);
    EXPECT_EQ(powerOf(lowMinOffset), 1900);
    EXPECT_EQ(powerOf(lowActualOffset), 1900);
}

TEST_P(OffsetFamilies, CompareTheBoundsWithTheirSign) {
    CalculationData data = ordinaryCalculation();
    data.pmaxActualModulation = -5;
    data.pmaxSelectedMinModulation = -6;
    data.pmaxRefMaxModulation = 100;

    EXPECT_EQ(powerOf(data), -6);
}

TEST_P(OffsetFamilies, TakeTheOffsetOfTheReferenceOutOfItsPmax) {
    CalculationData data = ordinaryCalculation();
    data.actualModulation = Modulation::QAM256;
    data.selectedMinModulation = Modulation::QAM256;
    data.refMaxModulation = Modulation::QAM1024;
    data.pmaxRefMaxModulation = 1800;
    CalculationData above = data;
    above.refMaxModulation = Modulation::QAM64;

    EXPECT_EQ(powerOf(data), 1900);
    EXPECT_EQ(powerOf(above), 1700);
}

TEST_P(OffsetFamilies, CountFrom0WithoutAnOffsetOfTheReference) {
    for (const std::int32_t reference : {0, 8, 65536, 100000}) {
        CalculationData data = ordinaryCalculation();
        data.refMaxModulation = Modulation{reference};
        data.csPowerCompensation = 10;
        TraceCapture trace(6);

        const long power = powerOf(data);

        const std::string minPower = std::to_string(10 + GetParam().at4);
        const std::string actualPower = std::to_string(10 + GetParam().at16);
        EXPECT_EQ(power, 10 + GetParam().at16) << reference;
        EXPECT_THAT(
            trace.lines(),
            ElementsAre(line("5 msg", "getMaxPower std::min parameters: 2700," + minPower + "," +
                                          actualPower + ",2800"),
                        line("5 msg", "getMaxPower Max power for modulation 16QAM, rsec 0 and max "
                                      "modulation 2000 = " +
                                          actualPower)));
    }
}

TEST_P(OffsetFamilies, HaveAReferencePowerForTheColumnsAndForNoOtherNumber) {
    const std::set<std::int32_t> columns = {2,   4,    16,   32,   64,   128,  256,
                                            512, 1024, 2048, 4096, 8192, 16384};
    std::vector<std::int32_t> wrong;
    for (std::int32_t reference = -300; reference <= 17000; ++reference) {
        CalculationData data = ordinaryCalculation();
        data.refMaxModulation = Modulation{reference};
        data.actualModulation = Modulation::QAM256;
        data.selectedMinModulation = Modulation::QAM256;

        // With a reference power it is 2000 and at most 6 dB more or less, without one it is 0.
        if ((powerOf(data) >= 1400) != (columns.count(reference) == 1)) {
            wrong.push_back(reference);
        }
    }
    EXPECT_THAT(wrong, IsEmpty());
}

TEST_P(OffsetFamilies, AddTheCompensationToTheOffsetPowersAlone) {
    CalculationData data = ordinaryCalculation();
    data.actualModulation = Modulation::QAM256;
    data.selectedMinModulation = Modulation::QAM512;
    data.csPowerCompensation = -300;
    TraceCapture trace(6);

    const long lowered = powerOf(data);

    EXPECT_EQ(lowered, 1700);
    EXPECT_THAT(
        trace.lines(),
        ElementsAre(line("5 msg", "getMaxPower std::min parameters: 2700,1700,1700,2800"),
                    line("5 msg", "getMaxPower Max power for modulation 256QAM, rsec 0 and max "
                                  "modulation 2000 = 1700")));
    data.csPowerCompensation = 5000;
    EXPECT_EQ(powerOf(data), 2700);
}

TEST_P(OffsetFamilies, SkipTheBoundOfASelectedMinimumWithoutAnOffset) {
    for (const std::int32_t minimum : {0, 8, 65536, 100000}) {
        CalculationData data = ordinaryCalculation();
        data.actualModulation = Modulation::QAM512;
        data.selectedMinModulation = Modulation{minimum};
        TraceCapture trace(6);

        const long power = powerOf(data);

        EXPECT_EQ(power, 2000) << minimum;
        EXPECT_THAT(
            trace.lines(),
            ElementsAre(line("5 msg", "getMaxPower std::min parameters: 2700,2000,2800"),
                        line("5 msg", "getMaxPower Max power for modulation 512QAM, rsec 0 and max "
                                      "modulation 2000 = 2000")));
    }
}

TEST_P(OffsetFamilies, KeepThePmaxBoundsWithoutAnOffsetOfTheSelectedMinimum) {
    CalculationData lowMinPmax = ordinaryCalculation();
    lowMinPmax.selectedMinModulation = Modulation::UNDEFINED;
    lowMinPmax.pmaxSelectedMinModulation = 50;
    CalculationData lowActualPmax = ordinaryCalculation();
    lowActualPmax.selectedMinModulation = Modulation::UNDEFINED;
    lowActualPmax.pmaxActualModulation = 40;

    EXPECT_EQ(powerOf(lowMinPmax), 50);
    EXPECT_EQ(powerOf(lowActualPmax), 40);
}

TEST_P(OffsetFamilies, FailForAnRsecWithoutARow) {
    for (const std::int32_t rsec : {-1, 10, 999, 1000}) {
        CalculationData data = ordinaryCalculation();
        data.rsec = EReferenceSEC{rsec};
        long power = 4711;
        TraceCapture trace(6);

        EXPECT_EQ(sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW), 32776);

        EXPECT_EQ(power, 4711);
        EXPECT_THAT(
            trace.lines(),
            ElementsAre(line("1 msg", "No power offset found for rsec=UNDEFINED, acm=16QAM")));
    }
}

TEST_P(OffsetFamilies, FailForAModulationWithoutAColumn) {
    const std::vector<std::pair<std::int32_t, std::string>> modulations = {
        {0, "CW"}, {3, "UNDEFINED"}, {8, "UNDEFINED"}, {65536, "65536QAM"}, {100000, "UNDEFINED"}};
    for (const auto& [modulation, text] : modulations) {
        CalculationData data = ordinaryCalculation();
        data.rsec = EReferenceSEC::Class5HB;
        data.actualModulation = Modulation{modulation};
        long power = 4711;
        TraceCapture trace(6);

        EXPECT_EQ(sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW), 32776);

        EXPECT_EQ(power, 4711);
        EXPECT_THAT(trace.lines(),
                    ElementsAre(line("1 msg", "No power offset found for rsec=5HB, acm=" + text)));
    }
}

TEST_P(OffsetFamilies, NameTheRsecByItsNumberInTheResult) {
    CalculationData data = ordinaryCalculation();
    data.rsec = EReferenceSEC::Class7B;
    TraceCapture trace(5);

    powerOf(data);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre(line("5 msg", "getMaxPower std::min parameters: 2700,2100,2100,2800"),
                    line("5 msg", "getMaxPower Max power for modulation 16QAM, rsec 9 and max "
                                  "modulation 2000 = 2100")));
}

TEST_P(OffsetFamilies, ComputeIn32BitsThatWrap) {
    // 1024QAM has an offset of -1 dB: taking it out of the highest power wraps.
    CalculationData data = ordinaryCalculation();
    data.actualModulation = Modulation::QAM256;
    data.selectedMinModulation = Modulation::QAM256;
    data.refMaxModulation = Modulation::QAM1024;
    data.pmaxRefMaxModulation = intMax;
    CalculationData compensated = ordinaryCalculation();
    compensated.actualModulation = Modulation::QAM256;
    compensated.selectedMinModulation = Modulation::QAM256;
    compensated.pmaxRefMaxModulation = -1;
    compensated.csPowerCompensation = intMin;

    EXPECT_EQ(powerOf(data), -2147483549); // 2147483647 + 100 - 4294967296
    EXPECT_EQ(powerOf(compensated), 2700); // -1 - 2147483648 + 4294967296 = 2147483647
}

INSTANTIATE_TEST_SUITE_P(
    Are, OffsetFamilies,
    ::testing::Values(OffsetFamily{"CalculatorKam", &calculatorOf<CalculatorKam>, 300, 200},
                      OffsetFamily{"CalculatorKamV2", &calculatorOf<CalculatorKamV2>, 600, 400}),
    [](const auto& test) { return test.param.name; });

// --- One by one

TEST(CalculatorKam, GivesTheActualModulationItsOffsetPower) {
    CalculationData data = ordinaryCalculation();
    data.pmaxActualModulation = 2300;
    data.pmaxSelectedMinModulation = 2300;
    TraceCapture trace(6);
    long power = 4711;

    EXPECT_EQ(CalculatorKam::getInstance()->getMaxPower(data, power, 0, 0, 0, Modulation::CW), 0);

    EXPECT_EQ(power, 2200);
    EXPECT_THAT(trace.lines(),
                ElementsAre("5 msg CalculatorKam.getMaxPower: getMaxPower std::min parameters: "
                            "2300,2300,2200,2300",
                            "5 msg CalculatorKam.getMaxPower: getMaxPower Max power for modulation "
                            "16QAM, rsec 0 and max modulation 2000 = 2200"));
}

TEST(CalculatorKam, BoundsTheActualModulationByTheSelectedMinimum) {
    CalculationData data = ordinaryCalculation();
    data.pmaxActualModulation = 2300;
    data.selectedMinModulation = Modulation::QAM1024;
    data.pmaxSelectedMinModulation = 1900;
    TraceCapture trace(6);
    long power = 4711;

    EXPECT_EQ(CalculatorKam::getInstance()->getMaxPower(data, power, 0, 0, 0, Modulation::CW), 0);

    EXPECT_EQ(power, 1900);
    EXPECT_THAT(trace.lines(),
                ElementsAre("5 msg CalculatorKam.getMaxPower: getMaxPower std::min parameters: "
                            "2300,1900,2200,1900",
                            "5 msg CalculatorKam.getMaxPower: getMaxPower Max power for modulation "
                            "16QAM, rsec 0 and max modulation 2000 = 1900"));
}

TEST(CalculatorKamV2, GivesBpskSixDecibelsMoreThanTheReference) {
    CalculationData data = ordinaryCalculation();
    data.actualModulation = Modulation::BPSK;
    data.selectedMinModulation = Modulation::BPSK;
    data.pmaxActualModulation = 2700;
    data.pmaxSelectedMinModulation = 2700;
    TraceCapture trace(6);
    long power = 4711;

    EXPECT_EQ(CalculatorKamV2::getInstance()->getMaxPower(data, power, 0, 0, 0, Modulation::CW), 0);

    EXPECT_EQ(power, 2600);
    EXPECT_THAT(trace.lines(),
                ElementsAre("5 msg CalculatorKamV2.getMaxPower: getMaxPower std::min parameters: "
                            "2700,2600,2600,2700",
                            "5 msg CalculatorKamV2.getMaxPower: getMaxPower Max power for "
                            "modulation BPSK, rsec 0 and max modulation 2000 = 2600"));
}

TEST(CalculatorKamV2, Gives16384QamOneDecibelLessThanTheReference) {
    CalculationData data = ordinaryCalculation();
    data.rsec = EReferenceSEC::Class5B;
    data.actualModulation = Modulation::QAM16384;
    data.selectedMinModulation = Modulation::QAM16384;
    data.pmaxActualModulation = 2000;
    data.pmaxSelectedMinModulation = 2000;
    TraceCapture trace(6);
    long power = 4711;

    EXPECT_EQ(CalculatorKamV2::getInstance()->getMaxPower(data, power, 0, 0, 0, Modulation::CW), 0);

    EXPECT_EQ(power, 1900);
    EXPECT_THAT(trace.lines(),
                ElementsAre("5 msg CalculatorKamV2.getMaxPower: getMaxPower std::min parameters: "
                            "2000,1900,1900,2000",
                            "5 msg CalculatorKamV2.getMaxPower: getMaxPower Max power for "
                            "modulation 16384QAM, rsec 3 and max modulation 2000 = 1900"));
}

} // namespace
