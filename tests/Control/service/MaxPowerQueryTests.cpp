#include "ServiceTest.h"

#include <ostream>

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::InSequence;
using traced::cutback;
using traced::enter;
using traced::lookUp;
using traced::msg;
using traced::noRow;
using traced::sequence;

namespace {

constexpr int success = 0;
constexpr int notApplicable = 2;
constexpr int failure = 32768;
constexpr int noEntry = 32776;

struct TableCase {
    int dpdVersion;
    int market;
    const char* marketText;
    long powerAt4Qam;

    friend std::ostream& operator<<(std::ostream& stream, const TableCase& table) {
        return stream << "DPD " << table.dpdVersion << ", market " << table.market;
    }
};

class PmaxTableChoice : public StartedServiceTest,
                        public ::testing::WithParamInterface<TableCase> {};

class UnknownDpdVersion : public StartedServiceTest, public ::testing::WithParamInterface<int> {};

class PmaxQuery : public StartedServiceTest {
protected:
    int getMaxPower(Modulation modulation, long& power) {
        return Inside::getMaxPower(sut, dpd1, etsi, modulation, power);
    }
};

class CompensationQuery : public StartedServiceTest {
protected:
    int compensationFor(int channelSpacing, long& compensation) {
        return Inside::getCsPowerCompensation(sut, EChannelSpacingType{channelSpacing},
                                              compensation);
    }
};

/// Adaptive modulation from 4QAM to 256QAM at 16QAM, RSEC 2, DPD 1, ETSI, compensation 150, unless
/// a test changes it.
class AdModQuery : public StartedServiceTest {
protected:
    int getAdModMaxPower() {
        return Inside::getAdModMaxPower(sut, dpdVersion, market, rsec, selectedMin, selectedMax,
                                        availableMax, actual, 150, maxPower, useCutback);
    }

    EDpdVersion dpdVersion = dpd1;
    EFrameFormatMarket market = etsi;
    EReferenceSEC rsec = rsec2;
    Modulation selectedMin = Modulation::QAM4;
    Modulation selectedMax = Modulation::QAM256;
    Modulation availableMax = Modulation::QAM256;
    Modulation actual = Modulation::QAM16;
    bool useCutback = false;
    long maxPower = untouched;
};

const std::string adModEntry =
    enter("getAdModMaxPower", "dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=2, "
                              "selectedMinMod=4QAM, selectedMaxMod=256QAM, availableMaxMod=256QAM, "
                              "actualMod=16QAM, csPowerCompensation=150");
const std::string usingKam = msg(6, "getCalculator", "Using KaM max power algorithm");

} // namespace

// Pmax tables

TEST_P(PmaxTableChoice, readsTheTableOfDpdVersionAndMarket) {
    TxRfMaxPowerCapability table;
    TraceCapture trace(6);

    const int result = Inside::getMaxPowerArray(sut, EDpdVersion{GetParam().dpdVersion},
                                                EFrameFormatMarket{GetParam().market}, table);

    EXPECT_EQ(result, success);
    EXPECT_THAT(trace.lines(),
                ElementsAre(enter("getMaxPowerArray",
                                  "dpdVersion=" + std::to_string(GetParam().dpdVersion) +
                                      ", market=" + GetParam().marketText)));
    long power = untouched;
    EXPECT_EQ(table.getPower(Modulation::QAM4, &power), 0);
    EXPECT_EQ(power, GetParam().powerAt4Qam);
}

INSTANTIATE_TEST_SUITE_P(
    , PmaxTableChoice,
    ::testing::Values(TableCase{1, 0, "Etsi", 2800}, TableCase{1, 1, "Ansi", 2750},
                      TableCase{1, 2, "Global", 2800}, TableCase{1, 3, "Unknown", 2800},
                      TableCase{1, 4, "", 2800}, TableCase{1, -1, "", 2800},
                      TableCase{2, 0, "Etsi", 2900}, TableCase{2, 1, "Ansi", 2850},
                      TableCase{2, 2, "Global", 2900}, TableCase{2, 3, "Unknown", 2900},
                      TableCase{2, 4, "", 2900}, TableCase{2, -1, "", 2900},
                      TableCase{3, 0, "Etsi", 2900}, TableCase{3, 1, "Ansi", 2850},
                      TableCase{3, 2, "Global", 2900}, TableCase{3, 3, "Unknown", 2900},
                      TableCase{3, 4, "", 2900}, TableCase{3, -1, "", 2900}));

