#pragma once

namespace os::bsp::rl {

bool isFftypeCarrierAggregation() noexcept;

} // namespace os::bsp::rl
