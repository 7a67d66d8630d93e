#pragma once

#include "Explanation.h"

#include <optional>
#include <string>

/// What became of one line of a batch.
struct BatchResult {
    std::string id;                       ///< that the line gives; may be empty
    std::string radioFile;                ///< path on one line; empty: the line was a radio file
    std::optional<ExplainedTable> powers; ///< nothing if there are not even rows
    std::string error;                    ///< why the line is bad, on one line; empty if it is not
    std::string place;                    ///< of the error in the radio file; may be empty

    bool isBad() const { return !error.empty(); }

    /// What is wrong with powers; empty if nothing is.
    static std::string errorOf(const ExplainedTable& powers);
};
