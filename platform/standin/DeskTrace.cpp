#include "DeskTrace.h"

#include "RawTrace.h"
#include "VelTrace.h"

#include <ostream>
#include <utility>

namespace {

const char* textOf(TraceRecord::Kind kind) {
    if (kind == TraceRecord::Kind::Enter) {
        return "enter";
    }
    return kind == TraceRecord::Kind::Message ? "msg" : "raw";
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const TraceRecord& record) {
    std::string text = record.text;
    if (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return stream << record.level << ' ' << textOf(record.kind) << ' ' << record.file << ':'
                  << record.line << ' ' << record.function << ": " << text;
}

DeskTrace& DeskTrace::getInstance() {
    // Never destroyed: trace objects with static lifetime report their end to it.
    static auto* const instance = new DeskTrace;
    return *instance;
}

void DeskTrace::setLevel(int level) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_levelIsSet = true;
    m_level = level;
    for (VelTrace* const trace : m_traces) {
        trace->setLevel(level);
    }
    SPC_trace = level;
}

std::vector<TraceRecord> DeskTrace::records(int maxLevel) const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::vector<TraceRecord> wanted;
    for (const TraceRecord& record : m_records) {
        if (record.level <= maxLevel) {
            wanted.push_back(record);
        }
    }
    return wanted;
}

std::vector<TraceRecord> DeskTrace::take() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::exchange(m_records, {});
}

void DeskTrace::clear() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_records.clear();
}

void DeskTrace::printTo(std::ostream* stream) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_stream = stream;
}

void DeskTrace::add(VelTrace& trace) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_traces.insert(&trace);
    if (m_levelIsSet) {
        trace.setLevel(m_level);
    }
}

void DeskTrace::remove(VelTrace& trace) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_traces.erase(&trace);
}

void DeskTrace::write(TraceRecord record) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_stream != nullptr) {
        *m_stream << record << '\n';
    }
    m_records.push_back(std::move(record));
}
