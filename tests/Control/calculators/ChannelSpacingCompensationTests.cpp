#include "Calculation.h"
#include "CalculatorKam.h"
#include "CalculatorKamV2.h"
#include "CalculatorKamV3.h"
#include "DeskVariableStore.h"
#include "TraceCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct OutdoorFamily {
    std::string name;
    Calculator* (*calculator)();
    bool entryNamesTheArguments; ///< the entry of the first two families is the bare spacing
};

/// getCompensationForChannelSpacing() of one outdoor family, with the desk's variable store.
class ChannelSpacingCompensation : public ::testing::TestWithParam<OutdoorFamily> {
protected:
    ChannelSpacingCompensation() { store.clear(); }
    ~ChannelSpacingCompensation() override { store.clear(); }

    /// Stores the calibration of a channel.
    void calibrate(RadioChannel channel, const std::vector<std::int32_t>& array,
                   std::int32_t arraySize) {
        const std::string prefix = "channel." + std::to_string(channel) + ".tx.rf.pmax.cs.comp.v2.";
        store.set(prefix + "array", array);
        store.set(prefix + "arraysize", {arraySize});
    }

    /// The compensation at a spacing; fails the test if there is an error.
    long at(std::int32_t spacing, RadioChannel channel = 1) const {
        long compensation = 4711;
        EXPECT_EQ(sut.getCompensationForChannelSpacing(channel, EChannelSpacingType{spacing},
                                                       compensation),
                  0)
            << spacing;
        return compensation;
    }

    std::string entry(const std::string& channel, const std::string& spacing) const {
        const std::string text = GetParam().entryNamesTheArguments
                                     ? "channel=" + channel + ", channelSpacing=" + spacing
                                     : spacing;
        return "6 enter " + GetParam().name + ".getCompensationForChannelSpacing: " + text;
    }

    std::string complaint(const std::string& variable) const {
        return "1 msg " + GetParam().name +
               ".getCompensationForChannelSpacing: getCompensationForChannelSpacing Failed to get "
               "variable " +
               variable;
    }

    DeskVariableStore& store = DeskVariableStore::getInstance();
    const Calculator& sut = *GetParam().calculator();
    const std::vector<std::int32_t> threePairs = {1, 150, 3, -200, 5, 80};
};

TEST_P(ChannelSpacingCompensation, IsThatOfThePairWithTheSpacing) {
    calibrate(1, threePairs, 6);

    EXPECT_EQ(at(1), 150);
    EXPECT_EQ(at(3), -200);
    EXPECT_EQ(at(5), 80);
}

TEST_P(ChannelSpacingCompensation, Is0ForASpacingWithoutAPair) {
    calibrate(1, threePairs, 6);

    for (const std::int32_t spacing : {intMin, -3, -1, 0, 2, 4, 6, 80, 150, 3000, intMax}) {
        EXPECT_EQ(at(spacing), 0) << spacing;
    }
}

TEST_P(ChannelSpacingCompensation, CountsThePairsThatBeginBelowTheArraysize) {
    struct Row {
        std::int32_t arraySize;
        long at1;
        long at3;
        long at5;
    };
    // The first pair is compared before the arraysize, unless that is 0.
    for (const Row& row : {Row{0, 0, 0, 0}, Row{1, 150, 0, 0}, Row{2, 150, 0, 0},
                           Row{3, 150, -200, 0}, Row{4, 150, -200, 0}, Row{5, 150, -200, 80},
                           Row{6, 150, -200, 80}, Row{7, 150, -200, 80}}) {
        calibrate(1, threePairs, row.arraySize);

        EXPECT_EQ(at(1), row.at1) << row.arraySize;
        EXPECT_EQ(at(3), row.at3) << row.arraySize;
        EXPECT_EQ(at(5), row.at5) << row.arraySize;
    }
}

