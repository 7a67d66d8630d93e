#include "CallLog.h"

#include <cstdint>
#include <ostream>
#include <sstream>
#include <tuple>
#include <utility>

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

std::string RecordedCall::text() const {
    return interface + "::" + operation + "(" + arguments + ")";
}

bool operator==(const RecordedCall& left, const RecordedCall& right) {
    return std::tie(left.interface, left.operation, left.arguments) ==
           std::tie(right.interface, right.operation, right.arguments);
}

std::ostream& operator<<(std::ostream& stream, const RecordedCall& call) {
    return stream << call.text();
}

void CallLog::add(RecordedCall call) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_calls.push_back(std::move(call));
}

std::vector<RecordedCall> CallLog::calls() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_calls;
}

std::vector<std::string> CallLog::texts() const {
    std::vector<std::string> texts;
    for (const RecordedCall& call : calls()) {
        texts.push_back(call.text());
    }
    return texts;
}

void CallLog::clear() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_calls.clear();
}
