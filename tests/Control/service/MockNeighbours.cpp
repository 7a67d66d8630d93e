#include "MockNeighbours.h"

#include "InterfaceBroker.h"

namespace {

/// What the hardware configuration returns and writes when it is asked about a frame format.
template <class Value>
unsigned answerFor(bool isKnown, unsigned result, const Value& value, Value& output) {
    if (!isKnown) {
        return 32768;
    }
    if (result < 32768) {
        output = value;
    }
    return result;
}

} // namespace

MockCapabilityHandler::MockCapabilityHandler() {
    using Base = ICapabilityHandler;
    ON_CALL(*this, getTmuHwProductNumber).WillByDefault([this] {
        return Base::getTmuHwProductNumber();
    });
    ON_CALL(*this, getMinOutputPower).WillByDefault([this](const int** table) {
        return Base::getMinOutputPower(table);
    });
    ON_CALL(*this, getPmaxCapabilityDpd1Ansi)
        .WillByDefault([this](const int** table, const int** count) {
            return Base::getPmaxCapabilityDpd1Ansi(table, count);
        });
    ON_CALL(*this, getPmaxCapabilityDpd2Ansi)
        .WillByDefault([this](const int** table, const int** count) {
            return Base::getPmaxCapabilityDpd2Ansi(table, count);
        });
    ON_CALL(*this, getPmaxCapabilityDpd1Etsi)
        .WillByDefault([this](const int** table, const int** count) {
            return Base::getPmaxCapabilityDpd1Etsi(table, count);
        });
    ON_CALL(*this, getPmaxCapabilityDpd2Etsi)
        .WillByDefault([this](const int** table, const int** count) {
            return Base::getPmaxCapabilityDpd2Etsi(table, count);
        });
    ON_CALL(*this, isMaxAcmLimitedByHw).WillByDefault([this] {
        return Base::isMaxAcmLimitedByHw();
    });
    ON_CALL(*this, getPerformanceProfileIndex).WillByDefault([this] {
        return Base::getPerformanceProfileIndex();
    });
    ON_CALL(*this, getMaxModulationLimitedByHw)
        .WillByDefault([this](const std::vector<short>& profiles, short index) {
            return Base::getMaxModulationLimitedByHw(profiles, index);
        });
    ON_CALL(*this, getMaxModulationWithoutLimitation)
        .WillByDefault([this](const EFrameFormatMarket& market) {
            return Base::getMaxModulationWithoutLimitation(market);
        });
}

MockCapabilityHandler::~MockCapabilityHandler() = default;

MockAcmHandler::MockAcmHandler() {
    ON_CALL(*this, getMinMaxModulationAndCode)
        .WillByDefault([this](ModulationAndCoding& min, ModulationAndCoding& max) {
            return IAcmHandler::getMinMaxModulationAndCode(min, max);
        });
}

MockAcmHandler::~MockAcmHandler() = default;

MockFrameFormat::MockFrameFormat() = default;
MockFrameFormat::~MockFrameFormat() = default;

MockSystemPowerController::MockSystemPowerController() = default;
MockSystemPowerController::~MockSystemPowerController() = default;

MockHardwareConfigurationHandler::MockHardwareConfigurationHandler() = default;
MockHardwareConfigurationHandler::~MockHardwareConfigurationHandler() = default;

template <template <class> class Strictness>
ChannelNeighbours<Strictness>::ChannelNeighbours(RadioChannel channel)
    : m_channel(channel) {
    answerForCapabilityHandler();
    answerForOthers();
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.registerInterface(ICapabilityHandler::interfaceName(channel), &capabilityHandler);
    broker.registerInterface(IAcmHandler::interfaceName(channel), &acmHandler);
    broker.registerInterface(IFrameFormat::interfaceName(channel), &frameFormat);
    broker.registerInterface(ISystemPowerController::interfaceName(channel),
                             &systemPowerController);
}

template <template <class> class Strictness>
ChannelNeighbours<Strictness>::~ChannelNeighbours() {
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.unregisterInterface(ICapabilityHandler::interfaceName(m_channel), nullptr);
    broker.unregisterInterface(IAcmHandler::interfaceName(m_channel), nullptr);
    broker.unregisterInterface(IFrameFormat::interfaceName(m_channel), nullptr);
    broker.unregisterInterface(ISystemPowerController::interfaceName(m_channel), nullptr);
}

