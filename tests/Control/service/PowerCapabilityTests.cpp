#include "InterfaceBroker.h"
#include "ServiceTest.h"

#include <ostream>

using ::testing::_;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::Eq;
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

constexpr auto fromConfigured = OutputPowerCalculator::UseConfiguredFF::Configured;
constexpr auto byId = OutputPowerCalculator::UseConfiguredFF::ById;

const std::string acmFailed =
    msg(2, "getSelectedMinMaxAcm", "failed to get min and max modulation from ACM handler");

/// An ACM handler that keeps the interface's own body.
class AcmHandlerWithoutSelection : public IAcmHandler {};

class SelectedAcm : public StartedServiceTest {
protected:
    ModulationAndCoding min{71};
    ModulationAndCoding max{72};
};

class AdModEnabled : public StartedServiceTest {
protected:
    void select(int min, int max) {
        node.answers.acmMin = min;
        node.answers.acmMax = max;
    }

    bool isEnabled(int min, int max) { return Inside::getAdmodEnable(sut, {min}, {max}); }
};

/// The minimum and maximum power of a modulation.
class PowerCapabilities : public StartedServiceTest {
protected:
    int calculate(Modulation modulation) {
        return sut.calculatePowerCapabilities(modulation, minPower, maxPower);
    }

    long minPower = untouched;
    long maxPower = untouched;
};

class PowerCapabilitiesCalls : public StrictServiceTest {};

class AdModPowerCapabilities : public StartedServiceTest {
protected:
    int calculate(Modulation modulation, EReferenceSEC rsec = rsec2) {
        return sut.calculateAdmodPowerCapabilities(modulation, rsec, minPower, maxPower);
    }

    void expectNothingWritten() const {
        EXPECT_EQ(minPower, untouched);
        EXPECT_EQ(maxPower, untouched);
    }

    long minPower = untouched;
    long maxPower = untouched;
};

/// Codes that stand for no modulation: the undefined one, those without a text, and both sides of
/// the range.
constexpr int codesOfNoModulation[] = {163, 13, 19, 43, 83, 150, 159, 9, 164, 0, -1};

const std::string fixedEntryAt4Qam =
    enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=4QAM, modulation=64QAM, "
                               "csPowerCompensation=150, useCutback=1");
const std::string minimumAt28 = enter("getMinOutputPower", "28");
const std::vector<std::string> noStoredArray = {
    "1 msg CalculatorKam.getCompensationForChannelSpacing: getCompensationForChannelSpacing Failed "
    "to get variable channel.1.tx.rf.pmax.cs.comp.v2.array",
    msg(1, "getCsPowerCompensation", "Could not get power compensation for channel spacing 28MHz")};

} // namespace

// The operator's selection

TEST_F(SelectedAcm, isTheHandlers) {
    node.answers.acmMin = 33;
    node.answers.acmMax = 73;
    TraceCapture trace(6);

    const int result = Inside::getSelectedMinMaxAcm(sut, min, max);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(min.code, 33);
    EXPECT_EQ(max.code, 73);
    EXPECT_THAT(trace.lines(), IsEmpty());
}

TEST_F(SelectedAcm, isTheHandlersUpToTheHighestCodeBelowFailure) {
    for (const unsigned code : {1U, 2U, 32767U}) {
        node.answers.acmResult = code;

        const int result = Inside::getSelectedMinMaxAcm(sut, min, max);

        EXPECT_EQ(result, 0) << code;
        EXPECT_EQ(min.code, 30) << code;
        EXPECT_EQ(max.code, 81) << code;
    }
}

TEST_F(SelectedAcm, isUndefinedIfTheHandlerFailsWhateverItWrote) {
    for (const unsigned code : {32768U, 32769U, 4294967295U}) {
        node.answers.acmResult = code;
        min = {71};
        max = {72};
        TraceCapture trace(6);

        const int result = Inside::getSelectedMinMaxAcm(sut, min, max);

        EXPECT_EQ(result, 0) << code;
        EXPECT_EQ(min.code, 163) << code;
        EXPECT_EQ(max.code, 163) << code;
        EXPECT_THAT(trace.lines(), ElementsAre(acmFailed)) << code;
    }
}

TEST_F(SelectedAcm, isUndefinedIfTheHandlerProvidesNone) {
    AcmHandlerWithoutSelection handler;
    InterfaceBroker::getInstance().registerInterface("IAcmHandler_1", &handler);
    ASSERT_EQ(sut.initialize(), 0U);
    TraceCapture trace(6);

    const int result = Inside::getSelectedMinMaxAcm(sut, min, max);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(min.code, 163);
    EXPECT_EQ(max.code, 163);
    EXPECT_THAT(trace.lines(), ElementsAre(acmFailed));
}

TEST_F(SelectedAcm, isUndefinedIfTheHandlerSucceedsAndWritesNothing) {
    ON_CALL(node.acmHandler, getMinMaxModulationAndCode).WillByDefault(Return(0U));
    TraceCapture trace(6);

    const int result = Inside::getSelectedMinMaxAcm(sut, min, max);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(min.code, 163);
    EXPECT_EQ(max.code, 163);
    EXPECT_THAT(trace.lines(), IsEmpty());
}

