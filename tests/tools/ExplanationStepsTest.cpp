#include "BatchResult.h"
#include "ExplanationAudit.h"
#include "LoggedPowers.h"
#include "PowerTableQuery.h"
#include "RadioFileReader.h"
#include "Waterfall.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

// Every figure is worked out by hand, from the tables of the families and the radio files.

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using Lines = std::vector<std::string>;

nlohmann::json radioNamed(const std::string& name) {
    std::ifstream stream(QOR_TOOL_TESTS "/radios/" + name);
    return nlohmann::json::parse(stream, nullptr, true, true);
}

/// "binding pmax-row 2100", "next offset-table 2150 +50".
Lines verdictOf(const Explanation& explanation) {
    Lines lines;
    if (const Explanation::Bound* const binding = explanation.binding()) {
        lines.push_back(std::string("binding ") + codeOf(binding->rule) + ' ' +
                        std::to_string(binding->value));
    }
    if (const Explanation::Bound* const next = explanation.runnerUp()) {
        lines.push_back(std::string("next ") + codeOf(next->rule) + ' ' +
                        std::to_string(next->value) + " +" +
                        std::to_string(explanation.headroom.value_or(-1)));
    }
    return lines;
}

/// The pointers of the steps that have one.
Lines pointersOf(const Explanation& explanation) {
    Lines lines;
    for (const Explanation::Step& step : explanation.steps) {
        if (!step.pointer.empty()) {
            lines.push_back(step.pointer);
        }
    }
    return lines;
}

Explanation explanationOf(const ExplainedTable& explained, int code) {
    for (std::size_t index = 0; index < explained.table.rows.size(); ++index) {
        if (explained.table.rows[index].modulationAndCode.code == code) {
            return explained.explanations[index];
        }
    }
    ADD_FAILURE() << "no row with code " << code;
    return {};
}

/// Explains a code of a radio, and makes sure that it adds up to the answer.
Explanation explain(const nlohmann::json& radio, int code, const PowerTableQuery& query = {}) {
    const Explanation explanation =
        explanationOf(query.explain(RadioFileReader::read(radio.dump())), code);
    EXPECT_EQ(explanation.mismatch, "");
    return explanation;
}

constexpr int qam4 = 31;
constexpr int qam16 = 41;
constexpr int qam64 = 61;
constexpr int qam128 = 71;
constexpr int qam256 = 81;
constexpr int qam512 = 91;

// First outdoor family. Reference 256QAM with Pmax 22.00; offsets at RSEC 4L: 256QAM 0, 64QAM 1,
// 16QAM and 4QAM 2. Compensation of 28 MHz 1.50, cutback 3.00.

TEST(FirstOutdoorFamily, StartsFromTheReferenceAndIsBoundFourfold) {
    const Explanation sut = explain(radioNamed("outdoor1.json"), qam16);

    EXPECT_THAT(stepsOf(sut),
                ElementsAre("pmax-reference 2200", "reference-offset +0 2200",
                            "channel-spacing-compensation +150 2350", "permanent-cutback -300 2050",
                            "offset-table +200 2250", "pmax-row <=2300 2250",
                            "selected-minimum-offset <=2250 2250",
                            "pmax-selected-minimum <=2500 2250"));
    EXPECT_THAT(verdictOf(sut),
                ElementsAre("binding offset-table 2250", "next selected-minimum-offset 2250 +0"));
    EXPECT_EQ(sut.answer, 2250);
    EXPECT_EQ(sut.path, Explanation::Path::Adaptive);
}

TEST(FirstOutdoorFamily, NamesThePlaceOfEveryFigureOfTheFile) {
    const Explanation sut = explain(radioNamed("outdoor1.json"), qam16);

    EXPECT_THAT(pointersOf(sut),
                ElementsAre("/capabilityHandler/pmaxDpd1Etsi/3/1",
                            "/variables/channel.1.tx.rf.pmax.cs.comp.v2.array/1",
                            "/requests/4/cutback", "/capabilityHandler/pmaxDpd1Etsi/1/1",
                            "/capabilityHandler/pmaxDpd1Etsi/0/1"));
}

TEST(FirstOutdoorFamily, ThePmaxRowBindsWhereItIsLowest) {
    const Explanation sut = explain(radioNamed("outdoor1.json"), qam64);

    // 20.50 + 1 = 21.50 by the offset table, 24.00 - 3.00 by Pmax
    EXPECT_THAT(verdictOf(sut), ElementsAre("binding pmax-row 2100", "next offset-table 2150 +50"));
}

