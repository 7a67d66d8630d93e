#include "RecordedHost.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <stdexcept>

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

const std::string frameFormatName = IFrameFormat::interfaceName(1);

/// A capability handler whose product number is whatever the test says, or an exception.
class OddHandler : public ICapabilityHandler {
public:
    std::string getTmuHwProductNumber() const override {
        if (isThrowing) {
            throw std::runtime_error("no product number");
        }
        return number;
    }
    unsigned getPmaxCapabilityDpd1Etsi(const int** table, const int** count) const override {
        static const int rows[] = {4, 2600, 64, 1800};
        static const int size = 4;
        *table = rows;
        *count = &size;
        return pmaxResult;
    }

    std::string number = "QZT 846 001";
    bool isThrowing = false;
    unsigned pmaxResult = 0;
};

/// Stands in for the node's capability handler while it lives.
class WithOddHandler {
public:
    WithOddHandler() {
        InterfaceBroker::getInstance().registerInterface(ICapabilityHandler::interfaceName(1),
                                                         &handler);
    }
    OddHandler handler;
};

} // namespace

TEST(Recorder, writesARadioFileThatGetsTheSameAnswers) {
    RecordedHost host;
    host.start();

    // 18.00 of the table, 0.50 of compensation taken off, and a cutback of 1.00.
    EXPECT_EQ(host.power(), 1750);
    host.asked()->setPowerCutback(100);
    EXPECT_EQ(host.power(), 1650);
    const std::string text = host.written();

    const RadioFile file = RadioFileReader::read(text);
    ASSERT_EQ(file.requests.size(), 3U);
    EXPECT_EQ(file.requests[2].expect, R"({"maxPower":1650,"minPower":850,"result":0})");
    EXPECT_EQ(host.differences(text), std::vector<std::string>());
}

TEST(Recorder, saysWhatWasNeverAskedAndLeavesOutWhatMayBeAbsent) {
    RecordedHost host;
    host.start();
    host.power();

    const std::string text = host.written();

    EXPECT_THAT(RecordedHost::notesOf(text),
                HasSubstr("/frameFormat/maxAvailableModulation, /frameFormat/modulationAndCodes, "
                          "/systemPowerController/referenceSec"));
    EXPECT_THAT(text, Not(HasSubstr("performanceProfileIndex")));
    EXPECT_THAT(text, Not(HasSubstr("carrierAggregation")));
}

TEST(Recorder, patchesTheFileBeforeTheRequestThatSawAnotherAnswer) {
    RecordedHost host;
    host.start();
    host.power();
    FrameFormatAnswers answers = *host.file.node.frameFormat;
    answers.channelSpacing = EChannelSpacingType::MHz56;
    host.node->frameFormat()->setAnswers(answers);

    // No compensation and no offset for 56 MHz.
    EXPECT_EQ(host.power(), 1800);
    host.power();
    const std::string text = host.written();

    EXPECT_THAT(text,
                HasSubstr(R"({"call": "patch", "file": {"frameFormat": {"channelSpacing": 56}}})"));
    EXPECT_EQ(host.differences(text), std::vector<std::string>());
}

TEST(Recorder, foldsOldRequestsIntoTheStateAndKeepsTheLast) {
    RecordedHost host(recordedRadio(), 8192);
    host.start();
    host.asked()->setPowerCutback(100);
    for (long temperature = 0; temperature < 500; ++temperature) {
        host.asked()->setTemperature(temperature);
    }

    EXPECT_EQ(host.power(), 1650);
    const std::string text = host.written();

    const RadioFile file = RadioFileReader::read(text);
    EXPECT_LT(file.requests.size(), 200U);
    EXPECT_EQ(std::get<Calls::SetPowerCutback>(file.requests.front().call).cutback, 100U);
    EXPECT_TRUE(
        std::holds_alternative<Calls::CalculatePowerCapabilities>(file.requests.back().call));
    EXPECT_THAT(RecordedHost::notesOf(text), HasSubstr("older requests are left out"));
    EXPECT_EQ(host.differences(text), std::vector<std::string>());
}

TEST(Recorder, saysThatAnAnswerDidNotFit) {
    nlohmann::json radio = recordedRadio();
    radio["capabilityHandler"]["productNumber"] = std::string(9000, 'x');
    RecordedHost host(radio, 8192);
    host.start();
    long minPower = 0;
    std::map<ModulationAndCoding, long> powerMap;

    host.asked()->getMinMaxOutputPowerVsModulationArray(0, {163}, {163}, EReferenceSEC::Class2,
                                                        minPower, powerMap);

    EXPECT_FALSE(powerMap.empty());
    EXPECT_THAT(RecordedHost::notesOf(host.written()), HasSubstr("answers are lost"));
}

