#pragma once

#include "IOutputPowerCalculator.h"

#include <optional>

/// A control component of some host, the object under test: it picks modulation-and-codes by their
/// power.
class CodePicker {
public:
    explicit CodePicker(const IOutputPowerCalculator& calculator);

    /// The highest code of the configured frame format that can be sent with at least a power.
    /// @param power in hundredths of a dBm.
    /// @return nothing if no code can, or if the powers are not known.
    std::optional<ModulationAndCoding> highestCodeWith(long power) const;

private:
    const IOutputPowerCalculator& m_calculator;
};
