#include "TraceLog.h"

#include "ExplanationAudit.h"
#include "LogImport.h"
#include "LoggedPowers.h"
#include "RadioFileReader.h"
#include "RecordedAnswers.h"
#include "Replay.h"
#include "reference/RandomRadioFile.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

// The figures are worked out by hand; the lines are written out as the library traces them.

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

using Lines = std::vector<std::string>;

const std::string service = "Control/OutputPowerCalculator/private/OutputPowerCalculator:1 ";

std::string enter(const std::string& function, const std::string& text) {
    return "6 enter " + service + function + ": " + text;
}

std::string from(const std::string& calculator, int level, const std::string& text) {
    return std::to_string(level) + " msg Control/OutputPowerCalculator/private/" + calculator +
           ":1 getMaxPower: " + text;
}

std::string noRow(const std::string& modulation) {
    return "1 raw Control/OutputPowerCalculator/private/TxRfMaxPowerCapability:1 getPower: "
           "getPower, "
           "unknown modulation type: " +
           modulation + "      code: 0x8008";
}

std::string adaptive(const std::string& rsec, const std::string& modulation, int compensation) {
    return enter("getAdModMaxPower",
                 "dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=" + rsec +
                     ", selectedMinMod=4QAM, selectedMaxMod=256QAM, availableMaxMod=256QAM, "
                     "actualMod=" +
                     modulation + ", csPowerCompensation=" + std::to_string(compensation));
}

std::string lookUp(const std::string& modulation) {
    return enter("getMaxPower", "dpdVersion=1, market=Etsi, modulationType=" + modulation);
}

const std::string cutBack = enter("applyCutbackToMaxPower", "");

/// The look-ups of an adaptive calculation for 16QAM, up to the family's own traces.
Lines calculation(const std::string& rsec, int compensation) {
    return {enter("calculateAdmodPowerCapabilities", "actualModulation=16QAM"),
            adaptive(rsec, "16QAM", compensation),
            cutBack,
            lookUp("4QAM"),
            cutBack,
            lookUp("16QAM"),
            cutBack,
            lookUp("256QAM")};
}

Lines withFamily(Lines lines, const Lines& family) {
    lines.insert(lines.end(), family.begin(), family.end());
    return lines;
}

std::vector<LoggedCall> callsOf(const Lines& lines) {
    std::vector<LoggedCall> calls;
    TraceLog log([&calls](const LoggedCall& call) { calls.push_back(call); });
    for (const std::string& line : lines) {
        log.read(line);
    }
    log.end();
    return calls;
}

/// The powers of every query of a log.
std::vector<LoggedPowers> powersOf(const Lines& lines, const OperatingInputs& given = {}) {
    std::vector<LoggedPowers> powers;
    LoggedInputs inputs;
    inputs.fix(given);
    for (const LoggedCall& call : callsOf(lines)) {
        inputs.follow(call);
        if (TraceLog::isQuery(call.name) || call.name.empty()) {
            powers.push_back(LoggedPowers::asTold(call, inputs));
        }
    }
    return powers;
}

/// The only explanation of a log with one query.
Explanation explanationOf(const Lines& lines, const OperatingInputs& given = {}) {
    const std::vector<LoggedPowers> powers = powersOf(lines, given);
    if (powers.size() != 1 || powers.front().explanations.size() != 1) {
        ADD_FAILURE() << "not exactly one explanation";
        return {};
    }
    EXPECT_EQ(powers.front().explanations.front().mismatch, "");
    return powers.front().explanations.front();
}

// Lines

TEST(ALine, OfTextIsATraceWhateverStandsBefore) {
    for (const std::string before : {"", "12:00:01.5 node7 qor[4711]: ", "raw log, "}) {
        const auto sut = TraceLog::recordIn(before + "6 enter some/File:12 getMaxPower: a=1, b=2");

        ASSERT_TRUE(sut) << before;
        EXPECT_EQ(sut->kind, TraceRecord::Kind::Enter);
        EXPECT_EQ(sut->level, 6);
        EXPECT_EQ(sut->file, "some/File");
        EXPECT_EQ(sut->function, "getMaxPower");
        EXPECT_EQ(sut->text, "a=1, b=2");
    }
}

TEST(ALine, MayHaveAnEmptyTextAndColonsInIt) {
    EXPECT_EQ(TraceLog::recordIn("6 enter f:1 initialize:")->text, "");
    EXPECT_EQ(TraceLog::recordIn("6 msg f:1 getMaxPower: maxPower (boosted.1): 12")->text,
              "maxPower (boosted.1): 12");
}

