#include "AnalysisError.h"
#include "Distribution.h"
#include "FleetAnalysis.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

// What a whole fleet's report says is counted a second time by tests/tools/fleet-tally.

namespace {

TEST(Distribution, OfNothingSaysNothing) {
    const Distribution sut;

    EXPECT_EQ(sut.count(), 0U);
    EXPECT_FALSE(sut.least() || sut.mean() || sut.at(50));
}

TEST(Distribution, TakesTheSmallestFigureThatAShareDoesNotExceed) {
    Distribution sut;
    for (const std::int64_t figure : {-3, 10, 4, 4, -8}) {
        sut.add(figure);
    }

    EXPECT_EQ(sut.at(25), -3);
    EXPECT_EQ(sut.at(50), 4);
    EXPECT_EQ(sut.at(75), 4);
    EXPECT_EQ(sut.at(81), 10);
    EXPECT_EQ(sut.mean(), 1);
    EXPECT_EQ(sut.outside(-3, 4), 2U);
    EXPECT_EQ(sut.step(), 1);
}

TEST(Distribution, OfManyFiguresCountsNeighboursTogether) {
    Distribution sut;
    for (std::int64_t figure = -500; figure < 500; ++figure) {
        sut.add(figure);
    }

    EXPECT_EQ(sut.step(), 8);
    EXPECT_EQ(sut.count(), 1000U);
    EXPECT_EQ(sut.least(), -500);
    EXPECT_EQ(sut.greatest(), 499);
    EXPECT_EQ(sut.at(50), -8);
    EXPECT_EQ(sut.at(0), -500);
}

Reply reportOf(FleetOverview::Choice choice, const std::string& lines) {
    FleetOverview sut(std::move(choice));
    for (std::size_t start = 0; start < lines.size();) {
        const std::size_t end = lines.find('\n', start);
        sut.add(std::string_view(lines).substr(start, end - start));
        start = end + 1;
    }
    return sut.reply();
}

TEST(FleetOverview, SaysWhichLineIsNoAnswer) {
    const Reply reply = reportOf({}, "{\"id\":\"a\",\"radioFile\":null,\"error\":\"bad\"}\n{}\n");

    EXPECT_EQ(reply.outcome, Outcome::BadRadioFile);
    ASSERT_EQ(reply.messages.size(), 1U);
    EXPECT_EQ(reply.messages.front(),
              "line 2: no answer of batch: there is no \"id\"; whole answers are wanted, without "
              "--select, --long and --format csv");
    EXPECT_EQ(reply.text.find("0 radios with powers, 1 bad;"), 0U);
}

TEST(FleetOverview, OfNoAnswerHasNone) {
    EXPECT_EQ(reportOf({}, "").outcome, Outcome::OtherTrouble);
}

TEST(FleetOverview, RefusesWhatThereIsNot) {
    EXPECT_THROW(FleetOverview({.by = "colour"}), QuestionError);
    EXPECT_THROW(FleetOverview({.form = Question::Form::Csv, .table = "chairs"}), QuestionError);
    EXPECT_THROW(FleetOverview({.table = "rules"}), QuestionError);
}

TEST(FleetOverview, NamesNoUsualRadioWherePowersAreCountedTogether) {
    std::string lines;
    const auto add = [&lines](const std::string& id, int power) {
        lines += R"({"id":")" + id +
                 R"(","radioFile":null,"error":null,"productNumber":"p","family":"f",)"
                 R"("frameFormat":{"market":"Etsi","channelSpacingMHz":28,"dpdVersion":2},)"
                 R"("rsec":{"class":"2"},"cutback":{"inForceCentiDb":0},"minPowerCentiDbm":null,)"
                 R"("rows":[{"code":31,"name":"4QAM","modulation":"4QAM","maxPowerCentiDbm":)" +
                 std::to_string(power) +
                 R"(,"rule":"pmax-row"}]})"
                 "\n";
    };
    for (int number = 0; number < 1000; ++number) {
        add("usual " + std::to_string(number), 1001);
    }
    for (int number = 0; number < 300; ++number) {
        add("odd " + std::to_string(number), 3 * number);
    }

    const std::string text = reportOf({}, lines).text;

    EXPECT_NE(text.find("odd 0"), std::string::npos);
    EXPECT_EQ(text.find("usual "), std::string::npos);
    EXPECT_NE(text.find("quarters and medians are rounded down, by less than 0.08 dB;"),
              std::string::npos)
        << text;
}

} // namespace
