#pragma once

#include "Export.h"
#include "RecordingTriggers.h"

#include <cstddef>
#include <iosfwd>
#include <memory>

/// The flight recorder of one radio channel: remembers what the service is asked, what it answers
/// and what its neighbours tell it, and writes that as a radio file, which replays the same answers
/// on a desk.
///
/// It stands between the broker and the service: attach() puts a decorator before each neighbour
/// that the broker has, and one before the service. They hand every call through unchanged, the
/// exceptions too. The stored variables and the board's flag are read when a query reads them.
///
/// All memory is taken at construction. When it is full the oldest requests are left behind, and
/// what they did to the state is kept. No exception of the recorder's own leaves it; without memory
/// it forwards and records nothing.
///
/// @code
/// RadioFileRecorder recorder(1);
/// recorder.attach();           // the neighbours, before the service looks them up
/// OutputPowerCalculator service(1);
/// service.initialize();
/// recorder.attach();           // the service, before its callers look it up
/// // ... the node runs ...
/// recorder.write(stream);
/// @endcode
///
/// write() and the questions may be asked on any thread while others query. attach(), detach() and
/// the end belong to the thread that starts and ends the service; no request may be under way when
/// the recorder ends.
class QOR_EXPORT RadioFileRecorder {
public:
    /// Bytes of memory unless told otherwise: 2048 requests and changed answers.
    static constexpr std::size_t usualSize = std::size_t{64} << 10;

    /// @param radioChannel the number that the service is built with.
    /// @param bytes of memory for the recording: at least 8192, at most 16 MiB.
    explicit RadioFileRecorder(unsigned long radioChannel, std::size_t bytes = usualSize);

    /// Detaches. Decorators that a service may still hold stay for the rest of the process and hand
    /// through: some 600 bytes a channel.
    ~RadioFileRecorder();

    RadioFileRecorder(const RadioFileRecorder&) = delete;
    RadioFileRecorder& operator=(const RadioFileRecorder&) = delete;

    /// Puts decorators before whatever the broker has now and is not decorated yet. To be called
    /// before initialize(), and again after it. A service that was started before only hands on
    /// requests, not what its neighbours tell it, until initialize() is called again. A service
    /// that is found without its decorator when it asks a neighbour gets one then.
    /// @return false without memory, and for a channel that another recorder has.
    bool attach();

    /// Puts the real neighbours and the real service back under their names. A service that was
    /// initialised meanwhile keeps calling them through the decorators, which record nothing, until
    /// it is initialised again.
    /// @return false if somebody has registered something else under a name meanwhile; that stays.
    bool detach();

    /// Writes the recording so far as a radio file; with a trigger, the recording up to the request
    /// that set it off.
    /// @return false, with at most a part written: nothing was recorded or triggered, the heap is
    ///         used up, or the stream failed.
    bool write(std::ostream& stream) const;

    /// Keeps the recording as it stands when a request matters for the first time; from now on
    /// write() writes that one alone. An empty trigger takes that back. Takes as much memory again.
    /// @return false without memory; nothing has changed then.
    bool writeWhen(RecordingTrigger trigger);

    /// Whether the trigger was set off.
    bool isTriggered() const;

    /// Requests that are kept now.
    std::size_t requestCount() const;

private:
    class Attachments;
    std::unique_ptr<Attachments> m_attachments;
};
