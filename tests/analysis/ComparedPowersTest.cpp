#include "AnalysisError.h"
#include "PowerDiff.h"
#include "PowerPlot.h"
#include "RadioFileReader.h"
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
