#include "CalculatorKam.h"
#include "CalculatorKamV2.h"
#include "CalculatorKamV3.h"
#include "CalculatorVo4.h"
#include "CalculatorVo5.h"
#include "DeskTrace.h"
#include "LoopStride.h"
#include "OddAnswers.h"
#include "Operations.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <iostream>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

// Every call that an operation makes to what surrounds it gets every odd answer, one at a time.
// What comes of it has to be what the plain restatement of the rules says: result, outputs, trace,
// and what the surroundings were asked with.

namespace {

using Place = std::tuple<Family, bool, bool, Limit>;

Scene sceneOf(const Place& place) {
    const auto& [family, hasBooster, isAdaptive, limit] = place;
    return {family, hasBooster, isAdaptive, limit};
}

/// Whether the next case is tried where not all are. The count goes on from one scene to the next,
/// so that an answer that one scene leaves out is another's.
bool isTurn() {
    static std::size_t turn = 0;
    return turn++ % loopStride() == 0;
}

class NeighbourDrill : public ::testing::TestWithParam<Place> {
protected:
    NeighbourDrill() {
        DeskTrace::getInstance().setLevel(6);
        m_sides.emplace(sceneOf(GetParam()));
    }

    ~NeighbourDrill() override {
        m_sides.reset();
        DeskTrace::getInstance().setLevel(0);
        DeskTrace::getInstance().clear();
    }

    Outcome ofLibrary(const Operation& operation) {
        Outcome outcome;
        operation.onLibrary(m_sides->library, outcome);
        outcome.trace = m_sides->library.takeTrace();
        outcome.arguments = m_sides->library.script.arguments();
        return outcome;
    }

    Outcome ofReference(const Operation& operation) {
        Outcome outcome;
        operation.onReference(m_sides->reference, outcome);
        outcome.trace = m_sides->reference.takeTrace();
        outcome.arguments = m_sides->reference.script.arguments();
        return outcome;
    }

    /// Does an operation on both sides, whose scripts have been restarted.
    /// @return whether the outcomes are equal; if not, a failure has been reported.
    bool isEqualOnBothSides(const Operation& operation, const std::string& when) {
        ++m_cases;
        const Outcome library = ofLibrary(operation);
        const Outcome reference = ofReference(operation);
        if (library == reference) {
            return true;
        }
        EXPECT_EQ(library.result, reference.result);
        EXPECT_EQ(library.outputs, reference.outputs);
        EXPECT_EQ(library.powerMap, reference.powerMap);
        EXPECT_EQ(library.trace, reference.trace);
        EXPECT_EQ(library.arguments, reference.arguments);
        ADD_FAILURE() << operation.name << " differs " << when;
        return false;
    }

    bool isEqualWithUsualAnswers(const Operation& operation, const std::string& when) {
        m_sides->restart();
        return isEqualOnBothSides(operation, when);
    }

    /// Gives each of the calls of a kind that the operation makes each odd answer. Ends at the
    /// first failure.
    void drill(const Operation& operation, Call call, std::size_t times) {
        for (const ScriptedAnswer& odd :
             oddAnswers(call, m_sides->usual[static_cast<std::size_t>(call)])) {
            for (std::size_t nth = 1; nth <= times; ++nth) {
                if (!isTurn()) {
                    continue;
                }
                ++m_oddAnswers;
                m_sides->library.script.restart(call, nth, odd);
                m_sides->reference.script.restart(call, nth, odd);
                const std::string when = "when call " + std::to_string(nth) + " of " +
                                         nameOf(call) + " answers " + textOf(odd);
                ASSERT_TRUE(isEqualOnBothSides(operation, when));
                ASSERT_GE(m_sides->library.script.timesOf(call), nth) << "the call was not made";
            }
        }
    }

    void drill(const Operation& operation) {
        ASSERT_TRUE(isEqualWithUsualAnswers(operation, "with usual answers"));
        const Script usual = m_sides->library.script;
        for (std::size_t index = 0; index < callCount; ++index) {
            const auto call = static_cast<Call>(index);
            ASSERT_NO_FATAL_FAILURE(drill(operation, call, usual.timesOf(call)));
        }
        // Nothing of all that may stay.
        ASSERT_TRUE(isEqualWithUsualAnswers(operation, "with usual answers afterwards"));
    }

    void countCases() {
        EXPECT_GT(m_oddAnswers, 0U) << "no odd answer was tried";
        RecordProperty("cases", static_cast<int>(m_cases));
        std::cout << "[ CASES    ] " << m_cases << '\n';
    }

