#include "Calculator.h"
#include "ServiceTest.h"

#include <optional>
#include <ostream>

using traced::cutback;
using traced::enter;
using traced::lookUp;
using traced::msg;
using traced::noRow;
using traced::sequence;

namespace {

/// A calculator that notes what it is asked and answers as it is told.
class CalculatorStandIn : public Calculator {
public:
    Modulation getMaxRefModulation(Modulation availableMaxModulation,
                                   Modulation selectedMaxModulation) override {
        available = availableMaxModulation;
        selected = selectedMaxModulation;
        return reference;
    }

    int getMaxPower(CalculationData given, long& maxPower, int boosterPresence, int boosterGain,
                    int boosterMaxInputPower, Modulation boosterMaxModulation) override {
        data = given;
        booster = {boosterPresence, boosterGain, boosterMaxInputPower,
                   static_cast<int>(boosterMaxModulation)};
        if (power) {
            maxPower = *power;
        }
        return result;
    }

    int getCompensationForChannelSpacing(RadioChannel givenChannel,
                                         EChannelSpacingType givenSpacing,
                                         long& compensationOut) const override {
        channel = givenChannel;
        channelSpacing = static_cast<int>(givenSpacing);
        foundInOutput = compensationOut;
        if (compensation) {
            compensationOut = *compensation;
        }
        return compensationResult;
    }

    Modulation reference = Modulation::QAM64;
    int result = 0;
    std::optional<long> power = 1234;
    int compensationResult = 0;
    std::optional<long> compensation = 40;

    Modulation available{};
    Modulation selected{};
    std::optional<CalculationData> data;
    std::vector<int> booster;
    mutable RadioChannel channel = 0;
    mutable int channelSpacing = 0;
    mutable long foundInOutput = untouched;
};

/// What the first outdoor family's getInstance() gives: the stand-in until so many calls were made,
/// nothing afterwards.
CalculatorStandIn* s_calculator = nullptr;
int s_callsUntilGone = 0;

/// What the highest Pmax of any table is.
int s_tableResult = 0;
long s_tablePower = 0;

} // namespace

// The program is linked with these two in place of the library's own.

Calculator* instanceOfTheFirstOutdoorFamily() __asm__("__wrap__ZN13CalculatorKam11getInstanceEv");

Calculator* instanceOfTheFirstOutdoorFamily() {
    return s_callsUntilGone-- > 0 ? s_calculator : nullptr;
}

int highestPmax(const TxRfMaxPowerCapability* table,
                long* power) __asm__("__wrap__ZNK22TxRfMaxPowerCapability11getMaxPowerEPl");

int highestPmax(const TxRfMaxPowerCapability*, long* power) {
    *power = s_tablePower;
    return s_tableResult;
}

namespace {

const std::string usingKam = msg(6, "getCalculator", "Using KaM max power algorithm");
const std::string missing = "Could not get calculator";

/// A service whose first outdoor family is the stand-in.
class WithStandIn : public StartedServiceTest {
protected:
    WithStandIn() {
        s_calculator = &calculator;
        s_callsUntilGone = 1000;
    }

    ~WithStandIn() override { s_calculator = nullptr; }

    int getCsPowerCompensation() {
        return Inside::getCsPowerCompensation(sut, EChannelSpacingType::MHz28, compensation);
    }

    /// From 4QAM to 256QAM at 16QAM, with compensation 150.
    int getAdModMaxPower(EDpdVersion dpdVersion, EFrameFormatMarket market, bool useCutback) {
        return Inside::getAdModMaxPower(sut, dpdVersion, market, EReferenceSEC::Class6B,
                                        Modulation::QAM4, Modulation::QAM256, Modulation::QAM1024,
                                        Modulation::QAM16, 150, maxPower, useCutback);
    }

    static std::string adModEntry(const std::string& market = "Etsi") {
        return enter("getAdModMaxPower", "dpdVersion=1, market=" + market +
                                             ", convertRsecEnumToString(rsec)=6B, "
                                             "selectedMinMod=4QAM, selectedMaxMod=256QAM, "
                                             "availableMaxMod=1024QAM, actualMod=16QAM, "
                                             "csPowerCompensation=150");
    }

