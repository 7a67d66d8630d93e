#include "ServiceTest.h"

#include <ostream>

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::InSequence;
using ::testing::IsEmpty;
using ::testing::Return;
using traced::cutback;
using traced::enter;
using traced::lookUp;
using traced::msg;
using traced::noRow;
using traced::sequence;

namespace {

constexpr long configured = 0;
constexpr EReferenceSEC undefinedRsec = EReferenceSEC::UNDEFINED;

using Codes = std::vector<ModulationAndCoding>;
using PowerMap = std::map<ModulationAndCoding, long>;
using Powers = std::map<int, long>;

Codes codesOf(const std::vector<int>& numbers) {
    Codes codes;
    for (const int number : numbers) {
        codes.push_back({number});
    }
    return codes;
}

/// What there is for the array query of one map.
template <class Base>
class ArrayFixture : public Base {
protected:
    /// Asks with both ends as the operator selected them.
    unsigned query(long frameFormatId, EReferenceSEC rsec = rsec2) {
        return query(frameFormatId, noCode, noCode, rsec);
    }

    unsigned query(long frameFormatId, ModulationAndCoding min, ModulationAndCoding max,
                   EReferenceSEC rsec = rsec2) {
        return this->sut.getMinMaxOutputPowerVsModulationArray(frameFormatId, min, max, rsec,
                                                               minOutputPower, powerMap);
    }

    /// The powers by the numbers of the codes.
    Powers powers() const {
        Powers powers;
        for (const auto& [code, power] : powerMap) {
            powers[code.code] = power;
        }
        return powers;
    }

    /// Gives the configured frame format its codes.
    void configure(const std::vector<int>& numbers) {
        this->node.answers.modulationAndCodes = codesOf(numbers);
    }

    long minOutputPower = untouched;
    PowerMap powerMap;
};

class PowerArray : public ArrayFixture<StartedServiceTest> {};
class PowerArrayById : public PowerArray {};
class PowerArrayCalls : public ArrayFixture<StrictServiceTest> {};

/// The step that fills the map, by itself: DPD 1, ETSI, 28 MHz, RSEC 2, from 4QAM to 256QAM.
class PowerMapStep : public PowerArray {
protected:
    unsigned populate(const std::vector<int>& numbers) {
        return Inside::populateModulationPowerMap(
            sut, codesOf(numbers), 0, rsec, adModEnable, selectedMin, selectedMax,
            Inside::UseConfiguredFF::Configured, dpd1, etsi, EChannelSpacingType::MHz28, powerMap);
    }

    EReferenceSEC rsec = rsec2;
    bool adModEnable = true;
    Modulation selectedMin = Modulation::QAM4;
    Modulation selectedMax = Modulation::QAM256;
};

const std::string ends30To81 =
    enter("getAdmodEnable", "minModulationAndCode=4QAM_STRONG, maxModulationAndCode=256QAM");

std::vector<std::string> mapEntry(const std::string& text, int size) {
    return {enter("populateModulationPowerMap", text),
            msg(6, "populateModulationPowerMap",
                "modulationAndCodeArraySize = " + std::to_string(size))};
}

const std::string adModStep = "rsec=0, adModEnable=1, selectedMinMod=4QAM, selectedMaxMod=256QAM";

std::string mapFailed(const std::string& text) {
    return msg(1, "populateModulationPowerMap", "Failed to calculate power capabilities" + text);
}

std::string codeFailed(const std::string& modulation) {
    return msg(2, "populateModulationPowerMap",
               "Failed to calculate power capabilities for modType " + modulation);
}

std::string codeIgnored(const std::string& modulation) {
    return msg(5, "populateModulationPowerMap",
               "ignoring QAM" + modulation + " as it's not supported by combined HW capability");
}

} // namespace

// The configured frame format

TEST_F(PowerArray, ofTheConfiguredFrameFormatHoldsTheMaximumOfEveryCode) {
    TraceCapture trace(6);

    const unsigned result = query(configured);

    // Reference 2200 at 256QAM and compensation 150: 2350, plus 300, 200, 100 and 0; the Pmax of
    // 64QAM and of 256QAM lies below that.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{30, 2650}, {31, 2650}, {41, 2550}, {61, 2400}, {81, 2200}}));
    EXPECT_EQ(minOutputPower, -750);
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getMinMaxOutputPowerVsModulationArray",
                   "frameformat_id=0, minModulationAndCodeIn=UNDEFINED, "
                   "maxModulationAndCodeIn=UNDEFINED, referenceSec=0"),
             ends30To81, enter("getMaxOutputPowerArrayUsingConfigured", adModStep),
             mapEntry(adModStep, 5), traced::limit("0", "No", "256QAM", "256QAM"),
             traced::kamCompensation("28"),
             traced::kamPower(
                 {.actual = "4QAM", .parameters = "2800,2650,2650,2800", .power = "2650"}),
             traced::kamPower(
                 {.actual = "16QAM", .parameters = "2600,2650,2550,2800", .power = "2550"}),
             traced::kamPower(
                 {.actual = "64QAM", .parameters = "2400,2650,2450,2800", .power = "2400"}),
             traced::kamPower(
                 {.actual = "256QAM", .parameters = "2200,2650,2350,2800", .power = "2200"}),
             enter("getMinOutputPower", "28"),
             msg(5, "getMinMaxOutputPowerVsModulationArray", "minOutputPower = -750")})));
}

