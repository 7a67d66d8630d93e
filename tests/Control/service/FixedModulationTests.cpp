#include "ServiceTest.h"

#include <ostream>

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::InSequence;
using ::testing::StrictMock;
using traced::cutback;
using traced::enter;
using traced::lookUp;
using traced::msg;
using traced::noRow;
using traced::sequence;

namespace {

/// DPD 1 and ETSI unless a test changes it.
template <class Base>
class FixedModulationFixture : public Base {
protected:
    int getFixModMaxPower(Modulation selected, Modulation modulation, long compensation) {
        return Inside::getFixModMaxPower(this->sut, dpdVersion, market, selected, modulation,
                                         compensation, maxPower, useCutback);
    }

    EDpdVersion dpdVersion = dpd1;
    EFrameFormatMarket market = etsi;
    bool useCutback = false;
    long maxPower = untouched;
};

using FixedModulation = FixedModulationFixture<StartedServiceTest>;
class FixedModulationWithBooster : public FixedModulation {};
using FixedModulationCalls = FixedModulationFixture<StrictServiceTest>;

const std::string warning = "Failed to calculate power capabilities for modulation ";

} // namespace

TEST_F(FixedModulation, givesTheLowerPmaxPlusTheCompensation) {
    node.answers.pmaxDpd1Etsi.table = {16, 2400, 64, 2100};
    node.answers.pmaxDpd1Etsi.count = 4;
    ASSERT_EQ(sut.initialize(), 0U);
    TraceCapture trace(6);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, -50);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2050);
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=16QAM, "
                                        "modulation=64QAM, csPowerCompensation=-50, useCutback=0"),
             lookUp("1", "Etsi", "16QAM"), lookUp("1", "Etsi", "64QAM")})));
}

TEST_F(FixedModulation, givesTheLowerPmaxWhicheverOfTheTwoItIs) {
    getFixModMaxPower(Modulation::QAM64, Modulation::QAM16, 0);
    EXPECT_EQ(maxPower, 2400);

    getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, 0);
    EXPECT_EQ(maxPower, 2400);

    getFixModMaxPower(Modulation::QAM16, Modulation::QAM16, 0);
    EXPECT_EQ(maxPower, 2600);
}

TEST_F(FixedModulation, withCutbackLowersEachPmaxOnceAndNotTheCompensation) {
    sut.setPowerCutback(300);
    useCutback = true;
    TraceCapture trace(6);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, 150);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2250); // 2400 - 300 + 150
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=16QAM, "
                                        "modulation=64QAM, csPowerCompensation=150, useCutback=1"),
             lookUp("1", "Etsi", "16QAM"), cutback(), lookUp("1", "Etsi", "64QAM"), cutback()})));
}

TEST_F(FixedModulation, comparesThePmaxAfterACutbackThatWraps) {
    node.answers.pmaxDpd1Etsi.table = {16, 1000, 64, -2000};
    node.answers.pmaxDpd1Etsi.count = 4;
    ASSERT_EQ(sut.initialize(), 0U);
    sut.setPowerCutback(2147483648);
    useCutback = true;

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, 0);

    // 1000 wraps to -2147482648 and -2000 to 2147481648: the first is the lower one now.
    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, -2147482648);
}

TEST_F(FixedModulation, addsTheCompensationIn32Bits) {
    node.answers.pmaxDpd1Etsi.table = {16, 2147483647, 64, -2147483647 - 1};
    node.answers.pmaxDpd1Etsi.count = 4;
    ASSERT_EQ(sut.initialize(), 0U);

    getFixModMaxPower(Modulation::QAM16, Modulation::QAM16, 1);
    EXPECT_EQ(maxPower, -2147483648);

    getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, -1);
    EXPECT_EQ(maxPower, 2147483647);
}

TEST_F(FixedModulation, withoutASelectedPmaxCountsItAs0AndSucceeds) {
    TraceCapture trace(6);

    const int result = getFixModMaxPower(Modulation::QAM32, Modulation::QAM16, 150);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 150);
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=32QAM, "
                                        "modulation=16QAM, csPowerCompensation=150, useCutback=0"),
             lookUp("1", "Etsi", "32QAM"), noRow("32QAM"),
             msg(2, "getFixModMaxPower", warning + "32QAMQAM"), lookUp("1", "Etsi", "16QAM")})));
}