// Whether adaptive modulation is in use

TEST_F(AdModEnabled, withoutArgumentsIfTheSelectedEndsDiffer) {
    select(33, 73);
    EXPECT_TRUE(isEnabled(163, 163));

    select(33, 33);
    EXPECT_FALSE(isEnabled(163, 163));
}

TEST_F(AdModEnabled, withOneArgumentIfItDiffersFromTheOtherEndSelected) {
    select(30, 40);

    EXPECT_FALSE(isEnabled(40, 163));
    EXPECT_TRUE(isEnabled(41, 163));
    EXPECT_FALSE(isEnabled(163, 30));
    EXPECT_TRUE(isEnabled(163, 31));
}

TEST_F(AdModEnabled, withTwoArgumentsWhateverIsSelected) {
    select(33, 33);
    EXPECT_TRUE(isEnabled(40, 41));

    select(33, 73);
    EXPECT_FALSE(isEnabled(40, 40));
}

TEST_F(AdModEnabled, bySelectedCodesNotTheirModulations) {
    select(30, 31); // 4QAM both

    EXPECT_TRUE(isEnabled(163, 163));
}

TEST_F(AdModEnabled, withArgumentsOfNoModulationThatAreNotTheUndefinedCode) {
    select(33, 33);

    EXPECT_FALSE(isEnabled(13, 13));
    EXPECT_TRUE(isEnabled(13, 163));
    EXPECT_TRUE(isEnabled(163, 164));
}

TEST_F(AdModEnabled, withoutASelectionOnlyIfOneArgumentIsGiven) {
    node.answers.acmResult = 32768;

    EXPECT_FALSE(isEnabled(163, 163));
    EXPECT_TRUE(isEnabled(30, 163));
    EXPECT_TRUE(isEnabled(163, 30));
    EXPECT_FALSE(isEnabled(30, 30));
}

TEST_F(AdModEnabled, tracesTheSelectedCodesNotTheArguments) {
    select(33, 73);
    TraceCapture trace(6);

    isEnabled(40, 143);

    EXPECT_THAT(trace.lines(),
                ElementsAre(enter("getAdmodEnable", "minModulationAndCode=16QAM_ULTRA_STRONG, "
                                                    "maxModulationAndCode=256QAM_ULTRA_STRONG")));
}

TEST_F(AdModEnabled, tracesItsEntryAfterTheSelectionFailed) {
    node.answers.acmResult = 32769;
    TraceCapture trace(6);

    isEnabled(30, 81);

    EXPECT_THAT(trace.lines(),
                ElementsAre(acmFailed, enter("getAdmodEnable", "minModulationAndCode=UNDEFINED, "
                                                               "maxModulationAndCode=UNDEFINED")));
}

// Fixed modulation

TEST_F(PowerCapabilities, areTheLowerPmaxCutBackAndTheMinimumOfTheSpacing) {
    sut.setPowerCutback(300);
    TraceCapture trace(6);

    const int result = calculate(Modulation::QAM64);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(minPower, -750); // -1000 + 250
    EXPECT_EQ(maxPower, 2250); // 2400 - 300 + 150
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(sequence({enter("calculatePowerCapabilities", "64QAM"),
                                           minimumAt28, traced::kamCompensation("28"),
                                           fixedEntryAt4Qam, lookUp("1", "Etsi", "4QAM"), cutback(),
                                           lookUp("1", "Etsi", "64QAM"), cutback()})));
}

TEST_F(PowerCapabilities, withACutbackOf200LoseIt) {
    node.answers.pmaxDpd1Etsi = PmaxAnswer({16, 2500, 64, 2300});
    calibrate(1, {28, 0});
    ASSERT_EQ(sut.initialize(), 0U);
    node.answers.acmMin = 41;
    sut.setPowerCutback(200);

    const int result = calculate(Modulation::QAM64);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2100);
}

TEST_F(PowerCapabilities, areBoundByThePmaxAtTheSelectedMinimum) {
    node.answers.acmMin = 61;

    calculate(Modulation::QAM4);

    EXPECT_EQ(maxPower, 2550); // 2400 + 150
}

TEST_F(PowerCapabilities, readDpdVersionMarketAndSpacingOfTheFrameFormat) {
    node.answers.dpdVersion = EDpdVersion::Dpd3;
    node.answers.market = ansi;
    node.answers.channelSpacing = EChannelSpacingType::MHz56;

    const int result = calculate(Modulation::QAM16);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(minPower, -600); // -1000 + 400
    EXPECT_EQ(maxPower, 2450); // 2650 - 200
}

