#pragma once

#include "EChannelSpacingType.h"
#include "RadioChannel.h"

class TraceSource;

/// getCompensationForChannelSpacing() of the outdoor families, after each has traced its entry.
///
/// The calibration of a channel is two stored variables: an array of pairs of signed 32-bit
/// integers (channel spacing, compensation in hundredths of a dB) and the number of its elements
/// that are valid. Both are read afresh at every call and nothing of them is kept.
/// @param[out] compensation that of the first pair with the spacing, 0 without one; untouched on
///        failure.
/// @return 0, also without a match; 32768 if a variable cannot be read.
int channelSpacingCompensation(TraceSource& trace, RadioChannel channel,
                               EChannelSpacingType channelSpacing, long& compensation);
