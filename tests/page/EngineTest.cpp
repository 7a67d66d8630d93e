#include "Engine.h"
#include "Analysis.h"
#include "FleetReport.h"
#include "InputAxis.h"
#include "InputEdits.h"
#include "PowerTableForms.h"
#include "RadioFileReader.h"
#include "Rule.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using nlohmann::json;

std::string contentOf(const std::filesystem::path& path) {
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    return content.str();
}

std::string example(const std::string& name) {
    return contentOf(std::filesystem::path(QOR_EXAMPLE_RADIOS) / name);
}

const std::string outdoor = "13ghz-etsi-outdoor1.json";
const std::string withBooster = "18ghz-ansi-high-radio-unit-new-booster.json";

json ask(const std::string& request, const std::string& text) {
    const Engine::Answer answer = Engine().ask(request, text);
    EXPECT_EQ(answer.outcome, Outcome::Done) << request;
    return json::parse(answer.text);
}

std::string csvOf(const RadioCase& radio) {
    return csvForm(radio.powers());
}

/// Values of every input that change something somewhere.
const std::vector<std::pair<std::string, std::string>> changedInputs{
    {"rsec", "6LB"},
    {"market", "Ansi"},
    {"dpd", "1"},
    {"channel-spacing", "14"},
    {"cutback", "3.25"},
    {"temporary-cutback", "1.00"},
    {"temporary-cutback", "none"},
    {"booster", "2,16,15,256QAM"},
    {"booster", "none"},
    {"product", "QZT 846 003"},
    {"min", "16QAM_STRONG"},
    {"max", "256QAM"},
};

/// A request for the powers with one input changed.
std::string tableWith(const std::string& ask, const std::int32_t frameFormat,
                      const std::string& input, const std::string& value) {
    return json{{"ask", ask},
                {"form", "csv"},
                {"changes",
                 {{{"input", "frame-format"}, {"value", std::to_string(frameFormat)}},
                  {{"input", input}, {"value", value}}}}}
        .dump();
}

TEST(Engine, AnInputChangedInTheQuestionOrInTheTextIsTheRadioWithThatInput) {
    for (const auto& entry : std::filesystem::directory_iterator(QOR_EXAMPLE_RADIOS)) {
        const std::string text = contentOf(entry.path());
        for (const std::int32_t frameFormat : {0, 2}) {
            for (const auto& [input, wanted] : changedInputs) {
                const InputAxis& axis = InputAxis::named("input", input);
                const Inputs::Value value = axis.valuesOf("", wanted).front();
                RadioCase radio{RadioFileReader::read(text), {}, ""};
                radio.query.frameFormatId = frameFormat;
                const std::string varied = csvOf(Inputs::varied(radio, value));
                EXPECT_EQ(Engine().ask(tableWith("table", frameFormat, input, wanted), text).text,
                          varied)
                    << entry.path() << ", frame format " << frameFormat << ", " << input << ' '
                    << wanted;
                radio.file = RadioFileReader::read(
                    Engine().ask(tableWith("change", frameFormat, input, wanted), text).text);
                EXPECT_EQ(csvOf(radio), varied)
                    << entry.path() << ", frame format " << frameFormat << ", " << input << ' '
                    << wanted << ", in the text";
            }
        }
    }
}

TEST(InputEdits, WhereNoRequestSetsACutbackOneIsAdded) {
    AskedInputs inputs;
    inputs.cutback = "1.5";
    const std::string once = InputEdits::withInputs(R"({"channel": 1})", inputs);
    EXPECT_EQ(once, R"({"requests": [{"call":"setPowerCutback","cutback":150}], "channel": 1})");
    inputs = {};
    inputs.temporaryCutback = "1";
    EXPECT_EQ(InputEdits::withInputs(once, inputs),
              R"({"requests": [{"call":"setPowerCutback","cutback":150}, )"
              R"({"call":"setTemporaryPowerCutback","use":true,"cutback":100}], "channel": 1})");
}