TEST_P(UnknownDpdVersion, hasNoTableAndLeavesTheOutputAlone) {
    const std::string version = std::to_string(GetParam());
    TxRfMaxPowerCapability table;
    ASSERT_EQ(Inside::getMaxPowerArray(sut, dpd1, ansi, table), success);
    TraceCapture trace(6);

    const int result = Inside::getMaxPowerArray(sut, EDpdVersion{GetParam()}, etsi, table);

    EXPECT_EQ(result, failure);
    EXPECT_THAT(trace.lines(),
                ElementsAre(enter("getMaxPowerArray", "dpdVersion=" + version + ", market=Etsi"),
                            msg(1, "getMaxPowerArray", "Unknown DPD version " + version)));
    long power = untouched;
    EXPECT_EQ(table.getPower(Modulation::QAM4, &power), 0);
    EXPECT_EQ(power, 2750);
}

TEST_P(UnknownDpdVersion, hasNoPmaxAndLeavesTheOutputAlone) {
    const std::string version = std::to_string(GetParam());
    long power = untouched;
    TraceCapture trace(6);

    const int result =
        Inside::getMaxPower(sut, EDpdVersion{GetParam()}, ansi, Modulation::QAM16, power);

    EXPECT_EQ(result, failure);
    EXPECT_EQ(power, untouched);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(
                    sequence({lookUp(version, "Ansi", "16QAM"),
                              msg(1, "getMaxPowerArray", "Unknown DPD version " + version),
                              msg(2, "getMaxPower", "Unable to get power for modulation 16QAM")})));
}

INSTANTIATE_TEST_SUITE_P(, UnknownDpdVersion,
                         ::testing::Values(0, 4, -1, 2147483647, -2147483647 - 1));

// Pmax of one modulation

TEST_F(PmaxQuery, givesTheRowOfTheModulation) {
    long power = untouched;
    TraceCapture trace(6);

    const int result = getMaxPower(Modulation::QAM64, power);

    EXPECT_EQ(result, success);
    EXPECT_EQ(power, 2400);
    EXPECT_THAT(trace.lines(), ElementsAreArray(lookUp("1", "Etsi", "64QAM")));
}

TEST_F(PmaxQuery, ofAModulationWithoutARowFailsAsTheTableDoes) {
    long power = untouched;
    TraceCapture trace(6);

    const int result = getMaxPower(Modulation::QAM32, power);

    EXPECT_EQ(result, noEntry);
    EXPECT_EQ(power, untouched);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(sequence({lookUp("1", "Etsi", "32QAM"), noRow("32QAM")})));
}

TEST_F(PmaxQuery, ofAModulationWithoutATextTracesItAsUndefined) {
    long power = untouched;
    TraceCapture trace(6);

    const int result = getMaxPower(Modulation{8}, power);

    EXPECT_EQ(result, noEntry);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(sequence({lookUp("1", "Etsi", "UNDEFINED"), noRow("UNDEFINED")})));
}

TEST_F(PmaxQuery, ofAMarketWithoutATextTracesNothingForIt) {
    long power = untouched;
    TraceCapture trace(6);

    const int result =
        Inside::getMaxPower(sut, dpd1, EFrameFormatMarket{4}, Modulation::QAM4, power);

    EXPECT_EQ(result, success);
    EXPECT_EQ(power, 2800);
    EXPECT_THAT(trace.lines(), ElementsAreArray(lookUp("1", "", "4QAM")));
}

TEST_F(PmaxQuery, followsATableWhoseContentTheHandlerChanges) {
    node.answers.pmaxDpd1Etsi.table[1] = 1111;
    long power = untouched;

    getMaxPower(Modulation::QAM4, power);

    EXPECT_EQ(power, 1111);
}

// Channel-spacing compensation

TEST_F(CompensationQuery, givesTheCalibrationOfTheServedChannel) {
    long compensation = untouched;
    TraceCapture trace(6);

    const int result = compensationFor(56, compensation);

    EXPECT_EQ(result, success);
    EXPECT_EQ(compensation, -200);
    EXPECT_THAT(trace.lines(), ElementsAreArray(traced::kamCompensation("56")));
}

TEST_F(CompensationQuery, ofASpacingThatIsNotCalibratedIs0) {
    for (const int channelSpacing : {0, 27, 29, -28, 3000}) {
        long compensation = untouched;

        const int result = compensationFor(channelSpacing, compensation);

        EXPECT_EQ(result, success) << channelSpacing;
        EXPECT_EQ(compensation, 0) << channelSpacing;
    }
}