TEST(ALine, OfSomethingElseIsNoTrace) {
    for (const char* const line :
         {"", "hello", "7 enter f:1 getMaxPower: x", "x enter f:1 getMaxPower: x",
          "6 other f:1 getMaxPower: x", "6 enter f:1", "6 enter f:1 two words: x"}) {
        EXPECT_FALSE(TraceLog::recordIn(line)) << line;
    }
}

TEST(ALog, CountsWhatItLeavesOut) {
    TraceLog sut([](const LoggedCall&) {});

    for (const char* const line : {"# a comment", "", "6 enter f:1 initialize: ", "{\"no\": 1}"}) {
        sut.read(line);
    }
    sut.end();

    EXPECT_EQ(sut.lines(), 4U);
    EXPECT_EQ(sut.records(), 1U);
    EXPECT_EQ(sut.leftOut(), 2U);
}

TEST(ALog, IsTakenApartIntoCalls) {
    const std::vector<LoggedCall> sut =
        callsOf({enter("initialize", ""), enter("setPowerCutback", "300"),
                 "5 msg " + service + "setBoosterPresence: New boosterPresence = 0",
                 enter("calculatePowerCapabilities", "16QAM"), enter("getMinOutputPower", "28"),
                 enter("getUnrestrictedPmax", "")});

    ASSERT_THAT(sut, SizeIs(5));
    EXPECT_EQ(sut[2].name, "setBoosterPresence");
    EXPECT_EQ(sut[3].name, "calculatePowerCapabilities");
    EXPECT_EQ(sut[3].arguments, "16QAM");
    EXPECT_EQ(sut[3].line, 4U);
    EXPECT_THAT(sut[3].records, SizeIs(2));
}

// The families. Cutback 3.00 and compensation 0.50, Pmax of 256QAM 20.00.

const Lines firstFamily = withFamily(
    calculation("2", 50),
    // 20.00 - 0 + 0.50 - 3.00 = 17.50; 16QAM 2 more, 4QAM 3 more
    {from("CalculatorKam", 5, "getMaxPower std::min parameters: 2200,2050,1950,2400"),
     from("CalculatorKam", 5,
          "getMaxPower Max power for modulation 16QAM, rsec 0 and max modulation 2000 = 1950")});

TEST(ALogOfTheFirstFamily, LeavesTheCutbackAsTheDifference) {
    const Explanation sut = explanationOf(firstFamily);

    EXPECT_EQ(sut.answer, 1950);
    EXPECT_THAT(stepsOf(sut),
                ElementsAre("pmax-reference 2000", "reference-offset +0 2000",
                            "channel-spacing-compensation +50 2050", "cutback -300 1750",
                            "offset-table +200 1950", "pmax-row <=2200 1950",
                            "selected-minimum-offset <=2050 1950",
                            "pmax-selected-minimum <=2400 1950"));
    EXPECT_EQ(sut.steps.at(3).basis, Explanation::Basis::Difference);
    EXPECT_EQ(sut.lookups.at(1).power, 2500);
}

TEST(ALogOfTheFirstFamily, SaysWhenAGivenCutbackDoesNotFit) {
    OperatingInputs given;
    given.temporaryCutback = {true, 200};

    const std::vector<LoggedPowers> sut = powersOf(firstFamily, given);

    EXPECT_EQ(sut.at(0).explanations.at(0).mismatch,
              "the power by the offset table at the selected minimum is 21.50 dBm by the steps, "
              "20.50 dBm by the library");
}

const Lines secondFamily = withFamily(
    calculation("2", 50),
    // 17.50; 16QAM 4 more, 4QAM 6 more
    {from("CalculatorKamV2", 5, "getMaxPower std::min parameters: 2200,2350,2150,2400"),
     from("CalculatorKamV2", 5,
          "getMaxPower Max power for modulation 16QAM, rsec 0 and max modulation 2000 = 2150")});

TEST(ALogOfTheSecondFamily, TellsOffsetAndCutbackTogether) {
    const Explanation sut = explanationOf(secondFamily);

    EXPECT_THAT(stepsOf(sut),
                ElementsAre("pmax-reference 2000", "channel-spacing-compensation +50 2050",
                            "offset-table +100 2150", "pmax-row <=2200 2150",
                            "selected-minimum-offset <=2350 2150",
                            "pmax-selected-minimum <=2400 2150"));
    EXPECT_THAT(sut.steps.at(2).words, HasSubstr("a cutback that the log does not tell apart"));
    EXPECT_EQ(sut.binding()->rule, Rule::OffsetTable);
    EXPECT_EQ(sut.headroom, 50);
}

