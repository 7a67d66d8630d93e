#pragma once

#include "DeskBoard.h"
#include "DeskTrace.h"
#include "DeskVariableStore.h"
#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "IFrameFormat.h"
#include "IHardwareConfigurationHandler.h"
#include "ISystemPowerController.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

/// Answers by the interface's default bodies where no test says otherwise.
class MockCapabilityHandler : public ICapabilityHandler {
public:
    MockCapabilityHandler();
    ~MockCapabilityHandler() override;

    MOCK_METHOD(std::string, getTmuHwProductNumber, (), (const, override));
    MOCK_METHOD(unsigned, getMinOutputPower, (const int**), (const, override));
    MOCK_METHOD(unsigned, getPmaxCapabilityDpd1Ansi, (const int**, const int**), (const, override));
    MOCK_METHOD(unsigned, getPmaxCapabilityDpd2Ansi, (const int**, const int**), (const, override));
    MOCK_METHOD(unsigned, getPmaxCapabilityDpd1Etsi, (const int**, const int**), (const, override));
    MOCK_METHOD(unsigned, getPmaxCapabilityDpd2Etsi, (const int**, const int**), (const, override));
    MOCK_METHOD(bool, isMaxAcmLimitedByHw, (), (const, override));
    MOCK_METHOD(short, getPerformanceProfileIndex, (), (const, override));
    MOCK_METHOD(Modulation, getMaxModulationLimitedByHw, (const std::vector<short>&, short),
                (const, override));
    MOCK_METHOD(Modulation, getMaxModulationWithoutLimitation, (const EFrameFormatMarket&),
                (const, override));
};

/// Answers by the interface's default body where no test says otherwise.
class MockAcmHandler : public IAcmHandler {
public:
    MockAcmHandler();
    ~MockAcmHandler() override;

    MOCK_METHOD(unsigned, getMinMaxModulationAndCode, (ModulationAndCoding&, ModulationAndCoding&),
                (override));
};

class MockFrameFormat : public IFrameFormat {
public:
    MockFrameFormat();
    ~MockFrameFormat() override;

    MOCK_METHOD(Modulation, getModulation, (), (const, override));
    MOCK_METHOD(Modulation, getMaxAvailableModulation, (), (const, override));
    MOCK_METHOD(void, getModulationAndCodeArray, (std::vector<ModulationAndCoding>&),
                (const, override));
    MOCK_METHOD(EChannelSpacingType, getChannelSpacing, (), (const, override));
    MOCK_METHOD(EDpdVersion, getDpdVersion, (), (const, override));
    MOCK_METHOD(EFrameFormatMarket, getTelecomMarket, (), (const, override));
    MOCK_METHOD(void, getPerformanceProfiles, (std::vector<short>&), (const, override));
    MOCK_METHOD(void, getCarrierAggregationPerformanceProfiles, (std::vector<short>&),
                (const, override));
};

class MockSystemPowerController : public ISystemPowerController {
public:
    MockSystemPowerController();
    ~MockSystemPowerController() override;

    MOCK_METHOD(EReferenceSEC, getReferenceSec, (), (const, override));
    MOCK_METHOD(bool, getMinOutputPowerOffset, (EChannelSpacingType, long&), (const, override));
};

class MockHardwareConfigurationHandler : public IHardwareConfigurationHandler {
public:
    MockHardwareConfigurationHandler();
    ~MockHardwareConfigurationHandler() override;

    MOCK_METHOD(void, getFrameFormatRecords, (bool, std::vector<FrameFormatRecord>&),
                (const, override));
    MOCK_METHOD(EDpdVersion, getDpdVersion, (RadioChannel, long), (const, override));
    MOCK_METHOD(unsigned, getTelecomMarket, (RadioChannel, long, EFrameFormatMarket&),
                (const, override));
    MOCK_METHOD(unsigned, getModulationAndCodeArray,
                (RadioChannel, long, std::vector<ModulationAndCoding>&), (const, override));
    MOCK_METHOD(unsigned, getChannelSpacing, (RadioChannel, long, EChannelSpacingType&),
                (const, override));
    MOCK_METHOD(void, getPerformanceProfiles, (RadioChannel, long, std::vector<short>&),
                (const, override));
    MOCK_METHOD(void, getCarrierAggregationPerformanceProfiles,
                (RadioChannel, long, std::vector<short>&), (const, override));
};

/// A Pmax table as a capability handler hands it out.
struct PmaxAnswer {
    PmaxAnswer(std::vector<int> integers)
        : table(std::move(integers))
        , count(static_cast<int>(table.size())) {}

    unsigned handOut(const int** tableOut, const int** countOut) const {
        if (result < 32768) {
            *tableOut = table.data();
            *countOut = &count;
        }
        return result;
    }

    std::vector<int> table;
    int count;
    unsigned result = 0;
};

