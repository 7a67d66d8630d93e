#include "Engine.h"

#include "Analysis.h"
#include "AnalysisError.h"
#include "Arguments.h"
#include "BatchResult.h"
#include "Datum.h"
#include "InputAxis.h"
#include "InputEdits.h"
#include "JsonReader.h"
#include "LoggedPowers.h"
#include "OneLine.h"
#include "PlotCanvas.h"
#include "RadioAnswer.h"
#include "RadioFileReader.h"
#include "Replay.h"
#include "Rule.h"
#include "Sweep.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <new>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

namespace {

using nlohmann::json;

struct TopicName {
    const char* name;
    Question::Topic topic;
};

constexpr TopicName topics[] = {
    {"table", Question::Topic::Table},    {"explain", Question::Topic::Explanation},
    {"why-not", Question::Topic::WhyNot}, {"sweep", Question::Topic::Sweep},
    {"diff", Question::Topic::Diff},      {"check", Question::Topic::Check},
    {"plot", Question::Topic::Picture},   {"inputs", Question::Topic::Inputs},
};

struct FormName {
    const char* name;
    Question::Form form;
};

constexpr FormName forms[] = {{"text", Question::Form::Text},
                              {"csv", Question::Form::Csv},
                              {"json", Question::Form::Json},
                              {"svg", Question::Form::Svg}};

/// The inputs that a question takes, each as the tool's option is called.
const std::map<std::string, std::optional<std::string> AskedInputs::*> askedInputs{
    {"frame-format", &AskedInputs::frameFormat},
    {"request", &AskedInputs::request},
    {"cutback", &AskedInputs::cutback},
    {"temporary-cutback", &AskedInputs::temporaryCutback},
    {"booster", &AskedInputs::booster},
    {"rsec", &AskedInputs::rsec},
    {"min", &AskedInputs::min},
    {"max", &AskedInputs::max},
};

/// A search lets go after so many questions to the library: some ten milliseconds.
constexpr std::size_t questionsInSlice = 40;

/// The option for all others.
constexpr const char* settingName = "set";

std::vector<std::string> pathOf(const std::string& pointer) {
    std::vector<std::string> path;
    for (json::json_pointer rest(pointer); !rest.empty(); rest.pop_back()) {
        path.push_back(rest.back());
    }
    std::ranges::reverse(path);
    return path;
}

/// A text as one word of a shell's command line.
std::string shellWord(const std::string& text) {
    const bool isPlain =
        !text.empty() && text.front() != '-' &&
        text.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                               "_-./,+:=@") == std::string::npos;
    if (isPlain) {
        return text;
    }
    std::string word;
    for (const char byte : text) {
        word += byte == '\'' ? "'\\''" : std::string(1, byte);
    }
    return "'" + word + "'";
}

/// Does something with each line; the last one needs no line end.
void forEachLine(std::string_view text, const std::function<void(std::string line)>& work) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        work(std::string(line));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

} // namespace

/// The members of a request, read.
class Engine::Request {
public:
    explicit Request(std::string_view text)
        : m_json(json::parse(text)) {}

    std::string text(const char* key) const { return m_json.value(key, std::string()); }
    std::vector<std::string> texts(const char* key) const {
        return m_json.value(key, std::vector<std::string>());
    }
    bool flag(const char* key) const { return m_json.value(key, false); }
    int number(const char* key) const { return m_json.value(key, 0); }

    /// The changes that are options of the tool.
    AskedInputs asked() const {
        AskedInputs inputs;
        for (const json& change : changes()) {
            const std::string name = nameOf(change);
            const auto asked = askedInputs.find(name);
            if (asked != askedInputs.end()) {
                inputs.*asked->second = valueOf(change);
            } else if (name == settingName) {
                inputs.set.push_back(valueOf(change));
            }
        }
        return inputs;
    }

    /// All of them: what is no option is a change of the radio file.
    AskedInputs inputs(std::string_view radioFile) const {
        AskedInputs inputs = asked();
        const std::vector<std::string> others = settings(radioFile);
        inputs.set.insert(inputs.set.end(), others.begin(), others.end());
        return inputs;
    }

