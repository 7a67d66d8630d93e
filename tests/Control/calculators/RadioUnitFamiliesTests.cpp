#include "Calculation.h"
#include "CalculatorVo4.h"
#include "CalculatorVo5.h"
#include "TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

/// 16QAM at RSEC 2 with 256QAM (2000) as reference: 2 dB more, 2200, in both families.
CalculationData radioUnitCalculation() {
    CalculationData data = emptyCalculation();
    data.selectedMinModulation = Modulation::QAM4;
    data.selectedMaxModulation = Modulation::QAM256;
    data.actualModulation = Modulation::QAM16;
    data.refMaxModulation = Modulation::QAM256;
    data.pmaxActualModulation = 9000;
    data.pmaxRefMaxModulation = 2000;
    return data;
}

struct BoosterOf {
    int presence;
    int gain;
    int maxInputPower;
    Modulation maxModulation;
};

const BoosterOf noBooster = {0, 0, 0, Modulation::CW};

struct RadioUnitFamily {
    std::string name;
    Calculator* (*calculator)();
    std::string inputs;   ///< how the first message of a query begins
    std::string adjusted; ///< how the message of the adjusted power goes on after "power"
    std::string result;   ///< how the message of the result ends
    std::string tooHigh;  ///< how the message of a modulation too high for the booster begins
};

/// What the older and the newer radio-unit family have in common: the power relative to 256QAM and
/// the steps of an external booster.
class RadioUnitFamilies : public ::testing::TestWithParam<RadioUnitFamily> {
protected:
    RadioUnitFamilies() {
        // The tables come to life at the first query, which one family traces.
        powerOf(radioUnitCalculation(), noBooster);
    }

    int ask(const CalculationData& data, const BoosterOf& booster, long& power) const {
        return sut.getMaxPower(data, power, booster.presence, booster.gain, booster.maxInputPower,
                               booster.maxModulation);
    }

    /// The power; fails the test if there is an error.
    long powerOf(const CalculationData& data, const BoosterOf& booster) const {
        long power = 4711;
        EXPECT_EQ(ask(data, booster, power), 0);
        return power;
    }

    std::string message(int level, const std::string& text) const {
        return std::to_string(level) + " msg " + GetParam().name + ".getMaxPower: " + text;
    }

    Calculator& sut = *GetParam().calculator();
};

TEST_P(RadioUnitFamilies, AddTheOffsetToThePmaxOfTheReference) {
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(radioUnitCalculation(), noBooster), 2200);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre(message(6, GetParam().inputs + ", data.actualModulation=16QAM, data.rsec=0, "
                                                   "data.pmaxActualModulation=9000, "
                                                   "data.pmaxRefMaxModulation=2000, boosterBand=0"),
                    message(6, "Static power for 16QAM = 2200"),
                    message(6, "ACM adjusted power" + GetParam().adjusted + "(2000 + 200) = 2200"),
                    message(5, "Max power = 2200 for 16QAM, RSEC-2" + GetParam().result)));
}

TEST_P(RadioUnitFamilies, AreBoundedByThePmaxOfTheActualModulation) {
    CalculationData data = radioUnitCalculation();
    data.rsec = EReferenceSEC::Class4H;
    data.pmaxActualModulation = 2199;
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(data, noBooster), 2199);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre(message(6, GetParam().inputs + ", data.actualModulation=16QAM, data.rsec=2, "
                                                   "data.pmaxActualModulation=2199, "
                                                   "data.pmaxRefMaxModulation=2000, boosterBand=0"),
                    message(6, "Static power for 16QAM = 2200"),
                    message(6, "ACM adjusted power" + GetParam().adjusted + "(2000 + 200) = 2200"),
                    message(5, "Max power = 2199 for 16QAM, RSEC-4H" + GetParam().result)));
    data.pmaxActualModulation = 2200;
    EXPECT_EQ(powerOf(data, noBooster), 2200);
    data.pmaxActualModulation = 2201;
    EXPECT_EQ(powerOf(data, noBooster), 2200);
}

