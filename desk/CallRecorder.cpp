#include "CallRecorder.h"

#include <cstdint>
#include <sstream>

std::string CallText::textOf(bool flag) {
    return flag ? "true" : "false";
}

std::string CallText::textOf(EFrameFormatMarket market) {
    std::ostringstream text;
    text << market;
    return text.str().empty() ? std::to_string(static_cast<std::int32_t>(market)) : text.str();
}

std::string CallText::textOf(EChannelSpacingType channelSpacing) {
    return std::to_string(static_cast<std::int32_t>(channelSpacing));
}

std::string CallText::textOf(const std::vector<short>& values) {
    std::string text = "[";
    for (const short value : values) {
        text += (text.size() > 1 ? ", " : "") + std::to_string(value);
    }
    return text + "]";
}
