#include "QueryTrace.h"

#include <gmock/gmock.h>

#include <ostream>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The records are written out as the library writes them.

TraceRecord enter(const std::string& function, const std::string& text) {
    return {TraceRecord::Kind::Enter, 6, 0, "OutputPowerCalculator", function, 1, text};
}

TraceRecord message(int level, const std::string& function, const std::string& text) {
    return {TraceRecord::Kind::Message, level, 0, "OutputPowerCalculator", function, 1, text};
}

TraceRecord noRow(const std::string& modulation) {
    return {TraceRecord::Kind::Raw,
            1,
            0x8008,
            "TxRfMaxPowerCapability",
            "getPower",
            1,
            "getPower, unknown modulation type: " + modulation + "      code: 0x8008\n"};
}

TraceRecord walk(bool adaptive) {
    return enter("populateModulationPowerMap", std::string("rsec=1, adModEnable=") +
                                                   (adaptive ? "1" : "0") +
                                                   ", selectedMinMod=4QAM, selectedMaxMod=256QAM");
}

TraceRecord adaptive(const std::string& modulation) {
    return enter("getAdModMaxPower",
                 "dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=4L, "
                 "selectedMinMod=4QAM, selectedMaxMod=256QAM, availableMaxMod=512QAM, actualMod=" +
                     modulation + ", csPowerCompensation=0");
}

TraceRecord fixed(const std::string& modulation) {
    return enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=4QAM, modulation=" +
                                          modulation + ", csPowerCompensation=0, useCutback=1");
}

TraceRecord skipped(const std::string& modulation) {
    return message(2, "populateModulationPowerMap",
                   "Failed to calculate power capabilities for modType " + modulation);
}

TraceRecord ignored(const std::string& modulation) {
    return message(5, "populateModulationPowerMap",
                   "ignoring QAM" + modulation +
                       " as it's not supported by combined HW capability");
}

std::vector<std::string> troublesOf(const QueryTrace& trace, Modulation modulation) {
    std::vector<std::string> texts;
    if (const QueryTrace::Calculation* const calculation = trace.find(modulation)) {
        for (const QueryTrace::Trouble& trouble : calculation->troubles) {
            texts.push_back(trouble.text);
        }
    }
    return texts;
}

bool hasFailed(const QueryTrace& trace, Modulation modulation) {
    const QueryTrace::Calculation* const calculation = trace.find(modulation);
    return calculation != nullptr && calculation->failed;
}

/// The trouble of 64QAM in an adaptive calculation that fails after some records.
std::vector<std::string> adaptiveFailure(std::vector<TraceRecord> records) {
    records.insert(records.begin(), {walk(true), adaptive("64QAM")});
    records.push_back(skipped("64QAM"));
    return troublesOf(QueryTrace::read(records), Modulation::QAM64);
}

TEST(QueryTrace, OfNothingIsEmpty) {
    const QueryTrace sut = QueryTrace::read({});

    EXPECT_FALSE(sut.family);
    EXPECT_FALSE(sut.modulationLimit);
    EXPECT_FALSE(sut.rsec);
    EXPECT_EQ(sut.failure, "");
    EXPECT_THAT(sut.notes, IsEmpty());
    EXPECT_EQ(sut.find(Modulation::QAM4), nullptr);
}

struct Selection {
    const char* text;
    const char* className;
    const char* name;
};

void PrintTo(const Selection& selection, std::ostream* stream) {
    *stream << selection.text;
}

class FamilyMessage : public testing::TestWithParam<Selection> {};