TEST_P(RadioUnitFamilies, ReadNeitherTheCompensationNorTheSelectedMinimum) {
    CalculationData data = radioUnitCalculation();
    data.csPowerCompensation = -5000;
    data.pmaxSelectedMinModulation = -5000;
    data.selectedMinModulation = Modulation::UNDEFINED;

    EXPECT_EQ(powerOf(data, noBooster), 2200);
}

TEST_P(RadioUnitFamilies, TakeNoNoticeOfTheBoosterWithoutPresence) {
    EXPECT_EQ(powerOf(radioUnitCalculation(), {0, 5000, -5000, Modulation::CW}), 2200);
    EXPECT_EQ(powerOf(radioUnitCalculation(), {0, -5000, 5000, Modulation::UNDEFINED}), 2200);
}

TEST_P(RadioUnitFamilies, TakeEveryBoosterStepInOrder) {
    CalculationData data = radioUnitCalculation();
    data.pmaxActualModulation = 2500;
    TraceCapture trace(6);

    // 2200 + 700 + 200 - 500 = 2600 at the booster's input, bounded by 2550 there and by 2500.
    EXPECT_EQ(powerOf(data, {1, 500, 2550, Modulation::QAM256}), 2500);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre(
            message(6, GetParam().inputs + ", data.actualModulation=16QAM, data.rsec=0, "
                                           "data.pmaxActualModulation=2500, "
                                           "data.pmaxRefMaxModulation=2000, boosterBand=1"),
            message(6, "Static power for 16QAM = 2200"),
            message(6, "ACM adjusted power" + GetParam().adjusted + "(2000 + 200) = 2200"),
            message(5, "Max power = 2200 for 16QAM, RSEC-2" + GetParam().result),
            message(6, "boosterPowerAdjustments: 700"), message(6, "maxPower (boosted.1): 2900"),
            message(6, "boosterBandPowerAdjustments: 200"),
            message(6, "maxPower (boosted.2): 3100"), message(6, "maxPower (boosted.3): 2550"),
            message(6, "maxPower (boosted.4): 2500")));
}

TEST_P(RadioUnitFamilies, AddNoBandAdjustmentForPresence7) {
    TraceCapture trace(6);

    EXPECT_EQ(powerOf(radioUnitCalculation(), {7, 400, 5000, Modulation::QAM256}), 2500);

    EXPECT_THAT(
        trace.lines(),
        ElementsAre(
            message(6, GetParam().inputs + ", data.actualModulation=16QAM, data.rsec=0, "
                                           "data.pmaxActualModulation=9000, "
                                           "data.pmaxRefMaxModulation=2000, boosterBand=7"),
            message(6, "Static power for 16QAM = 2200"),
            message(6, "ACM adjusted power" + GetParam().adjusted + "(2000 + 200) = 2200"),
            message(5, "Max power = 2200 for 16QAM, RSEC-2" + GetParam().result),
            message(6, "boosterPowerAdjustments: 700"), message(6, "maxPower (boosted.1): 2900"),
            message(6, "boosterBandPowerAdjustments: 0"), message(6, "maxPower (boosted.2): 2900"),
            message(6, "maxPower (boosted.3): 2500"), message(6, "maxPower (boosted.4): 2500")));
}

TEST_P(RadioUnitFamilies, AddTheAdjustmentOfBand0ForEveryOtherPresence) {
    for (const int presence : {intMin, -7, -1, 1, 2, 3, 6, 8, 70, intMax}) {
        EXPECT_EQ(powerOf(radioUnitCalculation(), {presence, 0, 5000, Modulation::QAM256}), 3100)
            << presence;
    }
    EXPECT_EQ(powerOf(radioUnitCalculation(), {7, 0, 5000, Modulation::QAM256}), 2900);
}

TEST_P(RadioUnitFamilies, TakeTheGainOutAndBoundByTheInputPower) {
    const CalculationData data = radioUnitCalculation();

    EXPECT_EQ(powerOf(data, {1, 0, 3099, Modulation::QAM16}), 3099);
    EXPECT_EQ(powerOf(data, {1, 0, 3100, Modulation::QAM16}), 3100);
    EXPECT_EQ(powerOf(data, {1, 0, 3101, Modulation::QAM16}), 3100);
    EXPECT_EQ(powerOf(data, {1, 4000, 5000, Modulation::QAM16}), -900);
    EXPECT_EQ(powerOf(data, {1, -400, 5000, Modulation::QAM16}), 3500);
    EXPECT_EQ(powerOf(data, {1, 0, intMin, Modulation::QAM16}), intMin);
}

