#include "Attempts.h"
#include "DeskTrace.h"
#include "InterfaceBroker.h"
#include "Operations.h"
#include "Trace.h"
#include "TraceCapture.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <iostream>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

// Every allocation of an operation fails, one at a time. The operation then either gives its answer
// all the same or lets std::bad_alloc through; it keeps no block that it does not need, and the
// next call answers right. Likewise every call to a neighbour throws.

namespace {

using Place =
    std::tuple<Family, bool /* booster */, bool /* adaptive modulation */, int /* trace level */>;

class AllocationDrill : public ::testing::TestWithParam<Place> {
protected:
    AllocationDrill()
        : sides({std::get<0>(GetParam()), std::get<1>(GetParam()), std::get<2>(GetParam()),
                 Limit::ByCarrierAggregationProfile}) {
        DeskTrace::getInstance().setLevel(std::get<3>(GetParam()));
    }

    ~AllocationDrill() override {
        DeskTrace::getInstance().setLevel(0);
        DeskTrace::getInstance().clear();
    }

    /// What the rules say, without the trace.
    Outcome expected(const Operation& operation) {
        Outcome outcome;
        sides.reference.script.restart();
        operation.onReference(sides.reference, outcome);
        return outcome;
    }

    void expectAnswer(const Operation& operation, const Outcome& outcome, const Outcome& right,
                      const std::string& when) {
        EXPECT_EQ(outcome.result, right.result) << operation.name << ' ' << when;
        EXPECT_EQ(outcome.outputs, right.outputs) << operation.name << ' ' << when;
        EXPECT_EQ(outcome.powerMap, right.powerMap) << operation.name << ' ' << when;
    }

    /// A call with enough heap.
    void expectRightAnswer(const Operation& operation, const Outcome& right,
                           const std::string& when) {
        Outcome outcome;
        operation.onLibrary(sides.library, outcome);
        tidyUp();
        expectAnswer(operation, outcome, right, when);
    }

    /// Gives back what the surroundings have kept of a call.
    void tidyUp() {
        DeskTrace::getInstance().clear();
        DeskTrace::getInstance().take();
        sides.library.script.restart();
    }

    /// @return how many allocations failed in turn.
    std::size_t drill(const Operation& operation) {
        const Outcome right = expected(operation);
        // Twice, so that the surroundings and the family have all they keep.
        expectRightAnswer(operation, right, "at first");
        expectRightAnswer(operation, right, "again");

        return withEachAllocationFailing([&](std::size_t nth) {
            const std::string when = "with allocation " + std::to_string(nth) + " failing";
            const std::size_t live = FailingHeap::live();
            Course course{};
            {
                Outcome outcome;
                course = whileFailing(nth, [&] { operation.onLibrary(sides.library, outcome); });
                tidyUp();
                if (course.hasEnded) {
                    expectAnswer(operation, outcome, right, when);
                }
            }
            EXPECT_EQ(FailingHeap::live(), live) << operation.name << " leaks " << when;
            expectRightAnswer(operation, right, "after it went " + when);
            return course.isReached && !HasFailure();
        });
    }

    /// @return how many calls to what surrounds the service threw in turn.
    std::size_t drillThrowing(const Operation& operation) {
        const Outcome right = expected(operation);
        expectRightAnswer(operation, right, "at first");
        Outcome usual;
        operation.onLibrary(sides.library, usual);
        const Script asked = sides.library.script;
        tidyUp();

        std::size_t thrown = 0;
        for (std::size_t index = 0; index < callCount; ++index) {
            const auto call = static_cast<Call>(index);
            for (std::size_t nth = 1; nth <= asked.timesOf(call); ++nth) {
                const std::string when =
                    "when call " + std::to_string(nth) + " of " + nameOf(call) + " throws";
                const std::size_t live = FailingHeap::live();
                {
                    Outcome outcome;
                    sides.library.script.restartThrowing(call, nth);
                    EXPECT_THROW(operation.onLibrary(sides.library, outcome), NeighbourIsGone)
                        << operation.name << ' ' << when;
                    tidyUp();
                }
                EXPECT_EQ(FailingHeap::live(), live) << operation.name << " leaks " << when;
                expectRightAnswer(operation, right, "after it went " + when);
                ++thrown;
            }
        }
        return thrown;
    }

    BothSides sides;
};

} // namespace

TEST_P(AllocationDrill, aNeighbourThatThrowsIsHeardAndChangesNothing) {
    std::size_t thrown = 0;
    for (const Operation& query : queries()) {
        const std::size_t ofQuery = drillThrowing(query);
        EXPECT_GT(ofQuery, 0U) << query.name;
        thrown += ofQuery;
        ASSERT_FALSE(HasFailure());
    }
    // What was set before is still in force for all of them.
    for (const Operation& query : queries()) {
        expectRightAnswer(query, expected(query), "after all threw");
    }
    std::cout << "[ CASES    ] " << thrown << '\n';
}

TEST_P(AllocationDrill, noOperationLosesAnAnswerOrABlock) {
    std::vector<Operation> operations = queries();
    for (const Operation& input : inputs()) {
        operations.push_back(input);
    }

    std::size_t failures = 0;
    for (const Operation& operation : operations) {
        failures += drill(operation);
        ASSERT_FALSE(HasFailure());
    }

    RecordProperty("failures", static_cast<int>(failures));
    std::cout << "[ CASES    ] " << failures << '\n';
    EXPECT_GT(failures, 0U);
}