TEST_F(FixedModulation, withoutAPmaxOfItsOwnCountsItAs0AndSucceeds) {
    TraceCapture trace(6);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM32, 150);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 150);
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=16QAM, "
                                        "modulation=32QAM, csPowerCompensation=150, useCutback=0"),
             lookUp("1", "Etsi", "16QAM"), lookUp("1", "Etsi", "32QAM"), noRow("32QAM"),
             msg(2, "getFixModMaxPower", warning + "32QAM")})));
}

TEST_F(FixedModulation, withoutAnyPmaxGivesTheCompensation) {
    for (const long compensation : {0L, 150L, -200L}) {
        const int result = getFixModMaxPower(Modulation::QAM32, Modulation::QAM512, compensation);

        EXPECT_EQ(result, 0);
        EXPECT_EQ(maxPower, compensation);
    }
}

TEST_F(FixedModulation, withoutAnyPmaxCutsTheZerosBackBeforeTheWarnings) {
    sut.setTemporaryPowerCutback(true, 300);
    useCutback = true;
    TraceCapture trace(6);

    const int result = getFixModMaxPower(Modulation::QAM32, Modulation::QAM512, 150);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, -150); // 0 - 300 + 150
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=32QAM, "
                                        "modulation=512QAM, csPowerCompensation=150, useCutback=1"),
             lookUp("1", "Etsi", "32QAM"), noRow("32QAM"), cutback(),
             msg(2, "getFixModMaxPower", warning + "32QAMQAM"), lookUp("1", "Etsi", "512QAM"),
             noRow("512QAM"), cutback(), msg(2, "getFixModMaxPower", warning + "512QAM")})));
}

TEST_F(FixedModulation, ofAnUnknownDpdVersionGivesTheCompensationAndSucceeds) {
    dpdVersion = EDpdVersion{4};
    market = EFrameFormatMarket{4};
    TraceCapture trace(6);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM4, -7);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, -7);
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getFixModMaxPower", "dpdVersion=4, market=, selectedMod=16QAM, "
                                        "modulation=4QAM, csPowerCompensation=-7, useCutback=0"),
             lookUp("4", "", "16QAM"), msg(1, "getMaxPowerArray", "Unknown DPD version 4"),
             msg(2, "getMaxPower", "Unable to get power for modulation 16QAM"),
             msg(2, "getFixModMaxPower", warning + "16QAMQAM"), lookUp("4", "", "4QAM"),
             msg(1, "getMaxPowerArray", "Unknown DPD version 4"),
             msg(2, "getMaxPower", "Unable to get power for modulation 4QAM"),
             msg(2, "getFixModMaxPower", warning + "4QAM")})));
}

TEST_F(FixedModulation, writesMarketsByTheirNames) {
    const struct {
        int market;
        const char* text;
        long power;
    } cases[] = {{0, "Etsi", 2600}, {1, "Ansi", 2550}, {2, "Global", 2600}, {3, "Unknown", 2600}};
    for (const auto& each : cases) {
        market = EFrameFormatMarket{each.market};
        TraceCapture trace(6);

        getFixModMaxPower(Modulation::QAM16, Modulation::QAM16, 0);

        EXPECT_EQ(maxPower, each.power);
        EXPECT_THAT(trace.lines(),
                    ElementsAreArray(sequence(
                        {enter("getFixModMaxPower",
                               "dpdVersion=1, market=" + std::string(each.text) +
                                   ", selectedMod=16QAM, modulation=16QAM, csPowerCompensation=0, "
                                   "useCutback=0"),
                         lookUp("1", each.text, "16QAM"), lookUp("1", each.text, "16QAM")})));
    }
}

TEST_F(FixedModulationCalls, withoutABoosterAskNoNeighbour) {
    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, 0);

    EXPECT_EQ(result, 0);
}

// With a booster

