#include "RadioQuestion.h"

#include "Arguments.h"
#include "CommonOptions.h"
#include "Input.h"
#include "Messages.h"

#include <algorithm>
#include <cstddef>

namespace {

std::string wordOf(Question::Form form) {
    switch (form) {
    case Question::Form::Text:
        return "text";
    case Question::Form::Csv:
        return "csv";
    case Question::Form::Json:
        return "json";
    case Question::Form::Svg:
        return "svg";
    }
    return "";
}

std::vector<std::string> formatsOf(Question::Topic topic) {
    std::vector<std::string> words;
    for (const Question::Form form : Question::formsOf(topic)) {
        words.push_back(wordOf(form));
    }
    return words;
}

} // namespace

CommandOption RadioQuestion::describeFormat() {
    return CommonOptions::format(format, formatsOf(question.topic));
}

std::vector<CommandOption> RadioQuestion::withQuery(std::vector<CommandOption> options) {
    const std::vector<CommandOption> described = query.describe();
    options.insert(options.end(), described.begin(), described.end());
    return options;
}

void RadioQuestion::validate() {
    const std::vector<std::string> words = formatsOf(question.topic);
    const std::string word = Arguments::word("--format", format, words);
    const auto index = std::find(words.begin(), words.end(), word) - words.begin();
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
    question.radioName = inputName(file);
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