TEST(FirstOutdoorFamily, TheSelectedMinimumIsNotBoundByItselfTwice) {
    const Explanation sut = explain(radioNamed("outdoor1.json"), qam4);

    EXPECT_THAT(stepsOf(sut),
                ElementsAre("pmax-reference 2200", "reference-offset +0 2200",
                            "channel-spacing-compensation +150 2350", "permanent-cutback -300 2050",
                            "offset-table +200 2250", "pmax-row <=2500 2250"));
    EXPECT_THAT(verdictOf(sut),
                ElementsAre("binding offset-table 2250", "next pmax-row 2500 +250"));
}

TEST(FirstOutdoorFamily, TheFallbackOfThePmaxTableIsNamed) {
    const ExplainedTable sut =
        PowerTableQuery().explain(RadioFileReader::read(radioNamed("outdoor1.json").dump()));

    EXPECT_EQ(sut.pmaxTable, "pmaxDpd1Etsi (fallback: the radio refuses pmaxDpd2Etsi)");
    EXPECT_EQ(sut.pmaxTableKey, "pmaxDpd1Etsi");
}

TEST(FirstOutdoorFamily, ATemporaryCutbackTakesThePlaceOfThePermanentOne) {
    PowerTableQuery query;
    query.inputs.temporaryCutback = {true, 550};

    const Explanation sut = explain(radioNamed("outdoor1.json"), qam64, query);

    // base 22.00 + 1.50 - 5.50 = 18.00; 19.00 by the offset table, 24.00 - 5.50 by Pmax
    EXPECT_EQ(lineOf(sut.steps.at(3)), "temporary-cutback -550 1800");
    EXPECT_EQ(sut.steps.at(3).source, "as given");
    EXPECT_THAT(verdictOf(sut), ElementsAre("binding pmax-row 1850", "next offset-table 1900 +50"));
}

TEST(FirstOutdoorFamily, AReferenceWithoutAnOffsetCountsFromZero) {
    nlohmann::json radio = radioNamed("outdoor1.json");
    radio["capabilityHandler"].erase("maxModulationWithoutLimitation");
    radio["capabilityHandler"]["pmaxDpd1Etsi"].push_back({"65536QAM", 1000});
    radio["frameFormat"]["modulationAndCodes"] = {"4QAM", "65536QAM"};

    const Explanation sut = explain(radio, qam4);

    // 0 + 1.50 - 3.00 + 2.00
    EXPECT_THAT(stepsOf(sut),
                ElementsAre("missing-offset 0", "channel-spacing-compensation +150 150",
                            "permanent-cutback -300 -150", "offset-table +200 50",
                            "pmax-row <=2500 50"));
}

TEST(FirstOutdoorFamily, AMissingRowDeniesThePower) {
    nlohmann::json radio = radioNamed("outdoor1.json");
    radio["frameFormat"]["modulationAndCodes"] = {"4QAM", "128QAM", "256QAM"};

    const Explanation sut = explain(radio, qam128);

    EXPECT_EQ(sut.answer, std::nullopt);
    EXPECT_EQ(sut.refusal, Rule::MissingPmaxRow);
    EXPECT_EQ(sut.refusalWords, "the Pmax table has no row for 128QAM");
    ASSERT_THAT(sut.lookups, SizeIs(2));
    EXPECT_EQ(sut.lookups.at(0).power, 2800);
    EXPECT_EQ(sut.lookups.at(1).missing, Rule::MissingPmaxRow);
}

TEST(FirstOutdoorFamily, AboveTheRadiosHighestModulationThereIsNoPower) {
    const Explanation sut = explain(radioNamed("outdoor1.json"), qam512);

    EXPECT_EQ(sut.decisiveRule(), Rule::HardwareLimit);
    EXPECT_THAT(sut.steps, IsEmpty());
}

TEST(FirstOutdoorFamily, AnUnknownClassHasNoOffset) {
    PowerTableQuery query;
    query.rsec = EReferenceSEC{77};

    EXPECT_EQ(explain(radioNamed("outdoor1.json"), qam16, query).refusal, Rule::MissingOffset);
}

TEST(FirstOutdoorFamily, AnUnknownDpdVersionHasNoTable) {
    PowerTableQuery query;
    query.frameFormatId = 9;

    const Explanation sut = explain(radioNamed("outdoor1.json"), qam16, query);

    EXPECT_EQ(sut.refusal, Rule::UnknownDpdVersion);
    EXPECT_EQ(sut.refusalWords, "DPD version 4 is unknown");
}

