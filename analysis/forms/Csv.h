#pragma once

#include <string>
#include <vector>

/// A line of comma-separated values with its line end. Fields that hold a comma, a quotation mark
/// or a line end are quoted as RFC 4180 says.
std::string csvLine(const std::vector<std::string>& fields);
