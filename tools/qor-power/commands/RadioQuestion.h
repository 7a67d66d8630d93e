#pragma once

#include "Analysis.h"
#include "Command.h"
#include "CommonOptions.h"
#include "Output.h"

#include <functional>
#include <string>
#include <vector>

/// Prints an answer, then its messages.
/// @return how the question ended.
Outcome print(const Reply& reply, Output& output);

/// Does something with each file. One that goes wrong is complained about, and the next one
/// follows.
/// @return the worst outcome of all.
/// @throw OutputError, QuestionError if standard input is among them twice.
Outcome forEachFile(const std::vector<std::string>& files,
                    const std::function<Outcome(const std::string& file)>& work);

/// A question about one radio file as the command line puts it: the options that such commands
/// share, and the way from the file to what is printed.
struct RadioQuestion {
    explicit RadioQuestion(Question::Topic topic) { question.topic = topic; }

    /// --format, with the forms that the topic has.
    CommandOption describeFormat();

    /// Reads the options, before any file.
    /// @throw QuestionError
    void validate();

    /// Answers for the text of a radio file, without printing anything.
    /// @param output where the answer's text will go.
    Reply answerFor(const std::string& radioFile, const Output& output);

    /// Reads the options, then the radio file, and answers for it, without printing anything.
    /// @throw AnalysisError
    Reply answer(const Output& output);

    /// Answers, prints the answer and says what else there is to say.
    /// @throw AnalysisError
    Outcome run(Output& output) { return print(answer(output), output); }

    Question question;
    std::string file;
    std::string format = "text";
    QueryOptions query;
};
