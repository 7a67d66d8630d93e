#pragma once

#include "CheckedNode.h"

#include <string>
#include <vector>

/// The rules of `qor-power check` that compare the figures of a radio with each other. What the
/// library makes of them is asked by LibraryRules.
namespace NodeRules {

/// Everything that the file says of a node: the capability handler, the frame formats, the link and
/// the stored variables.
void check(const CheckedNode& node, FindingList& findings);

/// A class that is written as a number.
/// @param written the value in the file; may be null.
void checkClass(const nlohmann::json* written, const FilePlace& place, FindingList& findings);

} // namespace NodeRules

/// The product numbers that lead to a family of their own. Every other number, and only that, leads
/// to the newer radio-unit family, so these are the ones that a mistyped number may stand for.
const std::vector<std::string>& knownProducts();