    CalculatorStandIn calculator;
    long compensation = untouched;
    long minPower = untouched;
    long maxPower = untouched;
};

/// A service whose radio has no calculator.
class WithoutCalculator : public WithStandIn {
protected:
    WithoutCalculator() { s_callsUntilGone = 0; }

    const Lines noCompensation = {usingKam, msg(2, "getCsPowerCompensation", missing)};
};

struct ResultCase {
    int given;
    int expected;

    friend std::ostream& operator<<(std::ostream& stream, const ResultCase& result) {
        return stream << result.given;
    }
};

class PowerResult : public WithStandIn, public ::testing::WithParamInterface<ResultCase> {};

class CompensationResult : public WithStandIn, public ::testing::WithParamInterface<ResultCase> {};

class TableResult : public StartedServiceTest, public ::testing::WithParamInterface<int> {};

} // namespace

// No calculator at all

TEST_F(WithoutCalculator, compensationFailsAndLeavesTheOutputAlone) {
    TraceCapture trace(6);

    const int result = getCsPowerCompensation();

    EXPECT_EQ(result, 32778);
    EXPECT_EQ(compensation, untouched);
    EXPECT_EQ(trace.lines(), noCompensation);
}

TEST_F(WithoutCalculator, adModPowerFailsAfterItsLookUps) {
    TraceCapture trace(6);

    const int result = getAdModMaxPower(dpd1, etsi, true);

    EXPECT_EQ(result, 32778);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_EQ(trace.lines(), sequence({adModEntry(), cutback(), lookUp("1", "Etsi", "4QAM"),
                                       cutback(), lookUp("1", "Etsi", "16QAM"), cutback(), usingKam,
                                       msg(2, "getAdModMaxPower", missing)}));
    const TraceCapture untraced(0);
    EXPECT_EQ(getAdModMaxPower(dpd1, etsi, true), 32778);
    EXPECT_EQ(maxPower, untouched);
}

TEST_F(WithoutCalculator, unrestrictedPmaxFails) {
    TraceCapture trace(6);

    const int result = sut.getUnrestrictedPmax(maxPower);

    EXPECT_EQ(result, 32768);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_EQ(trace.lines(), sequence({enter("getUnrestrictedPmax"), noCompensation}));
}

TEST_F(WithoutCalculator, powerCapabilitiesFailWithTheMinimumWritten) {
    TraceCapture trace(6);

    const int result = sut.calculatePowerCapabilities(Modulation::QAM16, minPower, maxPower);

    EXPECT_EQ(result, 32768);
    EXPECT_EQ(minPower, -750);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_EQ(trace.lines(), sequence({enter("calculatePowerCapabilities", "16QAM"),
                                       enter("getMinOutputPower", "28"), noCompensation}));
}

TEST_F(WithoutCalculator, adModPowerCapabilitiesFailAndWriteNothing) {
    const int result =
        sut.calculateAdmodPowerCapabilities(Modulation::QAM16, rsec2, minPower, maxPower);

    EXPECT_EQ(result, 32768);
    EXPECT_EQ(minPower, untouched);
    EXPECT_EQ(maxPower, untouched);
}

TEST_F(WithoutCalculator, arrayFailsAndWritesNothing) {
    std::map<ModulationAndCoding, long> powerMap;
    TraceCapture trace(5);

    const unsigned result =
        sut.getMinMaxOutputPowerVsModulationArray(0, noCode, noCode, rsec2, minPower, powerMap);

    EXPECT_EQ(result, 32768U);
    EXPECT_EQ(minPower, untouched);
    EXPECT_TRUE(powerMap.empty());
    EXPECT_EQ(trace.lines(), (Lines{msg(2, "getCsPowerCompensation", missing)}));
}

// A calculator for the compensation, and none for the power

TEST_F(WithStandIn, thatIsGoneAfterTheCompensationFailsAdModPowerCapabilities) {
    s_callsUntilGone = 1;
    TraceCapture trace(5);

    const int result =
        sut.calculateAdmodPowerCapabilities(Modulation::QAM16, rsec2, minPower, maxPower);

    EXPECT_EQ(result, 32778);
    EXPECT_EQ(minPower, untouched);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_EQ(trace.lines(), (Lines{msg(2, "getAdModMaxPower", missing),
                                    msg(1, "calculateAdmodPowerCapabilities",
                                        "Failed to get AdMod capabilities")}));
}

