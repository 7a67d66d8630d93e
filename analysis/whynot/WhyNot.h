#pragma once

#include "ChangeCost.h"
#include "Explanation.h"
#include "ModulationChoice.h"
#include "PowerTableQuery.h"
#include "TextLook.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Which changes of a radio's inputs would allow a power that it does not give: single ones, or
/// pairs where no single one does. Every change is tried: the library answers the changed radio. A
/// power that the table calls doubtful is none.
struct WhyNot {
    /// One input, changed alone or with another one.
    struct Change {
        std::string input; ///< stable name: "cutback", "rsec", "pmax-row", "booster-gain" ...
        std::string words; ///< for people, for example "permanent cutback"
        std::string from;  ///< for people, with unit
        std::string to = {};
        std::int32_t power = 0;                  ///< that it allows, in hundredths of a dBm
        std::optional<std::int64_t> amount = {}; ///< of a number, in hundredths of a dB
        std::string pointer = {};                ///< of the input in the radio file, or empty
        std::vector<std::string> options = {};   ///< of a command line, which make it
        ChangeCost cost = {};                    ///< of a pair's change that of the pair
        std::optional<std::size_t> pair = {};    ///< which it belongs to, counted from 1
    };

    /// Searches the smallest change of each input. Of an input that is a number that is the one
    /// whose neighbour, one hundredth nearer to what the radio has, does not allow the power.
    /// @param choice the codes that shall all have the power, and that no change excludes.
    /// @param wanted power in hundredths of a dBm.
    /// @param most changes at once, 1 or 2.
    /// @param mostQuestions to the library for pairs; the answer says where they did not do.
    /// @throw AnalysisError OtherTrouble if the frame format has none of the codes; as the query
    /// does.
    static WhyNot ask(const RadioCase& radio, const ModulationChoice& choice, std::int32_t wanted,
                      std::size_t most = 1, std::size_t mostQuestions = 5000);

    bool isAllowed() const { return power && *power >= wanted && warning.empty(); }

    /// Pairs that are shown.
    static constexpr std::size_t maxPairs = 10;

    std::string radioFile;
    std::int32_t wanted = 0;
    std::optional<std::int32_t> power;   ///< the lowest of the codes; nothing: one has none
    std::string warning;                 ///< why that power is doubtful; empty if it is not
    Explanation explanation;             ///< of that code
    std::vector<Change> changes;         ///< single ones, the smallest first
    std::vector<Change> pairs;           ///< two for each pair, the smallest pair first
    std::vector<std::string> mismatches; ///< of the explanations of the radio as it is
    std::vector<std::string> without;  ///< words for the inputs of which no change alone allows it
    std::vector<std::string> notTried; ///< what this answer does not know
    std::size_t pairQuestions = 0;     ///< to the library, for pairs
};

/// The search of WhyNot::ask() in steps, for whoever has other things to do in between.
class WhyNotSearch {
public:
    /// As WhyNot::ask().
    WhyNotSearch(const RadioCase& radio, const ModulationChoice& choice, std::int32_t wanted,
                 std::size_t most, std::size_t mostQuestions = 5000);
    ~WhyNotSearch();
    WhyNotSearch(const WhyNotSearch&) = delete;
    WhyNotSearch& operator=(const WhyNotSearch&) = delete;

    /// Tries the next input, or pair of inputs.
    /// @return false if none is left.
    bool step();

    std::size_t steps() const; ///< that were made
    std::size_t all() const;   ///< steps, as far as it can be said: pairs follow if no input helps
    std::size_t questions() const; ///< to the library so far

    /// What was found.
    WhyNot answer() const;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

/// The answer for people.
/// @param asked the modulation or code, as it was asked for.
std::string textForm(const WhyNot& whyNot, const std::string& asked, const TextLook& look = {});

/// The answer for programs: one JSON object.
std::string jsonForm(const WhyNot& whyNot, const std::string& asked);
