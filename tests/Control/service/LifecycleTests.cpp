#include "DeskBoard.h"
#include "InterfaceBroker.h"
#include "OutputPowerCalculatorVersion.h"
#include "ServiceTest.h"

#include <algorithm>
#include <map>
#include <memory>
#include <ostream>
#include <set>
#include <string>
#include <utility>

using traced::enter;
using traced::msg;
using traced::sequence;

namespace {

/// What tracing lets through before anybody has set a level, recorded before the first test sets
/// one.
class TraceBeforeAnyLevel : public ::testing::Environment {
public:
    void SetUp() override {
        if (!records.empty()) {
            return; // repeated: the first round has set levels
        }
        DeskTrace::getInstance().clear();
        OutputPowerCalculator sut(1);
        sut.setTemperature(1);
        sut.initialize();
        records = DeskTrace::getInstance().take();
    }

    std::vector<TraceRecord> records;
};

TraceBeforeAnyLevel& traceBeforeAnyLevel() {
    static TraceBeforeAnyLevel* const environment = new TraceBeforeAnyLevel;
    return *environment;
}

// GoogleTest owns and deletes it.
const ::testing::Environment* const registered =
    ::testing::AddGlobalTestEnvironment(&traceBeforeAnyLevel());

IOutputPowerCalculator* published(RadioChannel channel) {
    return InterfaceBroker::getInstance().getInterface<IOutputPowerCalculator>(
        "IOutputPowerCalculator_" + std::to_string(channel));
}

/// Whether the five neighbours are connected, in the order of the look-ups.
std::vector<bool> connectionsOf(const OutputPowerCalculator& sut) {
    return {Inside::capabilityHandler(sut) != nullptr, Inside::frameFormat(sut) != nullptr,
            Inside::hardwareConfigurationHandler(sut) != nullptr,
            Inside::acmHandler(sut) != nullptr, Inside::systemPowerController(sut) != nullptr};
}

/// The traces of the four tables, each found at the first candidate.
Lines tablesFound(const std::string& channel) {
    const std::string line = "5 raw 0x820 TxRfMaxPowerCapability.initialize: ";
    return {line + "m_dpdVersion = 1, m_market = 0",
            line + "PmaxTable with value 2 succeeded for channel " + channel,
            line + "m_dpdVersion = 2, m_market = 0",
            line + "PmaxTable with value 3 succeeded for channel " + channel,
            line + "m_dpdVersion = 1, m_market = 1",
            line + "PmaxTable with value 0 succeeded for channel " + channel,
            line + "m_dpdVersion = 2, m_market = 1",
            line + "PmaxTable with value 1 succeeded for channel " + channel};
}

/// The traces of the four tables without a handler.
Lines tablesWithoutHandler(const std::string& name) {
    return Lines(4, "1 raw 0x8000 TxRfMaxPowerCapability.initialize: Error getting interface to " +
                        name);
}

} // namespace

TEST(TraceBeforeAnyLevelTest, serviceTracesUpToLevel3) {
    const std::vector<TraceRecord>& records = traceBeforeAnyLevel().records;

    // The temperature's level 5 and the entries' level 6 are held back.
    ASSERT_EQ(records.size(), 5U);
    for (const TraceRecord& record : records) {
        EXPECT_EQ(record.level, 1);
    }
    EXPECT_EQ(records[4].kind, TraceRecord::Kind::Message);
    EXPECT_EQ(records[4].text, "Error getting interface to ICapabilityHandler_1");
}

TEST(ServiceConstruction, needsNoNeighbourAndTracesAndPublishesNothing) {
    TraceCapture trace(6);

    const OutputPowerCalculator sut(2);

    EXPECT_EQ(Inside::radioChannel(sut), 2U);
    EXPECT_EQ(connectionsOf(sut), std::vector<bool>(5, false));
    EXPECT_EQ(published(1), nullptr);
    EXPECT_EQ(published(2), nullptr);
    EXPECT_EQ(trace.lines(), Lines{});
}

