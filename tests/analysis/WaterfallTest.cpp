#include "Waterfall.h"

#include "BatchResult.h"
#include "Sweep.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

// The arithmetic of explanations by itself. Those of radios are in facts/steps.json.

namespace {

using testing::ElementsAre;

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

TEST(AWaterfall, NamesTheFirstOfBoundsThatHoldNextAlike) {
    Explanation explanation;
    Waterfall sut(explanation);
    sut.start(Rule::PmaxRow, "Pmax", 2000);
    sut.bound({Rule::PmaxRow, "the first", 2500, {}, {}});
    sut.bound({Rule::PmaxRow, "the second", 2500, {}, {}});

    sut.finish(2000);

    ASSERT_NE(explanation.runnerUp(), nullptr);
    EXPECT_EQ(explanation.runnerUp()->words, "the first");
    EXPECT_EQ(explanation.headroom, 500);
}

TEST(AWaterfall, KnowsNoNextBoundOnceOneHasWrapped) {
    Explanation explanation;
    Waterfall sut(explanation);
    sut.start(Rule::PmaxRow, "Pmax", 2000);
    sut.bound({Rule::PmaxRow, "far above", 2147483600, {}, {}});
    sut.change(Rule::PermanentCutback, "cutback", 100);

    sut.finish(2100);

    EXPECT_TRUE(explanation.addsUp());
    EXPECT_TRUE(explanation.wraps);
    EXPECT_EQ(explanation.runnerUp(), nullptr);
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

TEST(Mismatches, OfATableAreToldBehindTheNameOfItsFile) {
    ExplainedTable explained{{}, explanationsWithMismatch()};
    EXPECT_THAT(mismatchesOf(explained),
                ElementsAre("the steps for 16QAM do not add up: 1 is not 2"));

    explained.table.radioFile = "radio.json";

    EXPECT_THAT(mismatchesOf(explained),
                ElementsAre("radio.json: the steps for 16QAM do not add up: 1 is not 2"));
}

TEST(Mismatches, OfASweepAreAmongItsTroubles) {
    Sweep sut;
    sut.points.resize(1);
    sut.points.front().powers = RuledTable({{}, explanationsWithMismatch()});

    EXPECT_THAT(sut.troubles(), ElementsAre("the steps for 16QAM do not add up: 1 is not 2"));
}

TEST(Mismatches, MakeALineOfABatchBad) {
    BatchResult result;
    result.setPowers({{}, {Explanation()}});
    EXPECT_FALSE(result.isBad());

    result.setPowers({{}, explanationsWithMismatch()});

    EXPECT_EQ(result.trouble, BatchResult::Trouble::Contradiction);
    EXPECT_EQ(result.error, "the steps for 16QAM do not add up: 1 is not 2");
}

TEST(AWaterfall, ComparesTheAnswer) {
    Explanation explanation;
    Waterfall sut(explanation);
    sut.start(Rule::PmaxRow, "Pmax", 2000);
    sut.bound({Rule::RsecCap, "cap", 1800});

    sut.finish(1900);

    EXPECT_EQ(explanation.mismatch, "the answer is 18.00 dBm by the steps, 19.00 dBm by the "
                                    "library");
}

TEST(AWaterfall, OfEqualBoundsTheFirstBinds) {
    Explanation explanation;
    Waterfall sut(explanation);
    sut.start(Rule::PmaxRow, "Pmax", 2000);
    sut.bound({Rule::RsecCap, "cap", 2000});

    sut.finish(2000);

    EXPECT_EQ(explanation.binding()->rule, Rule::PmaxRow);
    EXPECT_EQ(explanation.runnerUp()->rule, Rule::RsecCap);
    EXPECT_EQ(explanation.headroom, 0);
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
