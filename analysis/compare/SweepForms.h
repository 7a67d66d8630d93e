#pragma once

#include "Sweep.h"

#include <string>

/// A sweep for people: what all powers have in common, then one column for each value of the first
/// input, and one block for each value of the second.
std::string textForm(const Sweep& sweep);

/// A sweep for spreadsheets, in long form: one line for each modulation-and-code of each point.
std::string csvForm(const Sweep& sweep);

/// A sweep for programs: one JSON object and a line end.
std::string jsonForm(const Sweep& sweep);
