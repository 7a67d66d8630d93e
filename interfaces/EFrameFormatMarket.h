#pragma once

#include "Export.h"

#include <cstdint>
#include <iosfwd>

/// Telecom market of a frame format.
enum class EFrameFormatMarket : std::int32_t {
    Etsi = 0,
    Ansi = 1,
    Global = 2,
    Unknown = 3
};

/// Writes "Etsi", "Ansi", "Global" or "Unknown". For any other value it writes nothing at all,
/// not even "Unknown": that is meant, because log readers tell the two apart by it.
QOR_EXPORT std::ostream& operator<<(std::ostream& stream, EFrameFormatMarket market);