    Question question(const std::string& asked, std::string_view radioFile) const {
        const auto* const topic = std::ranges::find(topics, asked, &TopicName::name);
        const auto* const form = std::ranges::find(forms, text("form"), &FormName::name);
        if (topic == std::end(topics)) {
            throw QuestionError("ask " + inQuotes(asked) + ": is no question");
        }
        Question question;
        question.topic = topic->topic;
        question.form = form == std::end(forms) ? Question::Form::Json : form->form;
        question.radioName = text("name");
        if (question.topic != Question::Topic::Check) {
            question.inputs = inputs(radioFile);
        }
        question.modulations = texts("modulations");
        question.power = text("power");
        question.changes = m_json.value("most", question.changes);
        question.over = texts("over");
        question.otherRadio = text("other");
        question.otherName = text("otherName");
        return question;
    }

    /// What gives the same answer in a terminal.
    std::string commandLine(std::string_view radioFile) const {
        // What begins as an option does is none with its folder.
        const std::string name = text("name");
        std::string line = "qor-power " + text("command") + ' ' +
                           shellWord(name.starts_with('-') ? "./" + name : name);
        const auto add = [&line](const std::string& option, const std::string& value) {
            line += " --" + option + ' ' + shellWord(value);
        };
        for (const json& change : changes()) {
            if (isOption(nameOf(change))) {
                add(nameOf(change), valueOf(change));
            }
        }
        for (const std::string& setting : settings(radioFile)) {
            add(settingName, setting);
        }
        return line;
    }

private:
    json changes() const { return m_json.value("changes", json::array()); }
    static std::string nameOf(const json& change) { return change.at("input"); }
    static std::string valueOf(const json& change) { return change.at("value"); }
    static bool isOption(const std::string& name) {
        return name == settingName || askedInputs.contains(name);
    }

    /// Of the inputs that are no options.
    std::vector<std::string> settings(std::string_view radioFile) const {
        std::vector<std::string> settings;
        std::optional<RadioCase> radio;
        for (const json& change : changes()) {
            if (isOption(nameOf(change))) {
                continue;
            }
            if (!radio) {
                radio = asked().radio(radioFile, "");
            }
            const InputAxis& axis = InputAxis::named("input", nameOf(change));
            for (const Inputs::Value& value : axis.valuesOf("", valueOf(change))) {
                if (const auto setting = InputEdits::settingOf(*radio, value)) {
                    settings.push_back(*setting);
                }
            }
        }
        return settings;
    }

    json m_json;
};

namespace {

using Answer = Engine::Answer;

Answer replay(int traceLevel, std::string_view radioFile) {
    Answer answer;
    const bool started =
        Replay(traceLevel)
            .play(RadioFileReader::read(radioFile),
                  [&answer](const std::string& line) { answer.text += line + '\n'; });
    answer.outcome = started ? Outcome::Done : Outcome::ServiceDidNotStart;
    return answer;
}

/// @param radio with what is asked for in it.
Answer values(const std::vector<std::string>& overs, const AskedInputs& inputs,
              const RadioCase& radio) {
    const std::vector<Sweep::Line> lines = Sweep::linesOf(overs, inputs, radio);
    Datum::List texts;
    for (const Inputs::Value& value : lines.front().values) {
        texts.emplace_back(Inputs::textOf(value));
    }
    return {Outcome::Done, jsonLine(Datum::Object{{"values", std::move(texts)}}), {}};
}

Answer places(const std::vector<std::string>& pointers, std::string_view radioFile) {
    const DocumentPlaces document = JsonReader::placesIn(radioFile);
    Datum::List list;
    for (const std::string& pointer : pointers) {
        const TextPlace place = document.find(pathOf(pointer));
        list.emplace_back(
            Datum::Object{{"pointer", pointer}, {"line", place.line}, {"column", place.column}});
    }
    return {Outcome::Done, jsonLine(Datum::Object{{"places", std::move(list)}}), {}};
}

} // namespace

Engine::Engine() = default;
Engine::~Engine() = default;