TEST_F(PowerCapabilities, withoutAnOffsetOfTheSpacingTakeTheRadiosOwnMinimum) {
    node.answers.channelSpacing = EChannelSpacingType::MHz7;
    TraceCapture trace(5);

    const int result = calculate(Modulation::QAM16);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(minPower, -1000);
    EXPECT_EQ(maxPower, 2600); // 7 MHz is not calibrated
    EXPECT_THAT(trace.lines(),
                ElementsAre(msg(2, "getMinOutputPower", " no match for channel spacing : 7")));
}

TEST_F(PowerCapabilities, withoutASelectionCountFromTheFrameFormatsModulation) {
    AcmHandlerWithoutSelection handler;
    InterfaceBroker::getInstance().registerInterface("IAcmHandler_1", &handler);
    ASSERT_EQ(sut.initialize(), 0U);
    TraceCapture trace(6);

    const int result = calculate(Modulation::QAM16);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2550); // the frame format's 64QAM: 2400 + 150
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence(
            {enter("calculatePowerCapabilities", "16QAM"), minimumAt28, acmFailed,
             traced::kamCompensation("28"),
             enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=64QAM, "
                                        "modulation=16QAM, csPowerCompensation=150, useCutback=1"),
             lookUp("1", "Etsi", "64QAM"), cutback(), lookUp("1", "Etsi", "16QAM"), cutback()})));
}

TEST_F(PowerCapabilities, withASelectedCodeOfNoModulationCountFromTheFrameFormats) {
    for (const int code : codesOfNoModulation) {
        node.answers.acmMin = code;

        const int result = calculate(Modulation::QAM16);

        EXPECT_EQ(result, 0) << code;
        EXPECT_EQ(maxPower, 2550) << code;
    }
}

TEST_F(PowerCapabilities, withoutAnyModulationToCountFromFailWithTheMinimumWritten) {
    node.answers.acmMin = 163;
    node.answers.modulation = Modulation::UNDEFINED;
    TraceCapture trace(6);

    const int result = calculate(Modulation::QAM16);

    EXPECT_EQ(result, 32768);
    EXPECT_EQ(minPower, -750);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_THAT(
        trace.lines(),
        ElementsAre(enter("calculatePowerCapabilities", "16QAM"), minimumAt28,
                    msg(1, "calculatePowerCapabilities", "Failed to get AdMod capabilities")));
}

TEST_F(PowerCapabilities, withoutCompensationFailWithTheMinimumWritten) {
    DeskVariableStore::getInstance().clear();
    TraceCapture trace(6);

    const int result = calculate(Modulation::QAM16);

    EXPECT_EQ(result, 32768);
    EXPECT_EQ(minPower, -750);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_THAT(trace.lines(), ElementsAreArray(sequence(
                                   {enter("calculatePowerCapabilities", "16QAM"), minimumAt28,
                                    traced::kamCompensation("28"), noStoredArray})));
}

TEST_F(PowerCapabilities, ofAModulationWithoutPmaxSucceedWithAPmaxOf0) {
    sut.setPowerCutback(300);
    TraceCapture trace(5);

    const int result = calculate(Modulation::QAM128);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, -150); // 0 - 300 + 150
    EXPECT_THAT(trace.lines(),
                ElementsAre(noRow("128QAM"),
                            msg(2, "getFixModMaxPower",
                                "Failed to calculate power capabilities for modulation 128QAM")));
}

TEST_F(PowerCapabilities, withABoosterTakeItsPath) {
    sut.setBoosterPresence(1, 0, 0, Modulation::CW);
    sut.setPowerCutback(300);

    const int result = calculate(Modulation::QAM16);

    // RSEC 4L: 2200 + 150 - 300 + 200.
    EXPECT_EQ(result, 0);
    EXPECT_EQ(minPower, -750);
    EXPECT_EQ(maxPower, 2250);
}

TEST_F(PowerCapabilities, withABoosterThatRefusesFailWithTheMinimumWritten) {
    sut.setBoosterPresence(1, 0, 0, Modulation::CW);
    TraceCapture trace(5);

    const int result = calculate(Modulation::QAM128);

    EXPECT_EQ(result, 32768);
    EXPECT_EQ(minPower, -750);
    EXPECT_EQ(maxPower, untouched);
    EXPECT_THAT(
        trace.lines(),
        ElementsAre(
            "5 msg CalculatorKam.getMaxPower: getMaxPower std::min parameters: "
            "2800,2550,2550,2800",
            "5 msg CalculatorKam.getMaxPower: getMaxPower Max power for modulation 4QAM, "
            "rsec 1 and max modulation 2200 = 2550",
            noRow("128QAM"),
            msg(1, "getAdModMaxPower", "Could not get max ref output power for actual 128QAMQAM"),
            msg(2, "getFixModMaxPower", "Failed to get AdMod capabilities, error: 0, 32776")));
}

