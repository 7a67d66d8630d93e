#pragma once

#include "Explanation.h"
#include "ModulationChoice.h"
#include "PowerTableQuery.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/// An input of a radio that can be changed: a number within a range, or one of several values.
struct Lever {
    using Options = std::vector<std::string>; ///< words of a command line that make the change

    struct Value {
        std::string text;
        std::int64_t steps; ///< away from what the radio has, in hundredths; see ChangeCost
        std::function<void(RadioCase&)> apply;
        Options options = {};
    };

    struct Range {
        std::int64_t from; ///< what the radio has, in hundredths of a dB
        std::int64_t to;   ///< the farthest that is tried
        std::string (*text)(std::int64_t);
        std::function<void(RadioCase&, std::int64_t)> apply;
        std::function<Options(std::int64_t)> options;
        bool isAdded = false; ///< the radio has no such figure; `from` is below every one
    };

    std::string input; ///< of inputCosts
    std::string words; ///< for people
    std::string from;  ///< what the radio has, with unit
    std::string pointer = {};
    std::optional<Range> range = {};
    std::vector<Value> values = {}; ///< the nearest first
    std::string notTried = {};      ///< words for its values that are not among these; or empty
};

/// Everything of a radio that can be changed for a power.
/// @param explained the radio's powers.
/// @param row the one that is too low.
/// @param choice the codes that are asked for, which no change may exclude.
std::vector<Lever> leversOf(const RadioCase& radio, const ExplainedTable& explained,
                            const Explanation& row, const ModulationChoice& choice);
