#pragma once

#include "Explanation.h"
#include "QueryTrace.h"
#include "RadioFile.h"
#include "RadioFilePlaces.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

/// What is known of a query beyond the library's reports on it. What is not known is nothing.
struct ExplanationContext {
    struct Cutback {
        bool isTemporary = false;
        std::uint32_t amount = 0;
        std::string pointer = {}; ///< where the radio file sets it, or empty
        std::string source = {};  ///< who else set it, in words
    };

    struct Booster {
        std::int32_t gain = 0;
        std::int32_t maxInputPower = 0;
        std::string gainPointer = {};
        std::string maxInputPowerPointer = {};
        std::string source = {};
        bool isInputKnown = true; ///< else only that maxInputPower does not bind
    };

    /// The radio that was asked, where there is a file of it.
    struct Radio {
        const RadioFile& file;
        const RadioFilePlaces& places;
        EDpdVersion dpdVersion;
        EFrameFormatMarket market;
        EChannelSpacingType channelSpacing;
    };

    std::optional<Cutback> cutback;
    std::optional<Booster> booster;
    std::optional<std::int32_t> channelSpacing; ///< in MHz
    std::optional<Radio> radio;

    std::map<Modulation, std::optional<std::int32_t>> pmax =
        {}; ///< asked for so far; nothing: no row
};

/// Explains one calculation for an adaptive modulation, or one of a fixed one, from what the
/// library reported while it answered.
///
/// A figure that the reports do not hold is the difference of two that they hold, or the answer of
/// the library to a further query, and says so. No power is calculated from tables of the tool's
/// own.
///
/// @param answer the library's; nothing: no power, or not known.
/// @param carried power that the service's query had in hand before this calculation; nothing:
///        not known.
Explanation explanationOf(ExplanationContext& context, const QueryTrace::Calculation& calculation,
                          const std::optional<std::int32_t>& answer,
                          const std::optional<std::int32_t>& carried);