    std::size_t m_cases = 0;
    std::size_t m_oddAnswers = 0;
    std::optional<BothSides> m_sides;
};

} // namespace

TEST_P(NeighbourDrill, everyQueryIsAsTheRulesSayWhateverACallAnswers) {
    for (const Operation& query : queries()) {
        ASSERT_NO_FATAL_FAILURE(drill(query));
    }
    countCases();
}

TEST_P(NeighbourDrill, theStartIsAsTheRulesSayWhateverACallAnswers) {
    drill(startOperation());
    countCases();
}

TEST_P(NeighbourDrill, anInputAsksNobody) {
    for (const Operation& input : inputs()) {
        ASSERT_TRUE(isEqualWithUsualAnswers(input, "with usual answers"));
        for (std::size_t call = 0; call < callCount; ++call) {
            EXPECT_EQ(m_sides->library.script.timesOf(static_cast<Call>(call)), 0U) << input.name;
        }
    }
    // What they set is in force.
    for (const Operation& query : queries()) {
        ASSERT_TRUE(isEqualWithUsualAnswers(query, "after every input"));
    }
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, NeighbourDrill,
                         ::testing::Combine(::testing::ValuesIn(families), ::testing::Bool(),
                                            ::testing::Bool(),
                                            ::testing::Values(Limit::None, Limit::ByProfile,
                                                              Limit::ByCarrierAggregationProfile)),
                         [](const auto& place) { return nameOf(sceneOf(place.param)); });

namespace {

struct CalculatorOf {
    const char* name;
    Calculator* calculator;
    reference::Family family;
};

const CalculatorOf calculators[] = {
    {"FirstOutdoor", CalculatorKam::getInstance(), reference::Family::Kam},
    {"SecondOutdoor", CalculatorKamV2::getInstance(), reference::Family::KamV2},
    {"ThirdOutdoor", CalculatorKamV3::getInstance(), reference::Family::KamV3},
    {"OlderRadioUnit", CalculatorVo4::getInstance(), reference::Family::Vo4},
    {"NewerRadioUnit", CalculatorVo5::getInstance(), reference::Family::Vo5}};

/// The one operation of a calculator that asks anybody: what is stored. One family has no product
/// number and can be asked only here.
class StoreDrill : public ::testing::TestWithParam<CalculatorOf> {
protected:
    StoreDrill()
        : m_script(usualAnswers({families.front(), false, false, Limit::None}))
        , m_surroundings(m_script) {
        DeskTrace::getInstance().setLevel(6);
    }

    ~StoreDrill() override {
        DeskTrace::getInstance().setLevel(0);
        DeskTrace::getInstance().clear();
    }

    Script m_script;
    ScriptedSurroundings m_surroundings;
};

} // namespace

TEST_P(StoreDrill, theCompensationIsAsTheRulesSayWhateverIsStored) {
    constexpr std::int32_t preset = 123456;
    std::size_t cases = 0;
    for (const Call call : {Call::CompensationArray, Call::CompensationArraySize}) {
        for (const ScriptedAnswer& odd : oddAnswers(call, m_script.usual(call))) {
            for (const std::int32_t spacing : {28, 56, 0, -1, 3000}) {
                m_script.restart(call, 1, odd);
                long compensation = preset;
                const int result = GetParam().calculator->getCompensationForChannelSpacing(
                    1, static_cast<EChannelSpacingType>(spacing), compensation);
                const std::vector<Record> trace = recordsOf(DeskTrace::getInstance().take());

                m_script.restart(call, 1, odd);
                const reference::CompensationAnswer right =
                    reference::getCompensationForChannelSpacing(
                        GetParam().family, 1, spacing, preset,
                        ScriptedNode::variablesOf(m_script, 1));

                const std::string when = nameOf(call) + (" answers " + textOf(odd));
                ASSERT_EQ(static_cast<std::uint32_t>(result), right.code) << when;
                ASSERT_EQ(compensation, right.compensation) << when;
                ASSERT_EQ(trace, recordsOf(right.trace)) << when;
                ++cases;
            }
        }
    }
    std::cout << "[ CASES    ] " << cases << '\n';
}

INSTANTIATE_TEST_SUITE_P(EveryCalculator, StoreDrill, ::testing::ValuesIn(calculators),
                         [](const auto& family) { return std::string(family.param.name); });