class ServiceStart : public ServiceTest {
protected:
    void answerMinimum(const Answer<int>& answer) {
        node.answers.capabilityHandler.minOutputPower = answer;
        node.apply();
    }
};

TEST_F(ServiceStart, withEveryNeighbourConnectsAndPublishesTheService) {
    const unsigned result = sut.initialize();

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(published(1), &sut);
    EXPECT_EQ(Inside::capabilityHandler(sut), &node.capabilityHandler);
    EXPECT_EQ(Inside::frameFormat(sut), &node.frameFormat);
    EXPECT_EQ(Inside::hardwareConfigurationHandler(sut), &hardware);
    EXPECT_EQ(Inside::acmHandler(sut), &node.acmHandler);
    EXPECT_EQ(Inside::systemPowerController(sut), &node.systemPowerController);
    EXPECT_EQ(*Inside::minOutputPower(sut), -1000);
}

TEST_F(ServiceStart, tracesTheEntryAndTheFourTables) {
    TraceCapture trace(6);

    sut.initialize();

    EXPECT_EQ(trace.lines(), sequence({enter("initialize"), tablesFound("1")}));
}

TEST_F(ServiceStart, traceRecordsCarryPathFunctionAndLine) {
    const TraceCapture trace(6);

    sut.initialize();

    const std::vector<TraceRecord> records = DeskTrace::getInstance().records();
    ASSERT_FALSE(records.empty());
    EXPECT_EQ(records[0].file, "Control/OutputPowerCalculator/private/OutputPowerCalculator");
    EXPECT_EQ(records[0].function, "initialize");
    EXPECT_GT(records[0].line, 0);
    EXPECT_EQ(records[1].file, "Control/OutputPowerCalculator/private/TxRfMaxPowerCapability");
}

TEST_F(ServiceStart, isNotStoppedByTablesThatAllFail) {
    for (const auto table :
         {&CapabilityHandlerAnswers::pmaxDpd1Etsi, &CapabilityHandlerAnswers::pmaxDpd2Etsi,
          &CapabilityHandlerAnswers::pmaxDpd1Ansi, &CapabilityHandlerAnswers::pmaxDpd2Ansi}) {
        node.answers.capabilityHandler.*table = ResultOnly{32768};
    }
    node.apply();
    TraceCapture trace(6);

    const unsigned result = sut.initialize();

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(published(1), &sut);
    const std::string info = "5 raw 0x820 TxRfMaxPowerCapability.initialize: ";
    const std::string failed =
        "1 raw 0x8000 TxRfMaxPowerCapability.initialize: Failed to get TxRfMaxPowerCapability";
    EXPECT_EQ(trace.lines(), (Lines{enter("initialize"),                     //
                                    info + "m_dpdVersion = 1, m_market = 0", //
                                    info + "PmaxTable with value 2 failed for channel 1",
                                    failed,                                  //
                                    info + "m_dpdVersion = 2, m_market = 0", //
                                    info + "PmaxTable with value 3 failed for channel 1",
                                    info + "PmaxTable with value 2 failed for channel 1",
                                    failed,                                  //
                                    info + "m_dpdVersion = 1, m_market = 1", //
                                    info + "PmaxTable with value 0 failed for channel 1",
                                    info + "PmaxTable with value 2 failed for channel 1",
                                    failed,                                  //
                                    info + "m_dpdVersion = 2, m_market = 1", //
                                    info + "PmaxTable with value 1 failed for channel 1",
                                    info + "PmaxTable with value 0 failed for channel 1",
                                    info + "PmaxTable with value 2 failed for channel 1", failed}));
}

