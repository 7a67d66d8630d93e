#pragma once

#include "Export.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"

#include <functional>
#include <map>

/// A request to the service as a trigger sees it. Powers are in hundredths of a dBm.
struct RecordedRequest {
    const char* call;      ///< name of the operation
    Modulation modulation; ///< that was asked; UNDEFINED if the operation has none
    unsigned result;       ///< result code
    const long* minPower;  ///< after the call; null if the operation has no minimum power
    const long* maxPower;  ///< likewise
    const std::map<ModulationAndCoding, long>* powerMap; ///< likewise
};

/// Whether a request matters. It may not call the recorder, and should be quick: it is asked at
/// every request. One that throws has said no.
using RecordingTrigger = std::function<bool(const RecordedRequest&)>;

/// Ready triggers.
namespace RecordingTriggers {

/// A request that succeeded with a maximum power below a limit, in the power map too.
QOR_EXPORT RecordingTrigger powerBelow(long limit);

/// A request whose result code is a failure (32768 or more).
QOR_EXPORT RecordingTrigger failure();

/// A maximum power that is another one than at the last request of the same operation for the same
/// modulation, or for the same code of a power map. It remembers 128 of them.
QOR_EXPORT RecordingTrigger powerChanged();

} // namespace RecordingTriggers
