// The board support.
//
// - It is asked in the middle of a query, from any thread, and answers at once.
// - It answers for the unit: all channels have one type of frame format.

#include "BoardSupport.h"

bool os::bsp::rl::isFftypeCarrierAggregation() {
    return false;
}