TEST_F(PowerArray, withCutbackLowersEveryPowerOnce) {
    sut.setPowerCutback(300);

    const unsigned result = query(configured);

    // Base 2050: plus 300, 200 and 100; the Pmax of 64QAM less 300 is 2100, of 256QAM 1900.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{30, 2350}, {31, 2350}, {41, 2250}, {61, 2100}, {81, 1900}}));
    EXPECT_EQ(minOutputPower, -750);
}

TEST_F(PowerArray, keepsWhatTheMapHeldAndOverwritesItsCodes) {
    powerMap = {{{23}, 1}, {{41}, 2}, {{133}, 3}};

    const unsigned result = query(configured);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(
        powers(),
        (Powers{{23, 1}, {30, 2650}, {31, 2650}, {41, 2550}, {61, 2400}, {81, 2200}, {133, 3}}));
}

TEST_F(PowerArray, ofIdsBelow1IsThatOfTheConfiguredFrameFormat) {
    for (const long id : {0L, -1L, -2147483647L - 1}) {
        powerMap.clear();
        TraceCapture trace(6);

        const unsigned result = query(id);

        EXPECT_EQ(result, 0U) << id;
        EXPECT_EQ(powerMap.size(), 5U) << id;
        EXPECT_EQ(trace.lines().at(0),
                  enter("getMinMaxOutputPowerVsModulationArray",
                        "frameformat_id=" + std::to_string(id) +
                            ", minModulationAndCodeIn=UNDEFINED, "
                            "maxModulationAndCodeIn=UNDEFINED, referenceSec=0"));
    }
}

TEST_F(PowerArray, ofEqualEndsIsThatOfFixedModulation) {
    node.answers.acmMin = 41;
    node.answers.acmMax = 41;
    configure({30, 61});
    sut.setPowerCutback(300);
    TraceCapture trace(6);

    const unsigned result = query(configured);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{30, 2450}, {61, 2250}})); // 2600 and 2400, - 300 + 150
    const std::string step = "rsec=0, adModEnable=0, selectedMinMod=16QAM, selectedMaxMod=16QAM";
    const auto fixed = [](const std::string& modulation) {
        return sequence(
            {enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=16QAM, "
                                        "modulation=" +
                                            modulation + ", csPowerCompensation=150, useCutback=1"),
             lookUp("1", "Etsi", "16QAM"), cutback(), lookUp("1", "Etsi", modulation), cutback()});
    };
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(sequence(
                    {enter("getMinMaxOutputPowerVsModulationArray",
                           "frameformat_id=0, minModulationAndCodeIn=UNDEFINED, "
                           "maxModulationAndCodeIn=UNDEFINED, referenceSec=0"),
                     enter("getAdmodEnable", "minModulationAndCode=16QAM, "
                                             "maxModulationAndCode=16QAM"),
                     enter("getMaxOutputPowerArrayUsingConfigured", step), mapEntry(step, 2),
                     traced::limit("0", "No", "64QAM", "64QAM"), traced::kamCompensation("28"),
                     fixed("4QAM"), fixed("64QAM"), enter("getMinOutputPower", "28"),
                     msg(5, "getMinMaxOutputPowerVsModulationArray", "minOutputPower = -750")})));
}

TEST_F(PowerArray, ofGivenEndsIgnoresTheSelectedOnes) {
    configure({41});
    TraceCapture trace(6);

    const unsigned result = query(configured, {41}, {143}, EReferenceSEC::Class7B);

    // Reference 2600 at 16QAM, 1 dB at RSEC 7B: 2500 + 150 + 100, above the Pmax.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{41, 2600}}));
    const std::string step = "rsec=9, adModEnable=1, selectedMinMod=16QAM, selectedMaxMod=65536QAM";
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getMinMaxOutputPowerVsModulationArray",
                   "frameformat_id=0, minModulationAndCodeIn=16QAM, "
                   "maxModulationAndCodeIn=65536QAM_ULTRA_STRONG, referenceSec=9"),
             ends30To81, enter("getMaxOutputPowerArrayUsingConfigured", step), mapEntry(step, 1),
             traced::limit("0", "No", "16QAM", "16QAM"), traced::kamCompensation("28"),
             traced::kamPower({.rsec = "7B",
                               .rsecNumber = "9",
                               .selectedMin = "16QAM",
                               .selectedMax = "65536QAM",
                               .availableMax = "16QAM",
                               .actual = "16QAM",
                               .parameters = "2600,2750,2750,2600",
                               .referencePmax = "2600",
                               .power = "2600"}),
             enter("getMinOutputPower", "28"),
             msg(5, "getMinMaxOutputPowerVsModulationArray", "minOutputPower = -750")})));
}

TEST_F(PowerArray, ofOneGivenEndTakesTheOtherFromTheSelection) {
    configure({41});
    TraceCapture minGiven(6);
    query(configured, {61}, noCode);
    EXPECT_EQ(minGiven.lines().at(2),
              enter("getMaxOutputPowerArrayUsingConfigured",
                    "rsec=0, adModEnable=1, selectedMinMod=64QAM, selectedMaxMod=256QAM"));

    TraceCapture maxGiven(6);
    query(configured, noCode, {61});
    EXPECT_EQ(maxGiven.lines().at(2),
              enter("getMaxOutputPowerArrayUsingConfigured",
                    "rsec=0, adModEnable=1, selectedMinMod=4QAM, selectedMaxMod=64QAM"));
}

