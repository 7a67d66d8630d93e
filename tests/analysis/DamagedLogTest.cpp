#include "DamagedLog.h"
#include "LoopStride.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace {

std::uint64_t numberOfLogs() {
    const char* const wanted = std::getenv("QOR_DAMAGED_LOGS");
    // Two of each damage where each takes long.
    const std::uint64_t usual = loopStride() > 1 ? 28 : 130;
    return wanted == nullptr ? usual : std::strtoull(wanted, nullptr, 10);
}

TEST(ADamagedLog, TellsNothingWrongAsComplete) {
    std::uint64_t complete = 0;
    std::uint64_t incomplete = 0;
    for (std::uint64_t number = 0; number < numberOfLogs(); ++number) {
        const auto damage = static_cast<Damage>(number % static_cast<std::uint64_t>(Damage::Count));
        const std::uint64_t seed = 1 + number / static_cast<std::uint64_t>(Damage::Count);
        std::mt19937 random(static_cast<std::uint32_t>(number));
        const Draw draw = [&random](std::size_t count) { return random() % count; };
        LogTruth truth;
        // Every fourth is a log of replayed calls, of which each is one line.
        const bool isReplay = damage <= Damage::Interleaved && seed % 4 == 0;
        const auto linesOf = [isReplay](std::uint64_t radio) {
            const std::vector<std::string> replay = replayOfRandomRadio(radio);
            return isReplay ? replay : textOf(replay);
        };
        const Log whole = truth.logOf(linesOf(seed), 0);
        // Half of the other services differ in nothing but what is asked of them later.
        const Log other = truth.logOf(linesOf(draw(2) == 0 ? seed : seed + 1), 1);
        if (whole.empty()) {
            continue;
        }
        // Every third is changed besides.
        const bool isChanged = seed % 3 == 0;
        const Log log =
            damaged(isChanged ? changed(whole, other, draw) : whole, other, damage, draw);
        std::uint64_t found = 0;
        LoggedQueries sut({}, [&](const LoggedPowers& powers) {
            ++found;
            ++(powers.isComplete() ? complete : incomplete);
            EXPECT_EQ(truth.lieIn(powers, log, damage), "")
                << "log " << number << ", damage " << static_cast<int>(damage) << ", line "
                << powers.line;
        });
        for (const LogLine& line : log) {
            sut.read(line.text);
        }
        sut.end();
        if (!isChanged &&
            (damage == Damage::TwoProcesses || damage == Damage::ServiceStartsAgain)) {
            EXPECT_EQ(found, truth.queries()) << "log " << number;
        }
    }
    // Damage is small: most is told all the same.
    EXPECT_GT(complete, incomplete);
    RecordProperty("complete", static_cast<int>(complete));
    RecordProperty("incomplete", static_cast<int>(incomplete));
}

} // namespace