TEST(FirstOutdoorFamily, SumsThatLeave32BitsWrap) {
    nlohmann::json radio = radioNamed("outdoor1.json");
    radio["variables"]["channel.1.tx.rf.pmax.cs.comp.v2.array"] = {28, 2147483647};

    const Explanation sut = explain(radio, qam256);

    // 2200 + 2147483647 - 2^32 = -2147481449; less 300 = -2147481749
    EXPECT_EQ(lineOf(sut.steps.at(2)), "channel-spacing-compensation +2147483647 -2147481449");
    EXPECT_TRUE(sut.steps.at(2).wraps);
    EXPECT_EQ(sut.answer, -2147481749);
    EXPECT_EQ(sut.headroom, std::nullopt);
}

TEST(FirstOutdoorFamily, ACutbackOfMoreThan31BitsIsTakenAsItIs) {
    PowerTableQuery query;
    query.inputs.permanentCutback = 4294967295U;

    const Explanation sut = explain(radioNamed("outdoor1.json"), qam64, query);

    // As 32 bits that is -1, so one hundredth is added: 22.00 + 1.50 + 0.01 + 1.00, and 24.01
    EXPECT_EQ(lineOf(sut.steps.at(3)), "permanent-cutback -4294967295 2351");
    EXPECT_EQ(sut.answer, 2401);
    EXPECT_EQ(sut.binding()->rule, Rule::PmaxRow);
}

// Third outdoor family at RSEC 4L: the cap is Pmax of 16QAM.

nlohmann::json thirdOutdoorRadio() {
    nlohmann::json radio = radioNamed("outdoor1.json");
    radio["capabilityHandler"]["productNumber"] = "QZT 846 003";
    return radio;
}

TEST(ThirdOutdoorFamily, TakesTheCompensationOutForTheCapAndPutsItBack) {
    const Explanation sut = explain(thirdOutdoorRadio(), qam4);

    // 28.00 - 3.00 = 25.00; less (1.50 - 3.00) is 26.50; at most 26.00; back to 24.50
    EXPECT_THAT(stepsOf(sut),
                ElementsAre("pmax-row 2800", "permanent-cutback -300 2500",
                            "channel-spacing-compensation +150 2650", "rsec-cap <=2600 2600",
                            "channel-spacing-compensation -150 2450"));
    EXPECT_THAT(verdictOf(sut), ElementsAre("binding rsec-cap 2450", "next pmax-row 2500 +50"));
}

TEST(ThirdOutdoorFamily, ACapThatDoesNotBindIsAskedFor) {
    const Explanation sut = explain(thirdOutdoorRadio(), qam64);

    // 24.00 - 3.00 + 1.50 = 22.50 is below 26.00
    EXPECT_THAT(verdictOf(sut), ElementsAre("binding pmax-row 2100", "next rsec-cap 2450 +350"));
    EXPECT_EQ(sut.lookups.back().role, Rule::RsecCap);
    EXPECT_EQ(sut.lookups.back().basis, Explanation::Basis::Question);
    EXPECT_EQ(sut.lookups.back().pointer, "/capabilityHandler/pmaxDpd1Etsi/1/1");
}

TEST(ThirdOutdoorFamily, Class2HasNoCap) {
    PowerTableQuery query;
    query.rsec = EReferenceSEC::Class2;

    const Explanation sut = explain(thirdOutdoorRadio(), qam64, query);

    EXPECT_THAT(verdictOf(sut), ElementsAre("binding pmax-row 2100"));
}

TEST(ThirdOutdoorFamily, ACapWithoutARowCountsAsZero) {
    nlohmann::json radio = thirdOutdoorRadio();
    radio["capabilityHandler"]["pmaxDpd1Etsi"] =
        nlohmann::json::parse(R"([["4QAM", 2800], ["256QAM", 2200]])");

    const Explanation sut = explain(radio, qam4);

    EXPECT_EQ(lineOf(sut.steps.at(3)), "missing-pmax-row <=0 0");
    EXPECT_THAT(verdictOf(sut),
                ElementsAre("binding missing-pmax-row -150", "next pmax-row 2500 +2650"));
}

