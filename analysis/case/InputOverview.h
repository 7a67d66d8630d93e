#pragma once

#include "PowerTableQuery.h"

#include <string>

/// The inputs of a radio as a form shows them, for programs: one JSON object. For each input its
/// name and words, the value that is in force and those that make sense for this radio; then the
/// frame formats and the requests of the file that can be asked for. Of a radio at a request those
/// before it are left.
///
///     {"inputs": [{"input": "rsec", "words": "RSEC", "unit": null, "value": "4L",
///                  "label": "4L", "values": [{"value": "2", "label": "2"}, ...]}, ...],
///      "modulations": ["4QAM", ...],
///      "frameFormats": [{"value": "0", "label": "..."}, ...],
///      "requests": [{"value": "none", "label": "..."}, ...]}
///
/// Values are texts, as InputAxis and AskedInputs take them.
/// @throw AnalysisError as the query does.
std::string inputOverviewJson(const RadioCase& radio);