TEST_F(WithStandIn, thatIsGoneAfterTheCompensationSkipsTheCodesOfAnArray) {
    s_callsUntilGone = 1;
    node.answers.frameFormat.modulationAndCodes = {{31}, {41}};
    node.apply();
    std::map<ModulationAndCoding, long> powerMap;
    TraceCapture trace(4);

    const unsigned result =
        sut.getMinMaxOutputPowerVsModulationArray(0, noCode, noCode, rsec2, minPower, powerMap);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(minPower, -750);
    EXPECT_TRUE(powerMap.empty());
    const std::string skipped = "Failed to calculate power capabilities for modType ";
    EXPECT_EQ(trace.lines(), (Lines{msg(2, "getAdModMaxPower", missing),
                                    msg(2, "populateModulationPowerMap", skipped + "4QAM"),
                                    msg(2, "getAdModMaxPower", missing),
                                    msg(2, "populateModulationPowerMap", skipped + "16QAM")}));
}

TEST_F(WithStandIn, thatIsGoneAfterTheFirstPowerFailsAFixedModulationWithABooster) {
    s_callsUntilGone = 1;
    sut.setBoosterPresence(1, 0, 0, Modulation::CW);
    node.answers.frameFormat.maxAvailableModulation = Modulation::QAM1024;
    node.apply();
    TraceCapture trace(5);

    const int result = Inside::getFixModMaxPower(sut, dpd1, etsi, Modulation::QAM16,
                                                 Modulation::QAM64, 0, maxPower, false);

    EXPECT_EQ(result, 32768);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_EQ(trace.lines(), (Lines{msg(2, "getAdModMaxPower", missing),
                                    msg(2, "getFixModMaxPower",
                                        "Failed to get AdMod capabilities, error: 0, "
                                        "32778")}));
}

// What the calculator gets

TEST_F(WithStandIn, getsTheChannelTheSpacingAndACompensationOf0) {
    const int result = getCsPowerCompensation();

    EXPECT_EQ(result, 0);
    EXPECT_EQ(compensation, 40);
    EXPECT_EQ(calculator.channel, 1U);
    EXPECT_EQ(calculator.channelSpacing, 28);
    EXPECT_EQ(calculator.foundInOutput, 0);
}

TEST_F(WithStandIn, thatWritesNoCompensationLeaves0) {
    calculator.compensation.reset();

    const int result = getCsPowerCompensation();

    EXPECT_EQ(result, 0);
    EXPECT_EQ(compensation, 0);
}

TEST_F(WithStandIn, getsTheRecordWithoutCutback) {
    sut.setPowerCutback(300);
    TraceCapture trace(6);

    const int result = getAdModMaxPower(dpd1, etsi, false);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 1234);
    ASSERT_TRUE(calculator.data.has_value());
    EXPECT_EQ(calculator.data->rsec, EReferenceSEC::Class6B);
    EXPECT_EQ(calculator.data->selectedMinModulation, Modulation::QAM4);
    EXPECT_EQ(calculator.data->selectedMaxModulation, Modulation::QAM256);
    EXPECT_EQ(calculator.data->actualModulation, Modulation::QAM16);
    EXPECT_EQ(calculator.data->refMaxModulation, Modulation::QAM64);
    EXPECT_EQ(calculator.data->pmaxSelectedMinModulation, 2800);
    EXPECT_EQ(calculator.data->pmaxSelectedMaxModulation, 0);
    EXPECT_EQ(calculator.data->pmaxActualModulation, 2600);
    EXPECT_EQ(calculator.data->pmaxRefMaxModulation, 2400);
    EXPECT_EQ(calculator.data->csPowerCompensation, 150);
    EXPECT_EQ(trace.lines(),
              sequence({adModEntry(), lookUp("1", "Etsi", "4QAM"), lookUp("1", "Etsi", "16QAM"),
                        usingKam, lookUp("1", "Etsi", "64QAM"),
                        enter("getMaxPowerArray", "dpdVersion=1, market=Etsi")}));
}