template <template <class> class Strictness>
void ChannelNeighbours<Strictness>::answerForCapabilityHandler() {
    ON_CALL(capabilityHandler, getTmuHwProductNumber).WillByDefault([this] {
        return answers.productNumber;
    });
    ON_CALL(capabilityHandler, getMinOutputPower).WillByDefault([this](const int** table) {
        *table = &answers.minOutputPower;
        return 0U;
    });
    ON_CALL(capabilityHandler, getPmaxCapabilityDpd1Etsi)
        .WillByDefault([this](const int** table, const int** count) {
            return answers.pmaxDpd1Etsi.handOut(table, count);
        });
    ON_CALL(capabilityHandler, getPmaxCapabilityDpd2Etsi)
        .WillByDefault([this](const int** table, const int** count) {
            return answers.pmaxDpd2Etsi.handOut(table, count);
        });
    ON_CALL(capabilityHandler, getPmaxCapabilityDpd1Ansi)
        .WillByDefault([this](const int** table, const int** count) {
            return answers.pmaxDpd1Ansi.handOut(table, count);
        });
    ON_CALL(capabilityHandler, getPmaxCapabilityDpd2Ansi)
        .WillByDefault([this](const int** table, const int** count) {
            return answers.pmaxDpd2Ansi.handOut(table, count);
        });
    ON_CALL(capabilityHandler, isMaxAcmLimitedByHw).WillByDefault([this] {
        return answers.maxAcmLimitedByHw;
    });
    ON_CALL(capabilityHandler, getPerformanceProfileIndex).WillByDefault([this] {
        return answers.performanceProfileIndex;
    });
    ON_CALL(capabilityHandler, getMaxModulationLimitedByHw)
        .WillByDefault(
            [this](const std::vector<short>&, short) { return answers.maxModulationLimitedByHw; });
    ON_CALL(capabilityHandler, getMaxModulationWithoutLimitation)
        .WillByDefault(
            [this](const EFrameFormatMarket&) { return answers.maxModulationWithoutLimitation; });
}

template <template <class> class Strictness>
void ChannelNeighbours<Strictness>::answerForOthers() {
    ON_CALL(acmHandler, getMinMaxModulationAndCode)
        .WillByDefault([this](ModulationAndCoding& min, ModulationAndCoding& max) {
            min.code = answers.acmMin;
            max.code = answers.acmMax;
            return answers.acmResult;
        });
    ON_CALL(frameFormat, getModulation).WillByDefault([this] { return answers.modulation; });
    ON_CALL(frameFormat, getMaxAvailableModulation).WillByDefault([this] {
        return answers.maxAvailableModulation;
    });
    ON_CALL(frameFormat, getModulationAndCodeArray)
        .WillByDefault([this](std::vector<ModulationAndCoding>& codes) {
            codes = answers.modulationAndCodes;
        });
    ON_CALL(frameFormat, getChannelSpacing).WillByDefault([this] {
        return answers.channelSpacing;
    });
    ON_CALL(frameFormat, getDpdVersion).WillByDefault([this] { return answers.dpdVersion; });
    ON_CALL(frameFormat, getTelecomMarket).WillByDefault([this] { return answers.market; });
    ON_CALL(frameFormat, getPerformanceProfiles)
        .WillByDefault(
            [this](std::vector<short>& profiles) { profiles = answers.performanceProfiles; });
    ON_CALL(frameFormat, getCarrierAggregationPerformanceProfiles)
        .WillByDefault([this](std::vector<short>& profiles) {
            profiles = answers.carrierAggregationPerformanceProfiles;
        });
    ON_CALL(systemPowerController, getReferenceSec).WillByDefault([this] {
        return answers.referenceSec;
    });
    ON_CALL(systemPowerController, getMinOutputPowerOffset)
        .WillByDefault([this](EChannelSpacingType channelSpacing, long& offset) {
            const auto found = answers.minOutputPowerOffsets.find(static_cast<int>(channelSpacing));
            if (found == answers.minOutputPowerOffsets.end()) {
                return false;
            }
            offset = found->second;
            return true;
        });
}

template <template <class> class Strictness>
HardwareConfiguration<Strictness>::HardwareConfiguration() {
    ON_CALL(handler, getFrameFormatRecords)
        .WillByDefault(
            [this](bool, std::vector<FrameFormatRecord>& records) { records = answers.records; });
    ON_CALL(handler, getDpdVersion).WillByDefault([this](RadioChannel, long id) {
        return id == answers.id ? answers.dpdVersion : EDpdVersion{0};
    });
    ON_CALL(handler, getTelecomMarket)
        .WillByDefault([this](RadioChannel, long id, EFrameFormatMarket& market) {
            return answerFor(id == answers.id, answers.marketResult, answers.market, market);
        });
    ON_CALL(handler, getModulationAndCodeArray)
        .WillByDefault([this](RadioChannel, long id, std::vector<ModulationAndCoding>& codes) {
            return answerFor(id == answers.id, answers.codesResult, answers.modulationAndCodes,
                             codes);
        });
    ON_CALL(handler, getChannelSpacing)
        .WillByDefault([this](RadioChannel, long id, EChannelSpacingType& channelSpacing) {
            return answerFor(id == answers.id, answers.channelSpacingResult, answers.channelSpacing,
                             channelSpacing);
        });
    ON_CALL(handler, getPerformanceProfiles)
        .WillByDefault([this](RadioChannel, long, std::vector<short>& profiles) {
            profiles = answers.performanceProfiles;
        });
    ON_CALL(handler, getCarrierAggregationPerformanceProfiles)
        .WillByDefault([this](RadioChannel, long, std::vector<short>& profiles) {
            profiles = answers.carrierAggregationPerformanceProfiles;
        });
    InterfaceBroker::getInstance().registerInterface(IHardwareConfigurationHandler::interfaceName(),
                                                     &handler);
}

template <template <class> class Strictness>
HardwareConfiguration<Strictness>::~HardwareConfiguration() {
    InterfaceBroker::getInstance().unregisterInterface(
        IHardwareConfigurationHandler::interfaceName(), nullptr);
}

template class ChannelNeighbours<::testing::NiceMock>;
template class ChannelNeighbours<::testing::StrictMock>;
template class HardwareConfiguration<::testing::NiceMock>;
template class HardwareConfiguration<::testing::StrictMock>;