TEST_P(ChannelSpacingCompensation, CountsTheWholePairsOfTheArray) {
    struct Row {
        std::vector<std::int32_t> array;
        long at1;
        long at3;
        long at5;
    };
    for (const Row& row :
         {Row{{}, 0, 0, 0}, Row{{1}, 0, 0, 0}, Row{{1, 150}, 150, 0, 0},
          Row{{1, 150, 3}, 150, 0, 0}, Row{{1, 150, 3, -200}, 150, -200, 0},
          Row{{1, 150, 3, -200, 5}, 150, -200, 0}, Row{{1, 150, 3, -200, 5, 80}, 150, -200, 80}}) {
        calibrate(1, row.array, 100);

        EXPECT_EQ(at(1), row.at1) << row.array.size();
        EXPECT_EQ(at(3), row.at3) << row.array.size();
        EXPECT_EQ(at(5), row.at5) << row.array.size();
    }
}

TEST_P(ChannelSpacingCompensation, TakesTheArraysizeAsAnUnsignedNumber) {
    calibrate(1, threePairs, -1);

    EXPECT_EQ(at(5), 80);
    EXPECT_EQ(at(7), 0);
}

TEST_P(ChannelSpacingCompensation, Is0ForEverySpacingWithArraysize0) {
    calibrate(1, threePairs, 0);

    for (const std::int32_t spacing : {0, 1, 3, 5, 28}) {
        EXPECT_EQ(at(spacing), 0) << spacing;
    }
}

TEST_P(ChannelSpacingCompensation, Is0ForAnEmptyArray) {
    calibrate(1, {}, 6);

    EXPECT_EQ(at(0), 0);
    EXPECT_EQ(at(1), 0);
}

TEST_P(ChannelSpacingCompensation, IsThatOfTheFirstOfTwoPairsWithTheSpacing) {
    calibrate(1, {28, 100, 56, 0, 28, 300, 56, 400}, 8);

    EXPECT_EQ(at(28), 100);
    EXPECT_EQ(at(56), 0);
}

TEST_P(ChannelSpacingCompensation, ComparesTheFirstElementOfAPairAlone) {
    calibrate(1, {1, 3, 3, 7}, 4);

    EXPECT_EQ(at(3), 7);
    EXPECT_EQ(at(7), 0);
}

TEST_P(ChannelSpacingCompensation, TakesSpacingsAndCompensationsOfAllOf32Bits) {
    calibrate(1, {intMin, intMax, intMax, intMin, -1, -2, 0, 9}, 8);

    EXPECT_EQ(at(intMin), intMax);
    EXPECT_EQ(at(intMax), intMin);
    EXPECT_EQ(at(-1), -2);
    EXPECT_EQ(at(0), 9);
}

TEST_P(ChannelSpacingCompensation, IsThatOfTheChannel) {
    calibrate(0, {28, 10}, 2);
    calibrate(1, {28, 11}, 2);
    calibrate(2, {28, 12}, 2);
    calibrate(12, {28, 22}, 2);
    calibrate(4294967295U, {28, 99}, 2);

    EXPECT_EQ(at(28, 0), 10);
    EXPECT_EQ(at(28, 1), 11);
    EXPECT_EQ(at(28, 2), 12);
    EXPECT_EQ(at(28, 12), 22);
    EXPECT_EQ(at(28, 4294967295U), 99);
}

TEST_P(ChannelSpacingCompensation, IsFoundByTheChannelWithoutPaddingWhateverItsLength) {
    for (const RadioChannel channel : {0U, 1U, 2U, 3U, 9U, 10U, 11U, 99U, 100U, 101U, 12345U,
                                       1000000U, 999999999U, 1000000000U, 4294967290U}) {
        calibrate(channel, {28, static_cast<std::int32_t>(channel % 10007)}, 2);

        EXPECT_EQ(at(28, channel), static_cast<long>(channel % 10007)) << channel;
        store.clear();
    }
}

