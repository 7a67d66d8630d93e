#include "IOutputPowerCalculator.h"

IOutputPowerCalculator::~IOutputPowerCalculator() = default;

// 0 means "no channel" here, unlike in the names that take a RadioChannel; that is meant, because
// callers that know of no channel ask for the plain name with it.
std::string IOutputPowerCalculator::interfaceName(unsigned int channel) {
    const std::string base = "IOutputPowerCalculator";
    return channel == 0 ? base : IInterface::interfaceName(base, channel);
}
