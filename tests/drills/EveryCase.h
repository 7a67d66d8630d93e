#pragma once

#include "DeskTrace.h"
#include "LoopStride.h"
#include "Operations.h"
#include "OtherChannel.h"
#include "Sides.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <limits>
#include <optional>
#include <string>
#include <vector>

// What is finite is counted to the end: a family on a channel, beside another channel that answers
// differently, and the restatement in the same surroundings.

constexpr std::int32_t lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();

/// Where cases are gone through.
struct CasesPlace {
    Family family;
    std::uint32_t channel;
    std::size_t number; ///< among the places of a test
};

inline std::vector<CasesPlace> placesOf(const std::vector<Family>& all) {
    std::vector<CasesPlace> places;
    for (const Family& family : all) {
        for (const std::uint32_t channel : {1U, 2U}) {
            places.push_back({family, channel, places.size()});
        }
    }
    return places;
}

inline std::string nameOf(const CasesPlace& place) {
    return std::string(place.family.name) + "OnChannel" + std::to_string(place.channel);
}

/// Whether the traces are compared too, which take longest to write.
enum class Traces {
    Compared,
    Off
};

class EveryCase : public ::testing::TestWithParam<CasesPlace> {
protected:
    ~EveryCase() override {
        m_other.reset();
        m_sides.reset();
        setTraces(Traces::Off);
        DeskTrace::getInstance().clear();
    }

    void setTraces(Traces traces) {
        m_traces = traces;
        DeskTrace::getInstance().setLevel(traces == Traces::Compared ? 6 : 0);
    }

    /// Starts both sides of the place, and the other channel.
    void enter(bool hasBooster, bool isAdaptive, Limit limit) {
        const CasesPlace& place = GetParam();
        const Scene scene = {place.family, hasBooster, isAdaptive, limit, place.channel};
        m_scene = nameOf(scene);
        // Each withdraws by name what the next one puts there.
        m_other.reset();
        m_sides.reset();
        m_sides.emplace(scene);
        m_other.emplace(place.channel);
        m_sides->library.takeTrace();
    }

    /// Whether the next case is tried where not all are. Each place begins with another one, so
    /// that what one leaves out is another's.
    /// @param share of so many times more cases than usual one is left, unless all are wanted.
    bool isTurn(std::size_t share = 1) {
        const std::size_t stride = loopStride() == 1 ? 1 : loopStride() * share;
        return m_turn++ % stride == 0;
    }

    /// Does an operation on both sides, whose scripts have been restarted.
    /// @param when says on demand what the case was.
    /// @return whether the outcomes are equal; if not, a failure has been reported.
    template <class When>
    bool isEqualOnBothSides(const Operation& operation, When when) {
        Outcome library;
        operation.onLibrary(m_sides->library, library);
        library.arguments = m_sides->library.script.arguments();
        Outcome reference;
        operation.onReference(m_sides->reference, reference);
        reference.arguments = m_sides->reference.script.arguments();
        if (m_traces == Traces::Compared) {
            library.trace = m_sides->library.takeTrace();
            reference.trace = m_sides->reference.takeTrace();
        } else {
            m_sides->reference.service->m_trace.clear();
        }
        if (library == reference && asksAsOften()) {
            return true;
        }
        EXPECT_EQ(library.result, reference.result);
        EXPECT_EQ(library.outputs, reference.outputs);
        EXPECT_EQ(library.powerMap, reference.powerMap);
        EXPECT_EQ(library.trace, reference.trace);
        EXPECT_EQ(library.arguments, reference.arguments);
        EXPECT_EQ(m_sides->library.script.times(), m_sides->reference.script.times());
        ADD_FAILURE() << operation.name << " differs " << when() << " in " << m_scene;
        return false;
    }

    /// Ends the count. What all this is about never concerns the other channel.
    /// @param what the cases are; scripts/proof adds up those of one kind.
    void countCases(std::size_t cases, const char* what) {
        EXPECT_GT(cases, 0U) << "no case was tried";
        EXPECT_EQ(m_other->calls(), 0U) << "the other channel's neighbours were asked";
        RecordProperty("cases", static_cast<int>(cases));
        std::cout << "[ CASES    ] " << cases << ' ' << what << '\n';
    }

    std::optional<BothSides> m_sides;

private:
    /// Whether both sides have asked the same questions as often. The restatement takes both stored
    /// variables at once, needed or not, and the library asks some once more for a trace.
    bool asksAsOften() const {
        if (m_traces == Traces::Off) {
            return true;
        }
        Script::Times library = m_sides->library.script.times();
        Script::Times reference = m_sides->reference.script.times();
        for (const Call stored : {Call::CompensationArray, Call::CompensationArraySize}) {
            library[static_cast<std::size_t>(stored)] = 0;
            reference[static_cast<std::size_t>(stored)] = 0;
        }
        return library == reference;
    }

    std::optional<OtherChannel> m_other;
    std::string m_scene;
    Traces m_traces = Traces::Off;
    std::size_t m_turn = GetParam().number;
};
