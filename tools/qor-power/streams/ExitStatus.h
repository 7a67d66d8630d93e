#pragma once

#include "AnalysisError.h"

#include <array>

/// Exit status of every command of the tool. It is a contract with scripts: the outcomes stand in
/// its order, from 0 for done to 4.
constexpr int exitStatusOf(Outcome outcome) {
    return static_cast<int>(outcome);
}

/// A row of the table that every help and the manual page show.
struct ExitStatusMeaning {
    Outcome outcome;
    const char* meaning;
};

inline constexpr std::array exitStatusTable{
    ExitStatusMeaning{Outcome::Done,
                      "done; the answer to a yes-or-no question (check, diff, why-not) is yes"},
    ExitStatusMeaning{
        Outcome::AnswerIsNo,
        "no: check found something, diff a difference, why-not no way, explain a gap"},
    ExitStatusMeaning{Outcome::BadRadioFile, "a bad radio file; for batch, a bad line"},
    ExitStatusMeaning{Outcome::ServiceDidNotStart, "the service did not start"},
    ExitStatusMeaning{
        Outcome::OtherTrouble,
        "anything else: wrong usage, unreadable path, failed write, query without an answer"}};