TEST_F(PowerCapabilitiesCalls, goToTheNeighboursInOrder) {
    const InSequence order;
    expectMinOutputPower();
    EXPECT_CALL(node.acmHandler, getMinMaxModulationAndCode);
    EXPECT_CALL(node.frameFormat, getChannelSpacing);
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber);
    EXPECT_CALL(node.frameFormat, getDpdVersion);
    EXPECT_CALL(node.frameFormat, getTelecomMarket);
    long minPower = untouched;
    long maxPower = untouched;

    const int result = sut.calculatePowerCapabilities(Modulation::QAM16, minPower, maxPower);

    EXPECT_EQ(result, 0);
}

TEST_F(PowerCapabilitiesCalls, withoutASelectionAskForTheFrameFormatsModulation) {
    node.answers.acmMin = 163;
    const InSequence order;
    expectMinOutputPower();
    EXPECT_CALL(node.acmHandler, getMinMaxModulationAndCode);
    EXPECT_CALL(node.frameFormat, getModulation);
    EXPECT_CALL(node.frameFormat, getChannelSpacing);
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber);
    EXPECT_CALL(node.frameFormat, getDpdVersion);
    EXPECT_CALL(node.frameFormat, getTelecomMarket);
    long minPower = untouched;
    long maxPower = untouched;

    const int result = sut.calculatePowerCapabilities(Modulation::QAM16, minPower, maxPower);

    EXPECT_EQ(result, 0);
}

// The limit of modem and radio

namespace {

struct LimitCase {
    Modulation modem;
    Modulation radio;
    Modulation limit;
    const char* modemText;
    const char* radioText;

    friend std::ostream& operator<<(std::ostream& stream, const LimitCase& shown) {
        return stream << shown.modemText << " and " << shown.radioText;
    }
};

class CapabilityLimit : public StartedServiceTest {};

class CapabilityLimitOf : public StartedServiceTest,
                          public ::testing::WithParamInterface<LimitCase> {};

class CapabilityLimitCalls : public StrictServiceTest {};

using Profiles = std::vector<short>;

} // namespace

TEST_P(CapabilityLimitOf, modemAndRadioIsTheLowerOne) {
    node.answers.maxModulationWithoutLimitation = GetParam().radio;
    TraceCapture trace(6);

    const Modulation limit =
        Inside::limitMaxModDueToRadioCapability(sut, fromConfigured, 0, GetParam().modem);

    EXPECT_EQ(limit, GetParam().limit);
    EXPECT_THAT(trace.lines(), ElementsAreArray(traced::limit("0", "No", GetParam().modemText,
                                                              GetParam().radioText)));
}

TEST_P(CapabilityLimitOf, modemAndLimitedRadioIsTheLowerOne) {
    node.answers.maxAcmLimitedByHw = true;
    node.answers.maxModulationLimitedByHw = GetParam().radio;
    node.answers.maxModulationWithoutLimitation = Modulation::BPSK; // not asked for
    TraceCapture trace(6);

    const Modulation limit =
        Inside::limitMaxModDueToRadioCapability(sut, byId, -3, GetParam().modem);

    EXPECT_EQ(limit, GetParam().limit);
    EXPECT_THAT(trace.lines(), ElementsAreArray(traced::limit("-3", "Yes", GetParam().modemText,
                                                              GetParam().radioText)));
}

INSTANTIATE_TEST_SUITE_P(
    , CapabilityLimitOf,
    ::testing::Values(
        LimitCase{Modulation::QAM256, Modulation::QAM128, Modulation::QAM128, "256QAM", "128QAM"},
        LimitCase{Modulation::QAM256, Modulation::QAM256, Modulation::QAM256, "256QAM", "256QAM"},
        LimitCase{Modulation::QAM256, Modulation::QAM512, Modulation::QAM256, "256QAM", "512QAM"},
        LimitCase{Modulation::QAM256, Modulation::CW, Modulation::CW, "256QAM", "CW"},
        LimitCase{Modulation::QAM256, Modulation{8}, Modulation{8}, "256QAM", "UNDEFINED"},
        // No limit known: the trace shows the modem's in its place.
        LimitCase{Modulation::QAM256, Modulation::UNDEFINED, Modulation::QAM256, "256QAM",
                  "256QAM"},
        LimitCase{Modulation::UNDEFINED, Modulation::QAM64, Modulation::QAM64, "UNDEFINED",
                  "64QAM"},
        LimitCase{Modulation::UNDEFINED, Modulation::UNDEFINED, Modulation::UNDEFINED, "UNDEFINED",
                  "UNDEFINED"}));

TEST_F(CapabilityLimit, ofARadioThatProvidesNoAnswersIsTheModems) {
    ON_CALL(node.capabilityHandler, getMaxModulationWithoutLimitation)
        .WillByDefault([this](const EFrameFormatMarket& market) {
            return node.capabilityHandler.ICapabilityHandler::getMaxModulationWithoutLimitation(
                market);
        });

    const Modulation limit =
        Inside::limitMaxModDueToRadioCapability(sut, fromConfigured, 0, Modulation::QAM1024);

    EXPECT_EQ(limit, Modulation::QAM1024);
}

