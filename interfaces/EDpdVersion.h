#pragma once

#include <cstdint>

/// Version of the transmitter's digital predistortion (DPD). Any other value is unknown and the
/// power queries refuse it. Version 3 has no Pmax tables of its own: version 2's serve it.
enum class EDpdVersion : std::int32_t {
    Dpd1 = 1,
    Dpd2 = 2,
    Dpd3 = 3
};