TEST(ALogOfTheSecondFamily, TellsThemApartWithAGivenCutback) {
    OperatingInputs given;
    given.permanentCutback = 300;
    given.temporaryCutback = OperatingInputs::TemporaryCutback();

    const Explanation sut = explanationOf(secondFamily, given);

    EXPECT_EQ(lineOf(sut.steps.at(2)), "permanent-cutback -300 1750");
    EXPECT_EQ(lineOf(sut.steps.at(3)), "offset-table +400 2150");
}

TEST(ALogOfTheThirdFamily, HoldsTheCutbackByItself) {
    // 25.00 - 3.00 less (0.50 - 3.00) = 24.50; at most 23.00; back to 20.50
    const Explanation sut = explanationOf(withFamily(
        calculation("4L", 50),
        {"6 enter Control/OutputPowerCalculator/private/CalculatorKamV3:1 getMaxPower: ",
         from("CalculatorKamV3", 6, "uncompensated Pmax for modulation: 16QAM = 2450"),
         from("CalculatorKamV3", 6,
              "min() of uncompensated Pmax and tmuMaxPowerFor16Qam = 2300 will be used"),
         from("CalculatorKamV3", 5,
              "getMaxPower Calculated max power = 2050 for 16QAM with rsec 4L and power cutback: "
              "-250")}));

    EXPECT_THAT(stepsOf(sut),
                ElementsAre("pmax-row 2500", "cutback -300 2200",
                            "channel-spacing-compensation +250 2450", "rsec-cap <=2300 2300",
                            "channel-spacing-compensation -250 2050"));
}

Lines olderUnit(const Lines& booster) {
    return withFamily(
        withFamily(
            calculation("2", 0),
            {from("CalculatorVo4", 6,
                  "data.refMaxModulation=256QAM, data.actualModulation=16QAM, data.rsec=0, "
                  "data.pmaxActualModulation=2200, data.pmaxRefMaxModulation=2000, "
                  "boosterBand=" +
                      std::string(booster.empty() ? "0" : "1")),
             from("CalculatorVo4", 6, "Static power for 16QAM = 2200"),
             from("CalculatorVo4", 6, "ACM adjusted power = (2000 + 200) = 2200"),
             from("CalculatorVo4", 5, "Max power = 2200 for 16QAM, RSEC-2, using ref acm 256QAM")}),
        booster);
}

TEST(ALogOfTheOlderUnit, NeedsNoCutbackToAddUp) {
    const Explanation sut = explanationOf(olderUnit({}));

    EXPECT_THAT(stepsOf(sut), ElementsAre("pmax-reference 2000", "offset-table +200 2200",
                                          "pmax-row <=2200 2200"));
    EXPECT_EQ(sut.lookups.at(1).power, std::nullopt) << "Pmax itself is not told";
}

const Lines boosterSteps = {from("CalculatorVo4", 6, "boosterPowerAdjustments: 700"),
                            from("CalculatorVo4", 6, "maxPower (boosted.1): 2900"),
                            from("CalculatorVo4", 6, "boosterBandPowerAdjustments: 200"),
                            from("CalculatorVo4", 6, "maxPower (boosted.2): 3100"),
                            from("CalculatorVo4", 6, "maxPower (boosted.3): 1400"),
                            from("CalculatorVo4", 6, "maxPower (boosted.4): 1400")};

TEST(ALogOfTheOlderUnit, TellsGainAndInputTogether) {
    const Explanation sut = explanationOf(olderUnit(boosterSteps));

    EXPECT_EQ(lineOf(sut.steps.at(5)), "booster-gain -1700 1400");
    EXPECT_EQ(sut.steps.at(5).basis, Explanation::Basis::Difference);
}

TEST(ALogOfTheOlderUnit, TellsThemApartWithTheBoostersOwnTraces) {
    const Lines setter = {
        "5 msg " + service + "setBoosterPresence: New boosterPresence = 1",
        "5 msg " + service +
            "setBoosterPresence: New boosterGain = 1500, new boosterMaxInputPower = 1400, new "
            "boosterMaxModulation = 256QAM"};

    const Explanation sut = explanationOf(withFamily(setter, olderUnit(boosterSteps)));

    EXPECT_EQ(lineOf(sut.steps.at(5)), "booster-gain -1500 1600");
    EXPECT_EQ(lineOf(sut.steps.at(6)), "booster-input-limit <=1400 1400");
    EXPECT_EQ(sut.binding()->rule, Rule::BoosterInputLimit);
}

