#include "IInterface.h"

#include <utility>

IInterface::IInterface(std::string name)
    : m_name(std::move(name)) {}

IInterface::~IInterface() = default;

std::string IInterface::interfaceName(const std::string& base, const RadioChannel& channel) {
    return base + "_" + std::to_string(channel);
}
