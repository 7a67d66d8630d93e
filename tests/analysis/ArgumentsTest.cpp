#include "Arguments.h"

#include "AnalysisError.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <utility>

namespace {

/// The line with which a value is refused.
std::string refusal(const std::function<void()>& read) {
    try {
        read();
    } catch (const QuestionError& error) {
        EXPECT_EQ(error.outcome(), Outcome::OtherTrouble);
        return error.what();
    }
    return "accepted";
}

std::string refusedCutback(const std::string& text) {
    return refusal([&text] { Arguments::cutback("--cutback", text); });
}

std::string refusedBooster(const std::string& text) {
    return refusal([&text] { Arguments::booster("--booster", text); });
}

std::string refusedInteger(const std::string& text) {
    return refusal([&text] { Arguments::integer("--trace", text, 0, 6); });
}

TEST(CutbackArgument, CountsInHundredthsUpToTheLargestNumberOf32Bits) {
    EXPECT_EQ(Arguments::cutback("--cutback", "0"), 0U);
    EXPECT_EQ(Arguments::cutback("--cutback", "1.5"), 150U);
    EXPECT_EQ(Arguments::cutback("--cutback", "42949672.95"), 4294967295U);
}

TEST(CutbackArgument, IsRefusedBelowZeroAndAboveTheLargestNumber) {
    const std::string range = "out of range, 0.00 to 42949672.95 dB";

    EXPECT_EQ(refusedCutback("-0.01"), "--cutback \"-0.01\": " + range);
    EXPECT_EQ(refusedCutback("42949672.96"), "--cutback \"42949672.96\": " + range);
}

TEST(CutbackArgument, SaysWhatIsWanted) {
    EXPECT_EQ(refusedCutback("1.555"),
              "--cutback \"1.555\": a decimal number of dB with at most two decimals is wanted, "
              "for example 1.5");
    EXPECT_EQ(refusedCutback("3\n"),
              "--cutback \"3\\n\": a decimal number of dB with at most two decimals is wanted, "
              "for example 1.5");
}

TEST(TemporaryCutbackArgument, IsInForceUnlessItIsNone) {
    const auto given = Arguments::temporaryCutback("--temporary-cutback", "0");
    const auto lifted = Arguments::temporaryCutback("--temporary-cutback", "none");

    EXPECT_TRUE(given.inForce);
    EXPECT_EQ(given.cutback, 0U);
    EXPECT_FALSE(lifted.inForce);
}

TEST(BoosterArgument, HasFourParts) {
    const auto booster = Arguments::booster("--booster", "7,15.5,-0.25,256QAM");

    EXPECT_EQ(booster.presence, 7);
    EXPECT_EQ(booster.gain, 1550);
    EXPECT_EQ(booster.maxInputPower, -25);
    EXPECT_EQ(booster.maxModulation, Modulation::QAM256);
}

TEST(BoosterArgument, ReachesTheLimitsOf32Bits) {
    const auto booster =
        Arguments::booster("--booster", "-2147483648,21474836.47,-21474836.48,UNDEFINED");

    EXPECT_EQ(booster.presence, std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(booster.gain, 2147483647);
    EXPECT_EQ(booster.maxInputPower, std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(booster.maxModulation, Modulation::UNDEFINED);
}

TEST(BoosterArgument, NoneIsNoBooster) {
    EXPECT_EQ(Arguments::booster("--booster", "none").presence, 0);
}

TEST(BoosterArgument, NamesThePartThatIsWrong) {
    const std::string range = ": out of range, -21474836.48 to 21474836.47 ";

    EXPECT_EQ(refusedBooster("1,2,3"),
              "--booster \"1,2,3\": PRESENCE,GAIN,MAXINPUT,MAXMODULATION or none is wanted, for "
              "example 1,15,14,256QAM");
    EXPECT_EQ(refusedBooster("x,2,3,4QAM"), "--booster PRESENCE \"x\": an integer is wanted");
    EXPECT_EQ(refusedBooster("2147483648,2,3,4QAM"),
              "--booster PRESENCE \"2147483648\": out of range, -2147483648 to 2147483647");
    EXPECT_EQ(refusedBooster("1,21474836.48,3,4QAM"),
              "--booster GAIN \"21474836.48\"" + range + "dB");
    EXPECT_EQ(refusedBooster("1,2,-21474836.49,4QAM"),
              "--booster MAXINPUT \"-21474836.49\"" + range + "dBm");
    EXPECT_EQ(refusedBooster("1,2,3,4qan"),
              "--booster MAXMODULATION \"4qan\": unknown modulation; did you mean \"4QAM\"?");
}

TEST(RsecArgument, IsTheTextOfAClassAndNotItsNumber) {
    EXPECT_EQ(Arguments::rsec("--rsec", "2"), EReferenceSEC::Class2);
    EXPECT_EQ(Arguments::rsec("--rsec", "6HB"), EReferenceSEC::Class6HB);
    EXPECT_EQ(Arguments::rsec("--rsec", "UNDEFINED"), EReferenceSEC::UNDEFINED);
    EXPECT_EQ(refusal([] { Arguments::rsec("--rsec", "4l"); }),
              "--rsec \"4l\": unknown RSEC; did you mean \"4L\"?");
}

TEST(IntegerArgument, IsRefusedOutsideItsRange) {
    EXPECT_EQ(Arguments::integer("--trace", "0", 0, 6), 0);
    EXPECT_EQ(Arguments::integer("--trace", "6", 0, 6), 6);
    EXPECT_EQ(refusedInteger("7"), "--trace \"7\": out of range, 0 to 6");
    EXPECT_EQ(refusedInteger("-1"), "--trace \"-1\": out of range, 0 to 6");
    EXPECT_EQ(refusedInteger("99999999999999999999"),
              "--trace \"99999999999999999999\": out of range, 0 to 6");
}

TEST(IntegerArgument, IsNothingButDigits) {
    for (const char* const text : {"", "x", "1x", "1.0", "1e1", " 1", "+1", "-"}) {
        EXPECT_EQ(refusedInteger(text),
                  "--trace \"" + std::string(text) + "\": an integer is wanted");
    }
}

TEST(WordArgument, IsOneOfAList) {
    EXPECT_EQ(Arguments::word("--format", "csv", {"text", "csv"}), "csv");
    EXPECT_EQ(refusal([] {
                  Arguments::word("--format", "cvs", {"text", "csv"});
              }),
              "--format \"cvs\": unknown; did you mean \"csv\"?");
}

TEST(Arguments, KnowModulationsAsOthersWriteThem) {
    for (const auto& [written, meant] :
         {std::pair{"QPSK", "4QAM"}, std::pair{"qpsk", "4QAM"}, std::pair{"QAM64", "64QAM"},
          std::pair{"64-QAM", "64QAM"}, std::pair{"qam-256", "256QAM"},
          std::pair{"QAM64_STRONG", "64QAM_STRONG"}, std::pair{"64QAM", "64QAM"}}) {
        EXPECT_EQ(Arguments::usualSpelling(written), meant);
    }
    EXPECT_EQ(Arguments::booster("--booster", "1,15,14,QAM-256").maxModulation, Modulation{256});
    EXPECT_THROW(static_cast<void>(Arguments::booster("--booster", "1,15,14,QAM")), QuestionError);
}

} // namespace