TEST_F(CapabilityLimitCalls, ofTheConfiguredFrameFormatAskForItsMarket) {
    node.answers.market = EFrameFormatMarket::Global;
    const InSequence order;
    EXPECT_CALL(node.frameFormat, getTelecomMarket);
    EXPECT_CALL(node.capabilityHandler, isMaxAcmLimitedByHw);
    EXPECT_CALL(node.capabilityHandler,
                getMaxModulationWithoutLimitation(EFrameFormatMarket::Global));

    Inside::limitMaxModDueToRadioCapability(sut, fromConfigured, 7, Modulation::QAM64);
}

TEST_F(CapabilityLimitCalls, ofAFrameFormatByIdAskForItsMarket) {
    hardware.answers.market = ansi;
    const InSequence order;
    EXPECT_CALL(hardware.handler, getTelecomMarket(1, 7, _));
    EXPECT_CALL(node.capabilityHandler, isMaxAcmLimitedByHw);
    EXPECT_CALL(node.capabilityHandler, getMaxModulationWithoutLimitation(ansi));

    Inside::limitMaxModDueToRadioCapability(sut, byId, 7, Modulation::QAM64);
}

TEST_F(CapabilityLimitCalls, ofAnUnknownIdTakeTheMarketForEtsi) {
    const InSequence order;
    EXPECT_CALL(hardware.handler, getTelecomMarket(1, 8, _));
    EXPECT_CALL(node.capabilityHandler, isMaxAcmLimitedByHw);
    EXPECT_CALL(node.capabilityHandler, getMaxModulationWithoutLimitation(etsi));

    Inside::limitMaxModDueToRadioCapability(sut, byId, 8, Modulation::QAM64);
}

TEST_F(CapabilityLimitCalls, ofAnyOtherSourceTakeTheMarketForEtsiUnasked) {
    for (const int source : {2, -1}) {
        const InSequence order;
        EXPECT_CALL(node.capabilityHandler, isMaxAcmLimitedByHw);
        EXPECT_CALL(node.capabilityHandler, getMaxModulationWithoutLimitation(etsi));

        Inside::limitMaxModDueToRadioCapability(sut, Inside::UseConfiguredFF{source}, 7,
                                                Modulation::QAM64);
    }
}

TEST_F(CapabilityLimitCalls, ofAConfiguredFrameFormatPassItsProfiles) {
    node.answers.maxAcmLimitedByHw = true;
    const InSequence order;
    EXPECT_CALL(node.frameFormat, getTelecomMarket);
    EXPECT_CALL(node.capabilityHandler, isMaxAcmLimitedByHw);
    EXPECT_CALL(node.frameFormat, getPerformanceProfiles);
    EXPECT_CALL(node.capabilityHandler, getPerformanceProfileIndex);
    EXPECT_CALL(node.capabilityHandler, getMaxModulationLimitedByHw(Eq(Profiles{1, 2, 3}), 2));

    Inside::limitMaxModDueToRadioCapability(sut, fromConfigured, 7, Modulation::QAM64);
}

TEST_F(CapabilityLimitCalls, ofAConfiguredFrameFormatWithCarrierAggregationPassThoseProfiles) {
    DeskBoard::setCarrierAggregation(true);
    node.answers.maxAcmLimitedByHw = true;
    const InSequence order;
    EXPECT_CALL(node.frameFormat, getTelecomMarket);
    EXPECT_CALL(node.capabilityHandler, isMaxAcmLimitedByHw);
    EXPECT_CALL(node.frameFormat, getCarrierAggregationPerformanceProfiles);
    EXPECT_CALL(node.capabilityHandler, getPerformanceProfileIndex);
    EXPECT_CALL(node.capabilityHandler, getMaxModulationLimitedByHw(Eq(Profiles{4, 5}), 2));

    Inside::limitMaxModDueToRadioCapability(sut, fromConfigured, 7, Modulation::QAM64);
}

TEST_F(CapabilityLimitCalls, ofAFrameFormatByIdPassItsProfiles) {
    node.answers.maxAcmLimitedByHw = true;
    const InSequence order;
    EXPECT_CALL(hardware.handler, getTelecomMarket(1, 7, _));
    EXPECT_CALL(node.capabilityHandler, isMaxAcmLimitedByHw);
    EXPECT_CALL(hardware.handler, getPerformanceProfiles(1, 7, _));
    EXPECT_CALL(node.capabilityHandler, getPerformanceProfileIndex);
    EXPECT_CALL(node.capabilityHandler, getMaxModulationLimitedByHw(Eq(Profiles{11, 12}), 2));

    Inside::limitMaxModDueToRadioCapability(sut, byId, 7, Modulation::QAM64);
}

