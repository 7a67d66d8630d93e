#pragma once

#include "TraceLog.h"

#include <cstddef>
#include <string>
#include <vector>

/// Whether a log holds every trace of a call, each as the library writes it, in its order and
/// without foreign ones between.
///
/// The library's ways through a call are walked along its traces. Each trace must have its whole
/// form, figures that occur twice must be the same, and sums must add up; so a line that is
/// missing, cut, doubled or of another service shows. What cannot show is a cut within a number
/// that ends its line and occurs nowhere else: such numbers are named. Nor can it show that the
/// line which refuses a query at once is another service's: no power is told then.
struct CallCheck {
    static CallCheck of(const LoggedCall& call);

    bool isWhole() const { return trouble.empty(); }

    std::string trouble;      ///< which line is missing, cut or foreign; empty: every line is there
    bool endsAtItsEnd = true; ///< else lines of this call may stand in the next one
    std::size_t calculations = 0;    ///< so many from the first one are told whole
    std::size_t wholeRecords = 0;    ///< up to the end of the last of them
    bool isSpacingConfirmed = false; ///< the channel spacing is told twice
    std::vector<std::string>
        unconfirmed; ///< numbers at line ends that occur once, with their lines
};
