#include "BatchResult.h"

std::string BatchResult::errorOf(const ExplainedTable& powers) {
    const std::vector<std::string> mismatches = mismatchesOf(powers.explanations);
    if (!mismatches.empty()) {
        return mismatches.front();
    }
    return powers.table.failure.empty() ? "" : "no powers: " + powers.table.failure;
}
