#include "ExplanationContext.h"

#include "LibraryQuestions.h"

std::optional<std::int32_t> ExplanationContext::askForPmax(Modulation modulation) {
    if (!radio) {
        return std::nullopt;
    }
    const auto known = pmax.find(modulation);
    if (known != pmax.end()) {
        return known->second;
    }
    return pmax[modulation] =
               LibraryQuestions::pmax(radio->file, radio->dpdVersion, radio->market, modulation);
}
