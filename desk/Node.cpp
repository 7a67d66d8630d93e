#include "Node.h"

#include "DeskBoard.h"
#include "DeskVariableStore.h"
#include "InterfaceBroker.h"

#include <stdexcept>

namespace {

template <class Neighbour>
Neighbour* addressOf(std::optional<Neighbour>& neighbour) {
    return neighbour ? &*neighbour : nullptr;
}

} // namespace

template <class Visit>
void Node::forEachNeighbour(Visit visit) {
    visit(m_capabilityHandler, &NodeAnswers::capabilityHandler);
    visit(m_acmHandler, &NodeAnswers::acmHandler);
    visit(m_frameFormat, &NodeAnswers::frameFormat);
    visit(m_systemPowerController, &NodeAnswers::systemPowerController);
    visit(m_hardwareConfigurationHandler, &NodeAnswers::hardwareConfigurationHandler);
}

Node::Node(std::uint32_t channel, const NodeAnswers& answers)
    : m_answers(answers) {
    forEachNeighbour([&answers](auto& neighbour, auto member) {
        if (answers.*member != nullptr) {
            neighbour.emplace(*(answers.*member));
        }
    });

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
    forEachNeighbour([&](auto&, auto member) {
        if ((m_answers.*member == nullptr) != (answers.*member == nullptr)) {
            throw std::invalid_argument("a node keeps the neighbours that it was built with");
        }
    });
    forEachNeighbour([&](auto& neighbour, auto member) {
        // Answers that are shared with the last state are the same: a patch usually touches one
        // section.
        if (neighbour && m_answers.*member != answers.*member) {
            neighbour->setAnswers(*(answers.*member));
        }
    });
    const bool isStoreChanged = m_answers.variables != answers.variables;
    m_answers = answers;
    if (isStoreChanged) {
        storeVariables();
    }
    DeskBoard::setCarrierAggregation(answers.carrierAggregation);
}

void Node::recordTo(CallLog* log) {
    forEachNeighbour([log](auto& neighbour, auto) {
        if (neighbour) {
            neighbour->recordTo(log);
        }
    });
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

std::string Node::calibrationOf(std::uint32_t channel) {
    return "channel." + std::to_string(servedChannel(channel)) + ".tx.rf.pmax.cs.comp.v2.array";
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