TEST_F(ServiceStart, minimumPowerRefusedStopsBeforeTheFrameFormat) {
    for (const unsigned code : {32768U, 32769U, 4294967295U}) {
        answerMinimum(ResultOnly{code});
        TraceCapture trace(6);

        const unsigned result = sut.initialize();

        EXPECT_EQ(result, 32768U);
        EXPECT_EQ(trace.lines(),
                  sequence({enter("initialize"), tablesFound("1"),
                            msg(1, "initialize", "Failed to get Pmin from capability handler")}));
        EXPECT_EQ(Inside::capabilityHandler(sut), &node.capabilityHandler);
        EXPECT_EQ(Inside::frameFormat(sut), nullptr);
        EXPECT_EQ(published(1), nullptr);
    }
}

TEST_F(ServiceStart, minimumPowerThatIsNotProvidedSucceedsWithoutATable) {
    for (const unsigned code : {32767U, 0U}) {
        answerMinimum(ResultOnly{code});

        const unsigned result = sut.initialize();

        EXPECT_EQ(result, 0U);
        EXPECT_EQ(published(1), &sut);
        EXPECT_EQ(Inside::minOutputPower(sut), nullptr);
    }
}

/// A neighbour that initialize() looks up, in the order of the look-ups.
struct NeighbourCase {
    const char* name;
    const char* complaint;
    std::size_t position;

    friend std::ostream& operator<<(std::ostream& stream, const NeighbourCase& neighbour) {
        return stream << neighbour.name;
    }
};

class ServiceStartWithout : public ServiceTest,
                            public ::testing::WithParamInterface<NeighbourCase> {
protected:
    std::vector<bool> connections() const { return connectionsOf(sut); }

    void expectRefusal(unsigned result, const Lines& lines) const {
        EXPECT_EQ(result, 32768U);
        EXPECT_EQ(lines,
                  sequence({enter("initialize"),
                            GetParam().position == 0 ? tablesWithoutHandler("ICapabilityHandler_1")
                                                     : tablesFound("1"),
                            msg(1, "initialize", GetParam().complaint)}));
        for (std::size_t i = 0; i < 5; ++i) {
            EXPECT_EQ(connections()[i], i < GetParam().position) << i;
        }
        EXPECT_EQ(published(1), nullptr);
    }
};

TEST_P(ServiceStartWithout, neighbourStopsThereAndKeepsTheEarlierOnes) {
    InterfaceBroker::getInstance().unregisterInterface(GetParam().name, nullptr);
    TraceCapture trace(6);

    const unsigned result = sut.initialize();

    expectRefusal(result, trace.lines());
}

TEST_P(ServiceStartWithout, neighbourButANullPointerUnderItsNameStopsThere) {
    InterfaceBroker::getInstance().registerInterface(GetParam().name, nullptr);
    TraceCapture trace(6);

    const unsigned result = sut.initialize();

    expectRefusal(result, trace.lines());
}

TEST_P(ServiceStartWithout, neighbourButOneOfAnotherTypeUnderItsNameStopsThere) {
    OutputPowerCalculator other(2);
    InterfaceBroker::getInstance().registerInterface(GetParam().name, &other);
    TraceCapture trace(6);

    const unsigned result = sut.initialize();

    expectRefusal(result, trace.lines());
}

TEST_P(ServiceStartWithout, neighbourSucceedsOnceItHasArrived) {
    IInterface* removed = nullptr;
    InterfaceBroker::getInstance().unregisterInterface(GetParam().name, &removed);
    sut.initialize();
    InterfaceBroker::getInstance().registerInterface(GetParam().name, removed);

    const unsigned result = sut.initialize();

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(connections(), std::vector<bool>(5, true));
    EXPECT_EQ(published(1), &sut);
}

TEST_P(ServiceStartWithout, neighbourThatWasThereBeforeForgetsItAndStaysPublished) {
    ASSERT_EQ(sut.initialize(), 0U);
    InterfaceBroker::getInstance().unregisterInterface(GetParam().name, nullptr);

    const unsigned result = sut.initialize();

    EXPECT_EQ(result, 32768U);
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(connections()[i], i != GetParam().position) << i;
    }
    EXPECT_EQ(published(1), &sut);
}