TEST_F(FixedModulationWithBooster, ofTheNewerRadioUnitsGivesTheLowerOfTheTwoPowers) {
    node.answers.productNumber = "X";
    sut.setBoosterPresence(1, 1000, 3000, Modulation::QAM256);
    TraceCapture trace(6);

    const int result = getFixModMaxPower(Modulation::QAM64, Modulation::QAM16, 150);

    // Reference 2400 at 64QAM, block of 128QAM at RSEC 4L: 0 dB at 64QAM, 1 dB at 16QAM.
    // 64QAM: 2400 + 500 + 200 - 1000 = 2100. 16QAM: 2500 + 700 + 200 - 1000 = 2400.
    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2100);
    const std::string vo5 = "6 msg CalculatorVo5.getMaxPower: ";
    const auto adModEntry = [](const std::string& actual) {
        return enter("getAdModMaxPower",
                     "dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=4L, "
                     "selectedMinMod=64QAM, selectedMaxMod=64QAM, availableMaxMod=256QAM, "
                     "actualMod=" +
                         actual + ", csPowerCompensation=150");
    };
    const std::string usingVo5 = msg(6, "getCalculator", "Using TMU max power algorithm");
    const std::vector<std::string> reference = {
        "6 enter CalculatorVo5.getMaxRefModulation: availableMaxAcm=256QAM, selectedMaxAcm=64QAM",
        "5 msg CalculatorVo5.getMaxRefModulation: getMaxRefModulationmax power = 64QAM"};
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=64QAM, "
                                        "modulation=16QAM, csPowerCompensation=150, useCutback=0"),
             traced::limit("0", "No", "256QAM", "256QAM"), //
             adModEntry("64QAM"),
             lookUp("1", "Etsi", "64QAM"),
             lookUp("1", "Etsi", "64QAM"),
             usingVo5,
             reference,
             lookUp("1", "Etsi", "64QAM"),
             enter("getMaxPowerArray", "dpdVersion=1, market=Etsi"),
             vo5 + "data.selectedMaxModulation=64QAM, data.actualModulation=64QAM, data.rsec=1, "
                   "data.pmaxActualModulation=2400, data.pmaxRefMaxModulation=2400, boosterBand=1",
             vo5 + "Static power for 64QAM = 2400",
             vo5 + "ACM adjusted power for selected max 64QAM(2400 + 0) = 2400",
             "5 msg CalculatorVo5.getMaxPower: Max power = 2400 for 64QAM, RSEC-4L, using selected "
             "max 64QAM",
             vo5 + "boosterPowerAdjustments: 500",
             vo5 + "maxPower (boosted.1): 2900",
             vo5 + "boosterBandPowerAdjustments: 200",
             vo5 + "maxPower (boosted.2): 3100",
             vo5 + "maxPower (boosted.3): 2100",
             vo5 + "maxPower (boosted.4): 2100", //
             adModEntry("16QAM"),
             lookUp("1", "Etsi", "64QAM"),
             lookUp("1", "Etsi", "16QAM"),
             usingVo5,
             reference,
             lookUp("1", "Etsi", "64QAM"),
             enter("getMaxPowerArray", "dpdVersion=1, market=Etsi"),
             vo5 + "data.selectedMaxModulation=64QAM, data.actualModulation=16QAM, data.rsec=1, "
                   "data.pmaxActualModulation=2600, data.pmaxRefMaxModulation=2400, boosterBand=1",
             vo5 + "Static power for 16QAM = 2500",
             vo5 + "ACM adjusted power for selected max 64QAM(2400 + 100) = 2500",
             "5 msg CalculatorVo5.getMaxPower: Max power = 2500 for 16QAM, RSEC-4L, using selected "
             "max 64QAM",
             vo5 + "boosterPowerAdjustments: 700",
             vo5 + "maxPower (boosted.1): 3200",
             vo5 + "boosterBandPowerAdjustments: 200",
             vo5 + "maxPower (boosted.2): 3400",
             vo5 + "maxPower (boosted.3): 2400",
             vo5 + "maxPower (boosted.4): 2400"})));
}

TEST_F(FixedModulationWithBooster, givesTheSecondPowerWhenThatIsTheLowerOne) {
    node.answers.productNumber = "QZT35201/1";
    sut.setBoosterPresence(1, 1000, 3000, Modulation::QAM256);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, 150);

    // Reference 2200 at 256QAM, RSEC 4L. 16QAM: 2400 + 700 + 200 - 1000 = 2300.
    // 64QAM: 2300 + 500 + 200 - 1000 = 2000.
    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2000);
}

TEST_F(FixedModulationWithBooster, ofAnOutdoorFamilyDoesNotAddTheCompensationAgain) {
    sut.setBoosterPresence(1, 0, 0, Modulation::CW);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM16, 150);

    // RSEC 4L: 2200 + 150 + 200, below the Pmax of 2600.
    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2550);
}

