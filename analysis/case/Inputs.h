#pragma once

#include "EChannelSpacingType.h"
#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "ModulationAndCoding.h"
#include "OperatingInputs.h"
#include "PowerTableQuery.h"

#include <cstdint>
#include <string>
#include <variant>

/// Values of the inputs that can be varied, one type for each input.
namespace Inputs {

struct PermanentCutback {
    std::uint32_t cutback; ///< in hundredths of a dB
};
struct ProductNumber {
    std::string text; ///< empty: none
};
struct SelectedMin {
    ModulationAndCoding code; ///< ModulationAndCoding::UNDEFINED: none
};
struct SelectedMax {
    ModulationAndCoding code;
};

/// In the order of InputAxis::all().
using Value = std::variant<EReferenceSEC, EFrameFormatMarket, EDpdVersion, EChannelSpacingType,
                           PermanentCutback, OperatingInputs::TemporaryCutback,
                           OperatingInputs::Booster, ProductNumber, SelectedMin, SelectedMax>;

/// The radio with one input as given and everything else as it was. The market, the DPD version and
/// the channel spacing are changed in the frame format that is asked for: the configured one or the
/// record with its id. What the radio does not have (a neighbour, the record) stays away.
RadioCase varied(const RadioCase& radio, const Value& value);

/// A value as --over takes it, without unit: "4L", "Etsi", "2", "1.50", "none", "4QAM_STRONG".
std::string textOf(const Value& value);

/// The radio with another power in a modulation's row of a Pmax table, or with a further row where
/// there is none.
/// @param tableKey the table's key in the radio file.
/// @return the radio as it is if it has no such table.
RadioFile withPmax(const RadioFile& file, const std::string& tableKey, Modulation modulation,
                   std::int32_t power);

} // namespace Inputs
