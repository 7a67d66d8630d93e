#include "AnalysisError.h"
#include "LoopStride.h"
#include "PowerDiff.h"
#include "PowerPlot.h"
#include "RadioFileReader.h"
#include "Replay.h"
#include "Sweep.h"
#include "reference/RandomRadioFile.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// What must hold for the comparison of any radios, tried on random ones.

namespace {

constexpr std::uint64_t radioCount = 80;

RadioCase randomRadio(std::uint64_t seed) {
    return {RadioFileReader::read(reference::randomRadioFile(seed).dump()), {}, "random"};
}

/// Random radios whose service starts.
const std::vector<RadioCase>& radios() {
    static const std::vector<RadioCase> started = [] {
        std::vector<RadioCase> found;
        for (std::uint64_t seed = 1; seed <= radioCount; ++seed) {
            RadioCase radio = randomRadio(seed);
            try {
                static_cast<void>(radio.powers());
                found.push_back(std::move(radio));
            } catch (const AnalysisError&) {
                // Some radios lack a neighbour.
            }
        }
        return found;
    }();
    return started;
}

std::vector<std::optional<long>> powersOf(const PowerTable& table) {
    std::vector<std::optional<long>> powers;
    for (const PowerTable::Row& row : table.rows) {
        powers.push_back(row.maxPower);
    }
    return powers;
}

TEST(ComparedPowers, AreTriedOnManyRadios) {
    EXPECT_GE(radios().size(), radioCount / 2);
}

TEST(ComparedPowers, OfARadioWithItselfDoNotDiffer) {
    for (const RadioCase& radio : radios()) {
        const PowerDiff diff = PowerDiff::between(radio, radio);

        EXPECT_TRUE(diff.isEqual());
        EXPECT_TRUE(diff.inputs.empty());
        EXPECT_EQ(diff.rows.size(), diff.before.rows.size());
        for (const PowerDiff::Row& row : diff.rows) {
            EXPECT_TRUE(row.isSameRule());
            EXPECT_TRUE(row.steps.empty());
        }
    }
}

TEST(ComparedPowers, DifferTheOtherWayRoundWhenTheRadiosChangePlaces) {
    for (std::size_t index = 1; index < radios().size(); ++index) {
        const PowerDiff there = PowerDiff::between(radios()[index - 1], radios()[index]);
        const PowerDiff back = PowerDiff::between(radios()[index], radios()[index - 1]);

        EXPECT_EQ(there.isEqual(), back.isEqual());
        EXPECT_EQ(there.inputs.size(), back.inputs.size());
        ASSERT_EQ(there.rows.size(), back.rows.size());
        std::int64_t sum = 0;
        std::size_t steps = 0;
        for (const PowerDiff::Row& row : there.rows) {
            sum += row.difference().value_or(0);
            steps += row.steps.size();
        }
        for (const PowerDiff::Row& row : back.rows) {
            sum += row.difference().value_or(0);
            steps -= row.steps.size();
        }
        EXPECT_EQ(sum, 0);
        EXPECT_EQ(steps, 0U);
    }
}

/// What a radio has of the inputs that can be set without changing anything.
std::vector<Inputs::Value> ownValues(const PowerTable& table) {
    return {table.rsec,
            table.market,
            table.dpdVersion,
            table.channelSpacing,
            Inputs::PermanentCutback{table.inputs.permanentCutback.value_or(0)},
            table.inputs.temporaryCutback.value_or(OperatingInputs::TemporaryCutback{}),
            table.inputs.booster.value_or(OperatingInputs::Booster{}),
            Inputs::ProductNumber{table.productNumber}};
}

TEST(ComparedPowers, AtARadiosOwnValueOfAnInputAreItsOwn) {
    for (const RadioCase& radio : radios()) {
        const PowerTable asIs = radio.powers();
        for (const Inputs::Value& value : ownValues(asIs)) {
            const Sweep sweep = Sweep::run(radio, {{&InputAxis::of(value), {value}}});

            EXPECT_EQ(powersOf(sweep.points.front().powers.table), powersOf(asIs))
                << InputAxis::of(value).name();
            EXPECT_EQ(sweep.points.front().powers.table.minOutputPower, asIs.minOutputPower);
        }
    }
}

/// What a replay answered to one request.
using ReplayedLine = nlohmann::json;

std::vector<ReplayedLine> replayOf(const RadioFile& file) {
    std::vector<ReplayedLine> answers;
    Replay().play(file, [&answers](const std::string& line) {
        answers.push_back(nlohmann::json::parse(line));
    });
    answers.erase(answers.begin()); // the start
    return answers;
}

/// The power that a replay answered for a row; nothing without one.
std::optional<long> powerIn(const ReplayedLine& answer, const PowerTable::Row& row) {
    for (const char* const key : {"maxPower", "pmax"}) {
        if (answer.contains(key)) {
            return answer.at(key).get<long>();
        }
    }
    for (const nlohmann::json& entry : answer.at("powerMap")) {
        if (entry.at("code") == row.modulationAndCode.code) {
            return entry.at("maxPower").get<long>();
        }
    }
    return std::nullopt;
}

TEST(PowersAtARequest, AreThoseThatItsReplayAnswers) {
    std::size_t powers = 0;
    std::size_t behindPatches = 0;
    for (std::uint64_t seed = 1; seed <= 4 * radioCount; seed += loopStride()) {
        const std::string text = reference::randomRadioFile(seed).dump();
        const RadioFile file = RadioFileReader::read(text);
        const std::vector<ReplayedLine> answers = replayOf(file);
        bool isPatched = false;
        for (std::size_t index = 0; index < answers.size(); ++index) {
            const ReplayedLine& answer = answers[index];
            const std::string call = answer.at("call").get<std::string>();
            isPatched |= call == "patch";
            if (!answer.contains("powerMap") && !answer.contains("maxPower") &&
                call != "getUnrestrictedPmax") {
                continue;
            }
            SCOPED_TRACE("file " + std::to_string(seed) + ", request " + std::to_string(index));
            AskedInputs asked;
            asked.request = std::to_string(index);

            const ExplainedTable sut = asked.radio(text, "").explain();

            EXPECT_EQ(sut.table.result, answer.at("result").get<unsigned>());
            EXPECT_TRUE(mismatchesOf(sut).empty());
            for (const PowerTable::Row& row : sut.table.rows) {
                if (row.maxPower) {
                    EXPECT_EQ(row.maxPower, powerIn(answer, row));
                    ++powers;
                    behindPatches += isPatched ? 1 : 0;
                }
            }
        }
    }
    EXPECT_GT(powers, 10 * radioCount / loopStride());
    EXPECT_GT(behindPatches, radioCount / loopStride());
}

TEST(ComparedPowers, OfAnyRadioCanBeDrawn) {
    const TextLook look;
    for (const RadioCase& radio : radios()) {
        const PowerPlot plot = PowerPlot::of(RuledTable(radio.explain()));

        const std::string svg = svgForm(plot);
        const std::string blocks = blockForm(plot, look);

        EXPECT_TRUE(svg.ends_with("</svg>\n"));
        EXPECT_EQ(svg, svgForm(plot));
        EXPECT_FALSE(blocks.empty());
    }
}

} // namespace
