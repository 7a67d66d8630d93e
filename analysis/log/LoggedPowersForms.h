#pragma once

#include "LoggedPowers.h"
#include "TextLook.h"

#include <string>

/// The powers of one query in a log, for people.
std::string textForm(const LoggedPowers& powers, const TextLook& look);

/// The same for programs: one JSON object, without line ends but for the last.
std::string jsonLine(const LoggedPowers& powers);
