#pragma once

#include "Export.h"

/// The desk's board support, behind os::bsp::rl. May be used from several threads.
class QOR_EXPORT DeskBoard {
public:
    /// Sets what os::bsp::rl::isFftypeCarrierAggregation() answers; false until it is called.
    static void setCarrierAggregation(bool carrierAggregation);
};
