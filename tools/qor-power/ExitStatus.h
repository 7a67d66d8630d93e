#pragma once

#include <algorithm>
#include <array>

/// Exit status of every command of the tool.
enum class ExitStatus : int {
    Done = 0,               ///< for `replay`: every request was played, whatever its result
    AnswerIsNo = 1,         ///< the answer to a yes-or-no question is no
    BadRadioFile = 2,       ///< nothing of the file was used; for `batch`: a line was bad
    ServiceDidNotStart = 3, ///< the service's initialize() failed
    OtherTrouble = 4        ///< wrong usage, unreadable path, failed write, query without an answer
};

/// The status of several things done one after the other.
constexpr ExitStatus worst(ExitStatus left, ExitStatus right) {
    return std::max(left, right);
}

/// A row of the table that every help and the manual page show.
struct ExitStatusMeaning {
    ExitStatus status;
    const char* meaning;
};

inline constexpr std::array exitStatusTable{
    ExitStatusMeaning{ExitStatus::Done,
                      "done; the answer to a yes-or-no question (check, diff, why-not) is yes"},
    ExitStatusMeaning{ExitStatus::AnswerIsNo,
                      "the answer is no: check found something, diff a difference, why-not no way"},
    ExitStatusMeaning{ExitStatus::BadRadioFile, "a bad radio file; for batch, a bad line"},
    ExitStatusMeaning{ExitStatus::ServiceDidNotStart, "the service did not start"},
    ExitStatusMeaning{
        ExitStatus::OtherTrouble,
        "anything else: wrong usage, unreadable path, failed write, query without an answer"}};
