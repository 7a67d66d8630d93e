#include "IInterface.h"

IInterface::IInterface(const std::string& name)
    : m_name(name) {}

IInterface::~IInterface() = default;

std::string IInterface::interfaceName(const std::string& base, const RadioChannel& channel) {
    return base + "_" + std::to_string(channel);
}
