#include "Attempts.h"
#include "RecordedHost.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <streambuf>

namespace {

/// Takes everything and keeps nothing, so that the heap is the recorder's alone.
class Nowhere : public std::streambuf {
protected:
    int_type overflow(int_type character) override { return character; }
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

/// Asks with each allocation failing in turn: the answer is right, or what fails gets out.
/// @return how often that was.
std::size_t failuresOf(IOutputPowerCalculator& service) {
    std::size_t exceptions = 0;
    withEachAllocationFailing([&](std::size_t nth) {
        long minPower = 0;
        long maxPower = 0;
        const Course course = whileFailing(nth, [&] {
            service.calculatePowerCapabilities(Modulation::QAM64, minPower, maxPower);
        });
        exceptions += course.hasEnded ? 0U : 1U;
        EXPECT_TRUE(!course.hasEnded || maxPower == 1750) << nth;
        return course.isReached;
    });
    return exceptions;
}

} // namespace

TEST(RecorderAllocationDrill, noAllocationThatFailsChangesAnAnswerOrGetsOut) {
    Nowhere nowhere;
    std::ostream stream(&nowhere);
    RecordedHost host;
    OutputPowerCalculator unrecorded(1);
    ASSERT_EQ(unrecorded.initialize(), 0U);
    const std::size_t failuresUnrecorded = failuresOf(unrecorded);
    // Once before, for what stays.
    host.start();
    host.power();
    host.recorder.reset();

    const std::size_t failures = withEachAllocationFailing([&](std::size_t nth) {
        OutputPowerCalculator service(1);
        bool isWritten = false;
        FailingHeap::failAt(nth);
        RadioFileRecorder recorder(1);
        recorder.attach();
        const bool isReachedBefore = FailingHeap::hasFailed();
        const std::size_t used = FailingHeap::taken();
        FailingHeap::failAt(0);
        EXPECT_EQ(service.initialize(), 0U);
        FailingHeap::failAt(isReachedBefore ? 0 : nth - used);
        recorder.attach();
        recorder.writeWhen([](const RecordedRequest&) { return true; });
        bool isReached = isReachedBefore || FailingHeap::hasFailed();
        const std::size_t usedSince = FailingHeap::taken();
        FailingHeap::failAt(0);

        // What gets out of a request is the service's own.
        EXPECT_LE(failuresOf(*host.asked()), failuresUnrecorded) << nth;

        FailingHeap::failAt(isReached ? 0 : nth - used - usedSince);
        isWritten = recorder.write(stream);
        recorder.detach();
        isReached = isReached || FailingHeap::hasFailed();
        FailingHeap::failAt(0);
        EXPECT_TRUE(isWritten || isReached);
        return isReached;
    });

    EXPECT_GT(failures, 50U);
}
