#include "LoopStride.h"
#include "RecordedAnswers.h"
#include "RecordedReplay.h"
#include "reference/RandomRadioFile.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace {

constexpr std::uint64_t fileCount = 6000;

} // namespace

// Whatever a node is and is asked, the file plays the same requests and gets the same answers, by
// the same steps.
TEST(RoundTrip, aRecordingReplaysItsAnswersWithEveryTrace) {
    for (std::uint64_t seed = 0; seed < fileCount; seed += loopStride()) {
        const RadioFile played = RadioFileReader::read(reference::randomRadioFile(seed).dump());
        // Once before, because some traces come once in a process.
        RecordedReplay::linesOf(played);
        const RecordedReplay::Lines plain = RecordedReplay::linesOf(played);
        const RecordedReplay sut(played);
        const std::string where = "random radio file " + std::to_string(seed) + "\n";

        ASSERT_EQ(RecordedReplay::firstDifference(sut.lines, plain), "") << where;
        ASSERT_TRUE(sut.isWritten) << where;
        ASSERT_TRUE(sut.isDetached) << where;
        const RadioFile recorded = RadioFileReader::read(sut.text);
        const RecordedReplay::Lines replayed = RecordedReplay::linesOf(recorded);
        ASSERT_EQ(RecordedReplay::firstDifference(replayed, plain), "") << where << sut.text;
        ASSERT_EQ(RecordedAnswers::differences(recorded, replayed), std::vector<std::string>())
            << where << sut.text;
    }
}
