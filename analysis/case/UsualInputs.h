#pragma once

#include "Inputs.h"

#include <vector>

/// The values of an input that make sense for a radio where none are listed; of some inputs the
/// same for every radio. Empty if the radio names none.
namespace UsualInputs {

std::vector<Inputs::Value> rsecs(const RadioCase& radio);
std::vector<Inputs::Value> markets(const RadioCase& radio);
std::vector<Inputs::Value> dpdVersions(const RadioCase& radio);

/// The spacings that the radio itself names: of its frame formats and of its minimum power offsets.
std::vector<Inputs::Value> channelSpacings(const RadioCase& radio);

std::vector<Inputs::Value> cutbacks(const RadioCase& radio);
std::vector<Inputs::Value> temporaryCutbacks(const RadioCase& radio);

/// None, and the booster that the radio has or had in each of the two bands.
std::vector<Inputs::Value> boosters(const RadioCase& radio);

/// One number for each family of calculators; a number on no list leads to the newer radio units.
std::vector<Inputs::Value> products(const RadioCase& radio);

/// One code of the frame format for each of its modulations: the powers depend on no more.
std::vector<Inputs::Value> minima(const RadioCase& radio);
std::vector<Inputs::Value> maxima(const RadioCase& radio);

} // namespace UsualInputs