TEST_F(WithStandIn, getsThePmaxAndTheCompensationEachCutBackOnceIn32BitsAndTheReferenceAsItIs) {
    const struct {
        unsigned long cutback;
        long pmaxSelectedMin;
        long pmaxActual;
        long compensation;
    } cases[] = {{300, 2500, 2300, -150}, // 2800, 2600 and 150 less the cutback
                 {2147483648, -2147480848, -2147481048, -2147483498}};
    for (const auto& each : cases) {
        sut.setPowerCutback(each.cutback);

        EXPECT_EQ(getAdModMaxPower(dpd1, etsi, true), 0);

        ASSERT_TRUE(calculator.data.has_value());
        EXPECT_EQ(calculator.data->pmaxSelectedMinModulation, each.pmaxSelectedMin);
        EXPECT_EQ(calculator.data->pmaxSelectedMaxModulation, 0);
        EXPECT_EQ(calculator.data->pmaxActualModulation, each.pmaxActual);
        EXPECT_EQ(calculator.data->pmaxRefMaxModulation, 2400);
        EXPECT_EQ(calculator.data->csPowerCompensation, each.compensation);
    }
}

TEST_F(WithStandIn, getsRsec2ForTheAnsiMarketAlone) {
    for (const int market : {-1, 0, 1, 2, 3, 4}) {
        const EReferenceSEC expected = market == 1 ? rsec2 : EReferenceSEC::Class6B;

        getAdModMaxPower(dpd1, EFrameFormatMarket{market}, false);

        ASSERT_TRUE(calculator.data.has_value());
        EXPECT_EQ(calculator.data->rsec, expected) << market;
    }
}

TEST_F(WithStandIn, getsTheTableOfDpdVersionAndMarket) {
    const struct {
        EDpdVersion dpdVersion;
        EFrameFormatMarket market;
        long powerAt1024Qam;
    } cases[] = {{EDpdVersion::Dpd1, etsi, 2000},
                 {EDpdVersion::Dpd1, ansi, 1950},
                 {EDpdVersion::Dpd2, EFrameFormatMarket::Global, 2100},
                 {EDpdVersion::Dpd3, ansi, 2050}};
    for (const auto& each : cases) {
        getAdModMaxPower(each.dpdVersion, each.market, true);

        long power = untouched;
        ASSERT_TRUE(calculator.data.has_value());
        EXPECT_EQ(calculator.data->maxPowerCapability.getPower(Modulation::QAM1024, &power), 0);
        EXPECT_EQ(power, each.powerAt1024Qam);
    }
}

TEST_F(WithStandIn, getsTheAvailableMaximumFirstAndTheSelectedOneSecond) {
    getAdModMaxPower(dpd1, etsi, false);

    EXPECT_EQ(calculator.available, Modulation::QAM1024);
    EXPECT_EQ(calculator.selected, Modulation::QAM256);
}

TEST_F(WithStandIn, getsTheBoosterAsItWasSet) {
    getAdModMaxPower(dpd1, etsi, false);
    EXPECT_EQ(calculator.booster.at(0), 0);

    sut.setBoosterPresence(-7, 11, -22, Modulation{33});
    getAdModMaxPower(dpd1, etsi, false);
    EXPECT_EQ(calculator.booster, (std::vector<int>{-7, 11, -22, 33}));
}

TEST_F(WithStandIn, whoseReferenceHasNoPmaxIsNotAskedForAPower) {
    calculator.reference = Modulation{8};
    sut.setPowerCutback(300);
    TraceCapture trace(5);

    const int result = getAdModMaxPower(dpd1, etsi, true);

    EXPECT_EQ(result, 32776);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_FALSE(calculator.data.has_value());
    EXPECT_EQ(trace.lines(),
              (Lines{noRow("UNDEFINED"),
                     msg(1, "getAdModMaxPower",
                         "Could not get max output power for reference offset 0QAM")}));
    const TraceCapture untraced(0);
    EXPECT_EQ(getAdModMaxPower(dpd1, etsi, true), 32776);
    EXPECT_EQ(maxPower, untouched);
}