TEST(InputEdits, AtARequestASettingNamesThePlaceThatCountsThere) {
    std::string text = example(outdoor);
    const std::string requests = "\"requests\": [";
    text.insert(text.find(requests) + requests.size(),
                R"({"call": "patch", "file": {"frameFormat": {"dpdVersion": 1}}},)");
    AskedInputs inputs;
    inputs.request = "0";
    EXPECT_EQ(InputEdits::settingOf(inputs.radio(text, ""), EDpdVersion(0)),
              "/frameFormat/dpdVersion=0");
    inputs.request = "1";
    EXPECT_EQ(InputEdits::settingOf(inputs.radio(text, ""), EDpdVersion(0)),
              "/requests/0/file/frameFormat/dpdVersion=0");
}

TEST(Engine, AQuestionHasTheAnswerOfTheAnalysis) {
    const std::string text = example(outdoor);
    Question question;
    question.topic = Question::Topic::Explanation;
    question.form = Question::Form::Json;
    question.radioName = "radio.json";
    question.inputs.cutback = "3";
    const Engine::Answer answer = Engine().ask(
        R"({"ask": "explain", "name": "radio.json", "changes": [{"input": "cutback", "value": "3"}]})",
        text);
    EXPECT_EQ(answer.text, answerTo(question, text).text);
}

TEST(Engine, ChangesAtAPlaceAndOfOtherInputsAreMadeInTheTextThatIsAsked) {
    const std::string changes =
        R"([{"input": "set", "value": "/capabilityHandler/pmaxDpd2Etsi/7/1=1500"},)"
        R"( {"input": "channel-spacing", "value": "14"}])";
    const std::string text = example(outdoor);
    const Engine::Answer changed =
        Engine().ask(R"({"ask": "change", "changes": )" + changes + "}", text);
    EXPECT_NE(changed.text.find(R"(["1024QAM", 1500])"), std::string::npos);
    EXPECT_EQ(
        Engine().ask(R"({"ask": "table", "form": "csv", "changes": )" + changes + "}", text).text,
        Engine().ask(R"({"ask": "table", "form": "csv"})", changed.text).text);
}

TEST(Engine, TheInputsOfARadioSayWhatIsInForceAndWhatMakesSense) {
    const json inputs = ask(R"({"ask": "inputs"})", example(withBooster)).at("inputs");
    std::vector<std::string> inForce;
    for (const json& input : inputs) {
        inForce.push_back(input.at("input").get<std::string>() + '=' +
                          input.at("value").get<std::string>());
        const json choice{{"value", input.at("value")}, {"label", input.at("label")}};
        const json& values = input.at("values");
        EXPECT_NE(std::find(values.begin(), values.end(), choice), values.end()) << input;
    }
    EXPECT_EQ(inForce, (std::vector<std::string>{
                           "rsec=2", "market=Ansi", "dpd=2", "channel-spacing=30", "cutback=6.00",
                           "temporary-cutback=none", "booster=2,16.00,15.00,256QAM",
                           "product=QZT 860 18/HP", "min=4QAM_STRONG", "max=256QAM"}));
}

TEST(Engine, ACommandLineSetsInTheRadioFileWhatIsNoOption) {
    EXPECT_EQ(
        Engine()
            .ask(R"({"ask": "command", "command": "table", "name": "it's 1.json", "changes": [)"
                 R"({"input": "market", "value": "Ansi"}, {"input": "cutback", "value": "3"},)"
                 R"({"input": "frame-format", "value": "2"}]})",
                 example(outdoor))
            .text,
        R"(qor-power table 'it'\''s 1.json' --cutback 3 --frame-format 2 )"
        R"(--set '/hardwareConfigurationHandler/frameFormats/1/market="Ansi"')");
}

