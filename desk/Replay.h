#pragma once

#include "RadioFile.h"

#include <functional>
#include <iosfwd>
#include <string>
#include <utility>

/// Plays radio files: builds the node, creates a service in it, and puts the requests to it one by
/// one.
///
/// Each call is reported as one line of JSON without spaces: "call", "result", then the outputs,
/// and with traces switched on the trace records of that call. One replay at a time in a process,
/// on one thread: node, traces and broker are the process's.
class Replay {
public:
    /// Takes one line, without its line end, as soon as it is made. May throw: the replay then
    /// ends, tidied up.
    using LineSink = std::function<void(const std::string& line)>;

    /// @param traceLevel traces up to this level are reported; 0: none, and lines have no "trace".
    explicit Replay(int traceLevel = 0);

    /// What to do once the node stands, and whenever the service has been started: the requests
    /// then go to whatever the broker has under the service's name, as those of a node do.
    void whenStarted(std::function<void()> attach) { m_attach = std::move(attach); }

    /// Plays a file in a fresh node with a fresh service.
    ///
    /// The first line is the service's start; when that fails it is the only one. Afterwards the
    /// node is gone, traces are off and no trace record is left.
    /// @return whether the service started.
    bool play(const RadioFile& file, const LineSink& sink) const;

    /// Likewise, each line written to a stream with a line end.
    bool play(const RadioFile& file, std::ostream& stream) const;

private:
    int m_traceLevel;
    std::function<void()> m_attach;
};
