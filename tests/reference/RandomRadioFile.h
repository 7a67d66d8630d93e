#pragma once

#include "Decisions.h"

#include <cstdint>
#include <nlohmann/json.hpp>

namespace reference {

// A valid radio file. Most values are such as a real radio has, so that most queries reach a power;
// odd and extreme ones are strewn in.
nlohmann::json makeRadioFile(Decisions& decisions);

// The same one for a seed on every platform.
nlohmann::json randomRadioFile(std::uint64_t seed);

} // namespace reference
