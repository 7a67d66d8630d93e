#pragma once

#include "Explanation.h"
#include "ModulationChoice.h"
#include "PowerTableQuery.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Which single changes of a radio's inputs would allow a power that it does not give. Every change
/// is tried: the library answers the changed radio.
struct WhyNot {
    /// One input, changed alone.
    struct Change {
        std::string input; ///< stable name: "cutback", "rsec", "pmax-row", "booster-gain" ...
        std::string words; ///< for people, for example "permanent cutback"
        std::string from;  ///< for people, with unit
        std::string to = {};
        std::int32_t power = 0;                  ///< that it allows, in hundredths of a dBm
        std::optional<std::int64_t> amount = {}; ///< of a number, in hundredths of a dB
        std::string pointer = {};                ///< of the input in the radio file, or empty
    };

    /// Searches the smallest change of each input. Of an input that is a number that is the one
    /// whose neighbour, one hundredth nearer to what the radio has, does not allow the power.
    /// @param choice the codes that shall all have the power.
    /// @param wanted power in hundredths of a dBm.
    /// @throw AnalysisError OtherTrouble if the frame format has none of the codes; as the query
    /// does.
    static WhyNot ask(const RadioCase& radio, const ModulationChoice& choice, std::int32_t wanted);

    bool isAllowed() const { return power && *power >= wanted; }

    std::string radioFile;
    std::int32_t wanted = 0;
    std::optional<std::int32_t> power; ///< the lowest of the codes; nothing: one has none
    Explanation explanation;           ///< of that code
    std::vector<Change> changes;
    std::vector<std::string> mismatches; ///< of the explanations of the radio as it is
    std::vector<std::string> without; ///< words for the inputs of which no change alone allows it
};

/// The answer for people.
/// @param asked the modulation or code, as it was asked for.
std::string textForm(const WhyNot& whyNot, const std::string& asked);

/// The answer for programs: one JSON object.
std::string jsonForm(const WhyNot& whyNot, const std::string& asked);
