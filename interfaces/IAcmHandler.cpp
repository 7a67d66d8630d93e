#include "IAcmHandler.h"

#include "ResultCode.h"

IAcmHandler::~IAcmHandler() = default;

unsigned IAcmHandler::getMinMaxModulationAndCode(ModulationAndCoding&, ModulationAndCoding&) {
    return ResultCode::NotProvided;
}

std::string IAcmHandler::interfaceName(RadioChannel channel) {
    return IInterface::interfaceName("IAcmHandler", channel);
}
