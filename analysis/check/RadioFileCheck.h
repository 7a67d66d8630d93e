#pragma once

#include "AnalysisError.h"
#include "DocumentPlaces.h"
#include "Finding.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What `qor-power check` found in one text.
struct RadioFileCheck {
    struct PlacedFinding {
        Finding finding;
        TextPlace textPlace;
        bool hasPointer = true; ///< not for a syntax error
    };

    bool isRadioFile = true;
    std::vector<PlacedFinding> findings; ///< in the order of the text

    std::size_t count(Severity severity) const;

    /// Whether the file is clean.
    /// @param isStrict whether hints count like warnings.
    Outcome outcome(bool isStrict) const;

    /// Checks a text: its form, by the reader that every command uses, then everything else that
    /// the rules look for, the radio as each of its patches leaves it included.
    static RadioFileCheck run(std::string_view text);
};
