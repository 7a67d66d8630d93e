#include "CallLog.h"

#include <ostream>
#include <tuple>
#include <utility>

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
