#pragma once

#include "WhyNot.h"

#include <string>

/// The answer for people.
/// @param asked the modulation or code, as it was asked for.
std::string textForm(const WhyNot& whyNot, const std::string& asked);

/// The answer for programs: one JSON object.
std::string jsonForm(const WhyNot& whyNot, const std::string& asked);
