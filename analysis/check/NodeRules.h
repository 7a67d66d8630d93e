#pragma once

#include "CheckedNode.h"

#include <string>
#include <vector>

/// The rules of `qor-power check` that compare the figures of a radio with each other. What the
/// library makes of them is asked by LibraryRules.
namespace NodeRules {

/// Its four Pmax tables, its product number and the limits of its modulation.
void checkCapabilityHandler(const CheckedNode& node, FindingList& findings);

/// The configured frame format and the records.
void checkFrameFormats(const CheckedNode& node, FindingList& findings);

/// The operator's range, the link's class and the minimum-power offsets.
void checkLink(const CheckedNode& node, FindingList& findings);

/// A class that is written as a number.
/// @param written the value in the file; may be null.
void checkClass(const nlohmann::json* written, const FilePlace& place, FindingList& findings);

/// The stored variables.
void checkVariables(const CheckedNode& node, FindingList& findings);

} // namespace NodeRules

/// The product numbers that lead to a family of their own. Every other number, and only that, leads
/// to the newer radio-unit family, so these are the ones that a mistyped number may stand for.
const std::vector<std::string>& knownProducts();
