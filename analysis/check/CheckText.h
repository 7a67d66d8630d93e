#pragma once

#include "EChannelSpacingType.h"
#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"

#include <cstdint>
#include <string>
#include <vector>

/// Values as a finding's message shows them. A number that has no text is shown as a number.
namespace CheckText {

std::string of(Modulation modulation);
std::string of(const ModulationAndCoding& code);
std::string of(EReferenceSEC rsec);
std::string of(EFrameFormatMarket market);
std::string of(EDpdVersion dpdVersion);      ///< "DPD version 2"
std::string of(EChannelSpacingType spacing); ///< "28 MHz"

/// "4QAM", "4QAM and 16QAM", "4QAM, 16QAM and 3 more".
std::string list(const std::vector<std::string>& words);

} // namespace CheckText
