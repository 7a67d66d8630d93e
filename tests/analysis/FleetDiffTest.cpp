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

std::string fleetAnswerOf(const std::string& id, const std::string& minPower,
                          const std::string& rows) {
    return R"({"id":")" + id +
           R"(","radioFile":null,"error":null,"place":null,"productNumber":"","family":"f",)"
           R"("frameFormat":{"market":"Etsi","channelSpacingMHz":28,"dpdVersion":2},)"
           R"("rsec":{"class":"2"},"cutback":{"inForceCentiDb":0},"minPowerCentiDbm":)" +
           minPower + R"(,"rows":[)" + rows + "]}";
}

std::string fleetRow(int code, int power, const std::string& rule) {
    return R"({"code":)" + std::to_string(code) +
           R"(,"name":"4QAM","modulation":"4QAM","maxPowerCentiDbm":)" + std::to_string(power) +
           R"(,"rule":")" + rule + R"("})";
}

/// An answer of batch with one code.
std::string fleetAnswer(const std::string& id, int power, const std::string& rule = "pmax-row") {
    return fleetAnswerOf(id, "null", fleetRow(31, power, rule));
}

std::string badAnswer(const std::string& id) {
    return R"({"id":")" + id + R"(","radioFile":null,"error":"bad","place":null})";
}

struct Compared {
    std::string text; ///< without the first line
    Outcome outcome;
};

Compared compared(const std::vector<std::string>& before, const std::vector<std::string>& after,
                  Question::Form form = Question::Form::Csv) {
    std::string text;
    FleetComparison sut(form, {}, [&text](std::string_view piece) { text += piece; });
    for (std::size_t index = 0; index < std::max(before.size(), after.size()); ++index) {
        if (index < before.size()) {
            sut.add(Side::Before, before[index]);
        }
        if (index < after.size()) {
            sut.add(Side::After, after[index]);
        }
    }
    const Outcome outcome = sut.finish();
    return {text.substr(text.find('\n') + 1), outcome};
}

TEST(FleetDiff, TellsThePowersThatChangedWithTheirRules) {
    const Compared result =
        compared({fleetAnswer("a", 2000), fleetAnswer("b", 2000), fleetAnswer("c", 2000)},
                 {fleetAnswer("a", 1950), fleetAnswer("b", 2000), fleetAnswer("c", 2025, "x-y")});

    EXPECT_EQ(result.text, "a,power,31,4QAM,4QAM,20.00,19.50,-0.50,pmax-row,pmax-row,\n"
                           "c,power,31,4QAM,4QAM,20.00,20.25,0.25,pmax-row,x-y,\n");
    EXPECT_EQ(result.outcome, Outcome::AnswerIsNo);
}

TEST(FleetDiff, FindsNothingWhateverTheOrder) {
    const std::vector<std::string> radios{fleetAnswer("a", 1), fleetAnswer("b", 2), badAnswer("c")};

    const Compared result = compared(radios, {radios[2], radios[0], radios[1]});

    EXPECT_EQ(result.text, "");
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

    EXPECT_EQ(result.text,
              "a,doubledBefore,,,,,,,,,\"line 2 before: not compared, as an answer of that name "
              "came before\"\n"
              "b,failedBefore,,,,,,,,,bad\n"
              ",nameless,,,,,,,,,line 3 after: neither an id nor a radio file; let the list of the "
              "batch give ids\n"
              ",unreadable,,,,,,,,,line 4 after: no answer of batch: no object\n"
              "c,onlyBefore,,,,,,,,,\n");
    EXPECT_EQ(result.outcome, Outcome::AnswerIsNo);
}

