#include "AnalysisError.h"
#include "FleetAnalysis.h"
#include "RecentNames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Side = FleetDiff::Side;

/// An answer of batch with one code.
std::string fleetAnswer(const std::string& id, int power, const std::string& rule = "pmax-row") {
    return R"({"id":")" + id +
           R"(","radioFile":null,"error":null,"place":null,"productNumber":"","family":"f",)"
           R"("frameFormat":{"market":"Etsi","channelSpacingMHz":28,"dpdVersion":2},)"
           R"("rsec":{"class":"2"},"cutback":{"inForceCentiDb":0},"minPowerCentiDbm":null,)"
           R"("rows":[{"code":31,"name":"4QAM","modulation":"4QAM","maxPowerCentiDbm":)" +
           std::to_string(power) + R"(,"rule":")" + rule + R"("}]})";
}

std::string badAnswer(const std::string& id) {
    return R"({"id":")" + id + R"(","radioFile":null,"error":"bad","place":null})";
}

struct Compared {
    std::string csv; ///< without the header
    Outcome outcome;
};

Compared compared(const std::vector<std::string>& before, const std::vector<std::string>& after) {
    std::string csv;
    FleetComparison sut(Question::Form::Csv, {}, [&csv](std::string_view piece) { csv += piece; });
    for (std::size_t index = 0; index < std::max(before.size(), after.size()); ++index) {
        if (index < before.size()) {
            sut.add(Side::Before, before[index]);
        }
        if (index < after.size()) {
            sut.add(Side::After, after[index]);
        }
    }
    const Outcome outcome = sut.finish();
    return {csv.substr(csv.find('\n') + 1), outcome};
}

TEST(FleetDiff, TellsThePowersThatChangedWithTheirRules) {
    const Compared result =
        compared({fleetAnswer("a", 2000), fleetAnswer("b", 2000), fleetAnswer("c", 2000)},
                 {fleetAnswer("a", 1950), fleetAnswer("b", 2000), fleetAnswer("c", 2025, "x-y")});

    EXPECT_EQ(result.csv, "a,power,31,4QAM,4QAM,20.00,19.50,-0.50,pmax-row,pmax-row,\n"
                          "c,power,31,4QAM,4QAM,20.00,20.25,0.25,pmax-row,x-y,\n");
    EXPECT_EQ(result.outcome, Outcome::AnswerIsNo);
}

TEST(FleetDiff, FindsNothingWhateverTheOrder) {
    const std::vector<std::string> radios{fleetAnswer("a", 1), fleetAnswer("b", 2), badAnswer("c")};

    const Compared result = compared(radios, {radios[2], radios[0], radios[1]});

    EXPECT_EQ(result.csv, "");
    EXPECT_EQ(result.outcome, Outcome::Done);
}

TEST(FleetDiff, CountsAnotherRuleOfTheSamePowerAsNoChange) {
    EXPECT_EQ(compared({fleetAnswer("a", 1)}, {fleetAnswer("a", 1, "rsec-cap")}).outcome,
              Outcome::Done);
}

TEST(FleetDiff, TellsWhatItCannotCompare) {
    const Compared result =
        compared({fleetAnswer("a", 1), fleetAnswer("a", 2), badAnswer("b"), fleetAnswer("c", 3)},
                 {fleetAnswer("a", 1), fleetAnswer("b", 2), fleetAnswer("", 3), "[]"});

    EXPECT_EQ(result.csv,
              "a,doubledBefore,,,,,,,,,\"line 2 before: not compared, as an answer of that name "
              "came before\"\n"
              "b,failedBefore,,,,,,,,,bad\n"
              ",nameless,,,,,,,,,line 3 after: neither an id nor a radio file; let the list of the "
              "batch give ids\n"
              ",unreadable,,,,,,,,,line 4 after: no answer of batch: no object\n"
              "c,onlyBefore,,,,,,,,,\n");
    EXPECT_EQ(result.outcome, Outcome::AnswerIsNo);
}

TEST(FleetDiff, RefusesNumbersBeyondThoseOfRadios) {
    std::string huge = fleetAnswer("a", 7);
    huge.replace(huge.find(":7,"), 3, ":2147483648,");

    EXPECT_EQ(compared({huge}, {huge}).csv.find(",unreadable,"), 0U);
}

TEST(FleetDiff, DoesNotCallNothingEqual) {
    EXPECT_THROW(compared({}, {}), AnalysisError);
}

TEST(FleetDiff, EndsWhereTooManyRadiosWait) {
    FleetComparison sut(Question::Form::Csv, {}, [](std::string_view) {});

    const auto addUntilItEnds = [&sut] {
        for (int number = 0; number < 1000; ++number) {
            sut.add(Side::Before,
                    fleetAnswer(std::string(100000, 'x') + std::to_string(number), 1));
        }
    };

    EXPECT_THROW(addUntilItEnds(), AnalysisError);
}

TEST(RecentNames, TellsWhatCameBeforeAmongTheLast) {
    RecentNames sut;
    EXPECT_TRUE(sut.add("first"));
    EXPECT_FALSE(sut.add("first"));
    for (std::size_t count = 0; count < RecentNames::remembered; ++count) {
        ASSERT_TRUE(sut.add("radio " + std::to_string(count)));
    }

    // It is the eldest of the remembered ones, until as many more have come.
    EXPECT_FALSE(sut.add("first"));
    for (std::size_t count = 0; count < RecentNames::remembered; ++count) {
        ASSERT_TRUE(sut.add("another " + std::to_string(count)));
    }
    EXPECT_TRUE(sut.add("first"));
}

} // namespace
