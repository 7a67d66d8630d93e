#pragma once

#include "Datum.h"
#include "RadioFileCheck.h"

/// The JSON Pointer of a finding as programs resolve it: never shortened, and empty for the
/// document as a whole; nothing for a syntax error.
Datum pointerOf(const RadioFileCheck::PlacedFinding& placed);
