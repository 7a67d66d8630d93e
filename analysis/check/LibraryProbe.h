#pragma once

#include "CheckedNode.h"

#include <optional>

/// Questions to the library that no answer of it tells by itself: each is put to a small node made
/// for it, in which nothing else can matter.
namespace LibraryProbe {

/// The Pmax tables that the library reads for one DPD version and market.
struct ReadTables {
    const PmaxTableName* byPowers = nullptr;       ///< null: none
    const PmaxTableName* byFindPminPmax = nullptr; ///< null: none
};

/// The tables that are read where a radio has and refuses tables as this one does.
ReadTables tablesOf(const CapabilityHandlerAnswers& radio, EDpdVersion dpdVersion,
                    EFrameFormatMarket market);

/// The tables that are read where a radio has all four.
ReadTables wantedTables(EDpdVersion dpdVersion, EFrameFormatMarket market);

/// Whether the family of a product number reads the stored calibration.
bool readsCalibration(const std::optional<std::string>& productNumber);

} // namespace LibraryProbe
