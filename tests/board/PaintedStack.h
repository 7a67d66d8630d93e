#pragma once

#include <cstddef>
#include <functional>

/// Measures how much stack something needs, by running it on a stack that was painted before.
///
/// The measure is the distance from the call to the deepest word that was written; room below it
/// that a function reserved and never wrote is not seen.
class PaintedStack {
public:
    /// Runs an action that throws nothing.
    /// @return bytes of stack that it needed.
    static std::size_t depthOf(const std::function<void()>& action);
};