TEST(Recorder, handsExceptionsThroughAndGoesOn) {
    RecordedHost host;
    WithOddHandler odd;
    host.start();
    EXPECT_EQ(host.power(), 1750);

    odd.handler.isThrowing = true;
    EXPECT_THROW(host.power(), std::runtime_error);
    odd.handler.isThrowing = false;
    EXPECT_EQ(host.power(), 1750);
    const std::string text = host.written();

    EXPECT_THAT(RecordedHost::notesOf(text),
                HasSubstr("before request 1: a call of calculatePowerCapabilities ended with an "
                          "exception"));
    EXPECT_EQ(host.differences(text), std::vector<std::string>());
}

TEST(Recorder, keepsTheBytesOfAProductNumberThatIsNotUtf8) {
    RecordedHost host;
    WithOddHandler odd;
    odd.handler.number = "QZT\xff\"\x01\xe2\x82\xac";
    host.start();
    host.power();

    const std::string text = host.written();

    EXPECT_EQ(*RadioFileReader::read(text).node.capabilityHandler->productNumber,
              "QZT\xef\xbf\xbd\"\x01\xe2\x82\xac");
    EXPECT_THAT(RecordedHost::notesOf(text), HasSubstr("its bytes are 51 5a 54 ff 22 01 e2 82 ac"));
    EXPECT_EQ(host.differences(text), std::vector<std::string>());
}

TEST(Recorder, namesAFailureThatWroteItsOutput) {
    RecordedHost host;
    WithOddHandler odd;
    odd.handler.pmaxResult = 32768;
    host.start();
    host.power();

    EXPECT_THAT(RecordedHost::notesOf(host.written()),
                HasSubstr("/capabilityHandler/pmaxDpd1Etsi: the node's failed and wrote a table"));
}

TEST(Recorder, findsAServiceThatWasNotAttachedAndSaysThatItMissedARequest) {
    RecordedHost host;
    ASSERT_TRUE(host.recorder->attach());
    host.service = std::make_unique<OutputPowerCalculator>(1);
    host.service->initialize();
    ASSERT_EQ(host.asked(), host.service.get());

    host.power();
    host.power();
    const std::string text = host.written();

    EXPECT_EQ(RadioFileReader::read(text).requests.size(), 1U);
    EXPECT_THAT(RecordedHost::notesOf(text), HasSubstr("outside of these requests"));
    EXPECT_EQ(host.differences(text), std::vector<std::string>());
}

TEST(Recorder, writesNothingOfAServiceThatStartedBefore) {
    RecordedHost host;
    host.service = std::make_unique<OutputPowerCalculator>(1);
    host.service->initialize();
    ASSERT_TRUE(host.recorder->attach());
    EXPECT_EQ(host.power(), 1750);

    EXPECT_THAT(RecordedHost::notesOf(host.written()), HasSubstr("was not seen to start"));
}

TEST(RecorderDetached, putsTheRealOnesBackInAnyOrderWithTheServicesEnd) {
    enum Step {
        Detach,
        EndService,
        EndRecorder
    };
    std::array<Step, 3> order{Detach, EndService, EndRecorder};
    do {
        RecordedHost host;
        auto* const real = RecordedHost::published<IFrameFormat>(frameFormatName);
        host.start();
        ASSERT_NE(RecordedHost::published<IFrameFormat>(frameFormatName), real);
        for (const Step step : order) {
            if (step == Detach && host.recorder != nullptr) {
                EXPECT_TRUE(host.recorder->detach());
            } else if (step == EndService) {
                host.service.reset();
            } else if (step == EndRecorder) {
                host.recorder.reset();
            }
            if (host.service != nullptr) {
                EXPECT_EQ(host.power(), 1750);
            }
        }
        EXPECT_EQ(RecordedHost::published<IFrameFormat>(frameFormatName), real);
        EXPECT_EQ(host.asked(), nullptr);
    } while (std::next_permutation(order.begin(), order.end()));
}

TEST(RecorderDetached, leavesWhatSomebodyRegisteredMeanwhileAndSaysSo) {
    RecordedHost host;
    host.start();
    const SimulatedFrameFormat another(*host.file.node.frameFormat);
    auto* const theirs = const_cast<SimulatedFrameFormat*>(&another);
    InterfaceBroker::getInstance().registerInterface(frameFormatName, theirs);

    EXPECT_FALSE(host.recorder->detach());

    EXPECT_EQ(RecordedHost::published<IFrameFormat>(frameFormatName), theirs);
    EXPECT_EQ(host.asked(), host.service.get());
}

