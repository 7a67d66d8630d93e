#pragma once

#include "Export.h"
#include "TraceHeader.h"

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <mutex>
#include <set>
#include <string>
#include <vector>

class VelTrace;

/// One trace record as the desk keeps it.
struct TraceRecord {
    /// What the record is.
    enum class Kind {
        Enter,   ///< function entry
        Message, ///< message
        Raw      ///< raw trace, keyed by a code
    };

    Kind kind;            ///< what it is
    int level;            ///< 1 errors to 6 everything
    std::uint32_t code;   ///< of a raw trace; 0 for the other kinds
    std::string file;     ///< source path without its ending
    std::string function; ///< that traced
    int line;             ///< in that source
    std::string text;     ///< the message, or the arguments of an entry
};

/// Writes a record as one line of a log: level, kind, "file:line function: text". A raw trace's own
/// line ends are kept, except the last.
QOR_EXPORT std::ostream& operator<<(std::ostream& stream, const TraceRecord& record);

/// The desk's trace facility: every VelTrace object of the process and the raw trace lead here.
///
/// Records are kept in the order written until they are taken or cleared, and printed to a stream
/// if one is set. Everything may be called from any thread, but for setLevel(), which also sets the
/// raw trace's threshold: call it while nothing traces.
class QOR_EXPORT DeskTrace {
public:
    /// The one of the process.
    static DeskTrace& getInstance();

    DeskTrace(const DeskTrace&) = delete;
    DeskTrace& operator=(const DeskTrace&) = delete;

    /// Sets the threshold of every trace object, present and future, and of the raw trace. 0 is
    /// off. Until it is called every object keeps the threshold it was built with.
    void setLevel(int level);

    /// A copy of the records at or below a level, all of them by default.
    std::vector<TraceRecord> records(int maxLevel = 6) const;

    /// Hands out the records and forgets them.
    std::vector<TraceRecord> take();

    /// Forgets the records.
    void clear();

    /// Prints every further record to a stream as it is written; null stops that. The stream must
    /// outlive the tracing.
    void printTo(std::ostream* stream);

    /// @name For the trace objects of the platform
    /// @{

    /// Takes a trace object in, and gives it the threshold that is set.
    void add(VelTrace& trace);

    /// Takes a trace object out.
    void remove(VelTrace& trace);

    /// Keeps a record, and prints it.
    void write(TraceRecord record);
    /// @}

private:
    DeskTrace() = default;
    ~DeskTrace() = default;

    mutable std::mutex m_mutex;
    std::set<VelTrace*> m_traces;
    bool m_levelIsSet = false;
    int m_level = 0;
    std::vector<TraceRecord> m_records;
    std::ostream* m_stream = nullptr;
};

/// Traces up to a level for as long as it lives. It starts with no records, and nothing is traced
/// or left behind afterwards, however the scope is left.
class DeskTraceScope {
public:
    /// Traces up to a level from here on.
    explicit DeskTraceScope(int level) {
        DeskTrace::getInstance().clear();
        DeskTrace::getInstance().setLevel(level);
    }
    ~DeskTraceScope() {
        DeskTrace::getInstance().setLevel(0);
        DeskTrace::getInstance().clear();
    }
    DeskTraceScope(const DeskTraceScope&) = delete;
    DeskTraceScope& operator=(const DeskTraceScope&) = delete;
};
