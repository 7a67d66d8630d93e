#include "Attempts.h"
#include "CalculatorKamV2.h"
#include "DeskTrace.h"
#include "LoopStride.h"
#include "Operations.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

// What a process does for the first time, each allocation of it failing in turn: construction, and
// a family's first power, which makes its instance. This process itself never uses
// the library; every case is a process of its own.

namespace {

using Place = std::tuple<Family, bool /* booster */, int /* trace level */>;

class FirstUse : public ::testing::TestWithParam<Place> {
protected:
    static Scene scene() {
        return {std::get<0>(GetParam()), std::get<1>(GetParam()), true, Limit::None};
    }

    /// Does something with traces as the place has them.
    /// @return the blocks that are taken afterwards and were not before; those of the surroundings
    ///         are given back.
    template <class Action>
    static int blocksKept(BothSides& sides, Action action) {
        DeskTrace::getInstance().setLevel(std::get<2>(GetParam()));
        const std::size_t live = FailingHeap::live();
        action();
        DeskTrace::getInstance().take();
        sides.library.script.restart();
        return static_cast<int>(FailingHeap::live() - live);
    }

    static void askOnce(BothSides& sides) {
        long minPower = 0;
        long maxPower = 0;
        sides.library.service->calculateAdmodPowerCapabilities(
            Modulation::QAM64, EReferenceSEC::Class4L, minPower, maxPower);
    }
};

/// How a fresh process ends. With any other status a sanitizer has ended it.
enum Ending {
    AllWell = 0,
    NotReached = 200, ///< there is no such allocation any more
    Wrong = 201,      ///< it has said what
};

/// Does something in a process of its own, where the library has not been used before.
/// @return the exit status, or nothing if the process was killed.
template <class Action>
std::optional<int> inAFreshProcess(Action action) {
    std::cout.flush();
    std::cerr.flush();
    const pid_t child = fork();
    if (child == 0) {
        const int status = action();
        _exit(::testing::Test::HasFailure() ? Wrong : status);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        return std::nullopt;
    }
    return WEXITSTATUS(status);
}

/// What a fresh process checks; says what does not hold.
bool holds(bool condition, const std::string& what) {
    if (!condition) {
        std::cerr << what << std::endl;
    }
    return condition;
}

/// Does something in fresh processes, with each of its allocations failing in turn.
/// @param attempt returns an Ending; it is told which allocation has to fail.
std::size_t inFreshProcesses(const std::function<int(std::size_t nth)>& attempt) {
    const auto isWell = [&](std::size_t nth) {
        const std::optional<int> ending = inAFreshProcess([&] { return attempt(nth); });
        EXPECT_TRUE(ending == AllWell || ending == NotReached)
            << "with allocation " << nth << " failing";
        return ending == AllWell;
    };
    return withEachAllocationFailing(isWell, loopStride());
}

constexpr Modulation modulations[] = {
    Modulation::BPSK,    Modulation::QAM4,    Modulation::QAM16,   Modulation::QAM32,
    Modulation::QAM64,   Modulation::QAM128,  Modulation::QAM256,  Modulation::QAM512,
    Modulation::QAM1024, Modulation::QAM2048, Modulation::QAM4096, Modulation::QAM16384};

constexpr int classCount = 10;

/// Asks for the power of every modulation in a class, on both sides.
bool rowIsRight(BothSides& sides, int rsec) {
    bool isRight = true;
    for (const Modulation modulation : modulations) {
        long minPower = 0;
        long maxPower = 0;
        std::int32_t rightMin = 0;
        std::int32_t rightMax = 0;
        const int result = sides.library.service->calculateAdmodPowerCapabilities(
            modulation, static_cast<EReferenceSEC>(rsec), minPower, maxPower);
        const std::uint32_t right = sides.reference.service->calculateAdmodPowerCapabilities(
            static_cast<std::int32_t>(modulation), static_cast<std::int32_t>(rsec), rightMin,
            rightMax);
        isRight &= holds(static_cast<std::uint32_t>(result) == right && maxPower == rightMax &&
                             minPower == rightMin,
                         convertAcmEnumToString(modulation) + " has another power at class " +
                             std::to_string(rsec));
    }
    return isRight;
}

/// Looks at the last row, which a table that was left half-built lacks, and at another by turns.
bool tablesAreRight(BothSides& sides, std::size_t nth) {
    DeskTrace::getInstance().setLevel(0);
    return rowIsRight(sides, classCount - 1) &&
           rowIsRight(sides, static_cast<int>(nth % (classCount - 1)));
}

} // namespace

