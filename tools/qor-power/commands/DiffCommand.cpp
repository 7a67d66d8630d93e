#include "Commands.h"

#include "CommonOptions.h"
#include "Input.h"
#include "RadioQuestion.h"

#include <memory>
#include <string>

namespace {

struct DiffOptions {
    RadioQuestion radio{Question::Topic::Diff};
    std::string after;
};

/// A radio file as an argument of its own name.
CommandOption radioFile(const std::string& name, const std::string& words, std::string& file) {
    CommandOption argument = CommonOptions::radioFile(file);
    argument.name = name;
    argument.description = words;
    return argument;
}

Outcome compare(DiffOptions& options, Output& output) {
    Question& question = options.radio.question;
    options.radio.validate();
    if (options.radio.file == standardInput && options.after == standardInput) {
        throw QuestionError("standard input (-) can be read only once");
    }
    const std::string before = readText(options.radio.file);
    question.radioName = inputName(options.radio.file);
    question.otherRadio = readText(options.after);
    question.otherName = inputName(options.after);
    return print(options.radio.answerFor(before, output), output);
}

} // namespace

Command Commands::diff() {
    const auto options = std::make_shared<DiffOptions>();
    Command command;
    command.name = "diff";
    command.summary = "Show what tells the powers of two radios apart";
    command.examples = {
        {"qor-power diff before.json after.json", "what tells the powers of two radios apart"},
        {"qor-power diff before.json after.json --frame-format 7"},
        {"qor-power diff before.json after.json --format json"},
        {"qor-power diff golden.json radio.json > /dev/null || echo changed"},
    };
    command.about = {
        "The powers of both radios stand side by side with the difference in dB and the rule that "
        "limits each, then the steps of the calculation that differ. The options hold for both "
        "radios.",
        "The exit status is 0 if both have the same codes with the same maximum powers and the "
        "same minimum power, and 1 if not, whatever else differs.",
    };
    command.options = options->radio.withQuery(
        {radioFile("A", "Radio file; - for standard input", options->radio.file),
         radioFile("B", "Radio file that is compared with A", options->after),
         options->radio.describeFormat()});
    command.run = [options](Output& output) { return compare(*options, output); };
    return command;
}
