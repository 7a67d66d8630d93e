#include "ServiceTest.h"

using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using traced::cutback;
using traced::enter;
using traced::lookUp;
using traced::msg;
using traced::noRow;
using traced::sequence;

namespace {

const std::string usingVo5 = msg(6, "getCalculator", "Using TMU max power algorithm");
const std::string vo5 = "CalculatorVo5.getMaxPower: ";

std::vector<std::string> upTo(const std::string& actual) {
    return {
        enter("getAdModMaxPower",
              "dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=2, selectedMinMod=4QAM, "
              "selectedMaxMod=64QAM, availableMaxMod=256QAM, actualMod=" +
                  actual + ", csPowerCompensation=0"),
        cutback()};
}

/// The reference of the newer radio units, and what they begin their power with.
std::vector<std::string> reference(const std::string& actual, const std::string& pmax) {
    return sequence(
        {usingVo5,
         "6 enter CalculatorVo5.getMaxRefModulation: availableMaxAcm=256QAM, selectedMaxAcm=64QAM",
         "5 msg CalculatorVo5.getMaxRefModulation: getMaxRefModulationmax power = 64QAM",
         lookUp("1", "Etsi", "64QAM"), enter("getMaxPowerArray", "dpdVersion=1, market=Etsi"),
         "6 msg " + vo5 + "data.selectedMaxModulation=64QAM, data.actualModulation=" + actual +
             ", data.rsec=0, data.pmaxActualModulation=" + pmax +
             ", data.pmaxRefMaxModulation=2400, boosterBand=0"});
}

/// Two queries that trace at every level: an array of a code with a power, one without a Pmax and
/// one above the selected maximum, at a spacing without an offset; and the undefined modulation.
class TraceLevels : public StartedServiceTest {
protected:
    void SetUp() override {
        node.answers.productNumber = "X";
        node.answers.acmMax = 61;
        node.answers.channelSpacing = EChannelSpacingType::MHz7;
        node.answers.modulationAndCodes = {{31}, {51}, {81}};
        node.answers.pmaxDpd1Etsi =
            PmaxAnswer({4, 2800, 16, 2600, 64, 2400, 256, 2200, 100000, 1000});
        StartedServiceTest::SetUp();
    }

    void queryAll() {
        EXPECT_EQ(
            sut.getMinMaxOutputPowerVsModulationArray(0, noCode, noCode, rsec2, minPower, powerMap),
            0U);
        EXPECT_EQ(minPower, -1000);
        ASSERT_THAT(powerMap, SizeIs(1));
        EXPECT_EQ(powerMap[{31}], 2600);
        EXPECT_EQ(
            sut.calculateAdmodPowerCapabilities(Modulation::UNDEFINED, rsec2, minPower, maxPower),
            2);
    }

    static std::vector<std::string> everyLine() {
        const std::string step = "rsec=0, adModEnable=1, selectedMinMod=4QAM, selectedMaxMod=64QAM";
        const std::string map = "populateModulationPowerMap";
        return sequence(
            {enter("getMinMaxOutputPowerVsModulationArray",
                   "frameformat_id=0, minModulationAndCodeIn=UNDEFINED, "
                   "maxModulationAndCodeIn=UNDEFINED, referenceSec=0"),
             enter("getAdmodEnable",
                   "minModulationAndCode=4QAM_STRONG, maxModulationAndCode=64QAM"),
             enter("getMaxOutputPowerArrayUsingConfigured", step), //
             enter(map, step), msg(6, map, "modulationAndCodeArraySize = 3"),
             traced::limit("0", "No", "256QAM", "256QAM"), usingVo5,
             // 4QAM
             upTo("4QAM"), lookUp("1", "Etsi", "4QAM"), cutback(), lookUp("1", "Etsi", "4QAM"),
             cutback(), reference("4QAM", "2800"), "6 msg " + vo5 + "Static power for 4QAM = 2600",
             "6 msg " + vo5 + "ACM adjusted power for selected max 64QAM(2400 + 200) = 2600",
             "5 msg " + vo5 + "Max power = 2600 for 4QAM, RSEC-2, using selected max 64QAM",
             // 32QAM
             upTo("32QAM"), lookUp("1", "Etsi", "4QAM"), cutback(), lookUp("1", "Etsi", "32QAM"),
             noRow("32QAM"), cutback(),
             msg(1, "getAdModMaxPower", "Could not get max ref output power for actual 32QAMQAM"),
             msg(2, map, "Failed to calculate power capabilities for modType 32QAM"),
             // 256QAM
             upTo("256QAM"), lookUp("1", "Etsi", "4QAM"), cutback(), lookUp("1", "Etsi", "256QAM"),
             cutback(), reference("256QAM", "2200"),
             "5 msg " + vo5 + "getMaxPower256QAM is higher than selected max ACM (64QAM)",
             msg(5, map, "ignoring QAM256QAM as it's not supported by combined HW capability"),
             enter("getMinOutputPower", "7"),
             msg(2, "getMinOutputPower", " no match for channel spacing : 7"),
             msg(5, "getMinMaxOutputPowerVsModulationArray", "minOutputPower = -1000"),
             // The undefined modulation
             enter("calculateAdmodPowerCapabilities",
                   "actualModulation=UNDEFINED, convertRsecEnumToString(rsec)=2"),
             traced::limit("0", "No", "256QAM", "256QAM"), usingVo5, upTo("UNDEFINED"),
             lookUp("1", "Etsi", "4QAM"), cutback(), lookUp("1", "Etsi", "UNDEFINED"), cutback(),
             reference("UNDEFINED", "1000"),
             "4 msg " + vo5 + "getMaxPowerUNDEFINED type invalid, selected max 64QAM",
             msg(5, "calculateAdmodPowerCapabilities",
                 "ignoring QAMUNDEFINED as it's not supported by combined HW capability")});
    }

