#pragma once

#include <iosfwd>
#include <mutex>
#include <string>
#include <vector>

/// One call that a simulated neighbour received.
struct RecordedCall {
    std::string interface; ///< for example "IFrameFormat"
    std::string operation; ///< for example "getDpdVersion"
    std::string arguments; ///< the input arguments as text, separated by ", "

    /// "IFrameFormat::getDpdVersion()"
    std::string text() const;
};

bool operator==(const RecordedCall& left, const RecordedCall& right);
std::ostream& operator<<(std::ostream& stream, const RecordedCall& call);

/// What was asked of the simulated neighbours, in order.
///
/// Several neighbours can share one log, which then shows the order across them. A neighbour
/// records only while a log is set (CallRecorder::recordTo()). The log must outlive that. May be
/// used from several threads.
class CallLog {
public:
    void add(RecordedCall call);

    std::vector<RecordedCall> calls() const;

    /// The calls as RecordedCall::text() writes them.
    std::vector<std::string> texts() const;

    void clear();

private:
    mutable std::mutex m_mutex;
    std::vector<RecordedCall> m_calls;
};
