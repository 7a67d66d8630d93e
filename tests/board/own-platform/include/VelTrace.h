#pragma once

#include "TraceRecords.h"

#include <string>

/// A trace object with a base, a virtual table and members of its own before the threshold, which
/// the library reads inline.
class TraceObject {
public:
    explicit TraceObject(const char* name);
    virtual ~TraceObject();
    TraceObject(const TraceObject&) = delete;
    TraceObject& operator=(const TraceObject&) = delete;

    const char* name() const { return m_name; }
    TraceObject* next() const { return m_next; }

private:
    const char* m_name;
    TraceObject* m_next;
};

class VelTrace : public TraceObject {
public:
    VelTrace(const char* channelName, int level, int headerOption);
    ~VelTrace() override;

    bool isEnabled(int level) const { return m_isOn && level <= m_level; }
    void logMsg(int level, const TraceHeader& header, const std::string& text);
    void logEnterMsg(int level, const TraceHeader& header, const std::string& text);

private:
    unsigned m_counts[7] = {};
    bool m_isOn = true;
    volatile int m_level;
    int m_headerOption;
};
