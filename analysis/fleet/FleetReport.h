#pragma once

#include "Distribution.h"
#include "RadioAnswer.h"
#include "RecentNames.h"
#include "TextLook.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

/// What the answers of a batch say of a fleet as a whole: how powers are spread, which rules limit
/// them, and which radios differ from their like. Answers come line by line; memory does not grow
/// with their number.
class FleetReport {
public:
    /// By what radios may be told apart: "family", "market" ...
    static const std::vector<std::string>& groupings();

    /// Of each table so many lines are kept; what is more goes into a line of "others".
    static constexpr std::size_t maxLines = 2000;

    /// So many radios at each end of a kind's powers are remembered by name.
    static constexpr std::size_t maxExtremes = 3;

    /// A kind of fewer radios tells nothing of what is usual.
    static constexpr std::uint64_t leastLike = 8;

    /// The powers of a modulation in a family.
    struct Powers {
        std::string group;
        std::string family;
        std::string modulation;
        Distribution powers;
        std::uint64_t denied = 0; ///< codes without a power
    };

    /// What a rule limits or denies; of a cutback what it lowers, beside the rule that limits.
    struct Limits {
        std::string group;
        std::string rule;
        std::uint64_t radios = 0; ///< with such codes
        std::uint64_t codes = 0;
        Distribution headroom; ///< of those codes of which it is known: up to the next bound
    };

    /// A radio with powers unlike those of its like: of the same product number, market, channel
    /// spacing, DPD version and RSEC class. Unlike is what lies further from the middle half of
    /// their powers than one and a half times the width of that half. Of its codes the one that
    /// lies furthest from the median.
    struct Outlier {
        std::string radio;
        std::string kind; ///< its like, in words
        std::string name; ///< of the code
        std::int64_t power = 0;
        std::int64_t usual = 0;  ///< the median
        std::uint64_t likes = 0; ///< powers of that code in the kind
        std::uint64_t codes = 0; ///< that are unlike

        std::int64_t difference() const { return power - usual; }
    };

    /// @param by one of the groupings; empty: one group.
    explicit FleetReport(std::string by = "")
        : m_by(std::move(by)) {}

    void add(std::string_view line);
    void add(RadioAnswer answer);

    const std::string& by() const { return m_by; }
    std::uint64_t radios() const { return m_radios; } ///< with powers
    std::uint64_t bad() const { return m_bad; }
    std::uint64_t doubled() const { return m_doubled; } ///< names that came before: left out
    std::uint64_t unreadable() const { return m_unreadable; }
    const std::string& firstUnreadable() const { return m_firstUnreadable; } ///< why; or empty

    std::vector<Powers> powers() const;    ///< by group, family and ascending modulation
    std::vector<Limits> limits() const;    ///< by group, those of most radios first
    std::vector<Outlier> outliers() const; ///< whose names are known, the furthest first
    std::uint64_t unlikeCodes() const;     ///< all, also of radios whose names are not known
    std::uint64_t unsorted() const { return m_unsorted; } ///< codes of kinds that are too many

private:
    /// Radios that are alike, and one code of theirs.
    struct Kind {
        std::string words;
        std::string name;
        Distribution powers = {};
        std::vector<std::pair<std::int64_t, std::string>> lowest = {};
        std::vector<std::pair<std::int64_t, std::string>> highest = {};

        /// What is usual: nothing where there are too few.
        std::optional<std::pair<std::int64_t, std::int64_t>> usualRange() const;
    };

    void addCode(const RadioAnswer& answer, const std::string& group, const RadioAnswer::Row& row);
    Limits& limitsOf(const std::string& group, const std::string& rule);
    void addToKind(const RadioAnswer& answer, const RadioAnswer::Row& row);

    std::string m_by;
    RecentNames m_names;
    std::uint64_t m_lines = 0;
    std::uint64_t m_radios = 0;
    std::uint64_t m_bad = 0;
    std::uint64_t m_doubled = 0;
    std::uint64_t m_unreadable = 0;
    std::uint64_t m_unsorted = 0;
    std::string m_firstUnreadable;
    std::map<std::tuple<std::string, std::string, std::size_t, std::string>, Powers> m_powers;
    std::map<std::pair<std::string, std::string>, Limits> m_limits;
    std::map<std::pair<std::string, std::int64_t>, Kind> m_kinds;
};

/// The tables of a report that CSV can hold, one at a time.
enum class FleetTable {
    Powers,
    Rules,
    Outliers
};

std::string textForm(const FleetReport& report, const TextLook& look = {});
std::string csvForm(const FleetReport& report, FleetTable table);
std::string jsonForm(const FleetReport& report);

/// A picture: of each family the spread of the powers over modulation, and how many radios each
/// rule limits.
std::string svgForm(const FleetReport& report);