TEST(FleetDiff, ComparesEachCodeWithItsLikeAndCountsEverything) {
    const std::string before = fleetRow(31, 2000, "pmax-row") + ',' +
                               fleetRow(31, 1900, "rsec-cap") + ',' +
                               fleetRow(32, 1800, "pmax-row");
    const std::string after = fleetRow(31, 2000, "rsec-cap") + ',' +
                              fleetRow(31, 1850, "rsec-cap") + ',' + fleetRow(33, 1700, "pmax-row");

    const std::vector<std::string> left{fleetAnswerOf("a", "500", before), badAnswer("b")};
    const std::vector<std::string> right{fleetAnswerOf("a", "600", after), badAnswer("b")};

    EXPECT_EQ(compared(left, right).text,
              "a,power,31,4QAM,4QAM,19.00,18.50,-0.50,rsec-cap,rsec-cap,\n"
              "a,power,32,4QAM,4QAM,18.00,,,pmax-row,,no longer a code of the radio\n"
              "a,power,33,4QAM,4QAM,,17.00,,,pmax-row,not a code of the radio before\n"
              "a,minPower,,,,5.00,6.00,1.00,,,\n");
    const std::string json = compared(left, right, Question::Form::Json).text;
    EXPECT_EQ(json.substr(json.find("],\"summary\"")),
              R"(],"summary":{"equal":false,"compared":1,"changed":1,"changedCodes":3,)"
              R"("otherRules":1,"failedInBoth":1,"minPower":1,"onlyBefore":0,"onlyAfter":0,)"
              R"("failedBefore":0,"failedAfter":0,"doubledBefore":0,"doubledAfter":0,)"
              R"("nameless":0,"unreadable":0,"rules":[)"
              R"({"ruleBefore":null,"ruleAfter":"pmax-row","radios":1,"codes":1,)"
              R"("leastCentiDb":null,"greatestCentiDb":null},)"
              R"({"ruleBefore":"pmax-row","ruleAfter":null,"radios":1,"codes":1,)"
              R"("leastCentiDb":null,"greatestCentiDb":null},)"
              R"({"ruleBefore":"rsec-cap","ruleAfter":"rsec-cap","radios":1,"codes":1,)"
              R"("leastCentiDb":-50,"greatestCentiDb":-50}]}}})"
              "\n");
}

TEST(FleetDiff, ShowsPeopleTheFirstChangesAndHowManyThereAre) {
    std::vector<std::string> before;
    std::vector<std::string> after;
    for (int number = 0; number < 21; ++number) {
        before.push_back(fleetAnswer(std::to_string(number), 2000));
        after.push_back(fleetAnswer(std::to_string(number), 2000 + number + 1));
    }

    const std::string text = compared(before, after, Question::Form::Text).text;

    EXPECT_NE(text.find("20.20"), std::string::npos);
    EXPECT_EQ(text.find("20.21"), std::string::npos);
    EXPECT_NE(text.find("and 1 more, which csv and json have\n"), std::string::npos);
    EXPECT_NE(text.find("21 radios compared: the powers of 21 changed, in 21 codes\n"),
              std::string::npos);
}

TEST(FleetDiff, RefusesNumbersBeyondThoseOfRadios) {
    for (const char* number : {"2147483648", "-2147483649", "18446744073709548616", "1.5"}) {
        std::string huge = fleetAnswer("a", 7);
        huge.replace(huge.find(":7,") + 1, 1, number);

        EXPECT_EQ(compared({huge}, {huge}).text.find(",unreadable,"), 0U) << number;
    }
}

TEST(FleetDiff, RefusesTextsThatWouldFillTheMemory) {
    const std::string full = fleetAnswer("a", 7, std::string(1025, 'r'));

    EXPECT_EQ(compared({full}, {full}).text.find(",unreadable,"), 0U);
}

TEST(FleetDiff, DoesNotCallNothingEqualAndBeginsNoAnswer) {
    std::string text;
    FleetComparison sut(Question::Form::Json, {},
                        [&text](std::string_view piece) { text += piece; });

    EXPECT_THROW(sut.finish(), AnalysisError);
    EXPECT_EQ(text, "");
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
