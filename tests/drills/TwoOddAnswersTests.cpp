#include "EveryCase.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

// Every two calls that one operation makes get an odd answer at once: what one leaves behind when
// it fails must not be what the other is dealt with by.

namespace {

ScriptedAnswer answerOf(std::vector<std::int32_t> values) {
    ScriptedAnswer answer;
    answer.values = std::move(values);
    return answer;
}

ScriptedAnswer productNumberOf(const char* number) {
    ScriptedAnswer answer;
    answer.text = number;
    return answer;
}

/// A failure that writes nothing, one that writes all the same, and a success that writes something
/// extreme.
std::vector<ScriptedAnswer> failuresOr(std::vector<std::int32_t> written,
                                       std::vector<std::int32_t> extreme) {
    ScriptedAnswer silent = answerOf(written);
    silent.result = 0x8000;
    silent.isWritten = false;
    ScriptedAnswer writing = answerOf(std::move(written));
    writing.result = 0x8001;
    return {silent, writing, answerOf(std::move(extreme))};
}

/// One odd answer of each kind that a call has.
std::vector<ScriptedAnswer> oddAnswersOfEachKind(Call call, const ScriptedAnswer& usual) {
    switch (call) {
    case Call::ProductNumber:
        // Another family than that of the question before.
        return {productNumberOf(""), productNumberOf("QZT 846 003"), productNumberOf("QZT35201/1"),
                productNumberOf("QZT")};
    case Call::MinOutputPower:
        return failuresOr({-333}, {lowest});
    case Call::PmaxDpd1Ansi:
    case Call::PmaxDpd2Ansi:
    case Call::PmaxDpd1Etsi:
    case Call::PmaxDpd2Etsi:
        return failuresOr({4, 16, 1111, 64, 1000}, {4, 64, highest, 16, lowest});
    case Call::AcmRange:
        return failuresOr({41, 91}, {highest, lowest});
    case Call::CodesById:
        return failuresOr({41, 71}, {lowest, 31, highest});
    case Call::ChannelSpacingById:
        return failuresOr({28}, {highest});
    case Call::MarketById:
        return failuresOr({0}, {lowest});
    case Call::CompensationArray:
        return failuresOr({28, 77, 56, 78}, {28, highest, 56, lowest});
    case Call::CompensationArraySize:
        return failuresOr({2}, {highest});
    case Call::IsMaxAcmLimited:
    case Call::IsCarrierAggregation:
        return {answerOf({usual.value() == 0 ? 1 : 0})};
    case Call::ProfileIndex:
        return {answerOf({-1}), answerOf({INT16_MAX})};
    case Call::Modulation:
    case Call::MaxAvailableModulation:
    case Call::MaxModulationLimited:
    case Call::MaxModulationUnlimited:
        return {answerOf({4}), answerOf({100000}), answerOf({lowest})};
    case Call::Codes:
        return {answerOf({}), answerOf({31, 163}), answerOf({lowest, 31, highest})};
    case Call::ChannelSpacing:
        return {answerOf({56}), answerOf({lowest})};
    case Call::DpdVersion:
    case Call::DpdVersionById:
        return {answerOf({1}), answerOf({3}), answerOf({0})};
    case Call::Market:
        return {answerOf({1}), answerOf({2}), answerOf({highest})};
    case Call::Profiles:
    case Call::CarrierAggregationProfiles:
    case Call::ProfilesById:
    case Call::CarrierAggregationProfilesById:
        return {answerOf({}), answerOf({INT16_MIN, INT16_MAX})};
    case Call::ReferenceSec:
        return {answerOf({0}), answerOf({1000})};
    case Call::Offset: {
        ScriptedAnswer none = usual;
        none.isWritten = false;
        return {none, answerOf({highest})};
    }
    case Call::Records:
        return {answerOf({}), answerOf({frameFormatId, 3000})};
    }
    return {};
}

std::string textOf(const OddCall& odd) {
    return "call " + std::to_string(odd.nth) + " of " + nameOf(odd.call) + " answers " +
           textOf(odd.answer);
}

class TwoOddAnswers : public EveryCase {
protected:
    TwoOddAnswers() { setTraces(Traces::Compared); }

    /// The scene's own usual answers count, too.
    void enterScene(bool hasBooster, bool isAdaptive, Limit limit) {
        enter(hasBooster, isAdaptive, limit);
        for (std::size_t index = 0; index < callCount; ++index) {
            m_odd[index] = oddAnswersOfEachKind(static_cast<Call>(index), m_sides->usual[index]);
        }
    }

    /// Shows every odd answer to each of the calls that were counted, until there is a failure.
    template <class Action>
    void forEachOddCall(const Script::Times& times, Action action) const {
        for (std::size_t index = 0; index < callCount; ++index) {
            for (const ScriptedAnswer& answer : m_odd[index]) {
                for (std::size_t nth = 1; nth <= times[index] && !HasFatalFailure(); ++nth) {
                    action(static_cast<Call>(index), nth, answer);
                }
            }
        }
    }

    template <class When>
    bool isEqualWith(const Operation& operation, const std::vector<OddCall>& odd, When when) {
        m_sides->library.script.restart(odd);
        m_sides->reference.script.restart(odd);
        return isEqualOnBothSides(operation, when);
    }

