#pragma once

#include "Script.h"

#include <vector>

/// Every odd answer to a call: each value of its domain, values outside of it, each kind of result
/// code, with and without the outputs written.
/// @param usual what is answered otherwise; an odd answer may share a part with it.
std::vector<ScriptedAnswer> oddAnswers(Call call, const ScriptedAnswer& usual);
