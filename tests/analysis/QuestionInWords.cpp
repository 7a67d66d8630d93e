#include "QuestionInWords.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>

namespace {

using Form = Question::Form;
using Topic = Question::Topic;

const std::map<std::string, Topic> topics{
    {"table", Topic::Table},  {"explain", Topic::Explanation}, {"why-not", Topic::WhyNot},
    {"sweep", Topic::Sweep},  {"diff", Topic::Diff},           {"check", Topic::Check},
    {"plot", Topic::Picture},
};

const std::map<std::string, Form> forms{
    {"text", Form::Text}, {"csv", Form::Csv}, {"json", Form::Json}, {"svg", Form::Svg}};

const std::map<std::string, std::optional<std::string> AskedInputs::*> inputs{
    {"--frame-format", &AskedInputs::frameFormat},
    {"--cutback", &AskedInputs::cutback},
    {"--temporary-cutback", &AskedInputs::temporaryCutback},
    {"--booster", &AskedInputs::booster},
    {"--rsec", &AskedInputs::rsec},
    {"--min", &AskedInputs::min},
    {"--max", &AskedInputs::max},
    {"--request", &AskedInputs::request},
};

} // namespace

Question questionIn(const std::vector<std::string>& words) {
    Question question;
    question.topic = topics.at(words.at(0));
    question.inputs.prefix = "--";
    std::vector<std::string> arguments;
    for (std::size_t index = 1; index < words.size(); ++index) {
        const std::string& word = words[index];
        if (!word.starts_with("--")) {
            arguments.push_back(word);
        } else if (word == "--strict") {
            question.isStrict = true;
        } else if (word == "--format") {
            question.form = forms.at(words.at(++index));
        } else if (word == "--over") {
            question.over.push_back(words.at(++index));
        } else if (word == "--changes") {
            question.changes = words.at(++index);
        } else if (word == "--set") {
            question.inputs.set.push_back(words.at(++index));
        } else {
            question.inputs.*inputs.at(word) = words.at(++index);
        }
    }
    question.radioName = arguments.at(0);
    if (question.topic == Topic::Diff) {
        question.otherName = arguments.at(1);
        return question;
    }
    question.modulations.assign(arguments.begin() + 1, arguments.end());
    if (question.topic == Topic::WhyNot && question.modulations.size() > 1) {
        question.power = question.modulations.back();
        question.modulations.pop_back();
    }
    return question;
}

std::vector<std::vector<std::string>> questionsAbout(const std::string& radioFile,
                                                     const std::string& other) {
    std::vector<std::vector<std::string>> questions;
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"table", radioFile},
             {"table", radioFile, "--cutback", "2.5", "--booster", "1,15,14,256QAM"},
             {"explain", radioFile},
             {"why-not", radioFile, "16QAM", "25.5"},
             {"sweep", radioFile, "--over", "rsec", "--over", "cutback=0,3"},
             {"diff", radioFile, other},
             {"check", radioFile},
             {"plot", radioFile},
             {"plot", radioFile, "--over", "temporary-cutback"}}) {
        for (const auto& [form, value] : forms) {
            const std::vector<Form> known = Question::formsOf(topics.at(words.front()));
            if (std::find(known.begin(), known.end(), value) != known.end()) {
                questions.push_back(words);
                questions.back().insert(questions.back().end(), {"--format", form});
            }
        }
    }
    return questions;
}
