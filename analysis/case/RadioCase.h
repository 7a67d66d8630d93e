#pragma once

#include "PowerTableQuery.h"
#include "RadioFile.h"

#include <string>

/// A radio and what is asked of it: everything that a power depends on.
struct RadioCase {
    RadioFile file;
    PowerTableQuery query;
    std::string name{}; ///< what headings and messages call the file; may be empty

    /// The powers, with the file's name in their heading.
    /// @throw AnalysisError as the query does, behind the file's name.
    PowerTable powers() const;

    /// Likewise, each with how it came about.
    ExplainedTable explain() const;
};