TEST_F(FixedModulationWithBooster, withCutbackLowersBothPowers) {
    node.answers.productNumber = "X";
    sut.setBoosterPresence(1, 1000, 3000, Modulation::QAM256);
    sut.setPowerCutback(300);
    useCutback = true;
    TraceCapture trace(5);

    const int result = getFixModMaxPower(Modulation::QAM64, Modulation::QAM16, 150);

    // 64QAM: the Pmax of 2100 is below 2400: 2100 + 500 + 200 - 1000 = 1800.
    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 1800);
    const std::string reference =
        "5 msg CalculatorVo5.getMaxRefModulation: getMaxRefModulationmax power = 64QAM";
    EXPECT_THAT(trace.lines(),
                ElementsAre(reference,
                            "5 msg CalculatorVo5.getMaxPower: Max power = 2100 for 64QAM, RSEC-4L, "
                            "using selected max 64QAM",
                            reference,
                            "5 msg CalculatorVo5.getMaxPower: Max power = 2300 for 16QAM, RSEC-4L, "
                            "using selected max 64QAM"));
}

TEST_F(FixedModulationWithBooster, ofANegativePresenceTakesTheBoosterPath) {
    node.answers.productNumber = "QZT35201/1";
    sut.setBoosterPresence(-1, 1000, 3000, Modulation::QAM256);
    TraceCapture trace(6);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, 150);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2000);
    EXPECT_THAT(trace.lines(),
                ::testing::Contains(
                    "6 msg CalculatorVo4.getMaxPower: data.refMaxModulation=256QAM, "
                    "data.actualModulation=64QAM, data.rsec=1, data.pmaxActualModulation=2400, "
                    "data.pmaxRefMaxModulation=2200, boosterBand=-1"));
}

TEST_F(FixedModulationWithBooster, takenAwayAgainReadsTheTable) {
    node.answers.productNumber = "QZT35201/1";
    sut.setBoosterPresence(1, 1000, 3000, Modulation::QAM256);
    sut.setBoosterPresence(0, 1000, 3000, Modulation::QAM256);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, 150);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2550); // 2400 + 150
}

TEST_F(FixedModulationWithBooster, countsASecondPowerThatDoesNotApplyAs0) {
    node.answers.productNumber = "QZT35201/1";
    sut.setBoosterPresence(1, 0, 3000, Modulation::QAM16);
    TraceCapture trace(5);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, 150);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 0);
    EXPECT_THAT(trace.lines(),
                ElementsAre("5 msg CalculatorVo4.getMaxPower: Max power = 2400 for 16QAM, RSEC-4L, "
                            "using ref acm 256QAM",
                            "5 msg CalculatorVo4.getMaxPower: 64QAM is higher than booster max ACM "
                            "(16QAM)"));
}

TEST_F(FixedModulationWithBooster, countsAFirstPowerThatDoesNotApplyAs0) {
    node.answers.productNumber = "QZT35201/1";
    sut.setBoosterPresence(1, 0, 3000, Modulation::QAM16);

    const int result = getFixModMaxPower(Modulation::QAM64, Modulation::QAM16, 150);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 0);
}

TEST_F(FixedModulationWithBooster, takesANegativePowerBelowOneThatDoesNotApply) {
    node.answers.productNumber = "QZT35201/1";
    sut.setBoosterPresence(1, 0, -500, Modulation::QAM16);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, 150);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, -500);
}

TEST_F(FixedModulationWithBooster, ofTwoPowersThatDoNotApplyGives0) {
    node.answers.productNumber = "QZT35201/1";
    sut.setBoosterPresence(1, 0, 3000, Modulation::QAM4);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, 150);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 0);
}

namespace {

/// Rows that the Pmax table has and the older radio units' tables have not: BPSK. A booster up to
/// 16QAM.
class FixedModulationRefused : public FixedModulation {
protected:
    void SetUp() override {
        node.answers.productNumber = "QZT35201/1";
        node.answers.pmaxDpd1Etsi = PmaxAnswer({2, 2900, 4, 2800, 16, 2600, 64, 2400, 256, 2200});
        FixedModulation::SetUp();
        sut.setBoosterPresence(1, 0, 3000, Modulation::QAM16);
    }

    void expectRefusal(int result, const std::vector<std::string>& lines,
                       const std::vector<std::string>& expected) const {
        EXPECT_EQ(result, 32768);
        EXPECT_EQ(maxPower, untouched);
        EXPECT_THAT(lines, ElementsAreArray(expected));
    }

    const std::string noOffset =
        "1 msg CalculatorVo4.getMaxPower: No power offset found for ref acm=256QAM, rsec=4L, "
        "acm=BPSK";
    const std::string unsupported = msg(1, "getAdModMaxPower", "Modulation not supported BPSKQAM");
    const std::string maxAt16Qam =
        "5 msg CalculatorVo4.getMaxPower: Max power = 2400 for 16QAM, RSEC-4L, using ref acm "
        "256QAM";
    const std::string above =
        "5 msg CalculatorVo4.getMaxPower: 64QAM is higher than booster max ACM (16QAM)";
};

} // namespace