TEST_F(CompensationQuery, ofAFamilyWithoutCompensationIs0) {
    for (const char* const productNumber : {"QZT35201/1", "X"}) {
        node.answers.productNumber = productNumber;
        DeskVariableStore::getInstance().clear();
        long compensation = untouched;

        const int result = compensationFor(28, compensation);

        EXPECT_EQ(result, success) << productNumber;
        EXPECT_EQ(compensation, 0) << productNumber;
    }
}

TEST_F(CompensationQuery, ofTheThirdOutdoorFamilyTracesItsChannel) {
    node.answers.productNumber = "QZT 846 003";
    long compensation = untouched;
    TraceCapture trace(6);

    const int result = compensationFor(28, compensation);

    EXPECT_EQ(result, success);
    EXPECT_EQ(compensation, 150);
    EXPECT_THAT(trace.lines(),
                ElementsAre(msg(6, "getCalculator", "Using KaMV3 max power algorithm"),
                            "6 enter CalculatorKamV3.getCompensationForChannelSpacing: channel=1, "
                            "channelSpacing=28"));
}

TEST_F(CompensationQuery, readsTheServedChannelNotTheGivenNumber) {
    calibrate(3, {28, 999});
    OutputPowerCalculator ofChannel3(3);
    ASSERT_EQ(ofChannel3.initialize(), 0U);
    long compensation = untouched;

    Inside::getCsPowerCompensation(ofChannel3, EChannelSpacingType::MHz28, compensation);

    EXPECT_EQ(compensation, 150);
}

TEST_F(CompensationQuery, readsChannel2ForChannel2) {
    const ChannelNeighbours<::testing::NiceMock> node2(2);
    OutputPowerCalculator ofChannel2(2);
    ASSERT_EQ(ofChannel2.initialize(), 0U);
    long compensation = untouched;

    Inside::getCsPowerCompensation(ofChannel2, EChannelSpacingType::MHz28, compensation);

    EXPECT_EQ(compensation, 70);
}

TEST_F(CompensationQuery, withoutTheStoredArrayFailsWithTheOutputAt0) {
    DeskVariableStore::getInstance().remove("channel.1.tx.rf.pmax.cs.comp.v2.array");
    long compensation = untouched;
    TraceCapture trace(6);

    const int result = compensationFor(28, compensation);

    EXPECT_EQ(result, failure);
    EXPECT_EQ(compensation, 0);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(
                    sequence({traced::kamCompensation("28"),
                              "1 msg CalculatorKam.getCompensationForChannelSpacing: "
                              "getCompensationForChannelSpacing Failed to get variable "
                              "channel.1.tx.rf.pmax.cs.comp.v2.array",
                              msg(1, "getCsPowerCompensation",
                                  "Could not get power compensation for channel spacing 28MHz")})));
}

TEST_F(CompensationQuery, withoutTheStoredArraySizeFailsAndPrintsTheSpacingSigned) {
    DeskVariableStore::getInstance().remove("channel.1.tx.rf.pmax.cs.comp.v2.arraysize");
    long compensation = untouched;
    TraceCapture trace(6);

    const int result = compensationFor(-5, compensation);

    EXPECT_EQ(result, failure);
    EXPECT_EQ(compensation, 0);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(
                    sequence({traced::kamCompensation("-5"),
                              "1 msg CalculatorKam.getCompensationForChannelSpacing: "
                              "getCompensationForChannelSpacing Failed to get variable "
                              "channel.1.tx.rf.pmax.cs.comp.v2.arraysize",
                              msg(1, "getCsPowerCompensation",
                                  "Could not get power compensation for channel spacing -5MHz")})));
}

// Adaptive modulation

TEST_F(AdModQuery, withoutCutbackGivesTheCalculatorsPower) {
    sut.setPowerCutback(300); // not asked for
    TraceCapture trace(6);

    const int result = getAdModMaxPower();

    // Reference 2200 at 256QAM and compensation 150: 2350 + 200 at 16QAM, 2350 + 300 at 4QAM.
    EXPECT_EQ(result, success);
    EXPECT_EQ(maxPower, 2550);
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {adModEntry, lookUp("1", "Etsi", "4QAM"), lookUp("1", "Etsi", "16QAM"), usingKam,
             lookUp("1", "Etsi", "256QAM"), enter("getMaxPowerArray", "dpdVersion=1, market=Etsi"),
             "5 msg CalculatorKam.getMaxPower: getMaxPower std::min parameters: "
             "2600,2650,2550,2800",
             "5 msg CalculatorKam.getMaxPower: getMaxPower Max power for modulation "
             "16QAM, rsec 0 and max modulation 2200 = 2550"})));
}

