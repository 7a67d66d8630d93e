#include "InterfaceBroker.h"

#include "ResultCode.h"

InterfaceBroker& InterfaceBroker::getInstance() {
    // Never destroyed: services with static lifetime withdraw themselves at the very end.
    static auto* const broker = new InterfaceBroker;
    return *broker;
}

unsigned InterfaceBroker::registerInterface(const std::string& name, IInterface* object) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_interfaces[name] = object;
    return ResultCode::Success;
}

unsigned InterfaceBroker::unregisterInterface(const std::string& name, IInterface** removed) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_interfaces.find(name);
    if (removed != nullptr) {
        *removed = found == m_interfaces.end() ? nullptr : found->second;
    }
    if (found == m_interfaces.end()) {
        return ResultCode::Failure;
    }
    m_interfaces.erase(found);
    return ResultCode::Success;
}

IInterface* InterfaceBroker::find(const std::string& name) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_interfaces.find(name);
    return found == m_interfaces.end() ? nullptr : found->second;
}