INSTANTIATE_TEST_SUITE_P(
    , ServiceStartWithout,
    ::testing::Values(NeighbourCase{"ICapabilityHandler_1",
                                    "Error getting interface to ICapabilityHandler_1", 0},
                      NeighbourCase{"IFrameFormat_1", "Failed to get interfaceIFrameFormat_1", 1},
                      NeighbourCase{"IHardwareConfigurationHandler",
                                    "Could not get interface IHardwareConfigurationHandler", 2},
                      NeighbourCase{"IAcmHandler_1", "Could not get interface IAcmHandler_1", 3},
                      NeighbourCase{"ISystemPowerController_1",
                                    "Could not get interface ISystemPowerController_1", 4}));

TEST_F(ServiceStart, withoutACapabilityHandlerAsksNoNeighbourAnything) {
    InterfaceBroker::getInstance().unregisterInterface("ICapabilityHandler_1", nullptr);
    recordCalls();

    EXPECT_EQ(sut.initialize(), 32768U);
    EXPECT_EQ(calls.texts(), Lines{});
}

TEST_F(ServiceStart, repeatedTakesNewNeighbours) {
    ASSERT_EQ(sut.initialize(), 0U);
    SimulatedSystemPowerController otherController;
    InterfaceBroker::getInstance().registerInterface("ISystemPowerController_1", &otherController);

    ASSERT_EQ(sut.initialize(), 0U);

    EXPECT_EQ(Inside::systemPowerController(sut), &otherController);
    EXPECT_EQ(published(1), &sut);
}

TEST_F(ServiceStart, repeatedTracesEveryStepAgain) {
    ASSERT_EQ(sut.initialize(), 0U);
    TraceCapture trace(6);

    sut.initialize();

    EXPECT_EQ(trace.lines(), sequence({enter("initialize"), tablesFound("1")}));
}

TEST_F(ServiceStart, replacesWhateverWasPublishedUnderItsName) {
    InterfaceBroker::getInstance().registerInterface("IOutputPowerCalculator_1", nullptr);

    sut.initialize();

    EXPECT_EQ(published(1), &sut);
}

TEST_F(ServiceStart, destructionWithdrawsTheService) {
    auto service = std::make_unique<OutputPowerCalculator>(1);
    ASSERT_EQ(service->initialize(), 0U);
    ASSERT_NE(published(1), nullptr);

    service.reset();

    EXPECT_EQ(published(1), nullptr);
}

TEST_F(ServiceStart, destructionWithdrawsTheNameWithoutInitializeToo) {
    ASSERT_EQ(sut.initialize(), 0U);

    { const OutputPowerCalculator neverInitialised(3); }

    EXPECT_EQ(published(1), nullptr);
}

TEST_F(ServiceStart, destructionOfTheOtherChannelLeavesTheServicePublished) {
    ASSERT_EQ(sut.initialize(), 0U);

    { const OutputPowerCalculator ofChannel2(2); }

    EXPECT_EQ(published(1), &sut);
}

struct ChannelCase {
    unsigned long given;
    RadioChannel served;

    friend std::ostream& operator<<(std::ostream& stream, const ChannelCase& channel) {
        return stream << channel.given;
    }
};

class ServiceOfChannel : public NodeFixture, public ::testing::WithParamInterface<ChannelCase> {
protected:
    ChannelNeighbours node2{2};
};

