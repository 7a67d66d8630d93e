#pragma once

#include "RadioFile.h"

#include <string>

/// The path that stands for standard input.
inline constexpr const char* standardInput = "-";

/// What messages and headings call an input: its path on one line, or "standard input".
std::string inputName(const std::string& path);

/// The text of a radio file, to its end or to one byte behind the largest size that is allowed, by
/// which the reader tells that it is too large.
/// @param path of the file, or standardInput.
/// @throw ToolError OtherTrouble if the path cannot be read.
std::string readText(const std::string& path);

/// Reads, checks and returns a radio file. Reading stops behind the largest size that is allowed.
/// @param path of the file, or standardInput.
/// @throw ToolError OtherTrouble if the path cannot be read, BadRadioFile if its content is none.
RadioFile loadRadioFile(const std::string& path);