TEST(ThirdOutdoorFamily, WithoutARuleForTheClassThePowerBeforeGoesOn) {
    PowerTableQuery query;
    query.rsec = EReferenceSEC::UNDEFINED;
    nlohmann::json radio = thirdOutdoorRadio();
    radio["systemPowerController"]["referenceSec"] = "UNDEFINED";

    // 0 - 1.50 for 4QAM, from there on -1.50 for each modulation
    EXPECT_THAT(stepsOf(explain(radio, qam4, query)),
                ElementsAre("carried-power 0", "channel-spacing-compensation -150 -150"));
    EXPECT_THAT(stepsOf(explain(radio, qam16, query)),
                ElementsAre("carried-power -150", "channel-spacing-compensation -150 -300"));
    EXPECT_THAT(verdictOf(explain(radio, qam16, query)), ElementsAre("binding carried-power -300"));
}

// Older radio-unit family at RSEC 2: reference 256QAM, offsets 3 for 4QAM and 2 for 16QAM; booster
// 7 for both, its band 2.

nlohmann::json olderRadioUnit() {
    nlohmann::json radio = radioNamed("fixed-booster.json");
    radio["acmHandler"] = {{"min", "4QAM"}, {"max", "256QAM"}};
    radio["systemPowerController"]["referenceSec"] = "2";
    return radio;
}

PowerTableQuery withBooster(int presence, int gain, int maxInputPower, Modulation maxModulation) {
    PowerTableQuery query;
    query.inputs.booster = {presence, gain, maxInputPower, maxModulation};
    return query;
}

TEST(OlderRadioUnitFamily, AddsTheOffsetToTheReference) {
    const Explanation sut = explain(olderRadioUnit(), qam16);

    EXPECT_THAT(stepsOf(sut), ElementsAre("pmax-reference 1700", "offset-table +200 1900",
                                          "pmax-row <=2200 1900"));
    EXPECT_THAT(verdictOf(sut),
                ElementsAre("binding offset-table 1900", "next pmax-row 2200 +300"));
}

TEST(OlderRadioUnitFamily, TheCutbackLowersPmaxButNotTheReference) {
    PowerTableQuery query;
    query.inputs.permanentCutback = 400;

    const Explanation sut = explain(olderRadioUnit(), qam16, query);

    EXPECT_THAT(stepsOf(sut), ElementsAre("pmax-reference 1700", "offset-table +200 1900",
                                          "pmax-row <=1800 1800"));
    EXPECT_EQ(sut.steps.back().words, "at most Pmax of 16QAM less the cutback");
    EXPECT_EQ(sut.lookups.at(1).power, 2200);
}

TEST(OlderRadioUnitFamily, TheBoostersInputBounds) {
    const Explanation sut =
        explain(olderRadioUnit(), qam16, withBooster(1, 1500, 1200, Modulation::QAM256));

    // 19.00 + 7 + 2 = 28.00; less 15 is 13.00; at most 12.00
    EXPECT_THAT(stepsOf(sut),
                ElementsAre("pmax-reference 1700", "offset-table +200 1900", "pmax-row <=2200 1900",
                            "booster-adjustment +700 2600", "booster-band-adjustment +200 2800",
                            "booster-gain -1500 1300", "booster-input-limit <=1200 1200",
                            "pmax-row <=2200 1200"));
    // By Pmax before the booster it would be 22.00 + 9 - 15 = 16.00
    EXPECT_THAT(verdictOf(sut),
                ElementsAre("binding booster-input-limit 1200", "next offset-table 1300 +100"));
}

TEST(OlderRadioUnitFamily, PmaxBoundsAgainBehindTheBooster) {
    const Explanation sut =
        explain(olderRadioUnit(), qam4, withBooster(7, 0, 3000, Modulation::QAM256));

    // 20.00 + 7 + 0 = 27.00, at most 23.00
    EXPECT_THAT(verdictOf(sut),
                ElementsAre("binding pmax-row 2300", "next offset-table 2700 +400"));
}

TEST(OlderRadioUnitFamily, AboveTheBoostersHighestModulationThereIsNoPower) {
    const Explanation sut =
        explain(olderRadioUnit(), qam256, withBooster(1, 1500, 1200, Modulation::QAM64));

    EXPECT_EQ(sut.refusal, Rule::BoosterMaxModulation);
    EXPECT_EQ(sut.refusalWords, "above the booster's highest modulation, 64QAM");
}