TEST_P(ServiceOfChannel, servesItsChannelAndFetchesItsTablesUnderTheGivenNumber) {
    SimulatedCapabilityHandler handlerOfGiven(node.answers.capabilityHandler);
    const std::string name = GetParam().given == 0
                                 ? "ICapabilityHandler"
                                 : "ICapabilityHandler_" + std::to_string(GetParam().given);
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    if (GetParam().given != GetParam().served) {
        broker.registerInterface(name, &handlerOfGiven);
    }
    OutputPowerCalculator sut(GetParam().given);
    TraceCapture trace(6);

    const unsigned result = sut.initialize();

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(trace.lines(),
              sequence({enter("initialize"), tablesFound(std::to_string(GetParam().given))}));
    EXPECT_EQ(Inside::radioChannel(sut), GetParam().served);
    EXPECT_EQ(published(GetParam().served), &sut);
    EXPECT_EQ(published(3 - GetParam().served), nullptr);
    const auto& served = GetParam().served == 1 ? node : node2;
    EXPECT_EQ(Inside::capabilityHandler(sut), &served.capabilityHandler);
    EXPECT_EQ(Inside::frameFormat(sut), &served.frameFormat);
    EXPECT_EQ(Inside::acmHandler(sut), &served.acmHandler);
    EXPECT_EQ(Inside::systemPowerController(sut), &served.systemPowerController);
    EXPECT_EQ(Inside::hardwareConfigurationHandler(sut), &hardware);
    if (GetParam().given != GetParam().served) {
        broker.unregisterInterface(name, nullptr);
    }
}

INSTANTIATE_TEST_SUITE_P(, ServiceOfChannel,
                         ::testing::Values(ChannelCase{0, 1}, ChannelCase{1, 1}, ChannelCase{2, 2},
                                           ChannelCase{3, 1}, ChannelCase{4294967295, 1}));

TEST_F(ServiceStart, withoutAHandlerUnderTheGivenNumberSucceedsWithEmptyTables) {
    OutputPowerCalculator ofChannel3(3);
    TraceCapture trace(6);

    const unsigned result = ofChannel3.initialize();

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(trace.lines(),
              sequence({enter("initialize"), tablesWithoutHandler("ICapabilityHandler_3")}));
    EXPECT_EQ(published(1), &ofChannel3);
    long pmin = untouched;
    long pmax = untouched;
    EXPECT_EQ(ofChannel3.findPminPmax(pmin, pmax), 0);
    EXPECT_EQ(pmin, -750);
    EXPECT_EQ(pmax, -2147483648);
}

class TwoServices : public StartedServiceTest {
protected:
    ChannelNeighbours node2{2};
    OutputPowerCalculator sut2{2};
};

TEST_F(TwoServices, ofTwoChannelsStandSideBySide) {
    node2.answers.capabilityHandler.productNumber = "QZT 846 003";
    node2.answers.capabilityHandler.pmaxDpd1Etsi = std::vector<int>{4, 1800, 64, 1500};
    node2.answers.capabilityHandler.minOutputPower = -300;
    node2.answers.systemPowerController.minOutputPowerOffsets = {{EChannelSpacingType::MHz56, 20}};
    node2.answers.frameFormat.channelSpacing = EChannelSpacingType::MHz56;
    node2.apply();
    ASSERT_EQ(sut2.initialize(), 0U);
    sut.setPowerCutback(300);
    sut2.setTemporaryPowerCutback(true, 1000);

    long minPower1 = untouched;
    long maxPower1 = untouched;
    long minPower2 = untouched;
    long maxPower2 = untouched;
    const int result1 = sut.calculatePowerCapabilities(Modulation::QAM64, minPower1, maxPower1);
    const int result2 = sut2.calculatePowerCapabilities(Modulation::QAM64, minPower2, maxPower2);

    EXPECT_EQ(published(1), &sut);
    EXPECT_EQ(published(2), &sut2);
    EXPECT_EQ(result1, 0);
    EXPECT_EQ(minPower1, -750); // -1000 + 250
    EXPECT_EQ(maxPower1, 2250); // 2400 - 300 + 150
    EXPECT_EQ(result2, 0);
    EXPECT_EQ(minPower2, -280); // -300 + 20
    EXPECT_EQ(maxPower2, 410);  // 1500 - 1000 - 90
}

