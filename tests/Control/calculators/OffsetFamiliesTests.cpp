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

    /// The two lines of a power: its bounds, and what it is for.
    std::vector<std::string> powerLines(const std::string& bounds, const std::string& modulation,
                                        int rsec, int power) const {
        return {line("5 msg", "getMaxPower std::min parameters: " + bounds),
                line("5 msg", "getMaxPower Max power for modulation " + modulation + ", rsec " +
                                  std::to_string(rsec) +
                                  " and max modulation 2000 = " + std::to_string(power))};
    }

    Calculator& sut = *GetParam().calculator();
};

TEST_P(OffsetFamilies, TraceTheFourBoundsAndTheResult) {
    const std::string minPower = std::to_string(2000 + GetParam().at4);
    const int power = 2000 + GetParam().at16;
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(ordinaryCalculation()), power);

    EXPECT_EQ(trace.lines(), powerLines("2700," + minPower + "," + std::to_string(power) + ",2800",
                                        "16QAM", 0, power));
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

        const std::string minPower = std::to_string(10 + GetParam().at4);
        const int power = 10 + GetParam().at16;
        EXPECT_EQ(powerOf(data), power) << reference;
        EXPECT_EQ(trace.lines(),
                  powerLines("2700," + minPower + "," + std::to_string(power) + ",2800", "16QAM", 0,
                             power));
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

    EXPECT_EQ(powerOf(data), 1700);

    EXPECT_EQ(trace.lines(), powerLines("2700,1700,1700,2800", "256QAM", 0, 1700));
    data.csPowerCompensation = 5000;
    EXPECT_EQ(powerOf(data), 2700);
}

TEST_P(OffsetFamilies, SkipTheBoundOfASelectedMinimumWithoutAnOffset) {
    for (const std::int32_t minimum : {0, 8, 65536, 100000}) {
        CalculationData data = ordinaryCalculation();
        data.actualModulation = Modulation::QAM512;
        data.selectedMinModulation = Modulation{minimum};
        TraceCapture trace(6);

        EXPECT_EQ(powerOf(data), 2000) << minimum;

        EXPECT_EQ(trace.lines(), powerLines("2700,2000,2800", "512QAM", 0, 2000));
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

    EXPECT_EQ(trace.lines(), powerLines("2700,2100,2100,2800", "16QAM", 9, 2100));
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

TEST(OffsetFamiliesByHand, HaveThePowersThatWereWorkedOut) {
    const struct {
        const char* name;
        Calculator* calculator;
        EReferenceSEC rsec;
        Modulation selectedMin;
        Modulation actual;
        long pmaxSelectedMin;
        long pmaxActual;
        long power;
        const char* bounds;
        const char* result;
    } cases[] = {
        // 2 dB more than the reference at 16QAM
        {"CalculatorKam", CalculatorKam::getInstance(), EReferenceSEC::Class2, Modulation::QAM4,
         Modulation::QAM16, 2300, 2300, 2200, "2300,2300,2200,2300", "16QAM, rsec 0"},
        // Bounded by the selected minimum
        {"CalculatorKam", CalculatorKam::getInstance(), EReferenceSEC::Class2, Modulation::QAM1024,
         Modulation::QAM16, 1900, 2300, 1900, "2300,1900,2200,1900", "16QAM, rsec 0"},
        // 6 dB more
        {"CalculatorKamV2", CalculatorKamV2::getInstance(), EReferenceSEC::Class2, Modulation::BPSK,
         Modulation::BPSK, 2700, 2700, 2600, "2700,2600,2600,2700", "BPSK, rsec 0"},
        // 1 dB less
        {"CalculatorKamV2", CalculatorKamV2::getInstance(), EReferenceSEC::Class5B,
         Modulation::QAM16384, Modulation::QAM16384, 2000, 2000, 1900, "2000,1900,1900,2000",
         "16384QAM, rsec 3"}};
    for (const auto& each : cases) {
        SCOPED_TRACE(std::string(each.name) + ", " + each.bounds);
        CalculationData data = ordinaryCalculation();
        data.rsec = each.rsec;
        data.selectedMinModulation = each.selectedMin;
        data.actualModulation = each.actual;
        data.pmaxSelectedMinModulation = each.pmaxSelectedMin;
        data.pmaxActualModulation = each.pmaxActual;
        TraceCapture trace(6);
        long power = 4711;

        EXPECT_EQ(each.calculator->getMaxPower(data, power, 0, 0, 0, Modulation::CW), 0);

        EXPECT_EQ(power, each.power);
        const std::string line = "5 msg " + std::string(each.name) + ".getMaxPower: getMaxPower ";
        EXPECT_THAT(trace.lines(),
                    ElementsAre(line + "std::min parameters: " + each.bounds,
                                line + "Max power for modulation " + each.result +
                                    " and max modulation 2000 = " + std::to_string(each.power)));
    }
}

} // namespace
