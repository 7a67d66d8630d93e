#include "ISystemPowerController.h"

ISystemPowerController::~ISystemPowerController() = default;

std::string ISystemPowerController::interfaceName(RadioChannel channel) {
    return IInterface::interfaceName("ISystemPowerController", channel);
}
