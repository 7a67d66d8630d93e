#pragma once

#include "InputFile.h"
#include "RadioFile.h"

#include <string>

/// The text of a radio file, to its end or to one byte behind the largest size that is allowed, by
/// which the reader tells that it is too large.
/// @param path of the file, or standardInput.
/// @throw AnalysisError OtherTrouble if the path cannot be read.
std::string readText(const std::string& path);

/// Reads, checks and returns a radio file. Reading stops behind the largest size that is allowed.
/// @param path of the file, or standardInput.
/// @throw AnalysisError OtherTrouble if the path cannot be read, BadRadioFile if its content is
/// none.
RadioFile loadRadioFile(const std::string& path);

/// Says so if a path leads to a radio file. To be asked where each line of what should be a list of
/// radio files turned out bad.
void complainOfRadioAsList(const std::string& path);
