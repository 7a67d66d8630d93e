#pragma once

#include <string>
#include <vector>

/// The product numbers that lead to a family of their own. Every other number, and only that, leads
/// to the newer radio-unit family, so these are the ones that a mistyped number may stand for.
const std::vector<std::string>& knownProducts();