    long minPower = untouched;
    long maxPower = untouched;
    std::map<ModulationAndCoding, long> powerMap;
};

class LevelOfTrace : public TraceLevels, public ::testing::WithParamInterface<int> {};

} // namespace

TEST_P(LevelOfTrace, letsTheRecordsThroughUpToIt) {
    std::vector<std::string> expected;
    for (const std::string& line : everyLine()) {
        if (line.at(0) - '0' <= GetParam()) {
            expected.push_back(line);
        }
    }
    // How many records these are, by level.
    const std::size_t upToLevel[] = {0, 2, 4, 4, 5, 13};
    if (GetParam() >= 0 && GetParam() <= 5) {
        ASSERT_THAT(expected, SizeIs(upToLevel[GetParam()]));
    }
    TraceCapture trace(GetParam());

    queryAll();

    EXPECT_THAT(trace.lines(), ElementsAreArray(expected));
}

INSTANTIATE_TEST_SUITE_P(, LevelOfTrace, ::testing::Values(0, 1, 2, 3, 4, 5, 6, 7));

TEST_F(TraceLevels, belowEveryLevelLetNothingThrough) {
    TraceCapture trace(-1);

    queryAll();

    EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(TraceLevels, areThoseOfTheMomentOfTheQuery) {
    TraceCapture trace(6);
    sut.setPowerCutback(0);
    DeskTrace::getInstance().setLevel(5);
    sut.setPowerCutback(0);
    DeskTrace::getInstance().setLevel(6);
    sut.setPowerCutback(0);

    EXPECT_THAT(trace.lines(),
                ElementsAreArray({enter("setPowerCutback", "0"), enter("setPowerCutback", "0")}));
}

TEST_F(TraceLevels, ofTheSettersHoldTheirResultsAtLevel5) {
    TraceCapture trace(5);

    sut.setPowerCutback(300);
    sut.setTemporaryPowerCutback(true, 300);
    sut.setTemperature(25);
    sut.setBoosterPresence(1, 900, 1000, Modulation::QAM256);

    EXPECT_THAT(trace.lines(),
                ElementsAreArray({msg(5, "setTemperature", "New temperature = 25"),
                                  msg(5, "setBoosterPresence", "New boosterPresence = 1"),
                                  msg(5, "setBoosterPresence",
                                      "New boosterGain = 900, new boosterMaxInputPower = 1000, "
                                      "new boosterMaxModulation = 256QAM")}));
}

TEST_F(TraceLevels, ofTheSettersHoldNothingAtLevel4) {
    TraceCapture trace(4);

    sut.setPowerCutback(300);
    sut.setTemporaryPowerCutback(true, 300);
    sut.setTemperature(25);
    sut.setBoosterPresence(1, 900, 1000, Modulation::QAM256);

    EXPECT_THAT(trace.lines(), IsEmpty());
}
