#pragma once

#include "PowerTableQuery.h"
#include "TextLook.h"

#include <cstdint>
#include <optional>
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

/// What tells the powers of two radios apart: A, and B.
struct PowerDiff {
    /// A step of the calculation that is not the same in both.
    struct StepChange {
        Rule rule;
        Explanation::Step::Kind kind;
        std::optional<std::int64_t> before; ///< what the step starts from, adds or allows, in
        std::optional<std::int64_t> after;  ///< hundredths of a dBm or dB; nothing: no such step
    };

    /// One modulation-and-code that at least one of the two has.
    struct Row {
        ModulationAndCoding modulationAndCode;
        Modulation modulation;
        std::optional<PowerTable::Row> before; ///< nothing: the radio does not have the code
        std::optional<PowerTable::Row> after;
        std::optional<Rule> ruleBefore; ///< the binding one, or what denied the power
        std::optional<Rule> ruleAfter;
        std::vector<StepChange> steps; ///< in the order of A's steps; what only B has follows

        std::optional<long> powerBefore() const { return powerOf(before); }
        std::optional<long> powerAfter() const { return powerOf(after); }
        std::optional<std::int64_t> difference() const; ///< B less A, where both have a power
        bool isSamePower() const;
        bool isSameRule() const { return ruleBefore == ruleAfter; }

    private:
        static std::optional<long> powerOf(const std::optional<PowerTable::Row>& row);
    };

    /// @throw AnalysisError if a radio's service does not start.
    static PowerDiff between(const RadioCase& before, const RadioCase& after);

    /// Whether both radios have the same codes with the same powers, and the same minimum.
    bool isEqual() const;

    std::vector<std::string> mismatches; ///< of the explanations of both radios
    PowerTable before;
    PowerTable after;
    std::vector<InputChange> inputs;
    std::vector<Row> rows; ///< A's codes in their order, then those that only B has
};

/// Likewise for people, for spreadsheets (one line for each code) and for programs.
std::string textForm(const PowerDiff& diff, const TextLook& look = {});
std::string csvForm(const PowerDiff& diff);
std::string jsonForm(const PowerDiff& diff);