TEST_F(PowerArray, ofGivenCodesOfNoModulationLeavesTheEndsToTheArray) {
    for (const int code : {13, 9, 164, 150}) {
        configure({41, 61});
        TraceCapture trace(6);

        const unsigned result = query(configured, {code}, {code});

        // Equal ends: fixed modulation, counted from the array's smallest code.
        EXPECT_EQ(result, 0U) << code;
        EXPECT_EQ(powers(), (Powers{{41, 2750}, {61, 2550}})) << code;
        EXPECT_EQ(trace.lines().at(2), enter("getMaxOutputPowerArrayUsingConfigured",
                                             "rsec=0, adModEnable=0, selectedMinMod=UNDEFINED, "
                                             "selectedMaxMod=UNDEFINED"))
            << code;
    }
}

TEST_F(PowerArray, withoutAnySelectionCountsFromTheArraysSmallestCode) {
    node.answers.acmResult = 32769;
    configure({61, 41});
    TraceCapture trace(6);

    const unsigned result = query(configured);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{41, 2750}, {61, 2550}})); // 2600 and 2400, + 150
    const std::string acmFailed =
        msg(2, "getSelectedMinMaxAcm", "failed to get min and max modulation from ACM handler");
    const std::string step =
        "rsec=0, adModEnable=0, selectedMinMod=UNDEFINED, selectedMaxMod=UNDEFINED";
    const auto fixed = [](const std::string& modulation) {
        return sequence(
            {enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=16QAM, "
                                        "modulation=" +
                                            modulation + ", csPowerCompensation=150, useCutback=1"),
             lookUp("1", "Etsi", "16QAM"), cutback(), lookUp("1", "Etsi", modulation), cutback()});
    };
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(sequence(
                    {enter("getMinMaxOutputPowerVsModulationArray",
                           "frameformat_id=0, minModulationAndCodeIn=UNDEFINED, "
                           "maxModulationAndCodeIn=UNDEFINED, referenceSec=0"),
                     acmFailed, acmFailed,
                     enter("getAdmodEnable", "minModulationAndCode=UNDEFINED, "
                                             "maxModulationAndCode=UNDEFINED"),
                     enter("getMaxOutputPowerArrayUsingConfigured", step), mapEntry(step, 2),
                     traced::limit("0", "No", "64QAM", "64QAM"), traced::kamCompensation("28"),
                     fixed("64QAM"), fixed("16QAM"), enter("getMinOutputPower", "28"),
                     msg(5, "getMinMaxOutputPowerVsModulationArray", "minOutputPower = -750")})));
}

TEST_F(PowerArray, ofTheUndefinedRsecTakesTheSystemPowerControllers) {
    configure({41});
    TraceCapture trace(6);

    query(configured, undefinedRsec);

    const std::vector<std::string> lines = trace.lines();
    EXPECT_EQ(lines.at(0), enter("getMinMaxOutputPowerVsModulationArray",
                                 "frameformat_id=0, minModulationAndCodeIn=UNDEFINED, "
                                 "maxModulationAndCodeIn=UNDEFINED, referenceSec=1000"));
    EXPECT_EQ(lines.at(2),
              enter("getMaxOutputPowerArrayUsingConfigured",
                    "rsec=1, adModEnable=1, selectedMinMod=4QAM, selectedMaxMod=256QAM"));
}

TEST_F(PowerArray, ofAnyOtherRsecTakesItAsItIs) {
    for (const int rsec : {0, 1, 9, 10, 999, 1001, -1}) {
        configure({41});
        EXPECT_CALL(node.systemPowerController, getReferenceSec).Times(0);
        TraceCapture trace(6);

        query(configured, EReferenceSEC{rsec});

        EXPECT_EQ(trace.lines().at(2),
                  enter("getMaxOutputPowerArrayUsingConfigured",
                        "rsec=" + std::to_string(rsec) +
                            ", adModEnable=1, selectedMinMod=4QAM, selectedMaxMod=256QAM"));
    }
}

TEST_F(PowerArrayCalls, ofTheConfiguredFrameFormatGoToTheNeighboursInOrder) {
    const InSequence order;
    EXPECT_CALL(node.systemPowerController, getReferenceSec);
    EXPECT_CALL(node.acmHandler, getMinMaxModulationAndCode).Times(2);
    EXPECT_CALL(node.frameFormat, getModulationAndCodeArray);
    EXPECT_CALL(node.frameFormat, getDpdVersion);
    EXPECT_CALL(node.frameFormat, getTelecomMarket);
    EXPECT_CALL(node.frameFormat, getChannelSpacing);
    expectCapabilityLimit();
    // The compensation, then one power for each of the four modulations.
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber).Times(5);
    expectMinOutputPower();

    const unsigned result = query(configured, undefinedRsec);

    EXPECT_EQ(result, 0U);
}

TEST_F(PowerArrayCalls, ofAMapThatFailsAskForNoMinimum) {
    node.answers.modulationAndCodes.clear();
    const InSequence order;
    EXPECT_CALL(node.acmHandler, getMinMaxModulationAndCode).Times(2);
    EXPECT_CALL(node.frameFormat, getModulationAndCodeArray);
    EXPECT_CALL(node.frameFormat, getDpdVersion);
    EXPECT_CALL(node.frameFormat, getTelecomMarket);
    EXPECT_CALL(node.frameFormat, getChannelSpacing);

    const unsigned result = query(configured);

    EXPECT_EQ(result, 32771U);
    EXPECT_EQ(minOutputPower, untouched);
}