TEST_P(FirstUse, isRightAndKeepsWhatItNeedsWhicheverAllocationHasFailedBefore) {
    const std::optional<int> needed = inAFreshProcess([] {
        BothSides fresh(scene());
        return blocksKept(fresh, [&fresh] { askOnce(fresh); });
    });
    ASSERT_TRUE(needed.has_value());

    const std::size_t failures = inFreshProcesses([&](std::size_t nth) -> int {
        BothSides fresh(scene());
        bool isReached = false;
        const int kept = blocksKept(fresh, [&] {
            isReached = whileFailing(nth, [&fresh] { askOnce(fresh); }).isReached;
            askOnce(fresh);
        });
        if (!isReached) {
            return NotReached;
        }
        const bool isRight = holds(kept == *needed, std::to_string(kept) + " blocks are kept") &&
                             tablesAreRight(fresh, nth);
        return isRight ? AllWell : Wrong;
    });

    std::cout << "[ CASES    ] " << failures << '\n';
    EXPECT_GT(failures, 0U);
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, FirstUse,
                         ::testing::Combine(::testing::ValuesIn(families), ::testing::Bool(),
                                            ::testing::Values(0, 6)),
                         [](const auto& place) {
                             return std::string(std::get<0>(place.param).name) +
                                    (std::get<1>(place.param) ? "WithBooster" : "") +
                                    (std::get<2>(place.param) == 0 ? "Untraced" : "Traced");
                         });

TEST(SecondOutdoorFamily, isSafeAtItsFirstPower) {
    // No product number leads to it. Against 256QAM at class 2 its 16QAM may have 4 dB more.
    constexpr std::int32_t pmax[] = {16, 9000, 256, 2200};
    const auto firstPower = [&](std::size_t nth) -> int {
        CalculationData data{};
        data.rsec = EReferenceSEC::Class2;
        data.selectedMinModulation = Modulation::QAM16;
        data.actualModulation = Modulation::QAM16;
        data.refMaxModulation = Modulation::QAM256;
        data.pmaxSelectedMinModulation = pmax[1];
        data.pmaxActualModulation = pmax[1];
        data.pmaxRefMaxModulation = pmax[3];
        long power = 0;
        const auto ask = [&] {
            CalculatorKamV2::getInstance()->getMaxPower(data, power, 0, 0, 0, Modulation::CW);
        };
        if (!whileFailing(nth, ask).isReached) {
            return NotReached;
        }
        ask();
        return holds(power == 2600, "the power is " + std::to_string(power)) ? AllWell : Wrong;
    };

    // The instance is all that it takes: the tables are constants.
    EXPECT_EQ(inFreshProcesses(firstPower), 1U);
}

TEST(Construction, isSafeInAFreshProcess) {
    const auto construct = [](std::size_t nth) -> int {
        const std::size_t live = FailingHeap::live();
        std::unique_ptr<OutputPowerCalculator> sut;
        const Course course =
            whileFailing(nth, [&sut] { sut = std::make_unique<OutputPowerCalculator>(1); });
        if (!course.isReached) {
            return NotReached;
        }
        // The service's name is kept once it is built: the text and its characters.
        constexpr std::size_t mostKept = 2;
        return holds(!course.hasEnded, "there is a service without heap") &&
                       holds(FailingHeap::live() <= live + mostKept, "blocks are lost")
                   ? AllWell
                   : Wrong;
    };

    EXPECT_GT(inFreshProcesses(construct), 0U);
}
