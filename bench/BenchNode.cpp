#include "BenchNode.h"

#include "BenchPlatform.h"
#include "InterfaceBroker.h"

namespace {

constexpr RadioChannel channel = 1;

} // namespace

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
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.registerInterface(ICapabilityHandler::interfaceName(channel), &m_capabilityHandler);
    broker.registerInterface(IAcmHandler::interfaceName(channel), &m_acmHandler);
    broker.registerInterface(IFrameFormat::interfaceName(channel), &m_frameFormat);
    broker.registerInterface(ISystemPowerController::interfaceName(channel),
                             &m_systemPowerController);
    broker.registerInterface(IHardwareConfigurationHandler::interfaceName(),
                             &m_hardwareConfigurationHandler);
}

BenchNode::~BenchNode() {
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.unregisterInterface(ICapabilityHandler::interfaceName(channel), nullptr);
    broker.unregisterInterface(IAcmHandler::interfaceName(channel), nullptr);
    broker.unregisterInterface(IFrameFormat::interfaceName(channel), nullptr);
    broker.unregisterInterface(ISystemPowerController::interfaceName(channel), nullptr);
    broker.unregisterInterface(IHardwareConfigurationHandler::interfaceName(), nullptr);
}
