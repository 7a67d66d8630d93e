#pragma once

#include "DeskTrace.h"
#include "Rule.h"

#include <optional>
#include <string>

/// Something that went wrong, as one trace record reports it, in words for people.
struct TraceTrouble {
    /// Records above this level are no troubles.
    static constexpr int highestLevel = 2;

    std::string text;
    bool countsAsZero = false; ///< where the calculation succeeds in spite of it
    Rule rule = Rule::Unexplained;

    /// What a record of a calculation reports on its own; nothing for one that only repeats,
    /// further up, that something failed.
    static std::optional<TraceTrouble> in(const TraceRecord& record);

    /// A record that is not known, in the library's words.
    static TraceTrouble unknown(const TraceRecord& record);

    /// Adds what a later record says on the modulation of a missing row: the role that it has.
    void learnFrom(const TraceRecord& record);
};