TEST_P(AllocationDrill, theStartPublishesTheServiceOrLeavesItUnpublished) {
    const auto isPublished = [this] {
        return InterfaceBroker::getInstance().getInterface<IOutputPowerCalculator>(
                   "IOutputPowerCalculator_1") == sides.library.service.get();
    };
    const auto end = [this] {
        sides.library.service.reset();
        sides.library.surroundings.capabilityHandler.forgetTables();
        tidyUp();
    };
    // The highest power of the table for DPD 2, and the minimum of -1000 with the spacing's offset.
    const auto expectRange = [this](const std::string& when) {
        long pmin = 0;
        long pmax = 0;
        EXPECT_EQ(sides.library.service->findPminPmax(pmin, pmax), 0) << when;
        EXPECT_EQ(pmin, -750) << when;
        EXPECT_EQ(pmax, 2951) << when;
    };
    // Once, so that the surroundings have all they keep.
    sides.library.build();
    ASSERT_EQ(sides.library.service->initialize(), 0U);
    expectRange("at first");
    end();

    const std::size_t failures = withEachAllocationFailing([&](std::size_t nth) {
        const std::string when = "with allocation " + std::to_string(nth) + " failing";
        const std::size_t live = FailingHeap::live();
        sides.library.build();
        unsigned result = 1;
        const Course course =
            whileFailing(nth, [&] { result = sides.library.service->initialize(); });
        EXPECT_EQ(result, course.hasEnded ? 0U : 1U) << when;
        EXPECT_EQ(isPublished(), course.hasEnded) << when;

        EXPECT_EQ(sides.library.service->initialize(), 0U) << "after it went " << when;
        EXPECT_TRUE(isPublished()) << "after it went " << when;
        expectRange("after a start " + when);
        end();
        EXPECT_EQ(FailingHeap::live(), live) << "the start leaks " << when;
        return course.isReached && !HasFailure();
    });

    std::cout << "[ CASES    ] " << failures << '\n';
    EXPECT_GT(failures, 0U);
}

TEST_P(AllocationDrill, aStartWhoseNeighbourThrowsPublishesNothingAndCanBeRepeated) {
    for (const Call call : {Call::MinOutputPower, Call::PmaxDpd1Ansi, Call::PmaxDpd2Ansi,
                            Call::PmaxDpd1Etsi, Call::PmaxDpd2Etsi}) {
        const std::string when = nameOf(call) + std::string(" throws");
        sides.library.build();
        const OutputPowerCalculator* const service = sides.library.service.get();
        sides.library.script.restartThrowing(call, 1);
        EXPECT_THROW(sides.library.service->initialize(), NeighbourIsGone) << when;
        EXPECT_NE(InterfaceBroker::getInstance().getInterface<IOutputPowerCalculator>(
                      "IOutputPowerCalculator_1"),
                  service)
            << when;
        sides.library.script.restart();
        EXPECT_EQ(sides.library.service->initialize(), 0U) << when;
        EXPECT_EQ(InterfaceBroker::getInstance().getInterface<IOutputPowerCalculator>(
                      "IOutputPowerCalculator_1"),
                  service)
            << when;
        long pmin = 0;
        long pmax = 0;
        EXPECT_EQ(sides.library.service->findPminPmax(pmin, pmax), 0) << when;
        EXPECT_EQ(pmin, -750) << when;
        EXPECT_EQ(pmax, 2951) << when;
    }
    tidyUp();
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, AllocationDrill,
                         ::testing::Combine(::testing::ValuesIn(families), ::testing::Bool(),
                                            ::testing::Bool(), ::testing::Values(0, 6)),
                         [](const auto& place) {
                             return std::string(std::get<0>(place.param).name) +
                                    (std::get<1>(place.param) ? "WithBooster" : "") +
                                    (std::get<2>(place.param) ? "Adaptive" : "Fixed") +
                                    (std::get<3>(place.param) == 0 ? "Untraced" : "Traced");
                         });

TEST(TraceWithoutRoom, isWrittenWithoutItsText) {
    TraceSource source("Source");
    const std::string text(4000, 'x');
    TraceCapture trace(6);

    FailingHeap::failFrom(text.size());
    EXPECT_NO_THROW(source.message(TraceLevel::Error, "function", 1, text.c_str()));
    const bool hasFailed = FailingHeap::hasFailed();
    FailingHeap::failFrom(0);

    EXPECT_TRUE(hasFailed);
    EXPECT_EQ(trace.lines(), std::vector<std::string>{"1 msg Source.function: "});
}

TEST(Destruction, takesNothingFromTheHeap) {
    for (const unsigned long channel : {1UL, 2UL}) {
        const std::string name =
            IOutputPowerCalculator::interfaceName(static_cast<unsigned>(channel));
        InterfaceBroker& broker = InterfaceBroker::getInstance();
        auto sut = std::make_unique<OutputPowerCalculator>(channel);
        broker.registerInterface(name, sut.get());

        FailingHeap::failAt(1);
        sut.reset();
        const std::size_t taken = FailingHeap::taken();
        FailingHeap::failAt(0);

        EXPECT_EQ(taken, 0U);
        EXPECT_EQ(broker.getInterface<IOutputPowerCalculator>(name), nullptr);
    }
}
