#pragma once

#include "EChannelSpacingType.h"
#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "Explanation.h"
#include "QueryTrace.h"
#include "RadioFile.h"
#include "RadioFilePlaces.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

/// Explains the powers of one query from what the library reported while it answered.
///
/// A figure that the reports do not hold is the difference of two that they hold, or the answer of
/// the library to a further query, and says so. No power is calculated from tables of the tool's
/// own.
class ExplanationMaker {
public:
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
    };

    /// The radio that was asked, where there is a file of it.
    struct Radio {
        const RadioFile& file;
        const RadioFilePlaces& places;
        EDpdVersion dpdVersion;
        EFrameFormatMarket market;
        EChannelSpacingType channelSpacing;
    };

    /// What is known beyond the library's reports on the query itself. What is not known is
    /// nothing.
    struct Context {
        std::optional<Cutback> cutback;
        std::optional<Booster> booster;
        std::optional<std::int32_t> channelSpacing; ///< in MHz
        std::optional<Radio> radio;
    };

    explicit ExplanationMaker(Context context)
        : m_context(std::move(context)) {}

    /// @param answer the library's; nothing: no power, or not known.
    /// @param carried power that the service's query had in hand before this calculation; nothing:
    ///        not known.
    Explanation explain(const QueryTrace::Calculation& calculation,
                        const std::optional<std::int32_t>& answer,
                        const std::optional<std::int32_t>& carried);

private:
    friend class CalculationStory;

    /// Pmax of a modulation, by a further query; nothing if there is no row or no radio.
    std::optional<std::int32_t> askForPmax(Modulation modulation);

    Context m_context;
    std::map<Modulation, std::optional<std::int32_t>> m_pmax; ///< asked for so far
};
