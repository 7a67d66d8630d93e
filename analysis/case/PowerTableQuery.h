#pragma once

#include "Explanation.h"
#include "PowerTable.h"
#include "RadioFile.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>

/// Asks the library for the powers of a radio's frame format.
class PowerTableQuery {
public:
    std::int32_t frameFormatId = 0;                ///< below 1: the configured frame format
    EReferenceSEC rsec = EReferenceSEC::UNDEFINED; ///< UNDEFINED: the system power controller's
    OperatingInputs inputs;                        ///< in place of what the file's own requests set

    // The selected range; UNDEFINED: the ACM handler's.
    ModulationAndCoding min{ModulationAndCoding::UNDEFINED};
    ModulationAndCoding max{ModulationAndCoding::UNDEFINED};

    /// A call for the power of one modulation in place of one for a frame format.
    struct OnePower {
        enum class Call {
            PowerCapabilities,
            AdmodPowerCapabilities, ///< takes the class as it stands
            UnrestrictedPmax        ///< of the configured modulation; no cutback is taken off
        };
        Call call;
        Modulation modulation = Modulation::UNDEFINED;
        std::int32_t preset =
            0; ///< held by the output before, which a class without a rule adds to
    };
    std::optional<OnePower> onePower;

    /// The request of the file in whose place is asked: the node is as RadioFile::at() has it.
    struct AtRequest {
        std::size_t index;
        std::string words;                    ///< what it calls
        std::set<std::string> arguments = {}; ///< its own that count: "rsec", "min", "max" ...
    };
    std::optional<AtRequest> request;

    /// Asks in place of a request, whose arguments count where an input of the question is not
    /// given.
    /// @param given names of such inputs.
    /// @return the first of them that the request has no place for; empty if it takes all.
    std::string askAt(std::size_t index, const Request& made, const std::set<std::string>& given);

    /// Whether the system power controller's class does not count.
    bool choosesRsec() const;

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
