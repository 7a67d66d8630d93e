#include "ICapabilityHandler.h"

#include "ResultCode.h"

ICapabilityHandler::~ICapabilityHandler() = default;

std::string ICapabilityHandler::getTmuHwProductNumber() const {
    return {};
}

unsigned ICapabilityHandler::getMinOutputPower(const int**) const {
    return ResultCode::Success;
}

unsigned ICapabilityHandler::getPmaxCapabilityDpd1Ansi(const int**, const int**) const {
    return ResultCode::Success;
}

unsigned ICapabilityHandler::getPmaxCapabilityDpd2Ansi(const int**, const int**) const {
    return ResultCode::Success;
}

unsigned ICapabilityHandler::getPmaxCapabilityDpd1Etsi(const int**, const int**) const {
    return ResultCode::Success;
}

unsigned ICapabilityHandler::getPmaxCapabilityDpd2Etsi(const int**, const int**) const {
    return ResultCode::Success;
}

bool ICapabilityHandler::isMaxAcmLimitedByHw() const {
    return false;
}

short ICapabilityHandler::getPerformanceProfileIndex() const {
    return -1;
}

Modulation ICapabilityHandler::getMaxModulationLimitedByHw(const std::vector<short>&, short) const {
    return Modulation::UNDEFINED;
}

Modulation ICapabilityHandler::getMaxModulationWithoutLimitation(const EFrameFormatMarket&) const {
    return Modulation::UNDEFINED;
}

// 0 means "no channel" here, unlike in the names that take a RadioChannel; that is meant, because a
// handler can also serve a node as a whole, and is found under the plain name then.
std::string ICapabilityHandler::interfaceName(unsigned int channel) {
    const std::string base = "ICapabilityHandler";
    return channel == 0 ? base : IInterface::interfaceName(base, channel);
}