TEST_F(PowerArray, ofAnEmptyArrayFailsAndLeavesMapAndMinimumAlone) {
    configure({});
    powerMap = {{{41}, 7}};
    TraceCapture trace(6);

    const unsigned result = query(configured);

    EXPECT_EQ(result, 32771U);
    EXPECT_EQ(powers(), (Powers{{41, 7}}));
    EXPECT_EQ(minOutputPower, untouched);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(sequence(
                    {enter("getMinMaxOutputPowerVsModulationArray",
                           "frameformat_id=0, minModulationAndCodeIn=UNDEFINED, "
                           "maxModulationAndCodeIn=UNDEFINED, referenceSec=0"),
                     ends30To81, enter("getMaxOutputPowerArrayUsingConfigured", adModStep),
                     mapEntry(adModStep, 0), mapFailed(", modulationAndCodeArray is empty")})));
}

TEST_F(PowerArray, withoutCompensationFailsAndLeavesMapAndMinimumAlone) {
    DeskVariableStore::getInstance().clear();
    powerMap = {{{41}, 7}};
    TraceCapture trace(6);

    const unsigned result = query(configured);

    EXPECT_EQ(result, 32768U);
    EXPECT_EQ(powers(), (Powers{{41, 7}}));
    EXPECT_EQ(minOutputPower, untouched);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(
                    sequence({enter("getMinMaxOutputPowerVsModulationArray",
                                    "frameformat_id=0, minModulationAndCodeIn=UNDEFINED, "
                                    "maxModulationAndCodeIn=UNDEFINED, referenceSec=0"),
                              ends30To81, enter("getMaxOutputPowerArrayUsingConfigured", adModStep),
                              mapEntry(adModStep, 5), traced::limit("0", "No", "256QAM", "256QAM"),
                              traced::kamCompensation("28"),
                              "1 msg CalculatorKam.getCompensationForChannelSpacing: "
                              "getCompensationForChannelSpacing Failed to get variable "
                              "channel.1.tx.rf.pmax.cs.comp.v2.array",
                              msg(1, "getCsPowerCompensation",
                                  "Could not get power compensation for channel spacing 28MHz")})));
}

TEST_F(PowerArray, withoutAnOffsetOfTheSpacingGivesTheRadiosOwnMinimum) {
    node.answers.channelSpacing = EChannelSpacingType::MHz7;
    configure({41});
    TraceCapture trace(2);

    const unsigned result = query(configured);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(minOutputPower, -1000);
    EXPECT_EQ(powers(), (Powers{{41, 2600}})); // no compensation: 2600 - 200 + 200
    EXPECT_THAT(trace.lines(),
                ElementsAre(msg(2, "getMinOutputPower", " no match for channel spacing : 7")));
}

// A frame format by its id

TEST_F(PowerArrayById, holdsTheMaximumOfEveryCode) {
    TraceCapture trace(6);

    const unsigned result = query(7);

    // DPD 2 and 56 MHz. Reference 2500 at 64QAM, 1 dB: 2400 - 200, plus 300, 200 and 100.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{31, 2500}, {41, 2400}, {61, 2300}}));
    EXPECT_EQ(minOutputPower, -600); // -1000 + 400
    const auto power = [](const std::string& actual, const std::string& parameters,
                          const std::string& least) {
        return traced::kamPower({.dpdVersion = "2",
                                 .availableMax = "64QAM",
                                 .actual = actual,
                                 .compensation = "-200",
                                 .parameters = parameters,
                                 .referencePmax = "2500",
                                 .power = least});
    };
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getMinMaxOutputPowerVsModulationArray",
                   "frameformat_id=7, minModulationAndCodeIn=UNDEFINED, "
                   "maxModulationAndCodeIn=UNDEFINED, referenceSec=0"),
             ends30To81, enter("getMaxOutputPowerArrayUsingRfid", "rfid=7, " + adModStep),
             mapEntry(adModStep, 3), traced::limit("7", "No", "64QAM", "64QAM"),
             traced::kamCompensation("56"), power("4QAM", "2900,2500,2500,2900", "2500"),
             power("16QAM", "2700,2500,2400,2900", "2400"),
             power("64QAM", "2500,2500,2300,2900", "2300"),
             enter("getMinOutputPowerUsingRfid", "rfid=7"), enter("getMinOutputPower", "56"),
             msg(5, "getMinMaxOutputPowerVsModulationArray", "minOutputPower = -600")})));
}

TEST_F(PowerArrayById, of1IsThatOfTheHardwareConfiguration) {
    hardware.answers.id = 1;
    hardware.answers.records = {{1, EChannelSpacingType::MHz28}};

    const unsigned result = query(1);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{31, 2500}, {41, 2400}, {61, 2300}}));
    EXPECT_EQ(minOutputPower, -750); // the record's spacing, not the query's
}

TEST_F(PowerArrayById, ofTheAnsiMarketReadsTheAnsiTableAtRsec2) {
    hardware.answers.market = ansi;

    const unsigned result = query(7, EReferenceSEC::Class7B);

    // Reference 2450 at 64QAM, 1 dB: 2350 - 200, plus 300, 200 and 100.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{31, 2450}, {41, 2350}, {61, 2250}}));
}

