#pragma once

#include "Export.h"

namespace os::bsp::rl {

/// Whether the board's frame-format type is carrier aggregation.
QOR_EXPORT bool isFftypeCarrierAggregation();

} // namespace os::bsp::rl
