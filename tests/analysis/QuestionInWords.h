#pragma once

#include "Analysis.h"

#include <string>
#include <vector>

/// A question in the words of a command line, of which every form is named by --format: "plot",
/// "radio.json", "--over", "rsec", "--format", "svg". The radio's name is the file's.
/// @throw std::out_of_range for words that belong to no question.
Question questionIn(const std::vector<std::string>& words);

/// A question on every topic in each form that the topic has, in such words.
/// @param other the radio file to compare with.
std::vector<std::vector<std::string>> questionsAbout(const std::string& radioFile,
                                                     const std::string& other);