TEST_F(AdModQuery, withCutbackLowersEachValueOnceAndNeverTheReference) {
    sut.setPowerCutback(300);
    useCutback = true;
    TraceCapture trace(6);

    const int result = getAdModMaxPower();

    // Pmax 2600 - 300 and 2800 - 300; compensation 150 - 300; reference 2200 as it is:
    // 2050 + 200 at 16QAM, 2050 + 300 at 4QAM.
    EXPECT_EQ(result, success);
    EXPECT_EQ(maxPower, 2250);
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {adModEntry, cutback(), lookUp("1", "Etsi", "4QAM"), cutback(),
             lookUp("1", "Etsi", "16QAM"), cutback(), usingKam, lookUp("1", "Etsi", "256QAM"),
             enter("getMaxPowerArray", "dpdVersion=1, market=Etsi"),
             "5 msg CalculatorKam.getMaxPower: getMaxPower std::min parameters: "
             "2300,2350,2250,2500",
             "5 msg CalculatorKam.getMaxPower: getMaxPower Max power for modulation "
             "16QAM, rsec 0 and max modulation 2200 = 2250"})));
}

TEST_F(AdModQuery, withTheTemporaryCutbackInForceIgnoresThePermanentOne) {
    sut.setPowerCutback(1000);
    sut.setTemporaryPowerCutback(true, 100);
    useCutback = true;
    TraceCapture trace(5);

    const int result = getAdModMaxPower();

    EXPECT_EQ(result, success);
    EXPECT_EQ(maxPower, 2450); // 2200 + 150 - 100 + 200
    EXPECT_THAT(trace.lines(),
                ElementsAre("5 msg CalculatorKam.getMaxPower: getMaxPower std::min parameters: "
                            "2500,2550,2450,2700",
                            "5 msg CalculatorKam.getMaxPower: getMaxPower Max power for modulation "
                            "16QAM, rsec 0 and max modulation 2200 = 2450"));
}

TEST_F(AdModQuery, withACutbackThatWrapsRaisesThePower) {
    sut.setPowerCutback(4294967295);
    useCutback = true;

    const int result = getAdModMaxPower();

    EXPECT_EQ(result, success);
    EXPECT_EQ(maxPower, 2551);
}

TEST_F(AdModQuery, withoutAPmaxAtTheSelectedMinimumFails) {
    selectedMin = Modulation::BPSK;
    TraceCapture trace(6);

    const int result = getAdModMaxPower();

    EXPECT_EQ(result, noEntry);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(sequence(
                    {enter("getAdModMaxPower",
                           "dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=2, "
                           "selectedMinMod=BPSK, selectedMaxMod=256QAM, availableMaxMod=256QAM, "
                           "actualMod=16QAM, csPowerCompensation=150"),
                     lookUp("1", "Etsi", "BPSK"), noRow("BPSK"),
                     msg(1, "getAdModMaxPower",
                         "Could not get max ref output power for selected min BPSKQAM")})));
}

TEST_F(AdModQuery, withoutAPmaxAtTheSelectedMinimumTracesItsCutbackBeforeTheFailure) {
    selectedMin = Modulation::QAM128;
    useCutback = true;
    TraceCapture trace(6);

    const int result = getAdModMaxPower();

    EXPECT_EQ(result, noEntry);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(sequence(
                    {enter("getAdModMaxPower",
                           "dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=2, "
                           "selectedMinMod=128QAM, selectedMaxMod=256QAM, availableMaxMod=256QAM, "
                           "actualMod=16QAM, csPowerCompensation=150"),
                     cutback(), lookUp("1", "Etsi", "128QAM"), noRow("128QAM"), cutback(),
                     msg(1, "getAdModMaxPower",
                         "Could not get max ref output power for selected min 128QAMQAM")})));
}

TEST_F(AdModQuery, withoutAPmaxAtTheActualModulationFails) {
    actual = Modulation::QAM32;
    TraceCapture trace(6);

    const int result = getAdModMaxPower();

    EXPECT_EQ(result, noEntry);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(sequence(
                    {enter("getAdModMaxPower",
                           "dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=2, "
                           "selectedMinMod=4QAM, selectedMaxMod=256QAM, availableMaxMod=256QAM, "
                           "actualMod=32QAM, csPowerCompensation=150"),
                     lookUp("1", "Etsi", "4QAM"), lookUp("1", "Etsi", "32QAM"), noRow("32QAM"),
                     msg(1, "getAdModMaxPower",
                         "Could not get max ref output power for actual 32QAMQAM")})));
}