TEST_P(ChannelSpacingCompensation, IsReadAfreshAtEveryCall) {
    calibrate(1, {28, 100}, 2);
    EXPECT_EQ(at(28), 100);

    calibrate(1, {56, 5, 28, -50}, 4);
    EXPECT_EQ(at(28), -50);

    calibrate(1, {56, 5, 28, -50}, 2);
    EXPECT_EQ(at(28), 0);
}

TEST_P(ChannelSpacingCompensation, FailsWithoutTheArrayAndLeavesTheOutput) {
    store.set("channel.12.tx.rf.pmax.cs.comp.v2.arraysize", {2});
    long compensation = 4711;
    TraceCapture trace(6);

    EXPECT_EQ(sut.getCompensationForChannelSpacing(12, EChannelSpacingType{28}, compensation),
              32768);

    EXPECT_EQ(compensation, 4711);
    EXPECT_THAT(trace.lines(), ElementsAre(entry("12", "28"),
                                           complaint("channel.12.tx.rf.pmax.cs.comp.v2.array")));
}

TEST_P(ChannelSpacingCompensation, FailsWithoutTheArraysizeAndLeavesTheOutput) {
    store.set("channel.12.tx.rf.pmax.cs.comp.v2.array", {28, 100});
    long compensation = 4711;
    TraceCapture trace(6);

    EXPECT_EQ(sut.getCompensationForChannelSpacing(12, EChannelSpacingType{28}, compensation),
              32768);

    EXPECT_EQ(compensation, 4711);
    EXPECT_THAT(
        trace.lines(),
        ElementsAre(entry("12", "28"), complaint("channel.12.tx.rf.pmax.cs.comp.v2.arraysize")));
}

TEST_P(ChannelSpacingCompensation, FailsForTheHighestChannelByItsUnsignedNumber) {
    calibrate(1, {28, 100}, 2);
    long compensation = -1;
    TraceCapture trace(6);

    EXPECT_EQ(
        sut.getCompensationForChannelSpacing(4294967295U, EChannelSpacingType{-5}, compensation),
        32768);

    EXPECT_EQ(compensation, -1);
    EXPECT_THAT(trace.lines(),
                ElementsAre(entry("4294967295", "-5"),
                            complaint("channel.4294967295.tx.rf.pmax.cs.comp.v2.array")));
}

TEST_P(ChannelSpacingCompensation, TracesNothingButItsEntryOnSuccess) {
    calibrate(1, threePairs, 6);
    calibrate(2, {}, 0);
    TraceCapture trace(6);

    at(3);
    EXPECT_THAT(trace.lines(), ElementsAre(entry("1", "3")));

    at(4);
    EXPECT_THAT(trace.lines(), ElementsAre(entry("1", "4")));

    at(intMin, 2);
    EXPECT_THAT(trace.lines(), ElementsAre(entry("2", "-2147483648")));
}

TEST_P(ChannelSpacingCompensation, TracesTheFailureFromLevel1AndTheEntryAtLevel6) {
    long compensation = 0;
    for (int level = 0; level <= 6; ++level) {
        TraceCapture trace(level);

        sut.getCompensationForChannelSpacing(1, EChannelSpacingType{28}, compensation);

        const std::string failure = complaint("channel.1.tx.rf.pmax.cs.comp.v2.array");
        if (level == 0) {
            EXPECT_THAT(trace.lines(), IsEmpty());
        } else if (level < 6) {
            EXPECT_THAT(trace.lines(), ElementsAre(failure)) << level;
        } else {
            EXPECT_THAT(trace.lines(), ElementsAre(entry("1", "28"), failure));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, ChannelSpacingCompensation,
    ::testing::Values(OutdoorFamily{"CalculatorKam", &calculatorOf<CalculatorKam>, false},
                      OutdoorFamily{"CalculatorKamV2", &calculatorOf<CalculatorKamV2>, false},
                      OutdoorFamily{"CalculatorKamV3", &calculatorOf<CalculatorKamV3>, true}),
    [](const auto& test) { return test.param.name; });

} // namespace
