#pragma once

#include "RadioFile.h"

#include <optional>
#include <string>
#include <vector>

/// Compares the answers that a radio file has recorded with those of its replay.
namespace RecordedAnswers {

/// What differs in the answer to a request, as one line of JSON: its place among the requests, the
/// call, and every output under "recorded" and "replayed".
/// @param line what the replay printed.
/// @return nothing if the request has no recorded answer, or the same.
std::optional<std::string> difference(const Request& request, std::size_t index,
                                      const std::string& line);

/// What differs in a whole file.
/// @param lines of its replay, the first of which is the start.
std::vector<std::string> differences(const RadioFile& file, const std::vector<std::string>& lines);

} // namespace RecordedAnswers