TEST_F(AdModQuery, withoutAPmaxAtTheActualModulationTracesItsCutbackBeforeTheFailure) {
    actual = Modulation::UNDEFINED;
    useCutback = true;
    TraceCapture trace(6);

    const int result = getAdModMaxPower();

    EXPECT_EQ(result, noEntry);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(sequence(
                    {enter("getAdModMaxPower",
                           "dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=2, "
                           "selectedMinMod=4QAM, selectedMaxMod=256QAM, availableMaxMod=256QAM, "
                           "actualMod=UNDEFINED, csPowerCompensation=150"),
                     cutback(), lookUp("1", "Etsi", "4QAM"), cutback(),
                     lookUp("1", "Etsi", "UNDEFINED"), noRow("UNDEFINED"), cutback(),
                     msg(1, "getAdModMaxPower",
                         "Could not get max ref output power for actual UNDEFINEDQAM")})));
}

TEST_F(AdModQuery, withoutAPmaxAtTheReferenceTracesThePowerInPlaceOfTheModulation) {
    availableMax = Modulation::QAM512;
    sut.setPowerCutback(300);
    useCutback = true;
    TraceCapture trace(6);

    const int result = getAdModMaxPower();

    EXPECT_EQ(result, noEntry);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getAdModMaxPower",
                   "dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=2, "
                   "selectedMinMod=4QAM, selectedMaxMod=256QAM, availableMaxMod=512QAM, "
                   "actualMod=16QAM, csPowerCompensation=150"),
             cutback(), lookUp("1", "Etsi", "4QAM"), cutback(), lookUp("1", "Etsi", "16QAM"),
             cutback(), usingKam, lookUp("1", "Etsi", "512QAM"), noRow("512QAM"),
             msg(1, "getAdModMaxPower",
                 "Could not get max output power for reference offset 0QAM")})));
}

TEST_F(AdModQuery, ofAnUnknownDpdVersionFailsAtTheSelectedMinimum) {
    dpdVersion = EDpdVersion{4};
    TraceCapture trace(6);

    const int result = getAdModMaxPower();

    EXPECT_EQ(result, noEntry);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getAdModMaxPower",
                   "dpdVersion=4, market=Etsi, convertRsecEnumToString(rsec)=2, "
                   "selectedMinMod=4QAM, selectedMaxMod=256QAM, availableMaxMod=256QAM, "
                   "actualMod=16QAM, csPowerCompensation=150"),
             lookUp("4", "Etsi", "4QAM"), msg(1, "getMaxPowerArray", "Unknown DPD version 4"),
             msg(2, "getMaxPower", "Unable to get power for modulation 4QAM"),
             msg(1, "getAdModMaxPower",
                 "Could not get max ref output power for selected min 4QAMQAM")})));
}

TEST_F(AdModQuery, thatTheCalculatorRefusesFails) {
    rsec = EReferenceSEC::UNDEFINED;
    TraceCapture trace(6);

    const int result = getAdModMaxPower();

    EXPECT_EQ(result, noEntry);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getAdModMaxPower",
                   "dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=UNDEFINED, "
                   "selectedMinMod=4QAM, selectedMaxMod=256QAM, availableMaxMod=256QAM, "
                   "actualMod=16QAM, csPowerCompensation=150"),
             lookUp("1", "Etsi", "4QAM"), lookUp("1", "Etsi", "16QAM"), usingKam,
             lookUp("1", "Etsi", "256QAM"), enter("getMaxPowerArray", "dpdVersion=1, market=Etsi"),
             "1 msg CalculatorKam.getMaxPower: No power offset found for rsec=UNDEFINED, "
             "acm=16QAM",
             msg(1, "getAdModMaxPower", "Modulation not supported 16QAMQAM")})));
}

TEST_F(AdModQuery, thatARadioUnitFamilyRefusesFailsWithTheServicesOwnCode) {
    node.answers.productNumber = "QZT35201/1";
    rsec = EReferenceSEC{10};
    TraceCapture trace(5);

    const int result = getAdModMaxPower();

    EXPECT_EQ(result, noEntry); // the calculator's was 32770
    EXPECT_EQ(maxPower, untouched);
    EXPECT_THAT(trace.lines(),
                ElementsAre("1 msg CalculatorVo4.getMaxPower: No power offset found for ref "
                            "acm=256QAM, rsec=UNDEFINED, acm=16QAM",
                            msg(1, "getAdModMaxPower", "Modulation not supported 16QAMQAM")));
}

