#pragma once

#include "Explanation.h"
#include "ExplanationContext.h"
#include "QueryTrace.h"

#include <cstdint>
#include <optional>
#include <utility>

/// Explains the powers of one query from what the library reported while it answered.
///
/// A figure that the reports do not hold is the difference of two that they hold, or the answer of
/// the library to a further query, and says so. No power is calculated from tables of the tool's
/// own.
class ExplanationMaker {
public:
    explicit ExplanationMaker(ExplanationContext context)
        : m_context(std::move(context)) {}

    /// @param answer the library's; nothing: no power, or not known.
    /// @param carried power that the service's query had in hand before this calculation; nothing:
    ///        not known.
    Explanation explain(const QueryTrace::Calculation& calculation,
                        const std::optional<std::int32_t>& answer,
                        const std::optional<std::int32_t>& carried);

private:
    ExplanationContext m_context;
};
