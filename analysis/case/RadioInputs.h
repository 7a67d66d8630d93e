#pragma once

#include "PowerTableQuery.h"

#include <string>
#include <vector>

/// One input that powers depend on, in words.
struct RadioInput {
    std::string name;  ///< stable: "market", "pmax-dpd1-etsi/4QAM", "variable/..."
    std::string value; ///< for people, with its unit
};

/// Everything that the powers of a table depend on: what InputAxis can vary, under its names and in
/// its order, then the rest of the node, each Pmax row, offset and variable on its own.
/// @param table the powers of that radio.
std::vector<RadioInput> inputsOf(const RadioCase& radio, const PowerTable& table);

/// An input that two radios do not have alike.
struct InputChange {
    std::string name;
    std::string before; ///< empty: the radio has no such input
    std::string after;
};

/// What differs, in the order of the first list; what only the second one has follows.
std::vector<InputChange> changesBetween(const std::vector<RadioInput>& before,
                                        const std::vector<RadioInput>& after);
