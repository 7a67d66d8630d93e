#include "CalculatorKamV3.h"

#include "Calculation.h"
#include "TraceCapture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

class CalculatorKamV3Test : public ::testing::Test {
protected:
    /// 256QAM with a Pmax of 2500 and a compensation of 1 dB.
    static CalculationData calculation(EReferenceSEC rsec) {
        CalculationData data = emptyCalculation();
        data.rsec = rsec;
        data.actualModulation = Modulation::QAM256;
        data.pmaxActualModulation = 2500;
        data.csPowerCompensation = 100;
        return data;
    }

    long powerOf(const CalculationData& data, long onEntry = 4711) {
        long power = onEntry;
        EXPECT_EQ(sut.getMaxPower(data, power, 0, 0, 0, Modulation::CW), 0);
        return power;
    }

    /// The lines of a query: the uncompensated power, what was read or missed, and the result.
    static std::vector<std::string> lines(const std::string& uncompensated,
                                          const std::vector<std::string>& between,
                                          const std::string& result) {
        const std::string message = " msg CalculatorKamV3.getMaxPower: ";
        std::vector<std::string> lines = {
            "6 enter CalculatorKamV3.getMaxPower: ",
            "6" + message + "uncompensated Pmax for modulation: " + uncompensated};
        lines.insert(lines.end(), between.begin(), between.end());
        lines.push_back("5" + message + "getMaxPower Calculated max power = " + result);
        return lines;
    }

    static std::string cap(const std::string& text) {
        return "6 msg CalculatorKamV3.getMaxPower: min() of uncompensated Pmax and tmuMaxPowerFor" +
               text + " will be used";
    }

    Calculator& sut = *CalculatorKamV3::getInstance();
};

TEST_F(CalculatorKamV3Test, IsCappedByThePmaxOfAModulationThatTheClassChooses) {
    const std::string missing =
        "1 raw 0x8008 TxRfMaxPowerCapability.getPower: getPower, unknown modulation type: 64QAM";
    const struct {
        std::int32_t rsec;
        const char* text;
        std::vector<int> table;
        long compensation;
        long power;
        const char* uncompensated;
        std::vector<std::string> between;
    } cases[] = {
        {0, "2", {4, 1}, 100, 2500, "2400", {}}, // no cap, and no look-up
        {1, "4L", {4, 2600, 16, 2200, 32, 1, 64, 2}, 100, 2300, "2400", {cap("16Qam = 2200")}},
        {2, "4H", {4, 2600, 16, 1, 32, 2150, 64, 2}, -50, 2100, "2550", {cap("32Qam = 2150")}},
        {3, "5B", {4, 2600, 16, 1, 32, 2, 64, 2050}, 100, 2150, "2400", {cap("64Qam = 2050")}},
        {4, "6B", {4, 2600, 16, 1, 32, 2, 64, 2050}, 100, 2150, "2400", {cap("64Qam = 2050")}},
        {5, "5LB", {4, 2600, 16, 1, 32, 2, 64, 2050}, 100, 2150, "2400", {cap("64Qam = 2050")}},
        {6, "5HB", {4, 2600, 16, 1, 32, 2, 64, 2050}, 100, 2150, "2400", {cap("64Qam = 2050")}},
        {7, "6LB", {4, 2600, 16, 1, 32, 2, 64, 2050}, 100, 2150, "2400", {cap("64Qam = 2050")}},
        {8, "6HB", {4, 2600, 16, 1, 32, 2, 64, 2050}, 100, 2150, "2400", {cap("64Qam = 2050")}},
        {9, "7B", {4, 2600, 16, 1, 32, 2, 64, 2050}, 100, 2150, "2400", {cap("64Qam = 2050")}},
        // Above, at and below the uncompensated power
        {1, "4L", {16, 2401}, 100, 2500, "2400", {cap("16Qam = 2400")}},
        {2, "4H", {32, 2400}, 100, 2500, "2400", {cap("32Qam = 2400")}},
        {3, "5B", {64, 2399}, 100, 2499, "2400", {cap("64Qam = 2399")}},
        // Without the cap in the table it is 0.
        {9, "7B", {4, 2600, 16, 2200, 32, 2100}, 0, 0, "2500", {missing, cap("64Qam = 0")}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(std::string(each.text) + ", " + std::to_string(each.power));
        const Radio radio(each.table);
        CalculationData data = calculation(EReferenceSEC{each.rsec});
        data.maxPowerCapability = radio.capability();
        data.csPowerCompensation = each.compensation;
        TraceCapture trace(6);

        EXPECT_EQ(powerOf(data), each.power);

        EXPECT_EQ(trace.lines(),
                  lines("256QAM = " + std::string(each.uncompensated), each.between,
                        std::to_string(each.power) + " for 256QAM with rsec " + each.text +
                            " and power cutback: " + std::to_string(each.compensation)));
    }
}

TEST_F(CalculatorKamV3Test, IsCappedBy0WithoutATable) {
    CalculationData data = calculation(EReferenceSEC::Class4L);
    CalculationData negative = data;
    negative.pmaxActualModulation = -200;

    EXPECT_EQ(powerOf(data), 100);
    EXPECT_EQ(powerOf(negative), -200);
}

TEST_F(CalculatorKamV3Test, AddsTheCompensationToWhatCameInAtAnUnknownRsec) {
    for (const std::int32_t rsec : {-1, 10, 999, 1000}) {
        CalculationData data = calculation(EReferenceSEC{rsec});
        data.csPowerCompensation = 50;
        TraceCapture trace(6);

        EXPECT_EQ(powerOf(data, 1800), 1850) << rsec;

        EXPECT_EQ(trace.lines(),
                  lines("256QAM = 2450",
                        {"1 msg CalculatorKamV3.getMaxPower: getMaxPowerNo matching RSEC"},
                        "1850 for 256QAM with rsec UNDEFINED and power cutback: 50"));
    }
}

TEST_F(CalculatorKamV3Test, NamesTheActualModulationByItsText) {
    CalculationData data = calculation(EReferenceSEC::Class2);
    data.actualModulation = Modulation{8};
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(data), 2500);

    EXPECT_EQ(trace.lines(), lines("UNDEFINED = 2400", {},
                                   "2500 for UNDEFINED with rsec 2 and power cutback: 100"));
}

TEST_F(CalculatorKamV3Test, ReadsNothingElseOfTheRecord) {
    const CalculationData plain = calculation(EReferenceSEC::Class2);
    CalculationData data = plain;
    data.selectedMinModulation = Modulation::QAM4;
    data.selectedMaxModulation = Modulation::BPSK;
    data.refMaxModulation = Modulation::UNDEFINED;
    data.pmaxSelectedMinModulation = -9999;
    data.pmaxSelectedMaxModulation = -9999;
    data.pmaxRefMaxModulation = -9999;

    EXPECT_EQ(powerOf(data), powerOf(plain));
}

TEST_F(CalculatorKamV3Test, ComputesIn32BitsThatWrap) {
    CalculationData data = calculation(EReferenceSEC::Class2);
    data.pmaxActualModulation = intMin;
    data.csPowerCompensation = 1;
    CalculationData unknown = calculation(EReferenceSEC::UNDEFINED);
    unknown.csPowerCompensation = 1;
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(data), intMin);

    EXPECT_EQ(trace.lines(), lines("256QAM = 2147483647", {},
                                   "-2147483648 for 256QAM with rsec 2 and power cutback: 1"));
    EXPECT_EQ(powerOf(unknown, intMax), intMin);
}

} // namespace