TEST_F(PowerArrayCalls, byIdGoToTheNeighboursInOrder) {
    const InSequence order;
    EXPECT_CALL(node.systemPowerController, getReferenceSec);
    EXPECT_CALL(node.acmHandler, getMinMaxModulationAndCode).Times(2);
    EXPECT_CALL(hardware.handler, getDpdVersion(1, 7));
    EXPECT_CALL(hardware.handler, getTelecomMarket(1, 7, _));
    EXPECT_CALL(hardware.handler, getModulationAndCodeArray(1, 7, IsEmpty()));
    EXPECT_CALL(hardware.handler, getChannelSpacing(1, 7, _));
    EXPECT_CALL(hardware.handler, getTelecomMarket(1, 7, _));
    EXPECT_CALL(node.capabilityHandler, isMaxAcmLimitedByHw);
    EXPECT_CALL(node.capabilityHandler, getMaxModulationWithoutLimitation);
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber).Times(4);
    EXPECT_CALL(hardware.handler, getFrameFormatRecords(false, IsEmpty()));
    EXPECT_CALL(node.systemPowerController, getMinOutputPowerOffset);

    const unsigned result = query(7, undefinedRsec);

    EXPECT_EQ(result, 0U);
}

TEST_F(PowerArrayById, thatIsUnknownTracesEveryFailureAndFailsForWantOfCodes) {
    TraceCapture trace(6);

    const unsigned result = query(8);

    EXPECT_EQ(result, 32771U);
    EXPECT_THAT(powers(), IsEmpty());
    EXPECT_EQ(minOutputPower, untouched);
    const std::string function = "getMaxOutputPowerArrayUsingRfid";
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("getMinMaxOutputPowerVsModulationArray",
                   "frameformat_id=8, minModulationAndCodeIn=UNDEFINED, "
                   "maxModulationAndCodeIn=UNDEFINED, referenceSec=0"),
             ends30To81, enter(function, "rfid=8, " + adModStep),
             msg(1, function, "Failed to get telecom market, wrong channel or FFID?"),
             msg(1, function, "Failed to get modulation and code array, wrong channel or FFID?"),
             msg(1, function, "Failed to get channel spacing, wrong channel or FFID?"),
             mapEntry(adModStep, 0), mapFailed(", modulationAndCodeArray is empty")})));
}

TEST_F(PowerArrayById, withoutAMarketGoesOnWithEtsi) {
    hardware.answers.marketResult = 32768;
    hardware.answers.market = ansi;
    TraceCapture trace(2);

    const unsigned result = query(7);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{31, 2500}, {41, 2400}, {61, 2300}}));
    EXPECT_THAT(trace.lines(),
                ElementsAre(msg(1, "getMaxOutputPowerArrayUsingRfid",
                                "Failed to get telecom market, wrong channel or FFID?")));
}

TEST_F(PowerArrayById, withAMarketWrittenByAFailedQueryGoesOnWithIt) {
    EXPECT_CALL(hardware.handler, getTelecomMarket)
        .Times(2)
        .WillRepeatedly([](RadioChannel, long, EFrameFormatMarket& market) {
            market = ansi;
            return 32768U;
        });

    const unsigned result = query(7);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{31, 2450}, {41, 2350}, {61, 2250}}));
}

TEST_F(PowerArrayById, withoutAChannelSpacingGoesOnWithout) {
    hardware.answers.channelSpacingResult = 4294967295;
    TraceCapture trace(2);

    const unsigned result = query(7);

    // Spacing 0 is not calibrated: 2400, plus 300, 200 and 100. The minimum's is the record's.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{31, 2700}, {41, 2600}, {61, 2500}}));
    EXPECT_EQ(minOutputPower, -600);
    EXPECT_THAT(trace.lines(),
                ElementsAre(msg(1, "getMaxOutputPowerArrayUsingRfid",
                                "Failed to get channel spacing, wrong channel or FFID?")));
}

TEST_F(PowerArrayById, withoutCodesFailsButUsesThoseThatAFailedQueryWrote) {
    hardware.answers.codesResult = 32768;
    TraceCapture trace(2);
    const std::string complaint =
        msg(1, "getMaxOutputPowerArrayUsingRfid",
            "Failed to get modulation and code array, wrong channel or FFID?");

    EXPECT_EQ(query(7), 32771U);
    EXPECT_THAT(trace.lines(),
                ElementsAre(complaint, mapFailed(", modulationAndCodeArray is empty")));

    EXPECT_CALL(hardware.handler, getModulationAndCodeArray)
        .WillOnce([](RadioChannel, long, Codes& codes) {
            codes = codesOf({61});
            return 32768U;
        });
    EXPECT_EQ(query(7), 0U);
    EXPECT_EQ(powers(), (Powers{{61, 2300}}));
    EXPECT_THAT(trace.lines(), ElementsAre(complaint));
}