TEST(OlderRadioUnitFamily, AFixedModulationWithABoosterIsBoundByTheSelectedOne) {
    nlohmann::json radio = radioNamed("fixed-booster.json");

    // RSEC 4H. Selected 16QAM: min(17 + 2, 22) + 7 + 2 - 3 = 25.00, at most 22.00.
    // Asked 4QAM: min(17 + 2, 23) = 19.00, likewise 25.00, at most 23.00. The lower is 22.00.
    const Explanation sut = explain(radio, qam4, withBooster(1, 300, 3000, Modulation::QAM256));

    EXPECT_EQ(sut.path, Explanation::Path::FixedWithBooster);
    EXPECT_EQ(lineOf(sut.steps.back()), "selected-modulation <=2200 2200");
    EXPECT_THAT(verdictOf(sut),
                ElementsAre("binding selected-modulation 2200", "next pmax-row 2300 +100"));
    ASSERT_THAT(sut.ofSelected, SizeIs(1));
    EXPECT_THAT(verdictOf(sut.ofSelected.front()),
                ElementsAre("binding pmax-row 2200", "next offset-table 2500 +300"));
}

TEST(OlderRadioUnitFamily, AFixedModulationThatTheBoosterDoesNotCarryCountsAsZero) {
    const Explanation sut = explain(radioNamed("fixed-booster.json"), qam256,
                                    withBooster(7, 300, 2000, Modulation::QAM64));

    EXPECT_EQ(sut.answer, 0);
    EXPECT_EQ(lineOf(sut.steps.front()), "booster-max-modulation 0");
    EXPECT_EQ(sut.binding()->rule, Rule::BoosterMaxModulation);
}

// Newer radio-unit family: reference and block by the selected maximum, 256QAM with Pmax 18.00. The
// ANSI market counts as RSEC 2: offsets 3 for 4QAM and 1 for 64QAM.

TEST(NewerRadioUnitFamily, AddsTheOffsetAgainstTheSelectedMaximum) {
    const Explanation sut = explain(radioNamed("radio-unit-booster.json"), qam64);

    // 19.00 + 5 + 2 - 15 = 11.00, below 14.00; by Pmax alone 19.00 likewise
    EXPECT_THAT(stepsOf(sut),
                ElementsAre("pmax-reference 1800", "offset-table +100 1900", "pmax-row <=1900 1900",
                            "booster-adjustment +500 2400", "booster-band-adjustment +200 2600",
                            "booster-gain -1500 1100", "booster-input-limit <=1400 1100",
                            "pmax-row <=1900 1100"));
    EXPECT_THAT(verdictOf(sut), ElementsAre("binding offset-table 1100", "next pmax-row 1100 +0"));
    EXPECT_THAT(sut.notes, ElementsAre("RSEC 4L counts as 2 on the ANSI market"));
    EXPECT_EQ(sut.steps.at(5).pointer, "/requests/1/gain");
    EXPECT_EQ(sut.steps.at(6).pointer, "/requests/1/maxInputPower");
}

TEST(NewerRadioUnitFamily, AboveTheSelectedMaximumThereIsNoPower) {
    EXPECT_EQ(explain(radioNamed("radio-unit-booster.json"), qam512).refusal,
              Rule::SelectedMaximum);
}

// One fixed modulation without a booster: the selected one is 4QAM, cutback 2.00, compensation
// -0.50.

TEST(OneFixedModulation, IsTheLowerOfTwoPmaxValues) {
    const Explanation sut = explain(radioNamed("fixed-modulation.json"), qam16);

    EXPECT_THAT(stepsOf(sut), ElementsAre("pmax-row 2300", "permanent-cutback -200 2100",
                                          "pmax-selected-minimum <=2400 2100",
                                          "channel-spacing-compensation -50 2050"));
    EXPECT_THAT(verdictOf(sut),
                ElementsAre("binding pmax-row 2050", "next pmax-selected-minimum 2350 +300"));
    EXPECT_EQ(sut.steps.front().basis, Explanation::Basis::Question);
    EXPECT_EQ(sut.steps.front().pointer, "/capabilityHandler/pmaxDpd1Etsi/1/1");
}

TEST(OneFixedModulation, OfTheSelectedOneHasOneBound) {
    const Explanation sut = explain(radioNamed("fixed-modulation.json"), qam4);

    EXPECT_THAT(verdictOf(sut), ElementsAre("binding pmax-row 2350"));
}

TEST(OneFixedModulation, AMissingRowCountsAsZero) {
    const Explanation sut = explain(radioNamed("fixed-modulation.json"), qam128);

    EXPECT_THAT(stepsOf(sut), ElementsAre("missing-pmax-row 0", "permanent-cutback -200 -200",
                                          "pmax-selected-minimum <=2400 -200",
                                          "channel-spacing-compensation -50 -250"));
}

