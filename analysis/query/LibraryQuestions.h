#pragma once

#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "Modulation.h"
#include "RadioFile.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

/// Further queries that are put to the library for figures which the traces of a query do not tell.
/// Each builds a node of its own, so no other node may stand meanwhile.
namespace LibraryQuestions {

/// Pmax of one modulation as the service looks it up, in hundredths of a dBm.
/// @return nothing if there is no row, or no answer.
std::optional<std::int32_t> pmax(const RadioFile& file, EDpdVersion dpdVersion,
                                 EFrameFormatMarket market, Modulation modulation);

/// Offsets of one RSEC class by modulation, in hundredths of a dB.
using Offsets = std::map<Modulation, std::int32_t>;

/// The offset table of an outdoor family, one class of it. Asked once in the process.
/// @param calculator class of the family, for example "CalculatorKam".
/// @return nothing for a family without such a table, and for one that no radio selects.
std::optional<Offsets> offsets(const std::string& calculator, EReferenceSEC rsec);

} // namespace LibraryQuestions
