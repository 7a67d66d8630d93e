#include "DeskBoard.h"

#include "BoardSupport.h"

#include <atomic>

namespace {

std::atomic<bool> isCarrierAggregation{false};

} // namespace

void DeskBoard::setCarrierAggregation(bool carrierAggregation) {
    isCarrierAggregation = carrierAggregation;
}

bool os::bsp::rl::isFftypeCarrierAggregation() {
    return isCarrierAggregation;
}
