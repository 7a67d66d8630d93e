#include "CalculatorKamV3.h"

#include "Calculation.h"
#include "TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;

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

    Calculator& sut = *CalculatorKamV3::getInstance();
};

TEST_F(CalculatorKamV3Test, HasNoCapAtRsec2) {
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(calculation(EReferenceSEC::Class2)), 2500);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre("6 enter CalculatorKamV3.getMaxPower: ",
                    "6 msg CalculatorKamV3.getMaxPower: uncompensated Pmax for modulation: 256QAM "
                    "= 2400",
                    "5 msg CalculatorKamV3.getMaxPower: getMaxPower Calculated max power = 2500 "
                    "for 256QAM with rsec 2 and power cutback: 100"));
}

TEST_F(CalculatorKamV3Test, IsCappedBy16QamAtRsec4L) {
    const Radio radio({4, 2600, 16, 2200, 32, 1, 64, 2});
    CalculationData data = calculation(EReferenceSEC::Class4L);
    data.maxPowerCapability = radio.capability();
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(data), 2300);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre("6 enter CalculatorKamV3.getMaxPower: ",
                    "6 msg CalculatorKamV3.getMaxPower: uncompensated Pmax for modulation: 256QAM "
                    "= 2400",
                    "6 msg CalculatorKamV3.getMaxPower: min() of uncompensated Pmax and "
                    "tmuMaxPowerFor16Qam = 2200 will be used",
                    "5 msg CalculatorKamV3.getMaxPower: getMaxPower Calculated max power = 2300 "
                    "for 256QAM with rsec 4L and power cutback: 100"));
}

TEST_F(CalculatorKamV3Test, IsCappedBy32QamAtRsec4H) {
    const Radio radio({4, 2600, 16, 1, 32, 2150, 64, 2});
    CalculationData data = calculation(EReferenceSEC::Class4H);
    data.maxPowerCapability = radio.capability();
    data.csPowerCompensation = -50;
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(data), 2100);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre("6 enter CalculatorKamV3.getMaxPower: ",
                    "6 msg CalculatorKamV3.getMaxPower: uncompensated Pmax for modulation: 256QAM "
                    "= 2550",
                    "6 msg CalculatorKamV3.getMaxPower: min() of uncompensated Pmax and "
                    "tmuMaxPowerFor32Qam = 2150 will be used",
                    "5 msg CalculatorKamV3.getMaxPower: getMaxPower Calculated max power = 2100 "
                    "for 256QAM with rsec 4H and power cutback: -50"));
}

TEST_F(CalculatorKamV3Test, IsCappedBy64QamAtEveryRsecFrom5BOn) {
    const std::vector<std::pair<std::int32_t, std::string>> classes = {
        {3, "5B"}, {4, "6B"}, {5, "5LB"}, {6, "5HB"}, {7, "6LB"}, {8, "6HB"}, {9, "7B"}};
    const Radio radio({4, 2600, 16, 1, 32, 2, 64, 2050});
    for (const auto& [rsec, text] : classes) {
        CalculationData data = calculation(EReferenceSEC{rsec});
        data.maxPowerCapability = radio.capability();
        TraceCapture trace(6);

        EXPECT_EQ(powerOf(data), 2150) << text;

        EXPECT_THAT(
            trace.lines(),
            ElementsAre("6 enter CalculatorKamV3.getMaxPower: ",
                        "6 msg CalculatorKamV3.getMaxPower: uncompensated Pmax for modulation: "
                        "256QAM = 2400",
                        "6 msg CalculatorKamV3.getMaxPower: min() of uncompensated Pmax and "
                        "tmuMaxPowerFor64Qam = 2050 will be used",
                        "5 msg CalculatorKamV3.getMaxPower: getMaxPower Calculated max power = "
                        "2150 for 256QAM with rsec " +
                            text + " and power cutback: 100"));
    }
}