TEST_P(FamilyMessage, NamesTheFamily) {
    const QueryTrace sut = QueryTrace::read({message(6, "getCalculator", GetParam().text)});

    ASSERT_TRUE(sut.family);
    EXPECT_EQ(sut.family->className, GetParam().className);
    EXPECT_EQ(sut.family->name, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    Families, FamilyMessage,
    testing::Values(
        Selection{"Empty productNumber, using KaM max power algorithm", "CalculatorKam",
                  "first outdoor family"},
        Selection{"Using KaM max power algorithm", "CalculatorKam", "first outdoor family"},
        Selection{"Using KaMV3 max power algorithm", "CalculatorKamV3", "third outdoor family"},
        Selection{"Using legacy TMU max power algorithm", "CalculatorVo4",
                  "older radio-unit family"},
        Selection{"Using TMU max power algorithm", "CalculatorVo5", "newer radio-unit family"}));

TEST(QueryTrace, TellsAdaptiveFromFixedModulation) {
    EXPECT_TRUE(QueryTrace::read({walk(true)}).isAdaptive);
    EXPECT_FALSE(QueryTrace::read({walk(false)}).isAdaptive);
}

TEST(QueryTrace, TakesTheLimitOfTheWalkAndNotThatOfALaterCalculation) {
    const auto limit = [](const char* radio) {
        return message(6, "limitMaxModDueToRadioCapability",
                       std::string(" modemMaxAvailableModulation: 1024QAM "
                                   "radioMaxAvailableModulation: ") +
                           radio);
    };
    const auto profiles =
        message(6, "limitMaxModDueToRadioCapability", " usePerformaceProfiles: Yes");

    const QueryTrace sut =
        QueryTrace::read({walk(false), profiles, limit("512QAM"), fixed("4QAM"), limit("64QAM")});

    ASSERT_TRUE(sut.modulationLimit);
    EXPECT_EQ(sut.modulationLimit->modem, "1024QAM");
    EXPECT_EQ(sut.modulationLimit->radio, "512QAM");
    EXPECT_TRUE(sut.modulationLimit->byProfile);
}

TEST(QueryTrace, KeepsTheClassThatTheCalculatorWasAskedFor) {
    EXPECT_EQ(QueryTrace::read({walk(true), adaptive("4QAM")}).rsec, "4L");
    EXPECT_EQ(QueryTrace::read({walk(false), fixed("4QAM")}).rsec, std::nullopt);
    EXPECT_EQ(QueryTrace::read({walk(false), fixed("4QAM"), adaptive("4QAM")}).rsec, "4L");
}

TEST(QueryTrace, ACalculationWithoutTroubleHasNone) {
    const QueryTrace sut = QueryTrace::read({walk(true), adaptive("4QAM"), adaptive("16QAM")});

    ASSERT_NE(sut.find(Modulation::QAM4), nullptr);
    EXPECT_FALSE(hasFailed(sut, Modulation::QAM4));
    EXPECT_THAT(troublesOf(sut, Modulation::QAM4), IsEmpty());
    EXPECT_EQ(sut.find(Modulation::QAM64), nullptr);
}

TEST(QueryTrace, AMissingRowIsTheReasonAndSaysWhoseItIs) {
    const auto pmaxMessage = [](const std::string& text) {
        return message(1, "getAdModMaxPower", text);
    };

    EXPECT_THAT(
        adaptiveFailure({noRow("64QAM"),
                         pmaxMessage("Could not get max ref output power for actual 64QAMQAM")}),
        ElementsAre("the Pmax table has no row for 64QAM"));
    EXPECT_THAT(adaptiveFailure(
                    {noRow("4QAM"),
                     pmaxMessage("Could not get max ref output power for selected min 4QAMQAM")}),
                ElementsAre("the Pmax table has no row for 4QAM, the selected minimum"));
    EXPECT_THAT(
        adaptiveFailure({noRow("512QAM"),
                         pmaxMessage("Could not get max output power for reference offset 0QAM")}),
        ElementsAre("the Pmax table has no row for 512QAM, the reference modulation"));
}

TEST(QueryTrace, AnUnknownDpdVersionIsTheReason) {
    EXPECT_THAT(
        adaptiveFailure({message(1, "getMaxPowerArray", "Unknown DPD version 4"),
                         message(2, "getMaxPower", "Unable to get power for modulation 4QAM"),
                         message(1, "getAdModMaxPower",
                                 "Could not get max ref output power for selected min 4QAMQAM")}),
        ElementsAre("DPD version 4 is unknown"));
}

TEST(QueryTrace, AMissingEntryOfTheFamilysTablesIsTheReason) {
    const auto failure = [](const std::string& text) {
        return adaptiveFailure(
            {message(1, "getMaxPower", text),
             message(1, "getAdModMaxPower", "Modulation not supported 64QAMQAM")});
    };

    EXPECT_THAT(failure("No power offset found for rsec=UNDEFINED, acm=64QAM"),
                ElementsAre("the family has no power offset for 64QAM at RSEC UNDEFINED"));
    EXPECT_THAT(failure("No power offset found for ref acm=256QAM, rsec=2, acm=64QAM"),
                ElementsAre("the family has no power offset for 64QAM at RSEC 2 against 256QAM"));
    EXPECT_THAT(failure("No power offset found for selected max acm=128QAM, rsec=2, acm=64QAM"),
                ElementsAre("the family has no power offset for 64QAM at RSEC 2 against 128QAM"));
    EXPECT_THAT(failure("No boosted power offset found for ref acm=256QAM, rsec=5B, acm=64QAM"),
                ElementsAre("the family has no booster adjustment for 64QAM at RSEC 5B"));
    EXPECT_THAT(
        failure("No boosted band power offset found for ref acm=256QAM, rsec=5B, acm=64QAM"),
        ElementsAre("the family has no booster band adjustment for 64QAM at RSEC 5B"));
}

TEST(QueryTrace, AModulationThatTheCalculatorDoesNotApplyToHasTheRuleAsReason) {
    const auto rule = [](int level, const std::string& text) {
        const QueryTrace sut = QueryTrace::read(
            {walk(true), adaptive("64QAM"), message(level, "getMaxPower", text), ignored("64QAM")});
        EXPECT_TRUE(hasFailed(sut, Modulation::QAM64));
        return troublesOf(sut, Modulation::QAM64);
    };

    EXPECT_THAT(rule(5, "64QAM is higher than booster max ACM (16QAM)"),
                ElementsAre("above the booster's highest modulation, 16QAM"));
    EXPECT_THAT(rule(5, "getMaxPower64QAM is higher than booster max ACM (16QAM)"),
                ElementsAre("above the booster's highest modulation, 16QAM"));
    EXPECT_THAT(rule(5, "getMaxPower64QAM is higher than selected max ACM (32QAM)"),
                ElementsAre("above the selected maximum, 32QAM"));
    EXPECT_THAT(rule(4, "getMaxPower64QAM type invalid, selected max UNDEFINED"),
                ElementsAre("the modulation or the selected maximum is undefined"));
}

TEST(QueryTrace, AFixedModulationIsCalculatedInSpiteOfAMissingRow) {
    const QueryTrace sut =
        QueryTrace::read({walk(false), fixed("64QAM"), noRow("4QAM"),
                          message(2, "getFixModMaxPower",
                                  "Failed to calculate power capabilities for modulation 4QAMQAM"),
                          noRow("64QAM"),
                          message(2, "getFixModMaxPower",
                                  "Failed to calculate power capabilities for modulation 64QAM")});

    const QueryTrace::Calculation* const calculation = sut.find(Modulation::QAM64);
    ASSERT_NE(calculation, nullptr);
    EXPECT_FALSE(calculation->failed);
    ASSERT_THAT(
        troublesOf(sut, Modulation::QAM64),
        ElementsAre("the Pmax table has no row for 4QAM", "the Pmax table has no row for 64QAM"));
    EXPECT_TRUE(calculation->troubles.front().countsAsZero);
}

TEST(QueryTrace, ARowThatIsMissingTwiceIsNamedOnce) {
    const QueryTrace sut =
        QueryTrace::read({walk(false), fixed("4QAM"), noRow("4QAM"), noRow("4QAM")});

    EXPECT_THAT(troublesOf(sut, Modulation::QAM4),
                ElementsAre("the Pmax table has no row for 4QAM"));
}

TEST(QueryTrace, ARoleThatFailsTwiceIsNamedOnce) {
    // With a booster a fixed modulation is calculated twice, each time from the selected one.
    const auto complaint = message(1, "getAdModMaxPower",
                                   "Could not get max ref output power for selected min 4QAMQAM");

    const QueryTrace sut = QueryTrace::read(
        {walk(false), fixed("64QAM"), adaptive("4QAM"), noRow("4QAM"), complaint, adaptive("64QAM"),
         noRow("4QAM"), complaint,
         message(2, "getFixModMaxPower", "Failed to get AdMod capabilities, error: 32776, 32776"),
         skipped("64QAM")});

    EXPECT_TRUE(hasFailed(sut, Modulation::QAM64));
    EXPECT_THAT(troublesOf(sut, Modulation::QAM64),
                ElementsAre("the Pmax table has no row for 4QAM, the selected minimum"));
}

TEST(QueryTrace, AnAdaptiveCalculationInsideAFixedOneBelongsToTheFixedOne) {
    const QueryTrace sut = QueryTrace::read(
        {walk(false), fixed("64QAM"), adaptive("4QAM"), adaptive("64QAM"),
         message(5, "getMaxPower", "64QAM is higher than booster max ACM (16QAM)")});

    EXPECT_EQ(sut.find(Modulation::QAM4), nullptr);
    EXPECT_THAT(troublesOf(sut, Modulation::QAM64),
                ElementsAre("above the booster's highest modulation, 16QAM"));
}

TEST(QueryTrace, AnUnknownClassOfTheThirdOutdoorFamilyIsDoubtfulButNotZero) {
    const QueryTrace sut = QueryTrace::read(
        {walk(true), adaptive("64QAM"), message(1, "getMaxPower", "getMaxPowerNo matching RSEC")});

    ASSERT_THAT(troublesOf(sut, Modulation::QAM64),
                ElementsAre("the family has no rule for this RSEC and goes on from the power of "
                            "the modulation before"));
    EXPECT_FALSE(sut.find(Modulation::QAM64)->troubles.front().countsAsZero);
}

TEST(QueryTrace, AWarningThatItDoesNotKnowIsShownInTheLibrarysWords) {
    EXPECT_THAT(adaptiveFailure({message(2, "getMaxPower", "Something\nnew")}),
                ElementsAre("the library reports \"Something\\nnew\""));
    EXPECT_THAT(adaptiveFailure({}),
                ElementsAre("the library reports \"Failed to calculate power capabilities for "
                            "modType 64QAM\""));
    EXPECT_THAT(QueryTrace::read({message(2, "elsewhere", "Something new")}).notes,
                ElementsAre("the library reports \"Something new\""));
}

TEST(QueryTrace, AModulationThatIsTriedAgainKeepsItsFirstReason) {
    const QueryTrace sut =
        QueryTrace::read({walk(true), adaptive("64QAM"), noRow("64QAM"), skipped("64QAM"),
                          adaptive("64QAM"), noRow("4QAM"), skipped("64QAM")});

    EXPECT_THAT(troublesOf(sut, Modulation::QAM64),
                ElementsAre("the Pmax table has no row for 64QAM"));
}

TEST(QueryTrace, TheMinimumPowerBelongsToNoCalculation) {
    const QueryTrace sut =
        QueryTrace::read({walk(true), adaptive("4QAM"), enter("getMinOutputPower", "28"),
                          message(2, "getMinOutputPower", " no match for channel spacing : 28")});

    EXPECT_THAT(troublesOf(sut, Modulation::QAM4), IsEmpty());
    EXPECT_THAT(sut.notes, ElementsAre("no minimum-power offset for a channel spacing of 28 MHz; "
                                       "the radio's own minimum holds"));
}

TEST(QueryTrace, AMissingSelectionIsNotedOnce) {
    const auto record =
        message(2, "getSelectedMinMaxAcm", "failed to get min and max modulation from ACM handler");

    EXPECT_THAT(QueryTrace::read({record, record}).notes,
                ElementsAre("the ACM handler reports no selected range"));
}

TEST(QueryTrace, FailedQueriesByIdAreNoted) {
    const std::string function = "getMaxOutputPowerArrayUsingRfid";

    const QueryTrace sut = QueryTrace::read(
        {message(1, function, "Failed to get telecom market, wrong channel or FFID?"),
         message(1, function, "Failed to get modulation and code array, wrong channel or FFID?"),
         message(1, function, "Failed to get channel spacing, wrong channel or FFID?")});

    EXPECT_THAT(
        sut.notes,
        ElementsAre(
            "the hardware configuration gives no market for the frame format; Etsi is taken",
            "the hardware configuration gives no modulation-and-codes for the frame format",
            "the hardware configuration gives no channel spacing for the frame format; 0 MHz is "
            "taken"));
}

TEST(QueryTrace, KnowsWhyTheWholeQueryFailed) {
    const std::string function = "populateModulationPowerMap";

    EXPECT_EQ(QueryTrace::read({walk(true), message(1, function,
                                                    "Failed to calculate power capabilities, "
                                                    "modulationAndCodeArray is empty")})
                  .failure,
              "the frame format has no modulation-and-codes");
    EXPECT_EQ(QueryTrace::read(
                  {walk(true), message(1, function,
                                       "Failed to calculate power capabilities for undefined "
                                       "max modulation")})
                  .failure,
              "the highest code of the frame format has no modulation");
    EXPECT_EQ(QueryTrace::read(
                  {walk(true),
                   message(1, "getCompensationForChannelSpacing",
                           "getCompensationForChannelSpacing Failed to get variable channel.1.x"),
                   message(1, "getCsPowerCompensation",
                           "Could not get power compensation for channel spacing 28MHz")})
                  .failure,
              "the channel-spacing compensation is unknown, because the stored variable "
              "\"channel.1.x\" cannot be read");
}

} // namespace
