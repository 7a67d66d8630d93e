#include "CompareReplays.h"
#include "LoopStride.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace {

constexpr std::uint64_t fileCount = 1500;

} // namespace

TEST(RandomReplay, equalsTheRestatementLineForLineWithEveryTrace) {
    for (std::uint64_t seed = 0; seed < fileCount; seed += loopStride()) {
        const CompareReplays::Lines lines = CompareReplays::ofThisProcess().playRandom(seed, 6);

        ASSERT_EQ(lines.difference(), "") << "random radio file " << seed;
    }
}

TEST(RandomReplay, equalsTheRestatementAtEveryTraceLevel) {
    for (int traceLevel = 0; traceLevel <= 6; ++traceLevel) {
        for (std::uint64_t seed = 0; seed < fileCount / 10; seed += loopStride()) {
            const CompareReplays::Lines lines =
                CompareReplays::ofThisProcess().playRandom(seed + 1000000, traceLevel);

            ASSERT_EQ(lines.difference(), "")
                << "random radio file " << seed + 1000000 << " at level " << traceLevel;
        }
    }
}

TEST(RandomReplay, theRandomFilesReachEveryFamilyAndEveryCall) {
    std::string everything;
    for (std::uint64_t seed = 0; seed < 300; ++seed) {
        for (const std::string& line :
             CompareReplays::ofThisProcess().playRandom(seed, 6).reference) {
            everything += line;
        }
    }

    for (const char* text :
         {"CalculatorKam\"", "CalculatorKamV3\"", "CalculatorVo4\"", "CalculatorVo5\"", "boosted.4",
          "std::min parameters", "tmuMaxPowerFor64Qam", "ignoring QAM", "Modulation not supported",
          "Failed to get AdMod capabilities", "wrong channel or FFID", "Failed to get variable",
          "no match for channel spacing", "\"call\":\"patch\"", "\"call\":\"findPminPmax\"",
          "\"call\":\"getUnrestrictedPmax\"", "\"call\":\"setTemperature\"",
          "\"call\":\"calculateAdmodPowerCapabilities\""}) {
        EXPECT_NE(everything.find(text), std::string::npos) << text;
    }
}

TEST(RandomReplay, everySeedMakesItsOwnFileAlways) {
    EXPECT_EQ(reference::randomRadioFile(1).dump(), reference::randomRadioFile(1).dump());
    EXPECT_NE(reference::randomRadioFile(1).dump(), reference::randomRadioFile(2).dump());
}

TEST(RandomReplay, nearlyAllRandomFilesStartAndPlayAllTheirRequests) {
    int started = 0;
    for (std::uint64_t seed = 0; seed < 300; ++seed) {
        const std::size_t requests = reference::randomRadioFile(seed).at("requests").size();
        ASSERT_GE(requests, 5U) << seed;
        ASSERT_LE(requests, 30U) << seed;
        const CompareReplays::Lines lines = CompareReplays::ofThisProcess().playRandom(seed, 0);
        if (lines.reference.size() == requests + 1) {
            ++started;
        } else {
            EXPECT_EQ(lines.reference.size(), 1U) << seed;
        }
    }
    EXPECT_GT(started, 270);
}