TEST_F(CapabilityLimitCalls, ofAFrameFormatByIdWithCarrierAggregationPassThoseProfiles) {
    DeskBoard::setCarrierAggregation(true);
    node.answers.maxAcmLimitedByHw = true;
    const InSequence order;
    EXPECT_CALL(hardware.handler, getTelecomMarket(1, 7, _));
    EXPECT_CALL(node.capabilityHandler, isMaxAcmLimitedByHw);
    EXPECT_CALL(hardware.handler, getCarrierAggregationPerformanceProfiles(1, 7, _));
    EXPECT_CALL(node.capabilityHandler, getPerformanceProfileIndex);
    EXPECT_CALL(node.capabilityHandler, getMaxModulationLimitedByHw(Eq(Profiles{13}), 2));

    Inside::limitMaxModDueToRadioCapability(sut, byId, 7, Modulation::QAM64);
}

TEST_F(CapabilityLimitCalls, ofAnyOtherSourceTakeTheProfilesOfTheId) {
    node.answers.maxAcmLimitedByHw = true;
    node.answers.performanceProfileIndex = -1;
    const InSequence order;
    EXPECT_CALL(node.capabilityHandler, isMaxAcmLimitedByHw);
    EXPECT_CALL(hardware.handler, getPerformanceProfiles(1, 7, _));
    EXPECT_CALL(node.capabilityHandler, getPerformanceProfileIndex);
    EXPECT_CALL(node.capabilityHandler, getMaxModulationLimitedByHw(Eq(Profiles{11, 12}), -1));

    Inside::limitMaxModDueToRadioCapability(sut, Inside::UseConfiguredFF{2}, 7, Modulation::QAM64);
}

TEST_F(CapabilityLimitCalls, ofAFrameFormatThatWritesNoProfilesPassNone) {
    node.answers.maxAcmLimitedByHw = true;
    const InSequence order;
    EXPECT_CALL(node.frameFormat, getTelecomMarket);
    EXPECT_CALL(node.capabilityHandler, isMaxAcmLimitedByHw);
    EXPECT_CALL(node.frameFormat, getPerformanceProfiles).WillOnce(Return());
    EXPECT_CALL(node.capabilityHandler, getPerformanceProfileIndex);
    EXPECT_CALL(node.capabilityHandler, getMaxModulationLimitedByHw(IsEmpty(), 2));

    Inside::limitMaxModDueToRadioCapability(sut, fromConfigured, 0, Modulation::QAM64);
}

// Adaptive modulation

TEST_F(AdModPowerCapabilities, areTheCalculatorsPowerCutBackAndTheMinimumOfTheSpacing) {
    sut.setPowerCutback(300);
    TraceCapture trace(6);

    const int result = calculate(Modulation::QAM16);

    // 2200 + 150 - 300 + 200 at 16QAM, + 300 at 4QAM.
    EXPECT_EQ(result, 0);
    EXPECT_EQ(minPower, -750);
    EXPECT_EQ(maxPower, 2250);
    EXPECT_THAT(trace.lines(),
                ElementsAreArray(sequence(
                    {enter("calculateAdmodPowerCapabilities",
                           "actualModulation=16QAM, convertRsecEnumToString(rsec)=2"),
                     traced::limit("0", "No", "256QAM", "256QAM"), traced::kamCompensation("28"),
                     traced::kamPower(
                         {.actual = "16QAM", .parameters = "2300,2350,2250,2500", .power = "2250"}),
                     minimumAt28})));
}

TEST_F(AdModPowerCapabilities, withoutASelectionGoFromTheFrameFormatsModulationToTheLimit) {
    node.answers.acmResult = 32768;
    node.answers.maxModulationWithoutLimitation = Modulation::QAM64;
    node.answers.modulation = Modulation::QAM16;
    TraceCapture trace(6);

    const int result = calculate(Modulation::QAM4, rsec4L);

    // Pmax 2400 at 64QAM, 1 dB at RSEC 4L: 2300 + 150; + 200 at 4QAM and at 16QAM, whose Pmax is
    // 2600.
    EXPECT_EQ(result, 0);
    EXPECT_EQ(minPower, -750);
    EXPECT_EQ(maxPower, 2600);
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence({enter("calculateAdmodPowerCapabilities",
                                         "actualModulation=4QAM, convertRsecEnumToString(rsec)=4L"),
                                   acmFailed, traced::limit("0", "No", "256QAM", "64QAM"),
                                   traced::kamCompensation("28"),
                                   traced::kamPower({.rsec = "4L",
                                                     .rsecNumber = "1",
                                                     .selectedMin = "16QAM",
                                                     .selectedMax = "64QAM",
                                                     .availableMax = "64QAM",
                                                     .actual = "4QAM",
                                                     .parameters = "2800,2650,2650,2600",
                                                     .referencePmax = "2400",
                                                     .power = "2600"}),
                                   minimumAt28})));
}

TEST_F(AdModPowerCapabilities, withASelectedMinimumOfNoModulationCountFromTheFrameFormats) {
    for (const int code : codesOfNoModulation) {
        node.answers.acmMin = code;

        const int result = calculate(Modulation::QAM4);

        // 2350 + 300 at 4QAM, + 100 at the frame format's 64QAM, whose Pmax of 2400 bounds it.
        EXPECT_EQ(result, 0) << code;
        EXPECT_EQ(maxPower, 2400) << code;
    }
}