TEST_F(AdModQuery, ofTheAnsiMarketAsksTheCalculatorForRsec2AndTracesTheGivenOne) {
    for (const EReferenceSEC given :
         {EReferenceSEC::Class7B, EReferenceSEC::UNDEFINED, EReferenceSEC{-1}, rsec2}) {
        market = ansi;
        rsec = given;
        TraceCapture trace(6);

        const int result = getAdModMaxPower();

        // Reference 2150 + 150; 2300 + 200 at 16QAM, 2300 + 300 at 4QAM.
        EXPECT_EQ(result, success);
        EXPECT_EQ(maxPower, 2500);
        EXPECT_THAT(
            trace.lines(),
            ElementsAreArray(sequence(
                {enter("getAdModMaxPower",
                       "dpdVersion=1, market=Ansi, convertRsecEnumToString(rsec)=" +
                           std::string(given == rsec2                    ? "2"
                                       : given == EReferenceSEC::Class7B ? "7B"
                                                                         : "UNDEFINED") +
                           ", selectedMinMod=4QAM, selectedMaxMod=256QAM, availableMaxMod=256QAM, "
                           "actualMod=16QAM, csPowerCompensation=150"),
                 lookUp("1", "Ansi", "4QAM"), lookUp("1", "Ansi", "16QAM"), usingKam,
                 lookUp("1", "Ansi", "256QAM"),
                 enter("getMaxPowerArray", "dpdVersion=1, market=Ansi"),
                 "5 msg CalculatorKam.getMaxPower: getMaxPower std::min parameters: "
                 "2550,2600,2500,2750",
                 "5 msg CalculatorKam.getMaxPower: getMaxPower Max power for modulation "
                 "16QAM, rsec 0 and max modulation 2150 = 2500"})));
    }
}

TEST_F(AdModQuery, ofEveryOtherMarketAsksTheCalculatorForTheGivenRsec) {
    for (const int number : {0, 2, 3, 4, -1}) {
        market = EFrameFormatMarket{number};
        rsec = EReferenceSEC::Class7B;
        TraceCapture trace(5);

        const int result = getAdModMaxPower();

        // RSEC 7B: 1 dB at 4QAM and 16QAM alike.
        EXPECT_EQ(result, success) << number;
        EXPECT_EQ(maxPower, 2450) << number;
        EXPECT_THAT(trace.lines(),
                    ElementsAre("5 msg CalculatorKam.getMaxPower: getMaxPower std::min "
                                "parameters: 2600,2450,2450,2800",
                                "5 msg CalculatorKam.getMaxPower: getMaxPower Max power for "
                                "modulation 16QAM, rsec 9 and max modulation 2200 = 2450"));
    }
}

TEST_F(AdModQuery, ofDpdVersion3ReadsTheTablesOfVersion2) {
    for (const int number : {2, 3}) {
        dpdVersion = EDpdVersion{number};
        maxPower = untouched;

        const int result = getAdModMaxPower();

        EXPECT_EQ(result, success) << number;
        EXPECT_EQ(maxPower, 2650) << number; // 2300 + 150 + 200
    }
}

TEST_F(AdModQuery, thatTheCalculatorDoesNotApplyToReturns2) {
    node.answers.productNumber = "X";
    selectedMax = Modulation::QAM4;
    TraceCapture trace(6);

    const int result = getAdModMaxPower();

    EXPECT_EQ(result, notApplicable);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getAdModMaxPower",
                   "dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=2, "
                   "selectedMinMod=4QAM, selectedMaxMod=4QAM, availableMaxMod=256QAM, "
                   "actualMod=16QAM, csPowerCompensation=150"),
             lookUp("1", "Etsi", "4QAM"), lookUp("1", "Etsi", "16QAM"),
             msg(6, "getCalculator", "Using TMU max power algorithm"),
             "6 enter CalculatorVo5.getMaxRefModulation: availableMaxAcm=256QAM, "
             "selectedMaxAcm=4QAM",
             "5 msg CalculatorVo5.getMaxRefModulation: getMaxRefModulationmax power = 4QAM",
             lookUp("1", "Etsi", "4QAM"), enter("getMaxPowerArray", "dpdVersion=1, market=Etsi"),
             "6 msg CalculatorVo5.getMaxPower: data.selectedMaxModulation=4QAM, "
             "data.actualModulation=16QAM, data.rsec=0, data.pmaxActualModulation=2600, "
             "data.pmaxRefMaxModulation=2800, boosterBand=0",
             "5 msg CalculatorVo5.getMaxPower: getMaxPower16QAM is higher than selected max ACM "
             "(4QAM)"})));
}