TEST_P(RadioUnitFamilies, BoundTheBoostedPowerByThePmaxOfTheActualModulation) {
    CalculationData data = radioUnitCalculation();
    data.pmaxActualModulation = 3099;
    EXPECT_EQ(powerOf(data, {1, 0, 5000, Modulation::QAM16}), 3099);

    data.pmaxActualModulation = 3100;
    EXPECT_EQ(powerOf(data, {1, 0, 5000, Modulation::QAM16}), 3100);

    data.pmaxActualModulation = 3101;
    EXPECT_EQ(powerOf(data, {1, 0, 5000, Modulation::QAM16}), 3100);
}

TEST_P(RadioUnitFamilies, DoNotApplyAboveTheModulationOfTheBooster) {
    for (const int presence : {-1, 1, 7}) {
        long power = 4711;
        TraceCapture trace(6);

        EXPECT_EQ(ask(radioUnitCalculation(), {presence, 0, 5000, Modulation::QAM4}, power), 2);

        EXPECT_EQ(power, 4711);
        EXPECT_THAT(trace.lines(),
                    ElementsAre(message(6, GetParam().inputs +
                                               ", data.actualModulation=16QAM, data.rsec=0, "
                                               "data.pmaxActualModulation=9000, "
                                               "data.pmaxRefMaxModulation=2000, boosterBand=" +
                                               std::to_string(presence)),
                                message(5, GetParam().tooHigh +
                                               "16QAM is higher than booster max ACM (4QAM)")));
    }
}

TEST_P(RadioUnitFamilies, ApplyUpToTheModulationOfTheBooster) {
    const CalculationData data = radioUnitCalculation();
    long power = 4711;

    EXPECT_EQ(ask(data, {1, 0, 5000, Modulation{15}}, power), 2);
    EXPECT_EQ(ask(data, {1, 0, 5000, Modulation{-1}}, power), 2);
    EXPECT_EQ(power, 4711);
    EXPECT_EQ(ask(data, {1, 0, 5000, Modulation{16}}, power), 0);
    EXPECT_EQ(ask(data, {1, 0, 5000, Modulation{17}}, power), 0);
    EXPECT_EQ(ask(data, {1, 0, 5000, Modulation::UNDEFINED}, power), 0);
}

TEST_P(RadioUnitFamilies, ComputeIn32BitsThatWrap) {
    CalculationData data = radioUnitCalculation();
    data.pmaxRefMaxModulation = intMax;
    data.pmaxActualModulation = intMax;

    EXPECT_EQ(powerOf(data, noBooster), -2147483449); // 2147483647 + 200 - 4294967296
    data.pmaxRefMaxModulation = 2147482400;           // and 200, 700, 200 are 2147483500
    EXPECT_EQ(powerOf(data, {1, -148, intMax, Modulation::QAM16}), intMin);
    EXPECT_EQ(powerOf(data, {1, -147, intMax, Modulation::QAM16}), intMax);
    EXPECT_EQ(powerOf(data, {1, intMin, intMax, Modulation::QAM16}), -148);
}

INSTANTIATE_TEST_SUITE_P(
    Both, RadioUnitFamilies,
    ::testing::Values(RadioUnitFamily{"CalculatorVo4", &calculatorOf<CalculatorVo4>,
                                      "data.refMaxModulation=256QAM", " = ",
                                      ", using ref acm 256QAM", ""},
                      RadioUnitFamily{"CalculatorVo5", &calculatorOf<CalculatorVo5>,
                                      "data.selectedMaxModulation=256QAM",
                                      " for selected max 256QAM", ", using selected max 256QAM",
                                      "getMaxPower"}),
    [](const auto& test) { return test.param.name; });

} // namespace
