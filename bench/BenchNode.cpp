#include "BenchNode.h"

#include "BenchPlatform.h"
#include "InterfaceBroker.h"

namespace {

constexpr RadioChannel channel = 1;

} // namespace

void publishNeighbours(ICapabilityHandler& capabilityHandler, IAcmHandler& acmHandler,
                       IFrameFormat& frameFormat, ISystemPowerController& systemPowerController,
                       IHardwareConfigurationHandler& hardwareConfigurationHandler) {
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.registerInterface(ICapabilityHandler::interfaceName(channel), &capabilityHandler);
    broker.registerInterface(IAcmHandler::interfaceName(channel), &acmHandler);
    broker.registerInterface(IFrameFormat::interfaceName(channel), &frameFormat);
    broker.registerInterface(ISystemPowerController::interfaceName(channel),
                             &systemPowerController);
    broker.registerInterface(IHardwareConfigurationHandler::interfaceName(),
                             &hardwareConfigurationHandler);
}

BenchNode::BenchNode(const Scenario& scenario)
    : m_capabilityHandler(scenario)
    , m_acmHandler(scenario)
    , m_frameFormat(scenario)
    , m_systemPowerController(scenario)
    , m_hardwareConfigurationHandler(scenario) {
    publish();
    BenchPlatform::setCompensation(scenario.compensation.data(),
                                   static_cast<std::uint32_t>(scenario.compensation.size()),
                                   scenario.compensationSize);
    BenchPlatform::setCarrierAggregation(scenario.isCarrierAggregation);
}

void BenchNode::publish() {
    publishNeighbours(m_capabilityHandler, m_acmHandler, m_frameFormat, m_systemPowerController,
                      m_hardwareConfigurationHandler);
}

BenchNode::~BenchNode() {
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.unregisterInterface(ICapabilityHandler::interfaceName(channel), nullptr);
    broker.unregisterInterface(IAcmHandler::interfaceName(channel), nullptr);
    broker.unregisterInterface(IFrameFormat::interfaceName(channel), nullptr);
    broker.unregisterInterface(ISystemPowerController::interfaceName(channel), nullptr);
    broker.unregisterInterface(IHardwareConfigurationHandler::interfaceName(), nullptr);
}
