#include "ChangeCost.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace {

/// An input that the table lacks costs what its last one does, the dearest.
const InputCost& costOf(std::string_view input) {
    const auto* const found = std::ranges::find(inputCosts, input, &InputCost::input);
    return found != inputCosts.end() ? *found : inputCosts.back();
}

} // namespace

void ChangeCost::add(std::string_view input, std::int64_t hundredths) {
    const InputCost& cost = costOf(input);
    hardware += cost.kind == ChangeKind::Hardware ? 1 : 0;
    calibrations += cost.kind == ChangeKind::Calibration ? 1 : 0;
    steps += cost.step * std::abs(hundredths);
}

const char* kindOf(std::string_view input) {
    static constexpr const char* words[] = {"setting", "calibration", "hardware"};
    return words[static_cast<std::size_t>(costOf(input).kind)];
}
