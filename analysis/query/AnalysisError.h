#pragma once

#include <algorithm>
#include <stdexcept>
#include <string>

/// How a question ended. A face shows it in its own way; the command line has an exit status for
/// each.
enum class Outcome {
    Done,
    AnswerIsNo,         ///< the answer to a yes-or-no question is no
    BadRadioFile,       ///< nothing of the file was used
    ServiceDidNotStart, ///< the service's initialize() failed
    OtherTrouble        ///< a bad question, or one without an answer
};

/// The outcome of several things done one after the other.
constexpr Outcome worst(Outcome left, Outcome right) {
    return std::max(left, right);
}

/// Ends a question without an answer. what() is one line without control characters.
class AnalysisError : public std::runtime_error {
public:
    AnalysisError(Outcome outcome, const std::string& line)
        : std::runtime_error(line)
        , m_outcome(outcome) {}

    Outcome outcome() const { return m_outcome; }

private:
    Outcome m_outcome;
};

/// The question itself cannot be understood, or asks for something that does not exist.
class QuestionError : public AnalysisError {
public:
    explicit QuestionError(const std::string& line)
        : AnalysisError(Outcome::OtherTrouble, line) {}
};