/// The power of 64QAM with advice followed, all of it at once.
json powerWith(const std::vector<json>& advice, const std::string& text) {
    json changes = json::array();
    for (const json& each : advice) {
        const json& options = each.at("options");
        for (std::size_t index = 0; index + 1 < options.size(); index += 2) {
            changes.push_back({{"input", options[index].get<std::string>().substr(2)},
                               {"value", options[index + 1]}});
        }
    }
    const json table = ask(json{{"ask", "table"}, {"changes", changes}}.dump(), text);
    for (const json& row : table.at("rows")) {
        if (row.at("name") == "64QAM") {
            return row.at("maxPowerCentiDbm");
        }
    }
    return nullptr;
}

TEST(Engine, EveryAdviceIsAChangeThatGivesThePowerItSays) {
    const std::string text = example(outdoor);
    const json advice = ask(R"({"ask": "why-not", "modulations": ["64QAM"], "power": "18"})", text);
    ASSERT_GT(advice.at("changes").size(), 3U);
    for (const json& each : advice.at("changes")) {
        EXPECT_EQ(powerWith({each}, text), each.at("maxPowerCentiDbm")) << each;
    }
    const json paired =
        ask(R"({"ask": "why-not", "modulations": ["64QAM"], "power": "25", "most": "2"})", text);
    ASSERT_EQ(paired.at("pairs").size(), 2U);
    EXPECT_EQ(powerWith(paired.at("pairs"), text), paired.at("pairs").at(0).at("maxPowerCentiDbm"));
}

TEST(Engine, ASearchInStepsAnswersAsAQuestionDoesWhateverIsAskedMeanwhile) {
    const std::string text = example(outdoor);
    for (const std::string power : {"10", "18", "25", "x"}) {
        json request{{"ask", "why-not"},
                     {"name", "radio.json"},
                     {"modulations", {"64QAM"}},
                     {"power", power},
                     {"most", "2"},
                     {"changes", {{{"input", "market"}, {"value", "Ansi"}}}}};
        const Engine::Answer whole = Engine().ask(request.dump(), text);
        Engine sut;
        request["ask"] = "search";
        request["first"] = true;
        Engine::Answer answer = sut.ask(request.dump(), text);
        std::size_t done = 0;
        for (json progress = json::parse(answer.text, nullptr, false);
             progress.is_object() && progress.contains("of");
             progress = json::parse(answer.text, nullptr, false)) {
            EXPECT_GT(progress.at("done"), done);
            EXPECT_LE(progress.at("done"), progress.at("of"));
            done = progress.at("done");
            static_cast<void>(sut.ask(R"({"ask": "table"})", text));
            answer = sut.ask(R"({"ask": "search"})", "");
        }
        EXPECT_EQ(done > 0, power == "18" || power == "25") << power;
        EXPECT_EQ(answer.text, whole.text) << power;
        EXPECT_EQ(answer.outcome, whole.outcome) << power;
        EXPECT_EQ(answer.messages, whole.messages) << power;
        EXPECT_EQ(sut.ask(R"({"ask": "search"})", "").outcome, Outcome::OtherTrouble);
    }
}

TEST(Engine, WhatIsNoAnswerOfABatchIsCountedAsTheFleetCountsIt) {
    const json whole = ask(R"({"ask": "fleet-radio", "name": "a"})", example(outdoor));
    const auto with = [&whole](const char* pointer, const json& value) {
        json odd = whole;
        odd[json::json_pointer(pointer)] = value;
        return odd.dump();
    };
    const auto without = [&whole](const std::string& key) {
        json odd = whole;
        odd.erase(key);
        return odd.dump();
    };
    const std::map<std::string, std::string> lacks{
        {R"({"radioFile":"x","error":null,"ro)", "syntax error"},
        {"node.json", "syntax error"},
        {"[]", "no object"},
        {without("error"), "\"error\""},
        {without("family"), "\"family\""},
        {with("/rows", 3), "\"rows\" is no list"},
        {with("/rows/0/rule", 3), "\"rule\" is no text"},
        {with("/rows/0/maxPowerCentiDbm", 0.5), "\"maxPowerCentiDbm\""},
        {with("/frameFormat/dpdVersion", nullptr), "\"dpdVersion\""},
    };
    for (const auto& [odd, words] : lacks) {
        Engine sut;
        const Engine::Answer answer =
            sut.ask(R"({"ask": "fleet-radio", "first": true, "answer": true, "name": "n"})", odd);
        const json line = json::parse(answer.text);
        EXPECT_EQ(line.at("id"), "n");
        EXPECT_NE(line.at("error").get<std::string>().find(words), std::string::npos) << line;
        FleetReport native("");
        native.add(odd);
        EXPECT_EQ(sut.ask(R"({"ask": "fleet"})", "").text, jsonForm(native));
        EXPECT_EQ(json::parse(jsonForm(native)).at("unreadable"), 1) << odd;
    }
}