TEST(ALogOfTheNewerUnit, TellsTheReferenceThatIsInForce) {
    const Explanation sut = explanationOf(withFamily(
        calculation("2", 0),
        {from("CalculatorVo5", 6,
              "data.selectedMaxModulation=256QAM, data.actualModulation=16QAM, data.rsec=0, "
              "data.pmaxActualModulation=2100, data.pmaxRefMaxModulation=2000, boosterBand=0"),
         from("CalculatorVo5", 6, "Static power for 16QAM = 2200"),
         from("CalculatorVo5", 6, "ACM adjusted power for selected max 256QAM(2000 + 200) = 2200"),
         from("CalculatorVo5", 5,
              "Max power = 2100 for 16QAM, RSEC-2, using selected max 256QAM")}));

    EXPECT_THAT(stepsOf(sut), ElementsAre("pmax-reference 2000", "offset-table +200 2200",
                                          "pmax-row <=2100 2100"));
    EXPECT_EQ(sut.steps.at(1).source, "offset table of the family against 256QAM, RSEC 2");
}

// What a log does not hold

TEST(ALogOfAFixedModulation, TellsNoPowerByItself) {
    const Explanation sut = explanationOf(
        {enter("calculatePowerCapabilities", "16QAM"),
         enter("getFixModMaxPower", "dpdVersion=1, market=Etsi, selectedMod=4QAM, "
                                    "modulation=16QAM, csPowerCompensation=50, useCutback=1"),
         lookUp("4QAM"), cutBack, lookUp("16QAM"), cutBack});

    EXPECT_EQ(sut.answer, std::nullopt);
    EXPECT_THAT(sut.steps, IsEmpty());
    EXPECT_THAT(sut.notes, ElementsAre("the log tells neither Pmax nor the power of one fixed "
                                       "modulation"));
}

TEST(ALogOfAFailure, NamesTheRule) {
    const Explanation sut = explanationOf(
        {enter("calculateAdmodPowerCapabilities", ""), adaptive("2", "16QAM", 0), lookUp("4QAM"),
         noRow("4QAM"),
         "1 msg " + service +
             "getAdModMaxPower: Could not get max ref output power for selected min 4QAMQAM",
         "1 msg " + service + "calculateAdmodPowerCapabilities: Failed to get AdMod capabilities"});

    EXPECT_EQ(sut.refusal, Rule::MissingPmaxRow);
    EXPECT_EQ(sut.refusalWords, "the Pmax table has no row for 4QAM, the selected minimum");
}

/// What is told of every query of a log.
std::vector<LoggedPowers> queriesOf(const Lines& lines, LoggedQueries::Choice choice = {}) {
    std::vector<LoggedPowers> queries;
    LoggedQueries sut(std::move(choice),
                      [&queries](const LoggedPowers& powers) { queries.push_back(powers); });
    for (const std::string& line : lines) {
        sut.read(line);
    }
    sut.end();
    return queries;
}

TEST(ALogWithoutEntries, SaysWhichLevelItHasAndHowToGetMore) {
    const std::vector<LoggedPowers> sut = queriesOf(
        {from("CalculatorKam", 5, "getMaxPower std::min parameters: 2200,2050,1950,2400")});

    ASSERT_THAT(sut, SizeIs(1));
    EXPECT_THAT(sut[0].gaps,
                ElementsAre("the log holds traces up to level 5 here, and steps are told by level "
                            "6: have QOR.SPC.Calculator trace at level 6"));
}

TEST(ALogThatBreaksOff, ExplainsNothingOfItsLastCalculation) {
    const Explanation sut = explanationOf(calculation("2", 50));

    EXPECT_THAT(sut.steps, IsEmpty());
    EXPECT_THAT(sut.notes, ElementsAre("the log holds too little of this calculation; it needs "
                                       "traces up to level 6"));
    EXPECT_EQ(sut.decisiveRule(), Rule::Unexplained);
}