TEST_F(AdModPowerCapabilities, withASelectedMaximumOfNoModulationTakeTheLimit) {
    node.answers.productNumber = "X";
    node.answers.maxModulationWithoutLimitation = Modulation::QAM64;
    for (const int code : codesOfNoModulation) {
        node.answers.acmMax = code;
        TraceCapture trace(5);

        const int result = calculate(Modulation::QAM16);

        // Reference 64QAM: 2400 + 100.
        EXPECT_EQ(result, 0) << code;
        EXPECT_EQ(maxPower, 2500) << code;
        EXPECT_THAT(trace.lines(),
                    ElementsAre("5 msg CalculatorVo5.getMaxRefModulation: getMaxRefModulationmax "
                                "power = 64QAM",
                                "5 msg CalculatorVo5.getMaxPower: Max power = 2500 for 16QAM, "
                                "RSEC-2, using selected max 64QAM"));
    }
}

TEST_F(AdModPowerCapabilities, keepASelectedMaximumAboveTheLimit) {
    node.answers.productNumber = "X";
    node.answers.maxModulationWithoutLimitation = Modulation::QAM64;
    TraceCapture trace(5);

    const int result = calculate(Modulation::QAM16);

    // Reference 256QAM: 2200 + 200.
    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2400);
    EXPECT_THAT(trace.lines(),
                ElementsAre("5 msg CalculatorVo5.getMaxRefModulation: getMaxRefModulationmax power "
                            "= 256QAM",
                            "5 msg CalculatorVo5.getMaxPower: Max power = 2400 for 16QAM, RSEC-2, "
                            "using selected max 256QAM"));
}

TEST_F(AdModPowerCapabilities, withoutAnyModulationToCountFromFailAndWriteNothing) {
    node.answers.acmMin = 163;
    node.answers.modulation = Modulation::UNDEFINED;
    TraceCapture trace(6);

    const int result = calculate(Modulation::QAM16, EReferenceSEC::UNDEFINED);

    EXPECT_EQ(result, 32768);
    expectNothingWritten();
    EXPECT_THAT(trace.lines(), ElementsAre(enter("calculateAdmodPowerCapabilities",
                                                 "actualModulation=16QAM, "
                                                 "convertRsecEnumToString(rsec)=UNDEFINED"),
                                           msg(1, "calculateAdmodPowerCapabilities",
                                               "Failed to get AdMod capabilities")));
}

TEST_F(AdModPowerCapabilities, withoutCompensationFailAndWriteNothing) {
    DeskVariableStore::getInstance().clear();
    TraceCapture trace(6);

    const int result = calculate(Modulation::QAM16);

    EXPECT_EQ(result, 32768);
    expectNothingWritten();
    EXPECT_THAT(
        trace.lines(),
        ElementsAreArray(sequence({enter("calculateAdmodPowerCapabilities",
                                         "actualModulation=16QAM, convertRsecEnumToString(rsec)=2"),
                                   traced::limit("0", "No", "256QAM", "256QAM"),
                                   traced::kamCompensation("28"), noStoredArray})));
}

TEST_F(AdModPowerCapabilities, ofAModulationWithoutPmaxFailAndWriteNothing) {
    TraceCapture trace(5);

    const int result = calculate(Modulation::QAM128);

    EXPECT_EQ(result, 32776);
    expectNothingWritten();
    EXPECT_THAT(
        trace.lines(),
        ElementsAre(
            noRow("128QAM"),
            msg(1, "getAdModMaxPower", "Could not get max ref output power for actual 128QAMQAM"),
            msg(1, "calculateAdmodPowerCapabilities", "Failed to get AdMod capabilities")));
}

TEST_F(AdModPowerCapabilities, thatTheFamilyRefusesFailAndWriteNothing) {
    TraceCapture trace(5);

    const int result = calculate(Modulation::QAM16, EReferenceSEC::UNDEFINED);

    EXPECT_EQ(result, 32776);
    expectNothingWritten();
    EXPECT_THAT(
        trace.lines(),
        ElementsAre("1 msg CalculatorKam.getMaxPower: No power offset found for "
                    "rsec=UNDEFINED, acm=16QAM",
                    msg(1, "getAdModMaxPower", "Modulation not supported 16QAMQAM"),
                    msg(1, "calculateAdmodPowerCapabilities", "Failed to get AdMod capabilities")));
}

TEST_F(AdModPowerCapabilities, thatTheFamilyDoesNotApplyToReturn2AndWriteNothing) {
    node.answers.productNumber = "X";
    node.answers.acmMax = 31;
    TraceCapture trace(5);

    const int result = calculate(Modulation::QAM16);

    EXPECT_EQ(result, 2);
    expectNothingWritten();
    EXPECT_THAT(
        trace.lines(),
        ElementsAre("5 msg CalculatorVo5.getMaxRefModulation: getMaxRefModulationmax power = 4QAM",
                    "5 msg CalculatorVo5.getMaxPower: getMaxPower16QAM is higher than selected max "
                    "ACM (4QAM)",
                    msg(5, "calculateAdmodPowerCapabilities",
                        "ignoring QAM16QAM as it's not supported by combined HW capability")));
}