TEST(Engine, ARadioOfAFleetIsInTheFolderOfItsPath) {
    for (const auto& [path, folder] : std::map<std::string, std::string>{
             {"a/b/c.json", "a/b"}, {"c.json", "none"}, {"", "none"}}) {
        Engine sut;
        const json line = json::parse(
            sut.ask(json{{"ask", "fleet-radio"}, {"first", true}, {"by", "folder"}, {"path", path}}
                        .dump(),
                    example(outdoor))
                .text);
        EXPECT_EQ(line.at("radioFile"), path.empty() ? json() : json(path));
        const json rules = json::parse(sut.ask(R"({"ask": "fleet"})", "").text).at("rules");
        EXPECT_EQ(rules.at(0).at("group"), folder) << path;
    }
}

TEST(Engine, TheValuesOfASweepAreThoseThatTheAnswerHas) {
    for (const std::string over : {"rsec", "cutback=0..1:0.25,3", "booster=none/1,16,12,64QAM"}) {
        const auto request = [](const std::string& asked, const std::string& list) {
            return json{{"ask", asked}, {"form", "csv"}, {"over", {list}}}.dump();
        };
        const json values = ask(request("values", over), example(outdoor)).at("values");
        std::string list;
        for (const json& value : values) {
            list += (list.empty() ? over.substr(0, over.find('=')) + '='
                                  : (over.starts_with("booster") ? "/" : ",")) +
                    value.get<std::string>();
        }
        EXPECT_GT(values.size(), 1U);
        EXPECT_EQ(Engine().ask(request("sweep", list), example(outdoor)).text,
                  Engine().ask(request("sweep", over), example(outdoor)).text)
            << list;
    }
}

TEST(Engine, AtARequestItsArgumentsCount) {
    const std::string text = example(outdoor);
    const json requests = ask(R"({"ask": "inputs"})", text).at("requests");
    ASSERT_GT(requests.size(), 1U);
    EXPECT_EQ(requests.at(0).at("value"), "none");
    Question question;
    question.form = Question::Form::Csv;
    question.inputs.request = requests.back().at("value").get<std::string>();
    const json request{{"ask", "table"},
                       {"form", "csv"},
                       {"changes", {{{"input", "request"}, {"value", *question.inputs.request}}}}};
    EXPECT_EQ(Engine().ask(request.dump(), text).text, answerTo(question, text).text);
}

TEST(Engine, APlaceIsALineAndAColumn) {
    EXPECT_EQ(
        Engine()
            .ask(R"({"ask": "places", "pointers": ["/a/1", "/none"]})", "{\n \"a\": [1, 2]}")
            .text,
        R"({"places":[{"pointer":"/a/1","line":2,"column":11},{"pointer":"/none","line":1,"column":1}]})"
        "\n");
}

TEST(Engine, AFleetIsCountedUntilAnotherBegins) {
    Engine sut;
    const auto radios = [&sut] {
        return json::parse(sut.ask(R"({"ask": "fleet"})", "").text).at("radios");
    };
    static_cast<void>(
        sut.ask(R"({"ask": "fleet-radio", "first": true, "name": "a"})", example(outdoor)));
    static_cast<void>(sut.ask(R"({"ask": "fleet-radio", "name": "b"})", example(outdoor)));
    EXPECT_EQ(radios(), 2);
    static_cast<void>(sut.ask(R"({"ask": "fleet-radio", "first": true})", example(outdoor)));
    EXPECT_EQ(radios(), 1);
    EXPECT_EQ(json::parse(sut.ask(R"({"ask": "fleet-radio"})", "{}").text).at("place"), "/channel");
    EXPECT_EQ(json::parse(sut.ask(R"({"ask": "fleet"})", "").text).at("bad"), 1);
}

