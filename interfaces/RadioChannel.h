#pragma once

#include <cstdint>

/// Number of a radio channel. The service serves channels 1 and 2; in interface names and in the
/// names of stored variables the number stands in unsigned decimal without padding.
using RadioChannel = std::uint32_t;
