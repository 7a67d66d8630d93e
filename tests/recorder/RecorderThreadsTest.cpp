#include "RecordedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <thread>
#include <utility>

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

/// The neighbours of channel 2 beside a host's of channel 1, which answer alike.
class SecondChannel {
public:
    explicit SecondChannel(const NodeAnswers& answers)
        : m_capabilityHandler(*answers.capabilityHandler)
        , m_acmHandler(*answers.acmHandler)
        , m_frameFormat(*answers.frameFormat)
        , m_systemPowerController(*answers.systemPowerController) {
        InterfaceBroker& broker = InterfaceBroker::getInstance();
        broker.registerInterface(ICapabilityHandler::interfaceName(2), &m_capabilityHandler);
        broker.registerInterface(IAcmHandler::interfaceName(2), &m_acmHandler);
        broker.registerInterface(IFrameFormat::interfaceName(2), &m_frameFormat);
        broker.registerInterface(ISystemPowerController::interfaceName(2),
                                 &m_systemPowerController);
    }

    ~SecondChannel() {
        InterfaceBroker& broker = InterfaceBroker::getInstance();
        broker.unregisterInterface(ICapabilityHandler::interfaceName(2), nullptr);
        broker.unregisterInterface(IAcmHandler::interfaceName(2), nullptr);
        broker.unregisterInterface(IFrameFormat::interfaceName(2), nullptr);
        broker.unregisterInterface(ISystemPowerController::interfaceName(2), nullptr);
    }

    SecondChannel(const SecondChannel&) = delete;
    SecondChannel& operator=(const SecondChannel&) = delete;

private:
    SimulatedCapabilityHandler m_capabilityHandler;
    SimulatedAcmHandler m_acmHandler;
    SimulatedFrameFormat m_frameFormat;
    SimulatedSystemPowerController m_systemPowerController;
};

/// A capability handler that lets something else happen, once, while it is asked.
class InterruptedHandler : public ICapabilityHandler {
public:
    std::string getTmuHwProductNumber() const override {
        if (whileAsked) {
            std::exchange(whileAsked, nullptr)();
        }
        return number;
    }
    unsigned getPmaxCapabilityDpd1Etsi(const int** table, const int** count) const override {
        static const int rows[] = {4, 2600, 64, 1800};
        static const int size = 4;
        *table = rows;
        *count = &size;
        return 0;
    }

    mutable std::function<void()> whileAsked;
    std::string number = "QZT 846 001";
};

} // namespace

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

// Each recorder's file holds its own channel alone, though both are asked at once and share the
// handler of the frame formats.
TEST(RecorderThreads, twoChannelsAreRecordedBesideEachOther) {
    nlohmann::json radio = recordedRadio();
    radio["variables"]["channel.2.tx.rf.pmax.cs.comp.v2.array"] = {28, -100};
    radio["variables"]["channel.2.tx.rf.pmax.cs.comp.v2.arraysize"] = 2;
    RecordedHost host(radio);
    std::optional<SecondChannel> neighbours(host.file.node);
    RadioFileRecorder recorder(2);
    ASSERT_TRUE(recorder.attach());
    std::optional<OutputPowerCalculator> service(2);
    ASSERT_EQ(service->initialize(), 0U);
    host.start();
    ASSERT_TRUE(recorder.attach());
    auto* const second =
        RecordedHost::published<IOutputPowerCalculator>(IOutputPowerCalculator::interfaceName(2));
    ASSERT_NE(second, &*service);
    std::atomic<int> wrong{0};
    const auto ask = [&wrong](IOutputPowerCalculator& asked, long power, long powerOf16Qam) {
        for (int time = 0; time < 200; ++time) {
            long minPower = 0;
            long maxPower = 0;
            asked.calculatePowerCapabilities(Modulation::QAM64, minPower, maxPower);
            std::map<ModulationAndCoding, long> powerMap;
            asked.getMinMaxOutputPowerVsModulationArray(7, {31}, {41}, EReferenceSEC::Class4L,
                                                        minPower, powerMap);
            wrong += maxPower != power || powerMap[{41}] != powerOf16Qam ? 1 : 0;
        }
    };

    // 18.00 and, for 16QAM, 23.00 of the table, less the compensation of each channel.
    std::vector<std::thread> threads;
    for (int twice = 0; twice < 2; ++twice) {
        threads.emplace_back(ask, std::ref(*host.asked()), 1750, 2250);
        threads.emplace_back(ask, std::ref(*second), 1700, 2200);
    }
    for (int time = 0; time < 5; ++time) {
        std::ostringstream stream;
        EXPECT_TRUE(recorder.write(stream));
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    EXPECT_EQ(wrong, 0);
    std::ostringstream stream;
    ASSERT_TRUE(recorder.write(stream));
    const std::string text = stream.str();
    EXPECT_TRUE(recorder.detach());
    service.reset();
    neighbours.reset();
    EXPECT_EQ(RadioFileReader::read(text).requests.size(), 800U);
    EXPECT_EQ(text.find("channel.1."), std::string::npos);
    EXPECT_EQ(host.differences(host.written()), std::vector<std::string>());
    EXPECT_EQ(RecordedHost::differencesOf(text), std::vector<std::string>());
}

// Whether the request had asked before the change or behind it cannot be told.
TEST(RecorderThreads, aRequestBesideAChangeIsInDoubt) {
    RecordedHost host;
    InterruptedHandler handler;
    InterfaceBroker::getInstance().registerInterface(ICapabilityHandler::interfaceName(1),
                                                     &handler);
    host.start();
    host.power();
    EXPECT_THAT(RecordedHost::notesOf(host.written()), Not(HasSubstr("it may have seen both")));

    handler.whileAsked = [&] {
        handler.number = "QZT 846 001 R2";
        std::thread([&host] { host.power(Modulation::QAM16); }).join();
    };
    host.power();

    EXPECT_THAT(RecordedHost::notesOf(host.written()), HasSubstr("it may have seen both"));
}
