#pragma once

#include "Export.h"
#include "TraceHeader.h"

#include <atomic>
#include <string>

/// One source file's outlet to the platform's trace facility.
///
/// Every record has a level: 1 errors, 2 warnings, 4 invalid input, 5 state changes, limits and
/// results, 6 function entries and intermediate values. The object lets through what is at or below
/// its threshold, which it starts with and which the platform may change at any time. Ask
/// isEnabled() before a text is built: a trace that is off then costs one comparison.
class QOR_EXPORT VelTrace {
public:
    /// @param channelName name under which the platform groups trace objects.
    /// @param level threshold to start with.
    /// @param headerOption what of the header the platform prints; passed through.
    VelTrace(const char* channelName, int level, int headerOption);
    ~VelTrace();
    VelTrace(const VelTrace&) = delete;
    VelTrace& operator=(const VelTrace&) = delete;

    /// Whether a record of this level is wanted now.
    bool isEnabled(int level) const { return level <= m_level.load(std::memory_order_relaxed); }

    /// Writes a message. The level is not tested again.
    void logMsg(int level, const TraceHeader& header, const std::string& text);

    /// Writes a function entry; the text lists the arguments and may be empty.
    void logEnterMsg(int level, const TraceHeader& header, const std::string& text);

    /// Sets the threshold; for the platform.
    void setLevel(int level) { m_level.store(level, std::memory_order_relaxed); }

    /// Name under which the platform groups trace objects.
    const char* channelName() const { return m_channelName; }
    /// What of the header the platform prints.
    int headerOption() const { return m_headerOption; }

private:
    const char* m_channelName;
    std::atomic<int> m_level;
    int m_headerOption;
};
