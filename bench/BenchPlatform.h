#pragma once

#include <cstdint>

/// A platform that does as little as can be, so that what is counted is the calculator's: the store
/// knows two variables and the traces are thrown away.
class BenchPlatform {
public:
    /// Content of the two calibration variables, whatever the channel.
    static void setCompensation(const std::int32_t* array, std::uint32_t size,
                                std::uint32_t validSize);

    /// Whether the frame-format type is carrier aggregation.
    static void setCarrierAggregation(bool isCarrierAggregation);

    /// Threshold of every trace; 0 is off.
    static void setTraceLevel(int level);
};
