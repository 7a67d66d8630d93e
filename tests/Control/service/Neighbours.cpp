#include "Neighbours.h"

#include "DeskBoard.h"
#include "DeskTrace.h"
#include "DeskVariableStore.h"
#include "InterfaceBroker.h"

#include <string>

RadioAnswers::RadioAnswers() {
    const auto table = [](int highest) {
        return std::vector<int>{4,   highest,       16,   highest - 200, 64, highest - 400,
                                256, highest - 600, 1024, highest - 800};
    };
    capabilityHandler.productNumber = "QZT 846 001";
    capabilityHandler.minOutputPower = -1000;
    capabilityHandler.pmaxDpd1Etsi = table(2800);
    capabilityHandler.pmaxDpd2Etsi = table(2900);
    capabilityHandler.pmaxDpd1Ansi = table(2750);
    capabilityHandler.pmaxDpd2Ansi = table(2850);
    capabilityHandler.maxAcmLimitedByHw = false;
    capabilityHandler.performanceProfileIndex = 2;
    acmHandler.selection = AcmHandlerAnswers::Range{{30}, {81}};
    frameFormat = {Modulation::QAM64,
                   Modulation::QAM256,
                   {{30}, {31}, {41}, {61}, {81}},
                   EChannelSpacingType::MHz28,
                   EDpdVersion::Dpd1,
                   EFrameFormatMarket::Etsi,
                   {1, 2, 3},
                   {4, 5}};
    systemPowerController = {EReferenceSEC::Class4L,
                             {{EChannelSpacingType{0}, 10},
                              {EChannelSpacingType::MHz28, 250},
                              {EChannelSpacingType::MHz56, 400}}};
}

ChannelNeighbours::ChannelNeighbours(RadioChannel channel)
    : m_channel(channel) {
    apply();
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.registerInterface(ICapabilityHandler::interfaceName(channel), &capabilityHandler);
    broker.registerInterface(IAcmHandler::interfaceName(channel), &acmHandler);
    broker.registerInterface(IFrameFormat::interfaceName(channel), &frameFormat);
    broker.registerInterface(ISystemPowerController::interfaceName(channel),
                             &systemPowerController);
}

ChannelNeighbours::~ChannelNeighbours() {
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.unregisterInterface(ICapabilityHandler::interfaceName(m_channel), nullptr);
    broker.unregisterInterface(IAcmHandler::interfaceName(m_channel), nullptr);
    broker.unregisterInterface(IFrameFormat::interfaceName(m_channel), nullptr);
    broker.unregisterInterface(ISystemPowerController::interfaceName(m_channel), nullptr);
}

void ChannelNeighbours::apply() {
    capabilityHandler.setAnswers(answers.capabilityHandler);
    acmHandler.setAnswers(answers.acmHandler);
    frameFormat.setAnswers(answers.frameFormat);
    systemPowerController.setAnswers(answers.systemPowerController);
}

NodeFixture::NodeFixture() {
    hardware.setAnswers({{{7,
                           EChannelSpacingType::MHz56,
                           EDpdVersion::Dpd2,
                           EFrameFormatMarket::Etsi,
                           std::vector<ModulationAndCoding>{{31}, {41}, {61}},
                           {11, 12},
                           {13}}}});
    InterfaceBroker::getInstance().registerInterface(IHardwareConfigurationHandler::interfaceName(),
                                                     &hardware);
    DeskTrace::getInstance().setLevel(0);
    DeskTrace::getInstance().clear();
    calibrate(1, {28, 150, 56, -200});
    calibrate(2, {28, 70, 56, -90});
}

NodeFixture::~NodeFixture() {
    InterfaceBroker::getInstance().unregisterInterface(
        IHardwareConfigurationHandler::interfaceName(), nullptr);
    DeskVariableStore::getInstance().clear();
    DeskBoard::setCarrierAggregation(false);
}

void NodeFixture::calibrate(RadioChannel channel, const std::vector<std::int32_t>& pairs) {
    const std::string array = "channel." + std::to_string(channel) + ".tx.rf.pmax.cs.comp.v2.array";
    DeskVariableStore::getInstance().set(array, pairs);
    DeskVariableStore::getInstance().set(array + "size", {static_cast<std::int32_t>(pairs.size())});
}

void NodeFixture::recordCalls() {
    node.capabilityHandler.recordTo(&calls);
    node.acmHandler.recordTo(&calls);
    node.frameFormat.recordTo(&calls);
    node.systemPowerController.recordTo(&calls);
    hardware.recordTo(&calls);
}
