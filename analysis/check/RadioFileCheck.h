#pragma once

#include "AnalysisError.h"
#include "DocumentPlaces.h"
#include "Finding.h"
#include "TextLook.h"

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

/// A radio file and what was found in it.
struct CheckedFile {
    std::string name; ///< as given
    RadioFileCheck check;
};

/// What every question says of a bad radio file, in the same words. The file must be one.
std::string messageOf(const CheckedFile& file);

/// For people and for editors: "FILE:LINE:COLUMN: SEVERITY: MESSAGE; REMEDY [CODE POINTER]" for
/// each finding, then a line that counts them.
std::string textForm(const CheckedFile& file, const TextLook& look);

/// For programs: one JSON object for all files, and a line end. Keys stay as they are; new ones may
/// come.
std::string jsonForm(const std::vector<CheckedFile>& files);