TEST_F(AdModPowerCapabilities, aboveTheBoostersMaximumReturn2AndWriteNothing) {
    node.answers.productNumber = "QZT35201/1";
    sut.setBoosterPresence(1, 0, 3000, Modulation::QAM4);
    TraceCapture trace(5);

    const int result = calculate(Modulation::QAM16);

    EXPECT_EQ(result, 2);
    expectNothingWritten();
    EXPECT_THAT(
        trace.lines(),
        ElementsAre("5 msg CalculatorVo4.getMaxPower: 16QAM is higher than booster max ACM (4QAM)",
                    msg(5, "calculateAdmodPowerCapabilities",
                        "ignoring QAM16QAM as it's not supported by combined HW capability")));
}

TEST_F(AdModPowerCapabilities, ofAnUnknownDpdVersionFail) {
    for (const int version : {0, 4, -1}) {
        node.answers.dpdVersion = EDpdVersion{version};
        TraceCapture trace(5);

        const int result = calculate(Modulation::QAM16);

        EXPECT_EQ(result, 32776);
        expectNothingWritten();
        EXPECT_THAT(
            trace.lines(),
            ElementsAre(
                msg(1, "getMaxPowerArray", "Unknown DPD version " + std::to_string(version)),
                msg(2, "getMaxPower", "Unable to get power for modulation 4QAM"),
                msg(1, "getAdModMaxPower",
                    "Could not get max ref output power for selected min 4QAMQAM"),
                msg(1, "calculateAdmodPowerCapabilities", "Failed to get AdMod capabilities")));
    }
}

TEST_F(AdModPowerCapabilities, ofTheThirdOutdoorFamilyAddTheCompensationToWhatTheOutputHeld) {
    node.answers.productNumber = "QZT 846 003";
    maxPower = 1800;
    TraceCapture trace(5);

    const int result = calculate(Modulation::QAM16, EReferenceSEC::UNDEFINED);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 1950); // 1800 + 150
    EXPECT_THAT(trace.lines(),
                ElementsAre("1 msg CalculatorKamV3.getMaxPower: getMaxPowerNo matching RSEC",
                            "5 msg CalculatorKamV3.getMaxPower: getMaxPower Calculated max power = "
                            "1950 for 16QAM with rsec UNDEFINED and power cutback: 150"));
}

TEST_F(PowerCapabilitiesCalls, ofAdaptiveModulationGoToTheNeighboursInOrder) {
    const InSequence order;
    EXPECT_CALL(node.acmHandler, getMinMaxModulationAndCode);
    EXPECT_CALL(node.frameFormat, getMaxAvailableModulation);
    expectCapabilityLimit();
    EXPECT_CALL(node.frameFormat, getChannelSpacing);
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber);
    EXPECT_CALL(node.frameFormat, getDpdVersion);
    EXPECT_CALL(node.frameFormat, getTelecomMarket);
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber);
    expectMinOutputPower();
    long minPower = untouched;
    long maxPower = untouched;

    const int result =
        sut.calculateAdmodPowerCapabilities(Modulation::QAM16, rsec2, minPower, maxPower);

    EXPECT_EQ(result, 0);
}

TEST_F(PowerCapabilitiesCalls, ofAdaptiveModulationWithoutASelectionAskForTheFrameFormats) {
    node.answers.acmMin = 163;
    node.answers.modulation = Modulation::UNDEFINED;
    const InSequence order;
    EXPECT_CALL(node.acmHandler, getMinMaxModulationAndCode);
    EXPECT_CALL(node.frameFormat, getModulation);
    long minPower = untouched;
    long maxPower = untouched;

    // Nobody else is asked once there is nothing to count from.
    const int result =
        sut.calculateAdmodPowerCapabilities(Modulation::QAM16, rsec2, minPower, maxPower);

    EXPECT_EQ(result, 32768);
}

TEST_F(PowerCapabilitiesCalls, ofAdaptiveModulationThatFailAskForNoMinimum) {
    const InSequence order;
    EXPECT_CALL(node.acmHandler, getMinMaxModulationAndCode);
    EXPECT_CALL(node.frameFormat, getMaxAvailableModulation);
    expectCapabilityLimit();
    EXPECT_CALL(node.frameFormat, getChannelSpacing);
    EXPECT_CALL(node.capabilityHandler, getTmuHwProductNumber);
    EXPECT_CALL(node.frameFormat, getDpdVersion);
    EXPECT_CALL(node.frameFormat, getTelecomMarket);
    long minPower = untouched;
    long maxPower = untouched;

    const int result =
        sut.calculateAdmodPowerCapabilities(Modulation::QAM128, rsec2, minPower, maxPower);

    EXPECT_EQ(result, 32776);
}