TEST_F(AdModQuery, givesTheSelectedMaximumToTheNewerRadioUnits) {
    node.answers.productNumber = "X";
    selectedMax = Modulation::QAM64;
    TraceCapture trace(5);

    const int result = getAdModMaxPower();

    // Block of 128QAM at RSEC 2: 1 dB at 16QAM, above the Pmax of 64QAM.
    EXPECT_EQ(result, success);
    EXPECT_EQ(maxPower, 2500);
    EXPECT_THAT(trace.lines(),
                ElementsAre("5 msg CalculatorVo5.getMaxRefModulation: getMaxRefModulationmax power "
                            "= 64QAM",
                            "5 msg CalculatorVo5.getMaxPower: Max power = 2500 for 16QAM, RSEC-2, "
                            "using selected max 64QAM"));
}

TEST_F(AdModQuery, givesTheBoosterToTheRadioUnits) {
    node.answers.productNumber = "QZT35201/1";
    sut.setBoosterPresence(7, 900, 2150, Modulation::QAM16);
    TraceCapture trace(6);

    const int result = getAdModMaxPower();

    // 2200 + 200 = 2400; booster 7 dB: 3100; band 1 adds nothing; - 900 = 2200, above 2150.
    EXPECT_EQ(result, success);
    EXPECT_EQ(maxPower, 2150);
    const std::string vo4 = "6 msg CalculatorVo4.getMaxPower: ";
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {adModEntry, lookUp("1", "Etsi", "4QAM"), lookUp("1", "Etsi", "16QAM"),
             msg(6, "getCalculator", "Using legacy TMU max power algorithm"),
             lookUp("1", "Etsi", "256QAM"), enter("getMaxPowerArray", "dpdVersion=1, market=Etsi"),
             vo4 + "data.refMaxModulation=256QAM, data.actualModulation=16QAM, "
                   "data.rsec=0, data.pmaxActualModulation=2600, "
                   "data.pmaxRefMaxModulation=2200, boosterBand=7",
             vo4 + "Static power for 16QAM = 2400",
             vo4 + "ACM adjusted power = (2200 + 200) = 2400",
             "5 msg CalculatorVo4.getMaxPower: Max power = 2400 for 16QAM, RSEC-2, using "
             "ref acm 256QAM",
             vo4 + "boosterPowerAdjustments: 700", vo4 + "maxPower (boosted.1): 3100",
             vo4 + "boosterBandPowerAdjustments: 0", vo4 + "maxPower (boosted.2): 3100",
             vo4 + "maxPower (boosted.3): 2150", vo4 + "maxPower (boosted.4): 2150"})));
}

TEST_F(AdModQuery, givesTheCompensationCutBackToTheThirdOutdoorFamily) {
    node.answers.productNumber = "QZT 846 003";
    sut.setPowerCutback(300);
    useCutback = true;
    rsec = rsec4L;
    actual = Modulation::QAM4;
    TraceCapture trace(5);

    const int result = getAdModMaxPower();

    // Pmax 2800 - 300; compensation 150 - 300: 2500 + 150 = 2650; the table's Pmax of 16QAM is not
    // cut back: 2600; 2600 - 150.
    EXPECT_EQ(result, success);
    EXPECT_EQ(maxPower, 2450);
    EXPECT_THAT(trace.lines(),
                ElementsAre("5 msg CalculatorKamV3.getMaxPower: getMaxPower Calculated max power = "
                            "2450 for 4QAM with rsec 4L and power cutback: -150"));
}

TEST_F(AdModQuery, givesTheThirdOutdoorFamilyTheTableOfDpdVersionAndMarket) {
    node.answers.productNumber = "QZT 846 003";
    rsec = rsec4L;
    actual = Modulation::QAM4;
    dpdVersion = EDpdVersion::Dpd3;

    const int result = getAdModMaxPower();

    // 2900 - 150 = 2750, capped by 2700 at 16QAM of the DPD 2 table; 2700 + 150.
    EXPECT_EQ(result, success);
    EXPECT_EQ(maxPower, 2850);
}

// What the configured frame format may have without any cutback

namespace {

class UnrestrictedPmax : public StartedServiceTest {};

class UnrestrictedPmaxCalls : public StrictServiceTest {};

} // namespace

TEST_F(UnrestrictedPmax, isThePmaxAtTheFrameFormatsModulationPlusTheCompensation) {
    sut.setPowerCutback(300);
    sut.setTemporaryPowerCutback(true, 200);
    long pmax = untouched;
    TraceCapture trace(6);

    const int result = sut.getUnrestrictedPmax(pmax);

    EXPECT_EQ(result, success);
    EXPECT_EQ(pmax, 2550); // 2400 + 150
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getUnrestrictedPmax"), traced::kamCompensation("28"),
             enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=64QAM, "
                                        "modulation=64QAM, csPowerCompensation=150, useCutback=0"),
             lookUp("1", "Etsi", "64QAM"), lookUp("1", "Etsi", "64QAM")})));
}

