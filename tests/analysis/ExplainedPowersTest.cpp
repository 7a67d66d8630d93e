#include "ExplanationAudit.h"

#include <gmock/gmock.h>

namespace {

constexpr std::uint64_t fileCount = 200;
constexpr std::uint64_t logCount = 60;

TEST(ExplainedPowers, EveryAnswerOfRandomFilesAddsUpExactly) {
    ExplanationAudit sut;

    for (std::uint64_t seed = 0; seed < fileCount; ++seed) {
        sut.auditRandomFile(seed);
    }

    EXPECT_THAT(sut.findings(), testing::IsEmpty());
    EXPECT_GT(sut.answers(), 10 * fileCount);
    EXPECT_GT(sut.refusals(), fileCount);
    EXPECT_GT(sut.raised(), fileCount);
    EXPECT_GT(sut.raisedTogether(), fileCount / 10);
    EXPECT_GT(sut.cutBack(), fileCount);
    for (const Rule rule :
         {Rule::PmaxRow, Rule::PmaxSelectedMinimum, Rule::RsecCap, Rule::CarriedPower,
          Rule::OffsetTable, Rule::SelectedMinimumOffset, Rule::BoosterInputLimit,
          Rule::SelectedModulation, Rule::HardwareLimit, Rule::SelectedMaximum,
          Rule::BoosterMaxModulation, Rule::UndefinedModulation, Rule::MissingPmaxRow,
          Rule::MissingOffset, Rule::UnknownDpdVersion, Rule::MissingCalibration}) {
        EXPECT_EQ(sut.decisive().count(rule), 1U) << codeOf(rule);
    }
}

TEST(ExplainedPowers, EveryAnswerOfRandomLogsAddsUpExactly) {
    ExplanationAudit sut;

    for (std::uint64_t seed = 0; seed < logCount; ++seed) {
        sut.auditRandomLog(seed);
    }

    EXPECT_THAT(sut.findings(), testing::IsEmpty());
    EXPECT_GT(sut.loggedAnswers(), 10 * logCount);
}

} // namespace
