#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <string_view>

/// Who has to do what for a change: the less, the smaller the change.
enum class ChangeKind {
    Setting,     ///< the operator sets it
    Calibration, ///< the radio is measured anew
    Hardware     ///< the radio or its booster is another one
};

/// What a change of an input costs.
struct InputCost {
    std::string_view input;
    ChangeKind kind;
    std::int64_t step; ///< of one dB, one code or one other value
};

/// The cost model, the one place where it stands. Of two answers that with fewer changes of
/// hardware is the smaller one, then that with fewer calibrations, then that with fewer steps.
inline constexpr std::array inputCosts = {
    // What the operator sets at any time.
    InputCost{"cutback", ChangeKind::Setting, 1},
    InputCost{"temporary-cutback", ChangeKind::Setting, 1},
    InputCost{"min", ChangeKind::Setting, 2},
    InputCost{"max", ChangeKind::Setting, 2},
    // What the link is planned with.
    InputCost{"performance-profile", ChangeKind::Setting, 10},
    InputCost{"frame-format", ChangeKind::Setting, 20},
    InputCost{"rsec", ChangeKind::Setting, 20},
    InputCost{"channel-spacing", ChangeKind::Setting, 40},
    InputCost{"dpd", ChangeKind::Setting, 40},
    InputCost{"market", ChangeKind::Setting, 80},
    InputCost{"calibration", ChangeKind::Calibration, 1},
    // What a radio is built for.
    InputCost{"pmax-row", ChangeKind::Hardware, 1},
    InputCost{"booster-gain", ChangeKind::Hardware, 1},
    InputCost{"booster-max-input", ChangeKind::Hardware, 1},
    InputCost{"booster-max-modulation", ChangeKind::Hardware, 5},
    InputCost{"booster-presence", ChangeKind::Hardware, 10},
    InputCost{"booster", ChangeKind::Hardware, 10},
    InputCost{"hardware-limit", ChangeKind::Hardware, 5},
    InputCost{"limit-by-profile", ChangeKind::Hardware, 10},
    InputCost{"product", ChangeKind::Hardware, 40},
};

/// The cost of changes.
struct ChangeCost {
    std::int64_t hardware = 0;     ///< changes of this kind
    std::int64_t calibrations = 0; ///< likewise
    std::int64_t steps = 0;        ///< in hundredths

    /// Adds a change of an input in the table; any other counts as the dearest one of it.
    /// @param hundredths of a step: of a dB, or 100 for each place between two values.
    void add(std::string_view input, std::int64_t hundredths);

    auto operator<=>(const ChangeCost&) const = default;
};

/// "setting", "calibration" or "hardware".
const char* kindOf(std::string_view input);
