#include "IHardwareConfigurationHandler.h"

IHardwareConfigurationHandler::~IHardwareConfigurationHandler() = default;

std::string IHardwareConfigurationHandler::interfaceName() {
    return "IHardwareConfigurationHandler";
}