TEST_F(PowerArrayById, whoseQueriesAnswerWithTheHighestCodeBelowFailureTracesNothing) {
    hardware.answers.marketResult = 32767;
    hardware.answers.codesResult = 32767;
    hardware.answers.channelSpacingResult = 32767;
    TraceCapture trace(2);

    const unsigned result = query(7);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powerMap.size(), 3U);
    EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(PowerArrayById, whoseQueriesSucceedAndWriteNothingGoesOnWithTheStartingValues) {
    EXPECT_CALL(hardware.handler, getTelecomMarket).Times(2).WillRepeatedly(Return(0U));
    EXPECT_CALL(hardware.handler, getChannelSpacing).WillOnce(Return(0U));
    TraceCapture trace(2);

    const unsigned result = query(7);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{31, 2700}, {41, 2600}, {61, 2500}}));
    EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(PowerArrayById, ofAnUnknownDpdVersionSucceedsWithoutAnyPower) {
    for (const int version : {0, 4, -1}) {
        hardware.answers.dpdVersion = EDpdVersion{version};
        hardware.answers.modulationAndCodes = codesOf({31});
        TraceCapture trace(2);

        const unsigned result = query(7);

        EXPECT_EQ(result, 0U);
        EXPECT_THAT(powers(), IsEmpty());
        EXPECT_EQ(minOutputPower, -600);
        EXPECT_THAT(trace.lines(),
                    ElementsAre(msg(1, "getMaxPowerArray",
                                    "Unknown DPD version " + std::to_string(version)),
                                msg(2, "getMaxPower", "Unable to get power for modulation 4QAM"),
                                msg(1, "getAdModMaxPower",
                                    "Could not get max ref output power for selected min 4QAMQAM"),
                                codeFailed("4QAM")));
    }
}

TEST_F(PowerArrayById, isLimitedByItsOwnProfiles) {
    node.answers.maxAcmLimitedByHw = true;
    node.answers.maxModulationLimitedByHw = Modulation::QAM16;
    TraceCapture trace(6);

    const unsigned result = query(7);

    // Reference 2700 at 16QAM, 2 dB: 2500 - 200 + 300 at 4QAM.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{31, 2600}, {41, 2500}}));
    const std::vector<std::string> lines = trace.lines();
    EXPECT_THAT(std::vector<std::string>(lines.begin() + 5, lines.begin() + 8),
                ElementsAreArray(traced::limit("7", "Yes", "64QAM", "16QAM")));
}

// The walk over the codes

TEST_F(PowerMapStep, tracesEveryStep) {
    TraceCapture trace(6);

    const unsigned result = populate({41});

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(),
              (Powers{{41, 2600}})); // its own reference: 2400 + 150 + 200, above the Pmax
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(
                    sequence({mapEntry(adModStep, 1), traced::limit("0", "No", "16QAM", "16QAM"),
                              traced::kamCompensation("28"),
                              traced::kamPower({.availableMax = "16QAM",
                                                .actual = "16QAM",
                                                .parameters = "2600,2850,2750,2800",
                                                .referencePmax = "2600",
                                                .power = "2600"})})));
}

TEST_F(PowerMapStep, computesConsecutiveCodesOfOneModulationOnce) {
    node.answers.pmaxDpd1Etsi = PmaxAnswer({2, 2900, 4, 2800});
    ASSERT_EQ(sut.initialize(), 0U);
    selectedMin = Modulation::BPSK;
    // The compensation and one power.
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber).Times(2);
    TraceCapture trace(6);

    const unsigned result = populate({10, 11, 12, 20});

    // Reference 2900 at BPSK, 3 dB: 2600 + 150 + 300, above the Pmax.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{10, 2900}, {11, 2900}, {12, 2900}, {20, 2900}}));
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {mapEntry("rsec=0, adModEnable=1, selectedMinMod=BPSK, selectedMaxMod=256QAM", 4),
             traced::limit("0", "No", "BPSK", "BPSK"), traced::kamCompensation("28"),
             traced::kamPower({.selectedMin = "BPSK",
                               .availableMax = "BPSK",
                               .actual = "BPSK",
                               .parameters = "2900,3050,3050,2900",
                               .referencePmax = "2900",
                               .power = "2900"})})));
}

TEST_F(PowerMapStep, computesAModulationAgainAfterAnotherOne) {
    // The compensation and three powers.
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber).Times(4);

    const unsigned result = populate({31, 41, 30});

    // Reference 2600 at 16QAM, 2 dB: 2400 + 150, plus 300 at 4QAM, above the Pmax; 200 at 16QAM.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{30, 2800}, {31, 2800}, {41, 2600}}));
}

TEST_F(PowerMapStep, keepsTheOrderOfTheArray) {
    TraceCapture trace(5);

    const unsigned result = populate({81, 31, 61});

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{31, 2650}, {61, 2400}, {81, 2200}}));
    const std::string kam = "5 msg CalculatorKam.getMaxPower: getMaxPower ";
    EXPECT_THAT(trace.lines(),
                ElementsAre(kam + "std::min parameters: 2200,2650,2350,2800",
                            kam + "Max power for modulation 256QAM, rsec 0 and max modulation "
                                  "2200 = 2200",
                            kam + "std::min parameters: 2800,2650,2650,2800",
                            kam + "Max power for modulation 4QAM, rsec 0 and max modulation 2200 "
                                  "= 2650",
                            kam + "std::min parameters: 2400,2650,2450,2800",
                            kam + "Max power for modulation 64QAM, rsec 0 and max modulation 2200 "
                                  "= 2400"));
}

TEST_F(PowerMapStep, keepsEntriesOfSkippedCodesAndOverwritesTheOthers) {
    node.answers.maxModulationWithoutLimitation = Modulation::QAM64;
    powerMap = {{{23}, 1}, {{31}, 2}, {{51}, 3}, {{81}, 4}, {{163}, 5}};
    TraceCapture trace(2);

    // 51 has no Pmax, 81 lies above the limit, 23 and 163 are not in the array.
    const unsigned result = populate({31, 51, 61, 81});

    // Reference 2400 at 64QAM, 1 dB: 2300 + 150, plus 300 at 4QAM.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{23, 1}, {31, 2750}, {51, 3}, {61, 2400}, {81, 4}, {163, 5}}));
    EXPECT_THAT(trace.lines(),
                ElementsAre(noRow("32QAM"),
                            msg(1, "getAdModMaxPower",
                                "Could not get max ref output power for actual 32QAMQAM"),
                            codeFailed("32QAM")));
}

