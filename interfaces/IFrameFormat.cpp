#include "IFrameFormat.h"

IFrameFormat::~IFrameFormat() = default;

std::string IFrameFormat::interfaceName(RadioChannel channel) {
    return IInterface::interfaceName("IFrameFormat", channel);
}
