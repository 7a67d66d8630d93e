#pragma once

#include <algorithm>

/// Exit status of every command of the tool.
enum class ExitStatus : int {
    Done = 0,               ///< for `replay`: every request was played, whatever its result
    AnswerIsNo = 1,         ///< the answer to a yes-or-no question is no
    BadRadioFile = 2,       ///< nothing of the file was used
    ServiceDidNotStart = 3, ///< the service's initialize() failed
    OtherTrouble = 4        ///< wrong usage, unreadable path, failed write, query without an answer
};

/// The status of several things done one after the other.
constexpr ExitStatus worst(ExitStatus left, ExitStatus right) {
    return std::max(left, right);
}
