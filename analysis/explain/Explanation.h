#pragma once

#include "Modulation.h"
#include "PowerTable.h"
#include "Rule.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// How the power of one modulation came about, step by step, as the library itself reported it.
///
/// Powers in hundredths of a dBm, amounts in hundredths of a dB. Powers are signed numbers of 32
/// bits that wrap, as in the library.
struct Explanation {
    /// Which way the library took.
    enum class Path {
        None,             ///< no power was calculated
        Fixed,            ///< one fixed modulation: the lower of two Pmax values
        FixedWithBooster, ///< one fixed modulation: the lower of two powers of the family
        Adaptive          ///< the power of the family
    };

    /// Where a figure was found.
    enum class Basis {
        Reported,   ///< the library's traces hold it
        Difference, ///< between two figures of the library's traces or its answer
        Question,   ///< the answer of the library to a further query
        Input       ///< set on the service by the file's requests or the command line
    };

    /// One look-up in the radio's Pmax table.
    struct Lookup {
        Rule role; ///< PmaxRow, PmaxSelectedMinimum, PmaxReference or RsecCap
        Modulation modulation;
        std::string table = {}; ///< in words, with the fallback that led to it; may be empty
        std::optional<std::int32_t> power =
            {};                           ///< before any cutback; nothing: no row, or not told
        std::optional<Rule> missing = {}; ///< why there is no row; nothing: there is one
        std::string pointer = {}; ///< JSON Pointer of the row's power in the radio file; or empty
        Basis basis = Basis::Reported;
    };

    struct Step {
        enum class Kind {
            Start,  ///< the power to start from
            Change, ///< adds its amount
            Bound   ///< lowers the power to `bound` if it is above that
        };

        Rule rule;
        Kind kind;
        std::string words;        ///< one line for people
        std::int64_t amount = 0;  ///< with its sign; of a bound what it takes away, 0 or negative
        std::int32_t running = 0; ///< the power after this step
        std::optional<std::int32_t> bound = {};
        std::string pointer = {}; ///< JSON Pointer of the very figure in the radio file; or empty
        std::string source = {};  ///< table and row in words, or the option; empty: nothing to add
        Basis basis = Basis::Reported;
        bool wraps = false; ///< the sum left 32 bits
    };

    /// What the power could not be above. The power is the least of all bounds.
    struct Bound {
        Rule rule;
        std::string words;
        std::int32_t value = 0;   ///< as it would be if this bound alone held
        std::string pointer = {}; ///< as in Step

        /// What it rises with, in words: "Pmax of 64QAM". Bounds with the same words read the same
        /// figure. Empty: none that a radio holds.
        std::string figure = {};
        std::int64_t cutback = 0; ///< how much of the cutback is taken off in it
    };

    Modulation modulation = Modulation::UNDEFINED;
    Path path = Path::None;
    std::optional<std::int32_t> answer; ///< the library's; nothing: no power, or not told

    std::vector<Lookup> lookups; ///< in the order made
    std::vector<Step> steps;     ///< in order, from the radio's Pmax to the answer
    std::vector<Bound> bounds;   ///< in the order of the steps
    std::optional<std::size_t> bindingIndex;

    /// What holds next if the figure of the binding bound is raised, and at which power. Nothing:
    /// nothing does, or it is not known.
    std::optional<Bound> next;
    std::vector<Bound> sameFigure; ///< other bounds that rise with that figure
    bool hasOpenBound = false;     ///< a log does not tell one: no next one is known
    bool wraps = false;            ///< a sum left 32 bits: the order of the bounds says nothing
    std::optional<std::int64_t> headroom; ///< from the binding bound up to the next one

    /// The cutback that lowers the power, and the power without it, where that is known.
    std::optional<Rule> cutback;
    std::optional<std::int32_t> withoutCutback;

    std::optional<Rule> refusal; ///< why there is no power
    std::string refusalWords;    ///< on one line

    std::vector<std::string> notes; ///< what else the reader must know

    /// One fixed modulation with a booster: how the power of that one came about. Else empty.
    std::vector<Explanation> ofSelected;

    /// The first figure of the library's that the steps do not lead to; empty if they add up.
    std::string mismatch;

    bool addsUp() const { return mismatch.empty(); }

    /// The bound that holds; null without a power, or where a log does not tell it.
    const Bound* binding() const { return bindingIndex ? &bounds[*bindingIndex] : nullptr; }
    const Bound* runnerUp() const { return next ? &*next : nullptr; }

    /// The figure that the power rises with; empty: none that a radio holds.
    std::string bindingFigure() const;

    /// The one rule to name, to count or to colour by: the binding one, or what denied the power.
    Rule decisiveRule() const;
};

/// The powers of a frame format, each with how it came about.
struct ExplainedTable {
    PowerTable table;
    std::vector<Explanation> explanations; ///< one for each row of the table, in their order
    std::string pmaxTable = {}; ///< the Pmax table that was read, with the fallback that led to it
    std::string pmaxTableKey = {}; ///< its key in the radio file, for example "pmaxDpd1Etsi"
};

/// The powers of a frame format with the rules alone that decide them: what many tables can be kept
/// of.
struct RuledTable {
    RuledTable() = default;
    explicit RuledTable(const ExplainedTable& explained);

    PowerTable table;
    std::vector<Rule> rules; ///< one for each row of the table, in their order
    std::vector<std::optional<std::int64_t>> headrooms; ///< likewise, see Explanation
    std::vector<std::optional<Rule>> cutbacks;          ///< likewise
    std::vector<std::string> mismatches;                ///< see mismatchesOf()
};

/// What does not add up in explanations, a line for each modulation: "the steps for 16QAM do not
/// add up: ...". Modulations that several codes share are told once.
std::vector<std::string> mismatchesOf(const std::vector<Explanation>& explanations);

/// Likewise behind the radio file's name, if it has one.
std::vector<std::string> mismatchesOf(const ExplainedTable& explained);
