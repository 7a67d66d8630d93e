#include "RecordedHost.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

// Threads ask while another one writes again and again and answers change. That nobody races is for
// the thread sanitizer to see.
TEST(RecorderThreads, whatIsWrittenWhileOthersAskReplaysAsItWas) {
    RecordedHost host;
    host.start();
    IOutputPowerCalculator& asked = *host.asked();
    std::atomic<bool> isOver{false};
    std::atomic<int> wrong{0};
    const auto ask = [&](Modulation modulation, long expected) {
        while (!isOver) {
            long minPower = 0;
            long maxPower = 0;
            asked.calculatePowerCapabilities(modulation, minPower, maxPower);
            long pmax = 0;
            asked.getUnrestrictedPmax(pmax);
            wrong += maxPower != expected || pmax != 2250 ? 1 : 0;
        }
    };

    std::thread first(ask, Modulation::QAM64, 1750);
    std::thread second(ask, Modulation::QAM16, 2250);
    std::vector<std::string> texts;
    for (int time = 0; time < 20; ++time) {
        ASSERT_TRUE(host.recorder->writeWhen(time % 2 == 0 ? RecordingTriggers::failure()
                                                           : RecordingTrigger()));
        std::ostringstream stream;
        EXPECT_EQ(host.recorder->write(stream), time % 2 != 0);
        texts.push_back(stream.str());
    }
    isOver = true;
    first.join();
    second.join();

    EXPECT_EQ(wrong, 0);
    texts.push_back(host.written());
    EXPECT_EQ(host.differences(texts.back()), std::vector<std::string>());
    EXPECT_EQ(RecordedHost::differencesOf(texts[1]), std::vector<std::string>());
}
