// The registry in which the calculator, its neighbours and its callers find each other.
//
// - It borrows objects and deletes none. Null may be registered, and is found as null.
// - Registration replaces what has the name; nothing is told to the one that is replaced.
// - Every operation may come from any thread, and while the program ends: services with static
//   lifetime withdraw themselves then, so the broker is never destroyed.
// - find() serves the template getInterface(), which is compiled into the library.

#include "InterfaceBroker.h"

#include "ResultCode.h"

InterfaceBroker& InterfaceBroker::getInstance() {
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
    const bool isKnown = found != m_interfaces.end();
    if (removed != nullptr) {
        *removed = isKnown ? found->second : nullptr;
    }
    if (!isKnown) {
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