TEST(Engine, AnAnswerOfABatchIsCountedAsItStands) {
    Engine sut;
    const std::string answer =
        Engine().ask(R"({"ask": "fleet-radio", "name": "a"})", example(outdoor)).text;
    const std::string line = answer.substr(0, answer.size() - 1);
    static_cast<void>(sut.ask(R"({"ask": "fleet-radio", "name": "b"})", example(outdoor)));
    EXPECT_EQ(
        sut.ask(R"({"ask": "fleet-radio", "first": true, "answer": true, "by": "market"})", line)
            .text,
        answer);
    FleetReport report("market");
    report.add(line);
    for (const auto& [form, text] :
         std::map<std::string, std::string>{{"json", jsonForm(report)},
                                            {"csv", csvForm(report, FleetTable::Powers)},
                                            {"svg", svgForm(report)}}) {
        EXPECT_EQ(sut.ask(json{{"ask", "fleet"}, {"form", form}}.dump(), "").text, text);
    }
}

TEST(Engine, AFleetIsGroupedByWhatThereIs) {
    const json names = ask(R"({"ask": "fleet-groupings"})", "");
    EXPECT_EQ(names.size(), FleetReport::groupings().size());
    EXPECT_EQ(
        Engine().ask(R"({"ask": "fleet-radio", "first": true, "by": "colour"})", "{}").outcome,
        Outcome::OtherTrouble);
}

TEST(Engine, ALogInPartsIsToldAsAWhole) {
    const std::string log = Engine().ask(R"({"ask": "replay", "trace": 6})", example(outdoor)).text;
    const std::string whole =
        Engine().ask(R"({"ask": "log", "first": true, "last": true})", log).text;
    EXPECT_NE(whole, "");
    Engine sut;
    const std::size_t half = log.find('\n', log.size() / 2) + 1;
    const std::string first = sut.ask(R"({"ask": "log", "first": true})", log.substr(0, half)).text;
    EXPECT_EQ(first + sut.ask(R"({"ask": "log", "last": true})", log.substr(half)).text, whole);
}

TEST(Engine, TroubleIsAnOutcomeWithAMessage) {
    const auto outcomeOf = [](const std::string& request, const std::string& text) {
        const Engine::Answer answer = Engine().ask(request, text);
        EXPECT_EQ(answer.messages.size(), 1U) << request;
        return answer.outcome;
    };
    EXPECT_EQ(outcomeOf("no request", ""), Outcome::OtherTrouble);
    EXPECT_EQ(outcomeOf(R"({"ask": "whatever"})", ""), Outcome::OtherTrouble);
    EXPECT_EQ(outcomeOf(R"({"ask": "table"})", "{}"), Outcome::BadRadioFile);
    EXPECT_EQ(outcomeOf(R"({"ask": "replay"})", "{}"), Outcome::BadRadioFile);
    EXPECT_EQ(outcomeOf(R"({"ask": "table", "changes": [{"input": "market", "value": "x"}]})",
                        example(outdoor)),
              Outcome::OtherTrouble);
}

TEST(RuleLegend, RulesThatLimitHaveAColourAndAPatternAndOthersNeither) {
    const json rules = ask(R"({"ask": "legend"})", "").at("rules");
    ASSERT_EQ(rules.size(), allRules().size());
    EXPECT_EQ(rules.at(0), (json{{"rule", "pmax-row"},
                                 {"words", "Pmax of the modulation"},
                                 {"color", "#c77700"},
                                 {"pattern", "M2 2 h0.01 M6 6 h0.01"},
                                 {"width", "2.2"}}));
    EXPECT_TRUE(rules.back().at("color").is_null());
}

} // namespace