TEST_F(CalculatorKamV3Test, IsNotRaisedByACapAboveIt) {
    const Radio radio({16, 2401, 32, 2400, 64, 2399});
    CalculationData above = calculation(EReferenceSEC::Class4L);
    CalculationData equal = calculation(EReferenceSEC::Class4H);
    CalculationData below = calculation(EReferenceSEC::Class5B);
    above.maxPowerCapability = radio.capability();
    equal.maxPowerCapability = radio.capability();
    below.maxPowerCapability = radio.capability();

    EXPECT_EQ(powerOf(above), 2500);
    EXPECT_EQ(powerOf(equal), 2500);
    EXPECT_EQ(powerOf(below), 2499);
}

TEST_F(CalculatorKamV3Test, IsCappedBy0WithoutTheCapInTheTable) {
    const Radio radio({4, 2600, 16, 2200, 32, 2100});
    CalculationData data = calculation(EReferenceSEC::Class7B);
    data.maxPowerCapability = radio.capability();
    data.csPowerCompensation = 0;
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(data), 0);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre("6 enter CalculatorKamV3.getMaxPower: ",
                    "6 msg CalculatorKamV3.getMaxPower: uncompensated Pmax for modulation: 256QAM "
                    "= 2500",
                    "1 raw 0x8008 TxRfMaxPowerCapability.getPower: getPower, unknown modulation "
                    "type: 64QAM",
                    "6 msg CalculatorKamV3.getMaxPower: min() of uncompensated Pmax and "
                    "tmuMaxPowerFor64Qam = 0 will be used",
                    "5 msg CalculatorKamV3.getMaxPower: getMaxPower Calculated max power = 0 for "
                    "256QAM with rsec 7B and power cutback: 0"));
}

TEST_F(CalculatorKamV3Test, IsCappedBy0WithoutATable) {
    CalculationData data = calculation(EReferenceSEC::Class4L);
    CalculationData negative = data;
    negative.pmaxActualModulation = -200;

    EXPECT_EQ(powerOf(data), 100);
    EXPECT_EQ(powerOf(negative), -200);
}

TEST_F(CalculatorKamV3Test, AsksTheTableForNothingAtRsec2) {
    CalculationData data = calculation(EReferenceSEC::Class2);
    TraceCapture trace(1);

    powerOf(data);

    EXPECT_THAT(trace.lines(), ElementsAre());
}

TEST_F(CalculatorKamV3Test, AddsTheCompensationToWhatCameInAtAnUnknownRsec) {
    for (const std::int32_t rsec : {-1, 10, 999, 1000}) {
        CalculationData data = calculation(EReferenceSEC{rsec});
        data.csPowerCompensation = 50;
        TraceCapture trace(6);

        EXPECT_EQ(powerOf(data, 1800), 1850) << rsec;

        EXPECT_THAT(trace.lines(),
                    ElementsAre("6 enter CalculatorKamV3.getMaxPower: ",
                                "6 msg CalculatorKamV3.getMaxPower: uncompensated Pmax for "
                                "modulation: 256QAM = 2450",
                                "1 msg CalculatorKamV3.getMaxPower: getMaxPowerNo matching RSEC",
                                "5 msg CalculatorKamV3.getMaxPower: getMaxPower Calculated max "
                                "power = 1850 for 256QAM with rsec UNDEFINED and power cutback: "
                                "50"));
    }
}

TEST_F(CalculatorKamV3Test, NamesTheActualModulationByItsText) {
    CalculationData data = calculation(EReferenceSEC::Class2);
    data.actualModulation = Modulation{8};
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(data), 2500);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre("6 enter CalculatorKamV3.getMaxPower: ",
                    "6 msg CalculatorKamV3.getMaxPower: uncompensated Pmax for modulation: "
                    "UNDEFINED = 2400",
                    "5 msg CalculatorKamV3.getMaxPower: getMaxPower Calculated max power = 2500 "
                    "for UNDEFINED with rsec 2 and power cutback: 100"));
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

    EXPECT_THAT(
        trace.lines(),
        ElementsAre("6 enter CalculatorKamV3.getMaxPower: ",
                    "6 msg CalculatorKamV3.getMaxPower: uncompensated Pmax for modulation: 256QAM "
                    "= 2147483647",
                    "5 msg CalculatorKamV3.getMaxPower: getMaxPower Calculated max power = "
                    "-2147483648 for 256QAM with rsec 2 and power cutback: 1"));
    EXPECT_EQ(powerOf(unknown, intMax), intMin);
}

} // namespace
