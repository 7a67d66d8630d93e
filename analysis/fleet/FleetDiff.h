#pragma once

#include "RadioAnswer.h"
#include "RecentNames.h"
#include "TextLook.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

/// What tells the answers of a batch from those of another one: before a change of tables, of radio
/// files or of the library, and after it.
///
/// The answers of both come line by line, in turn. A radio that has come on one side waits for the
/// other one; where both are in the same order none waits for long, and memory does not grow. Each
/// radio is compared once: a second answer of the same name is told and left alone.
class FleetDiff {
public:
    enum class Side {
        Before,
        After
    };

    /// What there is to tell of a radio.
    enum class What {
        Power,    ///< of a code
        MinPower, ///< of the radio
        OnlyBefore,
        OnlyAfter,
        FailedBefore, ///< there are powers after it
        FailedAfter,
        DoubledBefore, ///< not compared
        DoubledAfter,
        Nameless,  ///< neither an id nor a radio file: nothing to find it by
        Unreadable ///< a line that is no answer
    };
    static constexpr std::size_t whats = 10;

    struct Change {
        What what;
        std::string radio; ///< empty where there is no name
        std::int64_t code = 0;
        std::string name = {}; ///< of the code; empty where no code is meant
        std::string modulation = {};
        std::optional<std::int64_t> before = {}; ///< in hundredths of a dBm; nothing: no power
        std::optional<std::int64_t> after = {};
        std::string ruleBefore = {}; ///< code of the rule that limits or denies; or empty
        std::string ruleAfter = {};
        std::string remark = {};

        std::optional<std::int64_t> difference() const;
    };

    /// The codes whose power changed from one rule to another or the same.
    struct Move {
        std::string ruleBefore;
        std::string ruleAfter;
        std::uint64_t radios = 0;
        std::uint64_t codes = 0;
        std::optional<std::int64_t> least = {}; ///< difference, where both have a power
        std::optional<std::int64_t> greatest = {};
    };

    /// Answers that wait take at most so many bytes: some 16,000 radios of ten codes.
    static constexpr std::size_t maxWaiting = std::size_t{32} << 20;

    /// @param tell gets every change in the order in which it is found, once.
    explicit FleetDiff(std::function<void(const Change&)> tell)
        : m_tell(std::move(tell)) {}

    /// @throw AnalysisError OtherTrouble if too many wait.
    void add(Side side, std::string_view line);

    /// To be called behind the last line: what still waits is on one side alone.
    void finish();

    /// Whether each radio is on both sides once, with the same powers or as bad as before.
    bool isEqual() const;

    /// Whether there was a radio at all.
    bool isEmpty() const { return m_lines[0] + m_lines[1] == 0; }

    std::uint64_t compared() const { return m_compared; } ///< that have powers on both sides
    std::uint64_t changed() const { return m_changed; }   ///< of those
    std::uint64_t changedCodes() const { return m_changedCodes; }
    std::uint64_t otherRules() const { return m_otherRules; } ///< codes of equal power
    std::uint64_t badInBoth() const { return m_badInBoth; }
    std::uint64_t count(What what) const { return m_counts[static_cast<std::size_t>(what)]; }

    /// Those of most radios first. Behind the first 256 pairs of rules that come, further ones
    /// count as "others".
    std::vector<Move> moves() const;

private:
    struct Waiting {
        RadioAnswer answer;
        std::uint64_t line;
    };

    void tell(const Change& change);
    void tellRemark(What what, const std::string& radio, const std::string& remark);
    void compare(const RadioAnswer& before, const RadioAnswer& after);
    void compareCodes(const RadioAnswer& before, const RadioAnswer& after);
    Move& moveOf(const Change& change);

    std::function<void(const Change&)> m_tell;
    std::array<std::uint64_t, 2> m_lines{};
    std::array<RecentNames, 2> m_names;
    std::array<std::unordered_map<std::string, Waiting>, 2> m_waiting;
    std::size_t m_waitingBytes = 0;
    std::array<std::uint64_t, whats> m_counts{};
    std::uint64_t m_compared = 0;
    std::uint64_t m_changed = 0;
    std::uint64_t m_changedCodes = 0;
    std::uint64_t m_otherRules = 0;
    std::uint64_t m_badInBoth = 0;
    std::map<std::pair<std::string, std::string>, Move> m_moves;
};

/// The forms of a comparison: what stands before the changes, each of them, and what stands behind.
class FleetDiffForm {
public:
    enum class Kind {
        Text, ///< for people; the first changes alone
        Csv,
        Json
    };

    /// Of text; programs get all.
    static constexpr std::size_t shownChanges = 20;

    FleetDiffForm(Kind kind, TextLook look)
        : m_kind(kind)
        , m_look(look) {}

    std::string beginning() const;
    std::string add(const FleetDiff::Change& change);
    std::string end(const FleetDiff& diff) const;

private:
    Kind m_kind;
    TextLook m_look;
    std::uint64_t m_count = 0;
    std::vector<FleetDiff::Change> m_first;
};