TEST_F(FixedModulationRefused, byTheSecondResultFailsWithBothCodes) {
    TraceCapture trace(5);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::BPSK, 0);

    expectRefusal(
        result, trace.lines(),
        {maxAt16Qam, noOffset, unsupported,
         msg(2, "getFixModMaxPower", "Failed to get AdMod capabilities, error: 0, 32776")});
}

TEST_F(FixedModulationRefused, byTheFirstResultAsksForTheSecondAllTheSame) {
    TraceCapture trace(5);

    const int result = getFixModMaxPower(Modulation::BPSK, Modulation::QAM16, 0);

    expectRefusal(
        result, trace.lines(),
        {noOffset, unsupported, maxAt16Qam,
         msg(2, "getFixModMaxPower", "Failed to get AdMod capabilities, error: 32776, 0")});
}

TEST_F(FixedModulationRefused, byTheSecondResultAfterOneThatDoesNotApply) {
    TraceCapture trace(5);

    const int result = getFixModMaxPower(Modulation::QAM64, Modulation::BPSK, 0);

    expectRefusal(
        result, trace.lines(),
        {above, noOffset, unsupported,
         msg(2, "getFixModMaxPower", "Failed to get AdMod capabilities, error: 2, 32776")});
}

TEST_F(FixedModulationRefused, byTheFirstResultBeforeOneThatDoesNotApply) {
    TraceCapture trace(5);

    const int result = getFixModMaxPower(Modulation::BPSK, Modulation::QAM64, 0);

    expectRefusal(
        result, trace.lines(),
        {noOffset, unsupported, above,
         msg(2, "getFixModMaxPower", "Failed to get AdMod capabilities, error: 32776, 2")});
}

TEST_F(FixedModulationRefused, byBothResultsFailsWithBothCodes) {
    TraceCapture trace(5);

    const int result = getFixModMaxPower(Modulation::BPSK, Modulation::BPSK, 0);

    expectRefusal(
        result, trace.lines(),
        {noOffset, unsupported, noOffset, unsupported,
         msg(2, "getFixModMaxPower", "Failed to get AdMod capabilities, error: 32776, 32776")});
}

TEST_F(FixedModulationWithBooster, usesTheRsecOfTheSystemPowerController) {
    node.answers.productNumber = "QZT35201/1";
    sut.setBoosterPresence(7, 700, 5000, Modulation::QAM256);
    node.answers.referenceSec = EReferenceSEC::Class7B;

    const int result = getFixModMaxPower(Modulation::QAM4, Modulation::QAM4, 0);

    // 7B: 1 dB at 4QAM; the booster's 7 dB and its gain of 7 dB cancel.
    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2300);
}

TEST_F(FixedModulationWithBooster, countsFromTheLimitedMaximumOfTheConfiguredFrameFormat) {
    sut.setBoosterPresence(1, 0, 0, Modulation::CW);
    node.answers.maxAvailableModulation = Modulation::QAM1024;
    node.answers.maxModulationWithoutLimitation = Modulation::QAM64;
    TraceCapture trace(5);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM16, 0);

    // The limit is 64QAM: Pmax 2400, offset 1 dB at RSEC 4L; 2300 + 200 at 16QAM.
    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2500);
    const std::string parameters =
        "5 msg CalculatorKam.getMaxPower: getMaxPower std::min parameters: 2600,2500,2500,2600";
    const std::string power = "5 msg CalculatorKam.getMaxPower: getMaxPower Max power for "
                              "modulation 16QAM, rsec 1 and max modulation 2400 = 2500";
    EXPECT_THAT(trace.lines(), ElementsAre(parameters, power, parameters, power));
}

TEST_F(FixedModulationCalls, withABoosterGoToTheNeighboursInOrder) {
    sut.setBoosterPresence(1, 0, 0, Modulation::CW);
    const InSequence order;
    EXPECT_CALL(node.systemPowerController, getReferenceSec);
    EXPECT_CALL(node.frameFormat, getMaxAvailableModulation);
    expectCapabilityLimit();
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber).Times(2);

    const int result = getFixModMaxPower(Modulation::QAM16, Modulation::QAM64, 0);

    EXPECT_EQ(result, 0);
}