TEST_F(PowerMapStep, skipsCodesAboveTheLimitWithoutATrace) {
    node.answers.maxModulationWithoutLimitation = Modulation::QAM16;
    TraceCapture trace(6);

    const unsigned result = populate({61, 33, 81});

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{33, 2600}}));
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(
                    sequence({mapEntry(adModStep, 3), traced::limit("0", "No", "256QAM", "16QAM"),
                              traced::kamCompensation("28"),
                              traced::kamPower({.availableMax = "16QAM",
                                                .actual = "16QAM",
                                                .parameters = "2600,2850,2750,2800",
                                                .referencePmax = "2600",
                                                .power = "2600"})})));
}

TEST_F(PowerMapStep, withALimitBelowEveryCodeSucceedsWithoutAny) {
    node.answers.maxModulationWithoutLimitation = Modulation::CW;

    const unsigned result = populate({31, 41});

    EXPECT_EQ(result, 0U);
    EXPECT_THAT(powers(), IsEmpty());
}

TEST_F(PowerMapStep, ofAnArrayWithTheUndefinedCodeAnywhereFailsAndLeavesTheMapAlone) {
    for (const std::vector<int>& numbers :
         {std::vector<int>{163, 31, 41}, {31, 163, 41}, {31, 41, 163}, {163}}) {
        powerMap = {{{31}, 7}};
        TraceCapture trace(6);

        const unsigned result = populate(numbers);

        EXPECT_EQ(result, 32771U);
        EXPECT_EQ(powers(), (Powers{{31, 7}}));
        EXPECT_THAT(trace.lines(), ElementsAreArray(sequence(
                                       {mapEntry(adModStep, static_cast<int>(numbers.size())),
                                        mapFailed(" for undefined max modulation")})));
    }
}

TEST_F(PowerMapStep, ofALargestCodeOfNoModulationFails) {
    for (const int code : {13, 19, 83, 150, 159, 164, 2147483647}) {
        TraceCapture trace(6);

        const unsigned result = populate({code, 10});

        EXPECT_EQ(result, 32771U) << code;
        EXPECT_THAT(powers(), IsEmpty()) << code;
        EXPECT_THAT(trace.lines(),
                    ElementsAreArray(sequence(
                        {mapEntry(adModStep, 2), mapFailed(" for undefined max modulation")})))
            << code;
    }
}

TEST_F(PowerMapStep, ofCodesBelowTheRangeAloneFails) {
    for (const int code : {9, 0, -1, -2147483647 - 1}) {
        EXPECT_EQ(populate({code}), 32771U) << code;
    }
}

TEST_F(PowerMapStep, skipsOtherCodesOfNoModulationWithoutATrace) {
    TraceCapture trace(2);

    const unsigned result = populate({9, 31, 13, -5, 43, 61});

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{31, 2750}, {61, 2400}}));
    EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(PowerMapStep, withoutASelectedMinimumCountsFromTheSmallestCode) {
    selectedMin = Modulation::UNDEFINED;
    TraceCapture trace(6);

    const unsigned result = populate({61, 41});

    // Reference 2400 at 64QAM, 1 dB: 2300 + 150, plus 100 and 200.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{41, 2600}, {61, 2400}}));
    const auto power = [](const std::string& actual, const std::string& parameters,
                          const std::string& least) {
        return traced::kamPower({.selectedMin = "16QAM",
                                 .availableMax = "64QAM",
                                 .actual = actual,
                                 .parameters = parameters,
                                 .referencePmax = "2400",
                                 .power = least});
    };
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {mapEntry("rsec=0, adModEnable=1, selectedMinMod=UNDEFINED, selectedMaxMod=256QAM", 2),
             traced::limit("0", "No", "64QAM", "64QAM"), traced::kamCompensation("28"),
             power("64QAM", "2400,2650,2550,2600", "2400"),
             power("16QAM", "2600,2650,2650,2600", "2600")})));
}

TEST_F(PowerMapStep, withoutASelectedMinimumAndWithASmallestCodeOfNoModulationFailsEveryCode) {
    selectedMin = Modulation::UNDEFINED;
    TraceCapture trace(2);

    const unsigned result = populate({61, 9, 41});

    EXPECT_EQ(result, 0U);
    EXPECT_THAT(powers(), IsEmpty());
    const std::string complaint = msg(
        1, "getAdModMaxPower", "Could not get max ref output power for selected min UNDEFINEDQAM");
    EXPECT_THAT(trace.lines(), ElementsAre(noRow("UNDEFINED"), complaint, codeFailed("64QAM"),
                                           noRow("UNDEFINED"), complaint, codeFailed("16QAM")));
}

TEST_F(PowerMapStep, withoutASelectedMaximumTakesTheAvailableOneNotTheLimitedOne) {
    node.answers.productNumber = "X";
    node.answers.maxModulationWithoutLimitation = Modulation::QAM64;
    selectedMax = Modulation::UNDEFINED;
    TraceCapture trace(5);

    const unsigned result = populate({61, 81});

    // Reference 2200 at 256QAM, 1 dB at 64QAM.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{61, 2300}}));
    EXPECT_THAT(trace.lines(),
                ElementsAre("5 msg CalculatorVo5.getMaxRefModulation: getMaxRefModulationmax power "
                            "= 256QAM",
                            "5 msg CalculatorVo5.getMaxPower: Max power = 2300 for 64QAM, RSEC-2, "
                            "using selected max 256QAM"));
}

