#include "RadioQuestion.h"

#include "Arguments.h"
#include "Input.h"
#include "Messages.h"

#include <algorithm>
#include <cstddef>
#include <map>

namespace {

std::vector<std::string> formatsOf(Question::Topic topic) {
    static const std::map<Question::Form, std::string> wordOf{{Question::Form::Text, "text"},
                                                              {Question::Form::Csv, "csv"},
                                                              {Question::Form::Json, "json"},
                                                              {Question::Form::Svg, "svg"}};
    std::vector<std::string> words;
    for (const Question::Form form : Question::formsOf(topic)) {
        words.push_back(wordOf.at(form));
    }
    return words;
}

} // namespace

CommandOption RadioQuestion::describeFormat() {
    return CommonOptions::format(format, formatsOf(question.topic));
}

void RadioQuestion::validate() {
    const std::vector<std::string> words = formatsOf(question.topic);
    const std::string word = Arguments::word("--format", format, words);
    const auto index = std::ranges::find(words, word) - words.begin();
    question.form = Question::formsOf(question.topic)[static_cast<std::size_t>(index)];
    question.inputs = query;
    question.validate();
}

Reply RadioQuestion::answerFor(const std::string& radioFile, const Output& output) {
    question.look = output.terminal().look();
    return answerTo(question, radioFile);
}

Reply RadioQuestion::answer(const Output& output) {
    validate();
    question.radioName = givenName(file);
    return answerFor(readText(file), output);
}

Outcome print(const Reply& reply, Output& output) {
    output.write(reply.text);
    output.flush();
    for (const std::string& message : reply.messages) {
        complain(message);
    }
    return reply.outcome;
}

Outcome forEachFile(const std::vector<std::string>& files,
                    const std::function<Outcome(const std::string& file)>& work) {
    CommonOptions::expectOneStandardInput(files);
    Outcome outcome = Outcome::Done;
    for (const std::string& file : files) {
        try {
            outcome = worst(outcome, work(file));
        } catch (const OutputError&) {
            throw;
        } catch (const AnalysisError& error) {
            complain(error.what());
            outcome = worst(outcome, error.outcome());
        }
    }
    return outcome;
}