Engine::Answer Engine::fleetRadio(const Request& request, std::string_view text) {
    if (request.flag("first")) {
        const std::string by = request.text("by");
        m_fleet =
            FleetReport(by.empty() ? by : Arguments::word("by", by, FleetReport::groupings()));
    }
    if (request.flag("answer")) {
        m_fleet.add(text);
        try {
            static_cast<void>(RadioAnswer::read(text));
            return {Outcome::Done, std::string(text) + '\n', {}};
        } catch (const AnalysisError& error) {
            BatchResult unreadable{request.text("name"), {}, {}, {}};
            unreadable.fail(BatchResult::Trouble::Other, error.what());
            return {Outcome::Done, BatchForm({}).linesOf(unreadable), {}};
        }
    }
    const std::string path = request.text("path");
    std::string line = BatchForm({}).linesOf(BatchResult::of(
        request.text("name"), path, [&text] { return std::string(text); }, request.asked()));
    m_fleet.add(line);
    return {Outcome::Done, std::move(line), {}};
}

Engine::Answer Engine::fleet(const Request& request) const {
    const std::string form = request.text("form");
    return {Outcome::Done,
            form == "svg"   ? svgForm(m_fleet)
            : form == "csv" ? csvForm(m_fleet, FleetTable::Powers)
                            : jsonForm(m_fleet),
            {}};
}

Engine::Answer Engine::log(const Request& request, std::string_view lines) {
    if (m_log == nullptr || request.flag("first")) {
        LoggedQueries::Choice choice;
        choice.inputs = request.asked().query().inputs;
        m_log = std::make_unique<LoggedQueries>(
            choice, [this](const LoggedPowers& powers) { m_explained += jsonLine(powers); });
    }
    Answer answer;
    try {
        forEachLine(lines, [this](const std::string& line) { m_log->read(line); });
        if (request.flag("last")) {
            m_log->end();
        }
    } catch (const TraceLogError& error) {
        answer = {Outcome::OtherTrouble, {}, {error.what()}};
    }
    answer.text = std::exchange(m_explained, {});
    if (request.flag("last")) {
        m_log.reset();
    }
    return answer;
}

Engine::Answer Engine::search(const Request& request, std::string_view radioFile) {
    if (request.flag("first")) {
        m_search =
            std::make_unique<StepwiseAnswer>(request.question("why-not", radioFile), radioFile);
    }
    if (m_search == nullptr) {
        throw QuestionError("no search has begun");
    }
    if (!m_search->goOn(questionsInSlice)) {
        return {Outcome::Done,
                jsonLine(Datum::Object{{"done", m_search->steps()}, {"of", m_search->all()}}),
                {}};
    }
    const Reply reply = std::exchange(m_search, nullptr)->reply();
    return {reply.outcome, reply.text, reply.messages};
}

Engine::Answer Engine::ask(std::string_view requestText, std::string_view text) {
    try {
        const Request request(requestText);
        const std::string asked = request.text("ask");
        if (asked == "legend") {
            return {Outcome::Done, ruleLegendJson(), {}};
        }
        if (asked == "fleet-radio") {
            return fleetRadio(request, text);
        }
        if (asked == "fleet-groupings") {
            const std::vector<std::string>& names = FleetReport::groupings();
            return {Outcome::Done, jsonLine(Datum::List(names.begin(), names.end())), {}};
        }
        if (asked == "fleet") {
            return fleet(request);
        }
        if (asked == "log") {
            return log(request, text);
        }
        if (asked == "values") {
            const AskedInputs inputs = request.inputs(text);
            return values(request.texts("over"), inputs, inputs.radio(text, ""));
        }
        if (asked == "places") {
            return places(request.texts("pointers"), text);
        }
        if (asked == "change") {
            return {Outcome::Done, InputEdits::withInputs(text, request.inputs(text)), {}};
        }
        if (asked == "command") {
            return {Outcome::Done, request.commandLine(text), {}};
        }
        if (asked == "replay") {
            return replay(request.number("trace"), text);
        }
        if (asked == "search") {
            return search(request, text);
        }
        Reply reply = answerTo(request.question(asked, text), text);
        return {reply.outcome, std::move(reply.text), std::move(reply.messages)};
    } catch (const AnalysisError& error) {
        return {error.outcome(), {}, {error.what()}};
    } catch (const RadioFileError& error) {
        return {Outcome::BadRadioFile, {}, {oneLine(error.what())}};
    } catch (const std::bad_alloc&) {
        throw; // the page starts another engine
    } catch (const std::exception& error) {
        return {Outcome::OtherTrouble, {}, {oneLine(error.what())}};
    }
}