    /// Ends at the first failure.
    /// @param isByTurns whether there are too many pairs for some builds.
    /// @param afterwards looks at what the operation has left.
    template <class Afterwards>
    void drill(const Operation& operation, bool isByTurns, Afterwards afterwards) {
        const std::size_t stride = isByTurns ? strideOfEach() : 1;
        ASSERT_TRUE(isEqualWith(operation, {}, [] { return "with usual answers"; }));
        const Script::Times usual = m_sides->library.script.times();
        forEachOddCall(usual, [&](Call call, std::size_t nth, const ScriptedAnswer& answer) {
            if (m_firstTurn++ % stride != 0) {
                return;
            }
            const OddCall first = {call, nth, answer};
            ASSERT_TRUE(isEqualWith(operation, {first}, [&] { return "when " + textOf(first); }));
            drillSecond(operation, first, usual, stride, afterwards);
        });
        ASSERT_FALSE(HasFatalFailure());
        ASSERT_TRUE(isEqualWith(operation, {}, [] { return "with usual answers afterwards"; }));
    }

    /// The operation has been done with the first odd answer alone: what that brings about is
    /// asked, too, and what it cuts off is not.
    template <class Afterwards>
    void drillSecond(const Operation& operation, const OddCall& first, const Script::Times& usual,
                     std::size_t stride, Afterwards afterwards) {
        const Script::Times times = m_sides->library.script.times();
        forEachOddCall(times, [&](Call call, std::size_t nth, const ScriptedAnswer& answer) {
            // Two usual calls are met in either order.
            const bool isUsual = nth <= usual[static_cast<std::size_t>(call)];
            if ((isUsual && std::tie(call, nth) <= std::tie(first.call, first.nth)) ||
                m_secondTurn++ % stride != 0) {
                return;
            }
            const OddCall second = {call, nth, answer};
            const auto when = [&] { return "when " + textOf(first) + ", " + textOf(second); };
            ASSERT_TRUE(isEqualWith(operation, {first, second}, when));
            const Script& script = m_sides->library.script;
            const bool isFirstMade = script.timesOf(first.call) >= first.nth;
            const bool isSecondMade = script.timesOf(second.call) >= second.nth;
            ASSERT_TRUE(isFirstMade || isSecondMade) << "neither call was made " << when();
            // An answer that cuts off the other is a case of one.
            m_pairs += isFirstMade && isSecondMade ? 1 : 0;
            ASSERT_NO_FATAL_FAILURE(afterwards(when));
        });
    }

    std::size_t m_pairs = 0;

private:
    /// Where not all pairs are tried, so many times fewer of the first calls are and of the second
    /// ones of each: to find these takes a case of its own.
    static std::size_t strideOfEach() {
        std::size_t stride = 1;
        while (stride * stride < loopStride()) {
            ++stride;
        }
        return stride;
    }

    std::array<std::vector<ScriptedAnswer>, callCount> m_odd;
    std::size_t m_firstTurn = GetParam().number;
    std::size_t m_secondTurn = GetParam().number;
};

} // namespace

TEST_P(TwoOddAnswers, leaveEveryQueryAsTheRulesSay) {
    for (const bool hasBooster : {false, true}) {
        for (const bool isAdaptive : {false, true}) {
            for (const Limit limit :
                 {Limit::None, Limit::ByProfile, Limit::ByCarrierAggregationProfile}) {
                enterScene(hasBooster, isAdaptive, limit);
                for (const Operation& query : queries()) {
                    ASSERT_NO_FATAL_FAILURE(drill(query, true, [](const auto&) {}));
                }
            }
        }
    }
    countCases(m_pairs, "pairs of odd answers");
}

TEST_P(TwoOddAnswers, leaveTheStartAsTheRulesSay) {
    enterScene(false, true, Limit::None);
    const auto handler = [this]() -> ScriptedCapabilityHandler& {
        return m_sides->library.surroundings.capabilityHandler;
    };
    Operation start = startOperation();
    // The tables of the service before; its destructor reads none.
    start.onLibrary = [&, build = start.onLibrary](LibrarySide& side, Outcome& outcome) {
        handler().forgetTables();
        build(side, outcome);
    };
    const Operation findPminPmax = queries().at(2);
    ASSERT_EQ(findPminPmax.name, "findPminPmax");

    drill(start, false, [&](const auto& when) {
        if (!m_sides->reference.service->m_registered) {
            return; // A service that did not start is not asked.
        }
        // Which of the four tables it has kept, and the minimum.
        for (const std::int32_t dpdVersion : {1, 2}) {
            for (const std::int32_t market : {0, 1}) {
                ASSERT_TRUE(isEqualWith(findPminPmax,
                                        {{Call::DpdVersion, 1, answerOf({dpdVersion})},
                                         {Call::Market, 1, answerOf({market})}},
                                        [&] { return "after the start " + when(); }));
            }
        }
    });
    countCases(m_pairs, "pairs of odd answers");
}

namespace {

std::vector<Family> everyWayToAFamily() {
    std::vector<Family> all = families;
    all.push_back({"WithoutProductNumber", ""});
    return all;
}

} // namespace

INSTANTIATE_TEST_SUITE_P(EveryFamily, TwoOddAnswers,
                         ::testing::ValuesIn(placesOf(everyWayToAFamily())),
                         [](const auto& place) { return nameOf(place.param); });