TEST_F(UnrestrictedPmaxCalls, goToTheNeighboursInOrder) {
    const InSequence order;
    EXPECT_CALL(node.frameFormat, getModulation);
    EXPECT_CALL(node.frameFormat, getChannelSpacing);
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber);
    EXPECT_CALL(node.frameFormat, getDpdVersion);
    EXPECT_CALL(node.frameFormat, getTelecomMarket);
    long pmax = untouched;

    const int result = sut.getUnrestrictedPmax(pmax);

    EXPECT_EQ(result, success);
}

TEST_F(UnrestrictedPmax, readsDpdVersionMarketAndSpacingOfTheFrameFormat) {
    node.answers.dpdVersion = EDpdVersion::Dpd2;
    node.answers.market = ansi;
    node.answers.channelSpacing = EChannelSpacingType::MHz56;
    node.answers.modulation = Modulation::QAM16;
    long pmax = untouched;

    const int result = sut.getUnrestrictedPmax(pmax);

    EXPECT_EQ(result, success);
    EXPECT_EQ(pmax, 2450); // 2650 - 200
}

TEST_F(UnrestrictedPmax, withoutCompensationFailsBeforeAnythingIsWritten) {
    DeskVariableStore::getInstance().clear();
    long pmax = untouched;
    TraceCapture trace(6);

    const int result = sut.getUnrestrictedPmax(pmax);

    EXPECT_EQ(result, failure);
    EXPECT_EQ(pmax, untouched);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(
                    sequence({enter("getUnrestrictedPmax"), traced::kamCompensation("28"),
                              "1 msg CalculatorKam.getCompensationForChannelSpacing: "
                              "getCompensationForChannelSpacing Failed to get variable "
                              "channel.1.tx.rf.pmax.cs.comp.v2.array",
                              msg(1, "getCsPowerCompensation",
                                  "Could not get power compensation for channel spacing 28MHz")})));
}

TEST_F(UnrestrictedPmax, ofAnUnknownDpdVersionSucceedsWithTheCompensationAlone) {
    node.answers.dpdVersion = EDpdVersion{0};
    long pmax = untouched;
    TraceCapture trace(5);

    const int result = sut.getUnrestrictedPmax(pmax);

    EXPECT_EQ(result, success);
    EXPECT_EQ(pmax, 150);
    EXPECT_THAT(trace.lines(),
                ElementsAre(msg(1, "getMaxPowerArray", "Unknown DPD version 0"),
                            msg(2, "getMaxPower", "Unable to get power for modulation 64QAM"),
                            msg(2, "getFixModMaxPower",
                                "Failed to calculate power capabilities for modulation 64QAMQAM"),
                            msg(1, "getMaxPowerArray", "Unknown DPD version 0"),
                            msg(2, "getMaxPower", "Unable to get power for modulation 64QAM"),
                            msg(2, "getFixModMaxPower",
                                "Failed to calculate power capabilities for modulation 64QAM")));
}

TEST_F(UnrestrictedPmax, withABoosterThatTheFamilyRefusesSucceedsAndWritesNothing) {
    sut.setBoosterPresence(1, 0, 0, Modulation::QAM256);
    node.answers.modulation = Modulation::QAM32;
    long pmax = untouched;
    TraceCapture trace(5);

    const int result = sut.getUnrestrictedPmax(pmax);

    EXPECT_EQ(result, success);
    EXPECT_EQ(pmax, untouched);
    EXPECT_THAT(trace.lines(),
                ElementsAre(noRow("32QAM"),
                            msg(1, "getAdModMaxPower",
                                "Could not get max ref output power for selected min 32QAMQAM"),
                            noRow("32QAM"),
                            msg(1, "getAdModMaxPower",
                                "Could not get max ref output power for selected min 32QAMQAM"),
                            msg(2, "getFixModMaxPower",
                                "Failed to get AdMod capabilities, error: 32776, 32776"),
                            msg(2, "getUnrestrictedPmax",
                                "Failed to calculate power capabilities for modulation 32QAM")));
}

TEST_F(UnrestrictedPmax, withABoosterIgnoresTheCutback) {
    sut.setBoosterPresence(1, 0, 0, Modulation::QAM256);
    sut.setPowerCutback(300);
    long pmax = untouched;

    const int result = sut.getUnrestrictedPmax(pmax);

    // RSEC 4L, 64QAM: 2200 + 150 + 100 = 2450, above the Pmax of 2400.
    EXPECT_EQ(result, success);
    EXPECT_EQ(pmax, 2400);
}
