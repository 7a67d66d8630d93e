#include "BoosterSteps.h"

#include "Calculation.h"
#include "Trace.h"
#include "TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The booster steps with tables that, unlike those of the families, lack entries.
class BoosterStepsTest : public ::testing::Test {
protected:
    BoosterStepsTest() {
        data.rsec = EReferenceSEC::Class5HB;
        data.actualModulation = Modulation::QAM64;
        data.refMaxModulation = Modulation::QAM1024;
        data.selectedMaxModulation = Modulation::QAM2048;
        data.pmaxActualModulation = 9000;
    }

    static BoosterTables tablesOf(const BoosterAdjustments& adjustments,
                                  const BoosterBandAdjustments& bandAdjustments) {
        BoosterTables tables;
        for (const auto& [key, adjustment] : adjustments) {
            const auto& [rsec, modulation] = key;
            tables.adjustments.set(static_cast<unsigned int>(rsec), modulation, adjustment);
        }
        for (const auto& [key, adjustment] : bandAdjustments) {
            const auto& [band, modulation] = key;
            tables.bandAdjustments.set(static_cast<unsigned int>(band), modulation, adjustment);
        }
        return tables;
    }

    const Booster booster = {1, 0, 5000, Modulation::QAM64};
    const BoosterAdjustments adjustments = {{{EReferenceSEC::Class5HB, Modulation::QAM64}, 30}};
    const BoosterBandAdjustments band0 = {{{0, Modulation::QAM64}, 5}};
    const BoosterBandAdjustments band1 = {{{1, Modulation::QAM64}, 9}};
    CalculationData data = emptyCalculation();
    long power = 1000;
    TraceSource source{"Control/OutputPowerCalculator/private/CalculatorSome"};
    TraceCapture trace{6};
};

TEST_F(BoosterStepsTest, AddBothAdjustments) {
    EXPECT_EQ(applyBooster(source, tablesOf(adjustments, band0), data, booster, power), 0);

    EXPECT_EQ(power, 1035);
    EXPECT_THAT(trace.lines(),
                ElementsAre("6 msg CalculatorSome.getMaxPower: boosterPowerAdjustments: 30",
                            "6 msg CalculatorSome.getMaxPower: maxPower (boosted.1): 1030",
                            "6 msg CalculatorSome.getMaxPower: boosterBandPowerAdjustments: 5",
                            "6 msg CalculatorSome.getMaxPower: maxPower (boosted.2): 1035",
                            "6 msg CalculatorSome.getMaxPower: maxPower (boosted.3): 1035",
                            "6 msg CalculatorSome.getMaxPower: maxPower (boosted.4): 1035"));
}

TEST_F(BoosterStepsTest, FailWithoutAnEntryAlsoWhileNothingIsTraced) {
    DeskTrace::getInstance().setLevel(0);

    EXPECT_EQ(applyBooster(source, tablesOf({}, band0), data, booster, power), 32770);
    EXPECT_EQ(applyBooster(source, tablesOf(adjustments, {}), data, booster, power), 32770);

    EXPECT_EQ(power, 1000);
    EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(BoosterStepsTest, DoNothingWithoutABooster) {
    const Booster none = {0, 100, -100, Modulation::CW};

    EXPECT_EQ(applyBooster(source, tablesOf({}, {}), data, none, power), 0);

    EXPECT_EQ(power, 1000);
    EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(BoosterStepsTest, FailWithoutAnAdjustmentAndLeaveThePowerBeforeTheBooster) {
    EXPECT_EQ(applyBooster(source, tablesOf({}, band0), data, booster, power), 32770);

    EXPECT_EQ(power, 1000);
    EXPECT_THAT(trace.lines(),
                ElementsAre("1 msg CalculatorSome.getMaxPower: No boosted power offset found for "
                            "ref acm=1024QAM, rsec=5HB, acm=64QAM"));
}

TEST_F(BoosterStepsTest, FailWithoutABandAdjustmentAndLeaveThePowerBeforeTheBooster) {
    EXPECT_EQ(applyBooster(source, tablesOf(adjustments, {}), data, booster, power), 32770);

    EXPECT_EQ(power, 1000);
    EXPECT_THAT(trace.lines(),
                ElementsAre("1 msg CalculatorSome.getMaxPower: No boosted band power offset found "
                            "for ref acm=1024QAM, rsec=5HB, acm=64QAM"));
}

TEST_F(BoosterStepsTest, ComplainOfTheAdjustmentFirstWithoutEither) {
    EXPECT_EQ(applyBooster(source, tablesOf({}, {}), data, booster, power), 32770);

    EXPECT_THAT(trace.lines(),
                ElementsAre("1 msg CalculatorSome.getMaxPower: No boosted power offset found for "
                            "ref acm=1024QAM, rsec=5HB, acm=64QAM"));
}

TEST_F(BoosterStepsTest, FailForAnRsecOrAModulationThatNoTableCanHave) {
    for (const EReferenceSEC rsec :
         {EReferenceSEC{-1}, EReferenceSEC{10}, EReferenceSEC::UNDEFINED}) {
        CalculationData unknown = data;
        unknown.rsec = rsec;
        EXPECT_EQ(applyBooster(source, tablesOf(adjustments, band0), unknown, booster, power),
                  32770);
    }
    for (const Modulation modulation :
         {Modulation{-1}, Modulation::CW, Modulation{65}, Modulation::UNDEFINED}) {
        CalculationData unknown = data;
        unknown.actualModulation = modulation;
        EXPECT_EQ(applyBooster(source, tablesOf(adjustments, band0), unknown, booster, power),
                  32770);
    }
    EXPECT_EQ(power, 1000);
}

TEST_F(BoosterStepsTest, LookForBand1WithPresence7Alone) {
    const Booster ofBand1 = {7, 0, 5000, Modulation::QAM64};

    EXPECT_EQ(applyBooster(source, tablesOf(adjustments, band0), data, ofBand1, power), 32770);
    EXPECT_EQ(applyBooster(source, tablesOf(adjustments, band1), data, booster, power), 32770);
    EXPECT_EQ(power, 1000);
    EXPECT_EQ(applyBooster(source, tablesOf(adjustments, band1), data, ofBand1, power), 0);
    EXPECT_EQ(power, 1039);
}

} // namespace