TEST_F(PowerMapStep, keepsASelectedMaximumBelowTheAvailableOne) {
    node.answers.productNumber = "X";
    selectedMax = Modulation::QAM64;
    TraceCapture trace(5);

    const unsigned result = populate({61, 81, 82});

    // Reference 2400 at 64QAM; nothing applies to 256QAM.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{61, 2400}}));
    const std::string reference =
        "5 msg CalculatorVo5.getMaxRefModulation: getMaxRefModulationmax power = 64QAM";
    const std::string higher = "5 msg CalculatorVo5.getMaxPower: getMaxPower256QAM is higher than "
                               "selected max ACM (64QAM)";
    // A code that is ignored is not stored: the next one of its modulation is computed as well.
    EXPECT_THAT(trace.lines(),
                ElementsAre(reference,
                            "5 msg CalculatorVo5.getMaxPower: Max power = 2400 for 64QAM, RSEC-2, "
                            "using selected max 64QAM",
                            reference, higher, codeIgnored("256QAM"), reference, higher,
                            codeIgnored("256QAM")));
}

TEST_F(PowerMapStep, computesEveryCodeOfAModulationThatFails) {
    TraceCapture trace(2);

    const unsigned result = populate({50, 51, 81});

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{81, 2200}}));
    const std::string complaint =
        msg(1, "getAdModMaxPower", "Could not get max ref output power for actual 32QAMQAM");
    EXPECT_THAT(trace.lines(), ElementsAre(noRow("32QAM"), complaint, codeFailed("32QAM"),
                                           noRow("32QAM"), complaint, codeFailed("32QAM")));
}

TEST_F(PowerMapStep, sharesAComputationAcrossSkippedCodes) {
    // The compensation, 4QAM, 32QAM without a Pmax (which asks for no calculator), and 256QAM.
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber).Times(3);

    const unsigned result = populate({30, 51, 13, 31, 81});

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{30, 2650}, {31, 2650}, {81, 2200}}));
}

TEST_F(PowerMapStep, carriesOnePowerThroughTheWholeWalk) {
    node.answers.productNumber = "QZT 846 003";
    rsec = EReferenceSEC{999};
    TraceCapture trace(5);

    const unsigned result = populate({30, 31, 41, 61, 32});

    // Without a rule for the RSEC the family adds the compensation of 150 to what it finds.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{30, 150}, {31, 150}, {32, 600}, {41, 300}, {61, 450}}));
    const auto family = [](const std::string& power, const std::string& modulation) {
        return std::vector<std::string>{
            "1 msg CalculatorKamV3.getMaxPower: getMaxPowerNo matching RSEC",
            "5 msg CalculatorKamV3.getMaxPower: getMaxPower Calculated max power = " + power +
                " for " + modulation + " with rsec UNDEFINED and power cutback: 150"};
    };
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(sequence({family("150", "4QAM"), family("300", "16QAM"),
                                           family("450", "64QAM"), family("600", "4QAM")})));
}

TEST_F(PowerMapStep, carriesThePowerAcrossACodeThatFails) {
    node.answers.productNumber = "QZT 846 003";
    rsec = EReferenceSEC{999};

    // 32QAM has no Pmax.
    const unsigned result = populate({31, 51, 30, 61});

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{30, 150}, {31, 150}, {61, 300}}));
}

TEST_F(PowerMapStep, ofAFixedModulationWithoutPmaxStoresTheZeroCutBack) {
    adModEnable = false;
    sut.setPowerCutback(300);
    TraceCapture trace(2);

    const unsigned result = populate({31, 51});

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{31, 2650}, {51, -150}})); // 2800 and 0, - 300 + 150
    EXPECT_THAT(trace.lines(),
                ElementsAre(noRow("32QAM"),
                            msg(2, "getFixModMaxPower",
                                "Failed to calculate power capabilities for modulation 32QAM")));
}

TEST_F(PowerMapStep, ofAFixedModulationWithABoosterSkipsWhatItRefuses) {
    adModEnable = false;
    sut.setBoosterPresence(1, 0, 0, Modulation::CW);
    TraceCapture trace(2);

    const unsigned result = populate({31, 51});

    // RSEC 4L of the system power controller. The limit of the power is the configured frame
    // format's 256QAM: 2200 + 150 + 200.
    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(), (Powers{{31, 2550}}));
    EXPECT_THAT(
        trace.lines(),
        ElementsAre(
            noRow("32QAM"),
            msg(1, "getAdModMaxPower", "Could not get max ref output power for actual 32QAMQAM"),
            msg(2, "getFixModMaxPower", "Failed to get AdMod capabilities, error: 0, 32776"),
            codeFailed("32QAM")));
}

TEST_F(PowerMapStep, storesTheHighestAndLowestCodes) {
    node.answers.pmaxDpd1Etsi = PmaxAnswer({2, 2900, 16384, 1800, 65536, 1700});
    ASSERT_EQ(sut.initialize(), 0U);
    adModEnable = false;
    selectedMin = Modulation::BPSK;

    const unsigned result = populate({10, 142, 143, 160, 162});

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(powers(),
              (Powers{{10, 3050}, {142, 1950}, {143, 1850}, {160, 1850}, {162, 1850}})); // + 150
}
