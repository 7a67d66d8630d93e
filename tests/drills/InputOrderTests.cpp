#include "EveryCase.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// Every sequence of up to four operating inputs and starts, in every order, and then every query.

namespace {

/// An input that both sides take alike.
template <class Library, class Reference>
Operation inputOf(const std::string& name, Library library, Reference reference) {
    return {name,
            [library](LibrarySide& side, Outcome& outcome) {
                outcome.result = static_cast<std::uint32_t>(library(*side.service));
            },
            [reference](ReferenceSide& side, Outcome& outcome) {
                outcome.result = reference(*side.service);
            }};
}

Operation cutback(std::uint32_t value) {
    return inputOf(
        "setPowerCutback " + std::to_string(value),
        [value](OutputPowerCalculator& sut) { return sut.setPowerCutback(value); },
        [value](reference::Service& sut) { return sut.setPowerCutback(value); });
}

Operation temporaryCutback(bool use, std::uint32_t value) {
    return inputOf(
        "setTemporaryPowerCutback " + std::to_string(use) + ' ' + std::to_string(value),
        [=](OutputPowerCalculator& sut) { return sut.setTemporaryPowerCutback(use, value); },
        [=](reference::Service& sut) { return sut.setTemporaryPowerCutback(use, value); });
}

Operation temperature(std::int32_t value) {
    return inputOf(
        "setTemperature " + std::to_string(value),
        [value](OutputPowerCalculator& sut) { return sut.setTemperature(value); },
        [value](reference::Service& sut) { return sut.setTemperature(value); });
}

Operation booster(std::int32_t presence, std::int32_t gain, std::int32_t maxInputPower,
                  std::int32_t maxModulation) {
    return inputOf(
        "setBoosterPresence " + std::to_string(presence),
        [=](OutputPowerCalculator& sut) {
            return sut.setBoosterPresence(presence, gain, maxInputPower, Modulation{maxModulation});
        },
        [=](reference::Service& sut) {
            return sut.setBoosterPresence(presence, gain, maxInputPower, maxModulation);
        });
}

/// What the neighbours hand out at each start differs from what they did before.
void handOutOtherTables(Script& script) {
    ScriptedAnswer minimum = script.usual(Call::MinOutputPower);
    minimum.values.at(0) -= 10;
    script.setUsual(Call::MinOutputPower, minimum);
    ScriptedAnswer table = script.usual(Call::PmaxDpd2Etsi);
    for (std::size_t power = 2; power < table.values.size(); power += 2) {
        table.values[power] -= 30;
    }
    script.setUsual(Call::PmaxDpd2Etsi, table);
}

/// The same service starts once more.
Operation startAgain() {
    return {"initialize",
            [](LibrarySide& side, Outcome& outcome) {
                handOutOtherTables(side.script);
                outcome.result = side.service->initialize();
            },
            [](ReferenceSide& side, Outcome& outcome) {
                handOutOtherTables(side.script);
                outcome.result = side.service->initialize();
            }};
}

const std::vector<Operation>& steps() {
    // Twelve: with a stride that divides their number the last steps of all sequences were the
    // same.
    static const std::vector<Operation> all = {cutback(0),
                                               cutback(300),
                                               cutback(0xFFFFFFFF),
                                               temporaryCutback(true, 200),
                                               temporaryCutback(true, 0x80000000),
                                               temporaryCutback(false, 700),
                                               temperature(-40),
                                               booster(1, 2500, 700, 1024),
                                               booster(7, 3000, 900, 64),
                                               booster(-1, lowest, highest, 100000),
                                               booster(0, 100, 200, 4),
                                               startAgain()};
    return all;
}

class EveryOrderOfInputs : public EveryCase {
protected:
    /// Both sides as they were at first, just started.
    void startAnew() {
        for (const Call call : {Call::MinOutputPower, Call::PmaxDpd2Etsi}) {
            const ScriptedAnswer& usual = m_sides->usual[static_cast<std::size_t>(call)];
            m_sides->library.script.setUsual(call, usual);
            m_sides->reference.script.setUsual(call, usual);
        }
        m_sides->library.build();
        m_sides->reference.build();
        m_sides->library.surroundings.capabilityHandler.forgetTables();
        ASSERT_EQ(m_sides->library.service->initialize(), 0);
        ASSERT_EQ(m_sides->reference.service->initialize(), 0U);
        m_sides->reference.service->m_trace.clear();
        m_sides->restart();
    }

    /// Takes the steps, and compares the last one, then every query. What comes before the last
    /// step is a sequence of its own.
    void compare(const std::vector<std::size_t>& sequence) {
        const auto when = [&] {
            std::string text = "after";
            for (const std::size_t step : sequence) {
                text += ", " + steps()[step].name;
            }
            return text;
        };
        ASSERT_NO_FATAL_FAILURE(startAnew());
        for (std::size_t i = 0; i + 1 < sequence.size(); ++i) {
            Outcome outcome;
            steps()[sequence[i]].onLibrary(m_sides->library, outcome);
            steps()[sequence[i]].onReference(m_sides->reference, outcome);
        }
        m_sides->reference.service->m_trace.clear();
        setTraces(Traces::Compared);
        m_sides->restart();
        ASSERT_TRUE(isEqualOnBothSides(steps()[sequence.back()], when));
        setTraces(Traces::Off);
        for (const Operation& query : m_queries) {
            m_sides->restart();
            ASSERT_TRUE(isEqualOnBothSides(query, when));
        }
        ++m_sequences;
    }

    /// Every sequence that goes on from this one, up to a length.
    void compareFrom(std::vector<std::size_t>& sequence, std::size_t length) {
        for (std::size_t step = 0; step < steps().size(); ++step) {
            sequence.push_back(step);
            if (isTurn()) {
                ASSERT_NO_FATAL_FAILURE(compare(sequence));
            }
            if (sequence.size() < length) {
                ASSERT_NO_FATAL_FAILURE(compareFrom(sequence, length));
            }
            sequence.pop_back();
        }
    }

    std::size_t m_sequences = 0;

private:
    const std::vector<Operation> m_queries = [] {
        std::vector<Operation> all = queries();
        all.push_back(inputs().back());
        return all;
    }();
};

} // namespace

TEST_P(EveryOrderOfInputs, leavesEveryQueryAsTheRulesSay) {
    ASSERT_EQ(inputs().back().name, "applyCutbackToMaxPower");
    enter(false, true, Limit::None);
    std::vector<std::size_t> sequence;
    compareFrom(sequence, 4);
    countCases(m_sequences, "orders of inputs");
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, EveryOrderOfInputs, ::testing::ValuesIn(placesOf(families)),
                         [](const auto& place) { return nameOf(place.param); });
