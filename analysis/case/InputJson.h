#pragma once

#include "InputAxis.h"
#include "PowerTableJson.h"

/// Adds an input's value to a JSON object, under a key that names its unit: "rsec", "market",
/// "dpdVersion", "channelSpacingMHz", "cutbackCentiDb", "temporaryCutbackCentiDb" (null: not in
/// force), "booster" (null: none), "productNumber" (null: none), "selectedMin", "selectedMax".
void addTo(OrderedJson& object, const Inputs::Value& value);