TEST(RecorderDetached, recordsNothingMoreAndCanBeAttachedAgain) {
    RecordedHost host;
    host.start();
    host.power();
    ASSERT_TRUE(host.recorder->detach());
    host.service->setPowerCutback(100);
    EXPECT_EQ(host.power(), 1650);
    EXPECT_EQ(host.recorder->requestCount(), 1U);

    ASSERT_TRUE(host.recorder->attach());
    host.power();

    EXPECT_EQ(host.recorder->requestCount(), 2U);
}

TEST(RecorderChannels, aChannelHasOneRecorderAndTheUnitsHandlerServesBoth) {
    const auto handler = [] {
        return RecordedHost::published<IHardwareConfigurationHandler>(
            IHardwareConfigurationHandler::interfaceName());
    };
    RecordedHost host;
    auto* const real = handler();
    host.start();
    RadioFileRecorder second(2);
    RadioFileRecorder again(1);

    EXPECT_FALSE(again.attach());
    EXPECT_TRUE(second.attach());
    EXPECT_TRUE(host.recorder->detach());
    EXPECT_NE(handler(), real);
    EXPECT_TRUE(second.detach());

    EXPECT_EQ(handler(), real);
}

TEST(RecorderTrigger, aPowerBelowALimitKeepsTheRecordingUpToIt) {
    RecordedHost host;
    host.start();
    ASSERT_TRUE(host.recorder->writeWhen(RecordingTriggers::powerBelow(1650)));
    std::ostringstream before;
    host.power();
    host.asked()->setPowerCutback(100);
    host.power();
    EXPECT_FALSE(host.recorder->isTriggered());
    EXPECT_FALSE(host.recorder->write(before));

    host.asked()->setPowerCutback(101);
    host.power();
    EXPECT_TRUE(host.recorder->isTriggered());
    host.power();

    EXPECT_EQ(RadioFileReader::read(host.written()).requests.size(), 5U);
    ASSERT_TRUE(host.recorder->writeWhen(nullptr));
    EXPECT_EQ(RadioFileReader::read(host.written()).requests.size(), 6U);
}

TEST(RecorderTrigger, seesThePowersOfAMapToo) {
    RecordedHost host;
    host.start();
    ASSERT_TRUE(host.recorder->writeWhen(RecordingTriggers::powerBelow(1750)));
    long minPower = 0;
    std::map<ModulationAndCoding, long> powerMap{{{31}, 1749}};

    host.asked()->getMinMaxOutputPowerVsModulationArray(7, {31}, {41}, EReferenceSEC::Class2,
                                                        minPower, powerMap);
    EXPECT_FALSE(host.recorder->isTriggered()) << powerMap[{31}];
    host.asked()->setPowerCutback(1000);
    host.asked()->getMinMaxOutputPowerVsModulationArray(7, {31}, {41}, EReferenceSEC::Class2,
                                                        minPower, powerMap);

    EXPECT_TRUE(host.recorder->isTriggered());
}

TEST(RecorderTrigger, aFailureAndAPowerThatChangedAreReady) {
    RecordedHost host;
    host.start();
    ASSERT_TRUE(host.recorder->writeWhen(RecordingTriggers::failure()));
    host.power();
    EXPECT_FALSE(host.recorder->isTriggered());
    long minPower = 0;
    long maxPower = 0;
    host.asked()->calculateAdmodPowerCapabilities(Modulation::QAM32, EReferenceSEC::Class2,
                                                  minPower, maxPower);
    EXPECT_TRUE(host.recorder->isTriggered());

    ASSERT_TRUE(host.recorder->writeWhen(RecordingTriggers::powerChanged()));
    host.power(Modulation::QAM64);
    host.power(Modulation::QAM16);
    host.power(Modulation::QAM64);
    EXPECT_FALSE(host.recorder->isTriggered());
    host.asked()->setPowerCutback(1);
    host.power(Modulation::QAM16);
    EXPECT_TRUE(host.recorder->isTriggered());
}

TEST(RecorderTrigger, oneThatThrowsHasSaidNo) {
    RecordedHost host;
    host.start();
    ASSERT_TRUE(host.recorder->writeWhen(
        [](const RecordedRequest&) -> bool { throw std::runtime_error("no"); }));

    EXPECT_EQ(host.power(), 1750);
    EXPECT_FALSE(host.recorder->isTriggered());
    ASSERT_TRUE(host.recorder->writeWhen(nullptr));
    EXPECT_THAT(RecordedHost::notesOf(host.written()), HasSubstr("1 times the trigger threw"));
}
