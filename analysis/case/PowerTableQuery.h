#pragma once

#include "Explanation.h"
#include "PowerTable.h"
#include "RadioFile.h"

#include <cstdint>
#include <optional>
#include <string>

/// Asks the library for the powers of a radio's frame format.
class PowerTableQuery {
public:
    std::int32_t frameFormatId = 0;                ///< below 1: the configured frame format
    EReferenceSEC rsec = EReferenceSEC::UNDEFINED; ///< UNDEFINED: the system power controller's
    OperatingInputs inputs;                        ///< in place of what the file's own requests set

    /// Builds the node, starts a service in it, sets the operating inputs (the file's own setter
    /// requests in their order, then these inputs) and asks. The file's other requests are not
    /// played.
    ///
    /// A query that fails gives a table without powers, with the reason.
    /// @throw AnalysisError ServiceDidNotStart; OtherTrouble for a frame format of more than 10000
    /// codes.
    PowerTable run(const RadioFile& file) const;

    /// Likewise, and explains every power. Where the library's traces do not tell a figure, further
    /// queries are put to it, in nodes of their own.
    ExplainedTable explain(const RadioFile& file) const;
};

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