TEST_F(WithStandIn, whoseAnswerIs2CountsAs0InAFixedModulationWithABooster) {
    calculator.result = 2;
    calculator.power.reset();
    sut.setBoosterPresence(1, 0, 0, Modulation::CW);

    const int result = Inside::getFixModMaxPower(sut, dpd1, etsi, Modulation::QAM16,
                                                 Modulation::QAM64, 0, maxPower, false);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 0);
}

TEST_F(WithStandIn, thatWritesNoPowerLeavesTheOutputAlone) {
    calculator.power.reset();

    const int result = getAdModMaxPower(dpd1, etsi, false);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, untouched);
}

TEST_F(WithStandIn, whosePowersAreExtremeIsNotClamped) {
    for (const long power : {-2147483647L - 1, 2147483647L}) {
        calculator.power = power;

        EXPECT_EQ(getAdModMaxPower(dpd1, etsi, false), 0);
        EXPECT_EQ(maxPower, power);
    }
}

// What becomes of its result codes

TEST_P(PowerResult, becomesThatOfTheService) {
    calculator.result = GetParam().given;
    TraceCapture trace(2);

    const int result = getAdModMaxPower(dpd1, etsi, false);

    EXPECT_EQ(result, GetParam().expected);
    EXPECT_EQ(trace.lines(),
              GetParam().expected == 32776
                  ? Lines{msg(1, "getAdModMaxPower", "Modulation not supported 16QAMQAM")}
                  : Lines{});
}

INSTANTIATE_TEST_SUITE_P(, PowerResult,
                         ::testing::Values(ResultCase{0, 0}, ResultCase{1, 0}, ResultCase{2, 2},
                                           ResultCase{3, 0}, ResultCase{32767, 0},
                                           ResultCase{32768, 32776}, ResultCase{32770, 32776},
                                           ResultCase{32776, 32776}, ResultCase{2147483647, 32776},
                                           ResultCase{-1, 32776},
                                           ResultCase{-2147483647 - 1, 32776}));

TEST_P(CompensationResult, becomesThatOfTheService) {
    calculator.compensationResult = GetParam().given;
    calculator.compensation.reset();
    TraceCapture trace(5);

    const int result = getCsPowerCompensation();

    EXPECT_EQ(result, GetParam().expected);
    EXPECT_EQ(compensation, 0);
    EXPECT_EQ(trace.lines(),
              GetParam().expected == 32768
                  ? Lines{msg(1, "getCsPowerCompensation",
                              "Could not get power compensation for channel spacing 28MHz")}
                  : Lines{});
}

INSTANTIATE_TEST_SUITE_P(, CompensationResult,
                         ::testing::Values(ResultCase{0, 0}, ResultCase{1, 0}, ResultCase{2, 0},
                                           ResultCase{32767, 0}, ResultCase{32768, 32768},
                                           ResultCase{32770, 32768}, ResultCase{32776, 32768},
                                           ResultCase{-1, 32768}));

// A table that does not know its highest Pmax

TEST_P(TableResult, ofAFailureFailsThePairAndAsksForNoMinimum) {
    s_tableResult = GetParam();
    s_tablePower = 2600;
    long pmin = untouched;
    long pmax = untouched;
    TraceCapture trace(6);

    const int result = sut.findPminPmax(pmin, pmax);

    EXPECT_EQ(result, 32768);
    EXPECT_EQ(pmin, untouched);
    EXPECT_EQ(trace.lines(),
              (Lines{enter("findPminPmax"), msg(1, "findPminPmax", "Failed to getMaxPower")}));
    const TraceCapture untraced(0);
    EXPECT_EQ(sut.findPminPmax(pmin, pmax), 32768);
    EXPECT_EQ(pmin, untouched);
}

INSTANTIATE_TEST_SUITE_P(, TableResult, ::testing::Values(32768, 32776, -1));

TEST_F(WithStandIn, ofATableWithTheHighestCodeBelowFailureFindsThePair) {
    s_tableResult = 32767;
    s_tablePower = 2600;
    long pmin = untouched;
    long pmax = untouched;

    const int result = sut.findPminPmax(pmin, pmax);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(pmin, -750);
    EXPECT_EQ(pmax, 2600);
}
