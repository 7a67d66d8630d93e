#pragma once

#include "RadioFileCheck.h"
#include "Terminal.h"

#include <string>
#include <vector>

/// A radio file and what was found in it.
struct CheckedFile {
    std::string name; ///< on one line
    RadioFileCheck check;
};

/// For people and for editors: "FILE:LINE:COLUMN: SEVERITY: MESSAGE; REMEDY [CODE POINTER]" for
/// each finding, then a line that counts them.
std::string textForm(const CheckedFile& file, const Terminal& terminal);

/// For programs: one JSON object for all files, and a line end. Keys stay as they are; new ones may
/// come.
std::string jsonForm(const std::vector<CheckedFile>& files);