// A word that ends a line and that no other line repeats.
TEST(ALineThatIsCutWithinItsLastWord, IsNamed) {
    const std::string selection = "minModulationAndCode=4QAM, maxModulationAndCode=";
    const Lines array = {enter("getMinMaxOutputPowerVsModulationArray",
                               "frameformat_id=0, minModulationAndCodeIn=UNDEFINED, "
                               "maxModulationAndCodeIn=UNDEFINED, referenceSec=2")};
    const Lines adaptiveQuery = {enter("calculateAdmodPowerCapabilities",
                                       "actualModulation=16QAM, convertRsecEnumToString(rsec)=4")};
    const struct {
        Lines lines;
        const char* trouble;
    } rows[] = {
        {withFamily(array, {enter("getAdmodEnable", selection + "UNDEF")}),
         "line 2 is cut: it ends in no modulation-and-code"},
        {withFamily(array, {enter("getAdmodEnable", selection + "256QAM_")}),
         "line 2 is cut: it ends in no modulation-and-code"},
        {{enter("calculatePowerCapabilities", "16QA")}, "line 1 is cut: it ends in no modulation"},
        {adaptiveQuery, "line 1 is cut: it ends in no class"},
    };

    for (const auto& row : rows) {
        const std::vector<LoggedCall> calls = callsOf(row.lines);
        ASSERT_THAT(calls, SizeIs(1)) << row.trouble;
        EXPECT_EQ(CallCheck::of(calls.front()).trouble, row.trouble);
    }
    const std::vector<LoggedCall> whole =
        callsOf(withFamily(array, {enter("getAdmodEnable", selection + "256QAM_LIGHT")}));
    EXPECT_THAT(CallCheck::of(whole.front()).trouble, HasSubstr("the call breaks off"));
}

// What a replay prints

Lines replayOf(const std::string& name) {
    std::ifstream stream(QOR_ANALYSIS_TESTS "/radios/" + name);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    Lines lines;
    Replay(6).play(RadioFileReader::read(text),
                   [&lines](const std::string& line) { lines.push_back(line); });
    return lines;
}

TEST(AReplay, AddsTheAnswersOfAFixedModulation) {
    const Lines lines = replayOf("outdoor1.json");

    // getUnrestrictedPmax() behind the patch to 56 MHz, whose compensation is -2.00; 128QAM has no
    // row, so 0 - 2.00.
    const std::vector<LoggedPowers> sut = powersOf(lines);

    ASSERT_THAT(sut, SizeIs(1));
    EXPECT_EQ(sut[0].call, "getUnrestrictedPmax");
    ASSERT_THAT(sut[0].explanations, SizeIs(1));
    EXPECT_EQ(sut[0].explanations[0].answer, -200);
    EXPECT_THAT(stepsOf(sut[0].explanations[0]),
                ElementsAre("missing-pmax-row 0", "channel-spacing-compensation -200 -200"));
}

TEST(AReplay, BecomesOneLineOfJsonForEachQuery) {
    const std::string sut = jsonLine(powersOf(replayOf("outdoor1.json")).at(0));

    ASSERT_EQ(std::count(sut.begin(), sut.end(), '\n'), 1);
    const auto object = nlohmann::json::parse(sut);
    EXPECT_EQ(object.at("call"), "getUnrestrictedPmax");
    EXPECT_EQ(object.at("calculator"), "CalculatorKam");
    EXPECT_EQ(object.at("explanations").at(0).at("rule"), "missing-pmax-row");
    EXPECT_EQ(object.at("explanations").at(0).at("addsUp"), true);
}

} // namespace

// Whatever a log tells, the file that is made of it is one.
TEST(LogImport, aRandomReplayBecomesARadioFile) {
    int alike = 0;
    for (std::uint64_t seed = 0; seed < 60; ++seed) {
        LogImport sut;
        TraceLog log([&sut](const LoggedCall& call) { sut.read(call); });
        // What is read of a log may ask the library: the replay has to be over.
        Lines played;
        Replay(6).play(RadioFileReader::read(reference::randomRadioFile(seed).dump()),
                       [&played](const std::string& line) { played.push_back(line); });
        for (const std::string& line : played) {
            log.read(line);
        }
        log.end();

        const RadioFile file = RadioFileReader::read(sut.radioFile());
        Lines lines;
        Replay().play(file, [&lines](const std::string& line) { lines.push_back(line); });
        alike += RecordedAnswers::differences(file, lines).empty() ? 1 : 0;
    }
    RecordProperty("alike", alike);
    EXPECT_GT(alike, 5);
}
