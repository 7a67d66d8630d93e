#pragma once

#include "RadioFileCheck.h"
#include "TextLook.h"

#include <string>
#include <vector>

/// A radio file and what was found in it.
struct CheckedFile {
    std::string name; ///< on one line
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
