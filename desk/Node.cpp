#include "Node.h"

#include "DeskBoard.h"
#include "DeskVariableStore.h"
#include "InterfaceBroker.h"

#include <stdexcept>

namespace {

template <class Neighbour, class Answers>
void create(std::optional<Neighbour>& neighbour, const std::shared_ptr<const Answers>& answers) {
    if (answers != nullptr) {
        neighbour.emplace(*answers);
    }
}

template <class Neighbour, class Answers>
void change(std::optional<Neighbour>& neighbour, const std::shared_ptr<const Answers>& before,
            const std::shared_ptr<const Answers>& now) {
    // Answers that are shared with the last state are the same: a patch usually touches one
    // section.
    if (neighbour && before != now) {
        neighbour->setAnswers(*now);
    }
}

template <class Neighbour>
Neighbour* addressOf(std::optional<Neighbour>& neighbour) {
    return neighbour ? &*neighbour : nullptr;
}

bool haveSameNeighbours(const NodeAnswers& left, const NodeAnswers& right) {
    const auto bothOrNone = [](const auto& one, const auto& other) {
        return (one == nullptr) == (other == nullptr);
    };
    return bothOrNone(left.capabilityHandler, right.capabilityHandler) &&
           bothOrNone(left.acmHandler, right.acmHandler) &&
           bothOrNone(left.frameFormat, right.frameFormat) &&
           bothOrNone(left.systemPowerController, right.systemPowerController) &&
           bothOrNone(left.hardwareConfigurationHandler, right.hardwareConfigurationHandler);
}

} // namespace

Node::Node(std::uint32_t channel, const NodeAnswers& answers)
    : m_answers(answers) {
    create(m_capabilityHandler, answers.capabilityHandler);
    create(m_acmHandler, answers.acmHandler);
    create(m_frameFormat, answers.frameFormat);
    create(m_systemPowerController, answers.systemPowerController);
    create(m_hardwareConfigurationHandler, answers.hardwareConfigurationHandler);

    const RadioChannel served = servedChannel(channel);
    publish(ICapabilityHandler::interfaceName(served), capabilityHandler());
    if (channel != served) {
        publish(ICapabilityHandler::interfaceName(channel), capabilityHandler());
    }
    publish(IAcmHandler::interfaceName(served), acmHandler());
    publish(IFrameFormat::interfaceName(served), frameFormat());
    publish(ISystemPowerController::interfaceName(served), systemPowerController());
    publish(IHardwareConfigurationHandler::interfaceName(), hardwareConfigurationHandler());

    storeVariables();
    DeskBoard::setCarrierAggregation(answers.carrierAggregation);
}

Node::~Node() {
    DeskVariableStore::getInstance().clear();
    DeskBoard::setCarrierAggregation(false);
}

void Node::apply(const NodeAnswers& answers) {
    if (!haveSameNeighbours(m_answers, answers)) {
        throw std::invalid_argument("a node keeps the neighbours that it was built with");
    }
    change(m_capabilityHandler, m_answers.capabilityHandler, answers.capabilityHandler);
    change(m_acmHandler, m_answers.acmHandler, answers.acmHandler);
    change(m_frameFormat, m_answers.frameFormat, answers.frameFormat);
    change(m_systemPowerController, m_answers.systemPowerController, answers.systemPowerController);
    change(m_hardwareConfigurationHandler, m_answers.hardwareConfigurationHandler,
           answers.hardwareConfigurationHandler);
    const bool isStoreChanged = m_answers.variables != answers.variables;
    m_answers = answers;
    if (isStoreChanged) {
        storeVariables();
    }
    DeskBoard::setCarrierAggregation(answers.carrierAggregation);
}

void Node::recordTo(CallLog* log) {
    const auto record = [log](auto& neighbour) {
        if (neighbour) {
            neighbour->recordTo(log);
        }
    };
    record(m_capabilityHandler);
    record(m_acmHandler);
    record(m_frameFormat);
    record(m_systemPowerController);
    record(m_hardwareConfigurationHandler);
}

SimulatedCapabilityHandler* Node::capabilityHandler() {
    return addressOf(m_capabilityHandler);
}

SimulatedAcmHandler* Node::acmHandler() {
    return addressOf(m_acmHandler);
}

SimulatedFrameFormat* Node::frameFormat() {
    return addressOf(m_frameFormat);
}

SimulatedSystemPowerController* Node::systemPowerController() {
    return addressOf(m_systemPowerController);
}

SimulatedHardwareConfigurationHandler* Node::hardwareConfigurationHandler() {
    return addressOf(m_hardwareConfigurationHandler);
}

RadioChannel Node::servedChannel(std::uint32_t channel) {
    return channel == 1 || channel == 2 ? channel : 1;
}

Node::Publication::Publication(const std::string& name, IInterface* object)
    : m_name(name) {
    InterfaceBroker::getInstance().registerInterface(m_name, object);
}

Node::Publication::~Publication() {
    InterfaceBroker::getInstance().unregisterInterface(m_name, nullptr);
}

void Node::publish(const std::string& name, IInterface* object) {
    if (object != nullptr) {
        m_publications.emplace_back(name, object);
    }
}

void Node::storeVariables() {
    DeskVariableStore& store = DeskVariableStore::getInstance();
    store.clear();
    if (m_answers.variables != nullptr) {
        for (const auto& [name, elements] : *m_answers.variables) {
            store.set(name, elements);
        }
    }
}
