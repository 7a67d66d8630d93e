#include "AnalysisError.h"
#include "Arguments.h"
#include "Lever.h"
#include "LoopStride.h"
#include "WhyNot.h"
#include "reference/RandomRadioFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <vector>

// Advice on random radios: applied to the file it gives what it promises, and nothing on a grid is
// cheaper. scripts/long tries 200 radios.

namespace {

std::size_t advisedRadios() {
    const std::size_t usual = loopStride() > 1 ? 5 : 8;
    const char* const wanted = std::getenv("QOR_ADVISED_RADIOS");
    return wanted != nullptr ? std::stoul(wanted) : usual;
}

/// One question about a random radio: a code that has a power, and a higher one that is wanted.
struct Asked {
    std::string text;
    RadioCase radio;
    ModulationChoice choice;
    std::int32_t wanted;
};

std::optional<Asked> questionFor(std::uint64_t seed) {
    const std::string text = reference::randomRadioFile(seed).dump();
    const RadioCase radio = AskedInputs().radio(text, "");
    try {
        const PowerTable table = radio.powers();
        for (std::size_t count = 0; count < table.rows.size(); ++count) {
            const PowerTable::Row& row = table.rows[(seed + count) % table.rows.size()];
            if (row.maxPower && std::abs(*row.maxPower) < 100000) {
                const auto more = static_cast<std::int32_t>(1 + seed * 37 % 600);
                return Asked{text, radio,
                             ModulationChoice({std::to_string(row.modulationAndCode.code)}),
                             static_cast<std::int32_t>(*row.maxPower) + more};
            }
        }
    } catch (const AnalysisError&) {
        // Some radios lack a neighbour.
    }
    return std::nullopt;
}

/// What the file gives with words of a command line: the lowest power that is asked for; nothing if
/// there is none, if the table doubts it or if the selected range leaves a code out.
std::optional<long> powerWith(const Asked& asked, const std::vector<std::string>& words) {
    AskedInputs inputs;
    for (std::size_t index = 0; index + 1 < words.size(); index += 2) {
        const std::string& option = words[index];
        const std::string& value = words[index + 1];
        if (option == "--set") {
            inputs.set.push_back(value);
        } else if (option == "--frame-format") {
            inputs.frameFormat = value;
        } else if (option == "--cutback") {
            inputs.cutback = value;
        } else if (option == "--min") {
            inputs.min = value;
        } else if (option == "--max") {
            inputs.max = value;
        } else {
            ADD_FAILURE() << option;
        }
    }
    std::optional<long> lowest;
    const PowerTable table = inputs.radio(asked.text, "").powers();
    for (const PowerTable::Row& row : table.rows) {
        if (!asked.choice.includes(row)) {
            continue;
        }
        if (!row.maxPower || !row.warning.empty()) {
            return std::nullopt;
        }
        lowest = std::min(lowest.value_or(*row.maxPower), *row.maxPower);
    }
    return lowest;
}

/// A few settings of a lever, with their costs: every value, or a number in steps of 1.25 dB.
struct Point {
    std::function<void(RadioCase&)> apply;
    ChangeCost cost;
};

std::vector<Point> gridOf(const Lever& lever) {
    constexpr std::int64_t step = 125;
    constexpr std::int64_t count = 6;
    std::vector<Point> points;
    for (const Lever::Value& value : lever.values) {
        points.push_back({value.apply, {}});
        points.back().cost.add(lever.input, value.steps);
    }
    if (lever.range) {
        const std::int64_t sign = lever.range->to > lever.range->from ? step : -step;
        for (std::int64_t index = 1; index <= count; ++index) {
            const std::int64_t value = lever.range->from + index * sign;
            const bool isWithin = sign > 0 ? value <= lever.range->to : value >= lever.range->to;
            if (isWithin) {
                points.push_back(
                    {[apply = lever.range->apply, value](RadioCase& radio) { apply(radio, value); },
                     {}});
                points.back().cost.add(lever.input, index * step);
            }
        }
    }
    return points;
}

ChangeCost operator+(ChangeCost left, const ChangeCost& right) {
    left.hardware += right.hardware;
    left.calibrations += right.calibrations;
    left.steps += right.steps;
    return left;
}

bool hasCost(std::string_view input) {
    return std::ranges::find(inputCosts, input, &InputCost::input) != inputCosts.end();
}

bool isAllowed(const Asked& asked, const std::vector<const Point*>& points) {
    RadioCase radio = asked.radio;
    for (const Point* const point : points) {
        point->apply(radio);
    }
    try {
        const PowerTable table = radio.powers();
        std::size_t rows = 0;
        for (const PowerTable::Row& row : table.rows) {
            if (asked.choice.includes(row)) {
                ++rows;
                if (!row.maxPower || *row.maxPower < asked.wanted || !row.warning.empty()) {
                    return false;
                }
            }
        }
        return rows != 0;
    } catch (const AnalysisError&) {
        return false;
    }
}

/// How many settings of a grid, alone or in pairs, allow the power and are cheaper than a cost.
std::size_t cheaperThan(const Asked& asked, const std::optional<ChangeCost>& cost, bool inPairs) {
    const ExplainedTable explained = asked.radio.explain();
    const auto row = std::ranges::find_if(explained.table.rows, [&asked](const auto& candidate) {
        return asked.choice.includes(candidate);
    });
    const std::vector<Lever> levers = leversOf(
        asked.radio, explained,
        explained.explanations[static_cast<std::size_t>(row - explained.table.rows.begin())],
        asked.choice);
    std::size_t found = 0;
    const auto tryPoints = [&](const std::vector<const Point*>& points, const ChangeCost& total) {
        if (!cost || total < *cost) {
            found += isAllowed(asked, points) ? 1U : 0U;
        }
    };
    for (std::size_t one = 0; one < levers.size(); ++one) {
        EXPECT_TRUE(hasCost(levers[one].input)) << levers[one].input;
        for (const Point& first : gridOf(levers[one])) {
            if (!inPairs) {
                tryPoints({&first}, first.cost);
                continue;
            }
            for (std::size_t other = one + 1; other < levers.size(); ++other) {
                for (const Point& second : gridOf(levers[other])) {
                    tryPoints({&first, &second}, first.cost + second.cost);
                }
            }
        }
    }
    return found;
}

TEST(Advice, GivesWhatItPromisesAndIsTheSmallest) {
    std::size_t tried = 0;
    std::size_t singles = 0;
    std::size_t pairs = 0;
    for (std::uint64_t seed = 1; tried < advisedRadios(); ++seed) {
        const std::optional<Asked> asked = questionFor(seed);
        if (!asked) {
            continue;
        }
        ++tried;
        SCOPED_TRACE("file " + std::to_string(seed));

        const WhyNot sut = WhyNot::ask(asked->radio, asked->choice, asked->wanted, 2);

        if (sut.isAllowed()) {
            continue;
        }
        for (const WhyNot::Change& change : sut.changes) {
            if (!change.options.empty()) {
                EXPECT_EQ(powerWith(*asked, change.options), change.power) << change.words;
            }
            EXPECT_GE(change.power, asked->wanted) << change.words;
            ++singles;
        }
        for (std::size_t index = 0; index + 1 < sut.pairs.size(); index += 2) {
            std::vector<std::string> options = sut.pairs[index].options;
            const std::vector<std::string>& more = sut.pairs[index + 1].options;
            if (!options.empty() && !more.empty()) {
                options.insert(options.end(), more.begin(), more.end());
                EXPECT_EQ(powerWith(*asked, options), sut.pairs[index].power)
                    << sut.pairs[index].words << ", " << sut.pairs[index + 1].words;
            }
            ++pairs;
        }
        std::optional<ChangeCost> cost;
        if (!sut.changes.empty() || !sut.pairs.empty()) {
            cost = (sut.changes.empty() ? sut.pairs : sut.changes).front().cost;
        }
        EXPECT_EQ(cheaperThan(*asked, cost, sut.changes.empty()), 0U);
    }
    EXPECT_GT(singles, tried);
    EXPECT_GT(pairs, 0U);
}

bool saysAsNotTried(const WhyNot& answer, const std::string& words) {
    return std::ranges::find(answer.notTried, words) != answer.notTried.end();
}

/// One code of the first outdoor family, 20 dBm less a cutback.
RadioCase smallRadio(const std::string& cutback) {
    return AskedInputs().radio(R"({
        "channel": 1,
        "capabilityHandler": {"productNumber": "QZT 846 001", "minOutputPower": 0,
                              "pmaxDpd1Etsi": [["4QAM", 2000]]},
        "acmHandler": {"min": "4QAM", "max": "4QAM"},
        "frameFormat": {"modulation": "4QAM", "maxAvailableModulation": "4QAM",
                        "modulationAndCodes": ["4QAM"], "channelSpacing": 28, "dpdVersion": 1,
                        "market": "Etsi"},
        "systemPowerController": {"referenceSec": "4L", "minOutputPowerOffsets": []},
        "hardwareConfigurationHandler": {},
        "variables": {"channel.1.tx.rf.pmax.cs.comp.v2.array": [28, 0],
                      "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 2},
        "requests": [{"call": "setPowerCutback", "cutback": )" +
                                   cutback + "}]}",
                               "");
}

TEST(Advice, AsksForPairsNoMoreThanItMay) {
    // 250 dBm takes more than the 200 dB that the Pmax may rise by.
    const RadioCase radio = smallRadio("300");
    const ModulationChoice choice({"4QAM"});
    const WhyNot whole = WhyNot::ask(radio, choice, 25000, 2);
    const std::size_t enough = whole.pairQuestions;
    ASSERT_FALSE(whole.pairs.empty());
    ASSERT_GT(enough, 10U);
    for (const std::size_t most : {std::size_t{0}, std::size_t{10}, enough - 1, enough}) {
        const WhyNot sut = WhyNot::ask(radio, choice, 25000, 2, most);

        EXPECT_EQ(sut.pairQuestions, most);
        EXPECT_EQ(saysAsNotTried(sut, "pairs beyond " + std::to_string(most) +
                                          " questions to the library"),
                  most < enough);
        EXPECT_EQ(sut.pairs.empty(), most < enough - 1);
    }
}

TEST(Advice, OnACutbackThatWrapsIsToSetNone) {
    // 4294967294 is -2 in 32 bits, so that none gives less; 2147483700 is far below every power.
    for (const auto& [cutback, isHelp] : {std::pair("4294967294", false), {"2147483700", true}}) {
        const WhyNot sut =
            WhyNot::ask(smallRadio(cutback), ModulationChoice({"4QAM"}), isHelp ? 2000 : 2003);

        const auto change = std::ranges::find(sut.changes, "cutback", &WhyNot::Change::input);
        EXPECT_EQ(change != sut.changes.end(), isHelp) << cutback;
        if (change != sut.changes.end()) {
            EXPECT_EQ(change->to, "0.00 dB");
            EXPECT_EQ(change->options,
                      (std::vector<std::string>{"--set", "/requests/0/cutback=0"}));
        }
        EXPECT_TRUE(saysAsNotTried(sut, "other values of the permanent cutback, which is so large "
                                        "that sums wrap around"));
    }
}

TEST(Advice, LooksForACalibrationUpToAHundredDecibels) {
    const auto calibrationFor = [](std::int32_t wanted) {
        const WhyNot sut = WhyNot::ask(smallRadio("0"), ModulationChoice({"4QAM"}), wanted);
        const auto found = std::ranges::find(sut.changes, "calibration", &WhyNot::Change::input);
        return found == sut.changes.end() ? std::nullopt : found->amount;
    };
    // The selection is fixed: the power is the Pmax and the compensation.
    EXPECT_EQ(calibrationFor(2001), 1);
    EXPECT_EQ(calibrationFor(12000), 10000);
    EXPECT_EQ(calibrationFor(12001), std::nullopt);
}

TEST(ChangeCost, OfAnInputThatTheTableLacksIsThatOfTheDearest) {
    ChangeCost sut;
    ChangeCost dearest;

    sut.add("no such input", 100);

    dearest.add("product", 100);
    EXPECT_EQ(sut, dearest);
    EXPECT_STREQ(kindOf("no such input"), "hardware");
}

} // namespace
