#pragma once

#include "Modulation.h"

#include <cstdint>
#include <optional>

/// What the operator has set on the service. An input that is not set is as the service starts.
/// Cutbacks and gains in hundredths of a dB, powers in hundredths of a dBm.
struct OperatingInputs {
    struct TemporaryCutback {
        bool inForce = false;
        std::uint32_t cutback = 0;
    };

    struct Booster {
        std::int32_t presence = 0; ///< 0: none
        std::int32_t gain = 0;
        std::int32_t maxInputPower = 0;
        Modulation maxModulation = Modulation::CW;
    };

    bool isTemporary() const { return temporaryCutback && temporaryCutback->inForce; }
    std::uint32_t cutbackInForce() const {
        return isTemporary() ? temporaryCutback->cutback : permanentCutback.value_or(0);
    }

    std::optional<std::uint32_t> permanentCutback;
    std::optional<TemporaryCutback> temporaryCutback;
    std::optional<Booster> booster;
    std::optional<std::int32_t> temperature;
};