/// What the mocks of one radio channel answer until a test says otherwise: a radio of the first
/// outdoor family. A test changes what it is about; its neighbours answer by it from then on.
struct RadioAnswers {
    std::string productNumber = "QZT 846 001";
    int minOutputPower = -1000;
    PmaxAnswer pmaxDpd1Etsi{{4, 2800, 16, 2600, 64, 2400, 256, 2200, 1024, 2000}};
    PmaxAnswer pmaxDpd2Etsi{{4, 2900, 16, 2700, 64, 2500, 256, 2300, 1024, 2100}};
    PmaxAnswer pmaxDpd1Ansi{{4, 2750, 16, 2550, 64, 2350, 256, 2150, 1024, 1950}};
    PmaxAnswer pmaxDpd2Ansi{{4, 2850, 16, 2650, 64, 2450, 256, 2250, 1024, 2050}};
    bool maxAcmLimitedByHw = false;
    short performanceProfileIndex = 2;
    Modulation maxModulationLimitedByHw = Modulation::UNDEFINED;
    Modulation maxModulationWithoutLimitation = Modulation::UNDEFINED;

    unsigned acmResult = 0;
    int acmMin = 30;
    int acmMax = 81;

    Modulation modulation = Modulation::QAM64;
    Modulation maxAvailableModulation = Modulation::QAM256;
    std::vector<ModulationAndCoding> modulationAndCodes = {{30}, {31}, {41}, {61}, {81}};
    EChannelSpacingType channelSpacing = EChannelSpacingType::MHz28;
    EDpdVersion dpdVersion = EDpdVersion::Dpd1;
    EFrameFormatMarket market = EFrameFormatMarket::Etsi;
    std::vector<short> performanceProfiles = {1, 2, 3};
    std::vector<short> carrierAggregationPerformanceProfiles = {4, 5};

    EReferenceSEC referenceSec = EReferenceSEC::Class4L;
    std::map<int, long> minOutputPowerOffsets = {{0, 10}, {28, 250}, {56, 400}};
};

/// The one frame format that the hardware configuration knows.
struct FrameFormatAnswers {
    long id = 7;
    EDpdVersion dpdVersion = EDpdVersion::Dpd2;
    unsigned marketResult = 0;
    EFrameFormatMarket market = EFrameFormatMarket::Etsi;
    unsigned codesResult = 0;
    std::vector<ModulationAndCoding> modulationAndCodes = {{31}, {41}, {61}};
    unsigned channelSpacingResult = 0;
    EChannelSpacingType channelSpacing = EChannelSpacingType::MHz56;
    std::vector<short> performanceProfiles = {11, 12};
    std::vector<short> carrierAggregationPerformanceProfiles = {13};
    std::vector<FrameFormatRecord> records = {{7, EChannelSpacingType::MHz56}};
};

/// The neighbours that one radio channel has for itself, published in the broker while they live.
/// Strictness is one of GoogleMock's: NiceMock or StrictMock.
template <template <class> class Strictness>
class ChannelNeighbours {
public:
    explicit ChannelNeighbours(RadioChannel channel);
    ~ChannelNeighbours();

    ChannelNeighbours(const ChannelNeighbours&) = delete;
    ChannelNeighbours& operator=(const ChannelNeighbours&) = delete;

    RadioAnswers answers;
    Strictness<MockCapabilityHandler> capabilityHandler;
    Strictness<MockAcmHandler> acmHandler;
    Strictness<MockFrameFormat> frameFormat;
    Strictness<MockSystemPowerController> systemPowerController;

private:
    void answerForCapabilityHandler();
    void answerForOthers();

    RadioChannel m_channel;
};

/// The unit's hardware configuration, published in the broker while it lives.
template <template <class> class Strictness>
class HardwareConfiguration {
public:
    HardwareConfiguration();
    ~HardwareConfiguration();

    HardwareConfiguration(const HardwareConfiguration&) = delete;
    HardwareConfiguration& operator=(const HardwareConfiguration&) = delete;

    FrameFormatAnswers answers;
    Strictness<MockHardwareConfigurationHandler> handler;
};

// Only MockNeighbours.cpp instantiates them: what GoogleMock makes of five neighbours would double
// the time that each test's source takes to compile.
extern template class ChannelNeighbours<::testing::NiceMock>;
extern template class ChannelNeighbours<::testing::StrictMock>;
extern template class HardwareConfiguration<::testing::NiceMock>;
extern template class HardwareConfiguration<::testing::StrictMock>;

/// A test with a radio node around the service: the neighbours of channel 1 in the broker, channel
/// spacings 28 and 56 calibrated on channels 1 and 2, a board without carrier aggregation, and
/// tracing off. The node is taken down at the end.
template <template <class> class Strictness>
class NodeFixture : public ::testing::Test {
protected:
    NodeFixture() {
        DeskTrace::getInstance().setLevel(0);
        DeskTrace::getInstance().clear();
        calibrate(1, {28, 150, 56, -200});
        calibrate(2, {28, 70, 56, -90});
    }

    ~NodeFixture() override {
        DeskVariableStore::getInstance().clear();
        DeskBoard::setCarrierAggregation(false);
    }

    /// Stores (channel spacing, compensation) pairs for a channel.
    static void calibrate(RadioChannel channel, const std::vector<std::int32_t>& pairs) {
        const std::string array =
            "channel." + std::to_string(channel) + ".tx.rf.pmax.cs.comp.v2.array";
        DeskVariableStore::getInstance().set(array, pairs);
        DeskVariableStore::getInstance().set(array + "size",
                                             {static_cast<std::int32_t>(pairs.size())});
    }

    ChannelNeighbours<Strictness> node{1};
    HardwareConfiguration<Strictness> hardware;
};
