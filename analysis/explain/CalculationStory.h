#pragma once

#include "Explanation.h"
#include "ExplanationContext.h"
#include "QueryTrace.h"

#include <cstdint>
#include <optional>

/// Explains one calculation for an adaptive modulation, or one of a fixed one, from what the
/// library reported while it answered.
///
/// A figure that the reports do not hold is the difference of two that they hold, or the answer of
/// the library to a further query, and says so. No power is calculated from tables of the tool's
/// own.
///
/// @param answer the library's; nothing: no power, or not known.
/// @param carried power that the service's query had in hand before this calculation; nothing:
///        not known.
Explanation explanationOf(ExplanationContext& context, const QueryTrace::Calculation& calculation,
                          const std::optional<std::int32_t>& answer,
                          const std::optional<std::int32_t>& carried);