TEST(AQueryThatFails, NamesTheRuleForEveryCode) {
    PowerTableQuery query;
    query.frameFormatId = 8;
    const ExplainedTable undefined =
        query.explain(RadioFileReader::read(radioNamed("outdoor1.json").dump()));
    nlohmann::json radio = radioNamed("outdoor1.json");
    radio.erase("variables");
    const ExplainedTable uncalibrated =
        PowerTableQuery().explain(RadioFileReader::read(radio.dump()));

    EXPECT_EQ(explanationOf(undefined, qam4).decisiveRule(), Rule::UndefinedModulation);
    EXPECT_EQ(explanationOf(uncalibrated, qam4).decisiveRule(), Rule::MissingCalibration);
}

TEST(APmaxTableOfIntegers, HasItsFiguresInOtherPlaces) {
    nlohmann::json radio = radioNamed("outdoor1.json");
    radio["capabilityHandler"]["pmaxDpd1Etsi"] = {{"integers", {4, 2800, 16, 2600, 256, 2200}}};
    radio["frameFormat"]["modulationAndCodes"] = {"4QAM", "16QAM", "256QAM"};

    const Explanation sut = explain(radio, qam16);

    EXPECT_EQ(sut.steps.front().pointer, "/capabilityHandler/pmaxDpd1Etsi/integers/5");
}

// The arithmetic by itself.

TEST(AWaterfall, SaysWhatDoesNotAddUp) {
    Explanation explanation;
    Waterfall sut(explanation);
    sut.start(Rule::PmaxRow, "Pmax", 2000);
    sut.change(Rule::PermanentCutback, "cutback", -300);

    sut.expect("the power of the family", 1701);
    sut.finish(1700);

    EXPECT_FALSE(explanation.addsUp());
    EXPECT_EQ(explanation.mismatch,
              "the power of the family is 17.00 dBm by the steps, 17.01 dBm by the library");
}

/// Explanations of which only those of 16QAM do not add up.
std::vector<Explanation> explanationsWithMismatch() {
    std::vector<Explanation> explanations(3);
    explanations[0].modulation = Modulation::QAM4;
    explanations[1].modulation = Modulation::QAM16;
    explanations[1].mismatch = "1 is not 2";
    explanations[2] = explanations[1]; // another code of the same modulation
    return explanations;
}

TEST(Mismatches, AreToldOnceForEachModulation) {
    EXPECT_THAT(mismatchesOf(explanationsWithMismatch()),
                ElementsAre("the steps for 16QAM do not add up: 1 is not 2"));
}

TEST(Mismatches, MakeALineOfABatchBad) {
    EXPECT_EQ(BatchResult::errorOf({{}, explanationsWithMismatch()}),
              "the steps for 16QAM do not add up: 1 is not 2");
    EXPECT_EQ(BatchResult::errorOf({{}, {Explanation()}}), "");
}

TEST(AWaterfall, ComparesTheAnswer) {
    Explanation explanation;
    Waterfall sut(explanation);
    sut.start(Rule::PmaxRow, "Pmax", 2000);
    sut.bound(Rule::RsecCap, "cap", 1800);

    sut.finish(1900);

    EXPECT_EQ(explanation.mismatch, "the answer is 18.00 dBm by the steps, 19.00 dBm by the "
                                    "library");
}

TEST(AWaterfall, OfEqualBoundsTheFirstBinds) {
    Explanation explanation;
    Waterfall sut(explanation);
    sut.start(Rule::PmaxRow, "Pmax", 2000);
    sut.bound(Rule::RsecCap, "cap", 2000);

    sut.finish(2000);

    EXPECT_THAT(verdictOf(explanation),
                ElementsAre("binding pmax-row 2000", "next rsec-cap 2000 +0"));
}

TEST(ARule, HasACodeAndWordsOfItsOwn) {
    std::vector<std::string> codes;
    for (const Rule rule : allRules()) {
        codes.emplace_back(codeOf(rule));
        EXPECT_STRNE(wordsFor(rule), "");
    }

    std::sort(codes.begin(), codes.end());
    EXPECT_EQ(std::adjacent_find(codes.begin(), codes.end()), codes.end());
    EXPECT_STREQ(codeOf(Rule::PmaxRow), "pmax-row");
    EXPECT_STREQ(codeOf(Rule::Unexplained), "unexplained");
}

} // namespace