TEST_F(TwoServices, ofTwoChannelsAskTheHardwareConfigurationForTheirOwnChannel) {
    ASSERT_EQ(sut2.initialize(), 0U);
    recordCalls();
    for (auto* const each : {&node, &node2}) {
        each->answers.capabilityHandler.maxAcmLimitedByHw = true;
        each->apply();
    }
    const std::string handler = "IHardwareConfigurationHandler::";

    for (const bool isAggregated : {false, true}) {
        DeskBoard::setCarrierAggregation(isAggregated);
        for (const auto& [service, channel] : {std::pair(&sut, "1"), std::pair(&sut2, "2")}) {
            calls.clear();
            std::map<ModulationAndCoding, long> powerMap;
            long minPower = 0;

            EXPECT_EQ(service->getMinMaxOutputPowerVsModulationArray(7, noCode, noCode, rsec2,
                                                                     minPower, powerMap),
                      0U);

            std::set<std::string> asked;
            for (const std::string& text : calls.texts()) {
                if (text.starts_with(handler)) {
                    asked.insert(text.substr(handler.size()));
                }
            }
            const std::string frameFormat = std::string("(") + channel + ", 7)";
            const std::string profiles = isAggregated ? "getCarrierAggregationPerformanceProfiles"
                                                      : "getPerformanceProfiles";
            std::set<std::string> ofItsOwn = {"getFrameFormatRecords(false)"};
            for (const std::string& call :
                 {std::string("getChannelSpacing"), std::string("getDpdVersion"),
                  std::string("getModulationAndCodeArray"), std::string("getTelecomMarket"),
                  profiles}) {
                ofItsOwn.insert(call + frameFormat);
            }
            EXPECT_EQ(asked, ofItsOwn);
        }
    }
}

TEST_F(TwoServices, endIndependently) {
    auto ofChannel2 = std::make_unique<OutputPowerCalculator>(2);
    ASSERT_EQ(ofChannel2->initialize(), 0U);

    ofChannel2.reset();

    EXPECT_EQ(published(2), nullptr);
    EXPECT_EQ(published(1), &sut);
    long pmin = untouched;
    long pmax = untouched;
    EXPECT_EQ(sut.findPminPmax(pmin, pmax), 0);
    EXPECT_EQ(pmax, 2800);
}

TEST_F(TwoServices, ofOneChannelAnswerEachForItselfAndTheEndOfEitherTakesTheName) {
    auto another = std::make_unique<OutputPowerCalculator>(1);
    ASSERT_EQ(another->initialize(), 0U);
    EXPECT_EQ(published(1), another.get()) << "the last one that starts has the name";
    another->setPowerCutback(500);

    long minPower = untouched;
    long maxPower = untouched;
    long cutBack = untouched;
    EXPECT_EQ(sut.calculatePowerCapabilities(Modulation::QAM64, minPower, maxPower), 0);
    EXPECT_EQ(another->calculatePowerCapabilities(Modulation::QAM64, minPower, cutBack), 0);
    EXPECT_EQ(maxPower - cutBack, 500);

    another.reset();
    // By its name, not by what stands there: who replaces a service ends the old one first.
    EXPECT_EQ(published(1), nullptr);
    EXPECT_EQ(sut.calculatePowerCapabilities(Modulation::QAM64, minPower, cutBack), 0);
    EXPECT_EQ(cutBack, maxPower);
    EXPECT_EQ(sut.initialize(), 0U);
    EXPECT_EQ(published(1), &sut);
}

TEST(Version, ofTheLibraryIsThatOfItsHeadersInPairsOfDigits) {
    EXPECT_EQ(qorOutputPowerCalculatorVersion() / 10000, QOR_OUTPUT_POWER_CALCULATOR_VERSION_MAJOR);
    EXPECT_EQ(qorOutputPowerCalculatorVersion() / 100 % 100,
              QOR_OUTPUT_POWER_CALCULATOR_VERSION_MINOR);
    EXPECT_EQ(qorOutputPowerCalculatorVersion() % 100, QOR_OUTPUT_POWER_CALCULATOR_VERSION_PATCH);
    EXPECT_EQ(qorOutputPowerCalculatorVersion(), QOR_OUTPUT_POWER_CALCULATOR_VERSION);
}
