#include "ChangedDocument.h"
#include "QuestionInWords.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <vector>

// What radios answer, as facts/*.json have it: a question in words, what it changes in the radio
// file that the words name, and what the answer must be.
//
//   "ask"       the words, as a list or with one blank between them
//   "radio"     the value at each pointer of the radio file, null for what is not there
//   "other"     likewise of the second file that a diff names; it starts from the same one
//   "document"  the whole text of every file whose name stands for none
//   "golden"    the file that holds the answer's text
//   "text"      its lines
//   "has"       what stands somewhere in the text
//   "count"     how often something does
//   "answer"    the value at each pointer of the JSON form; * is each element in turn
//   "powers"    /rows/*/maxPowerCentiDbm
//   "story"     the steps of the first code's explanation, what holds and what is next
//   "changes"   what why-not says of an input; null if it does not name it
//   "outcome"   "Done" if it is not there
//   "messages"  none if they are not there
//
// With "rows" a fact stands for several: the first row has pointers into the fact, each other one
// the values there.

namespace {

using nlohmann::json;
using Texts = std::vector<std::string>;

const std::filesystem::path here = QOR_ANALYSIS_TESTS;

/// A key that is misspelt would expect nothing.
const std::set<std::string> knownKeys = {
    "fact", "at",    "rows",   "ask",    "radio", "other",   "document", "golden",  "text",
    "has",  "count", "answer", "powers", "story", "changes", "outcome",  "messages"};

std::string textAt(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

/// All facts, those of rows one by one, "at" saying which.
std::vector<json> facts() {
    std::vector<json> all;
    for (const auto& entry : std::filesystem::directory_iterator(here / "facts")) {
        for (json fact : documentAt(entry.path())) {
            const json rows = fact.value("rows", json::parse("[[], []]"));
            for (std::size_t row = 1; row < rows.size(); ++row) {
                for (std::size_t column = 0; column < rows[0].size(); ++column) {
                    change(fact, rows[0][column].get<std::string>(), rows[row][column]);
                }
                fact["at"] = entry.path().filename().string() + ": " +
                             fact.at("fact").get<std::string>() + ", row " + std::to_string(row);
                all.push_back(fact);
            }
        }
    }
    return all;
}

Texts wordsOf(const json& fact) {
    Texts words;
    if (fact.at("ask").is_array()) {
        words = fact.at("ask").get<Texts>();
    } else {
        std::istringstream stream(fact.at("ask").get<std::string>());
        words.assign(std::istream_iterator<std::string>(stream), {});
    }
    const bool isJson = fact.contains("answer") || fact.contains("powers") ||
                        fact.contains("story") || fact.contains("changes");
    if (isJson && std::find(words.begin(), words.end(), "--format") == words.end()) {
        words.insert(words.end(), {"--format", "json"});
    }
    return words;
}

/// The text of a radio file, with changes.
std::string radioFile(const json& fact, const std::string& name, const char* changes) {
    const bool isFile = name.find('/') != std::string::npos;
    if (!isFile && fact.contains("document")) {
        return fact.at("document").get<std::string>();
    }
    const std::filesystem::path path = here / (isFile ? name : "radios/outdoor1.json");
    if (!fact.contains(changes)) {
        return textAt(path);
    }
    return changed(documentAt(path), fact.at(changes)).dump();
}

Reply replyTo(const json& fact) {
    Question question = questionIn(wordsOf(fact));
    if (question.topic == Question::Topic::Diff) {
        const bool isSame = question.otherName == question.radioName;
        question.otherRadio = radioFile(fact, question.otherName, isSame ? "radio" : "other");
    }
    return answerTo(question, radioFile(fact, question.radioName, "radio"));
}

/// What stands at a pointer, whose asterisks make lists.
json valueAt(const json& document, const std::string& pointer) {
    const std::size_t asterisk = pointer.find("/*");
    if (asterisk == std::string::npos) {
        return document.at(json::json_pointer(pointer));
    }
    json values = json::array();
    for (const json& element : document.at(json::json_pointer(pointer.substr(0, asterisk)))) {
        values.push_back(element.is_null() ? json()
                                           : valueAt(element, pointer.substr(asterisk + 2)));
    }
    return values;
}

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t number = 0;
    for (std::size_t place = text.find(part); place != std::string::npos;
         place = text.find(part, place + part.size())) {
        ++number;
    }
    return number;
}

void expectText(const json& fact, const std::string& text) {
    if (fact.contains("golden")) {
        EXPECT_EQ(text, textAt(here / "golden" / fact.at("golden").get<std::string>()));
    }
    if (fact.contains("text")) {
        std::string expected;
        for (const json& line : fact.at("text")) {
            expected += line.get<std::string>() + '\n';
        }
        EXPECT_EQ(text, expected);
    }
    for (const json& part : fact.value("has", json::array())) {
        EXPECT_NE(text.find(part.get<std::string>()), std::string::npos) << part << " in\n" << text;
    }
    const json counts = fact.value("count", json::object());
    for (const auto& [part, times] : counts.items()) {
        EXPECT_EQ(count(text, part), times.get<std::size_t>()) << part << " in\n" << text;
    }
}

void expectChange(const json& answer, const std::string& input, const json& expected) {
    for (const json& named : answer.at("changes")) {
        if (named.at("input") == input) {
            json merged = named;
            merged.update(expected.is_null() ? json{{"input", "not named"}} : expected);
            EXPECT_EQ(named, merged);
            return;
        }
    }
    EXPECT_TRUE(expected.is_null()) << input << " is not named";
}

/// "pmax-reference 2200", "offset-table +200 2250", "pmax-row <=2300 2250".
std::string lineOf(const json& step) {
    std::string line = step.at("rule").get<std::string>();
    if (step.at("kind") == "bound") {
        line += " <=" + step.at("boundCentiDbm").dump();
    } else if (step.at("kind") == "change") {
        line += (step.at("amountCentiDb") < 0 ? " " : " +") + step.at("amountCentiDb").dump();
    }
    return line + ' ' + step.at("powerCentiDbm").dump();
}

/// The steps of an explanation, the bound that holds ("> pmax-row 2100") and the next one with its
/// distance ("> offset-table 2150 +50").
Texts storyOf(const json& explanation) {
    Texts lines;
    for (const json& step : explanation.at("steps")) {
        lines.push_back(lineOf(step));
    }
    for (const char* const bound : {"binding", "runnerUp"}) {
        if (!explanation.at(bound).is_null()) {
            lines.push_back("> " + explanation.at(bound).at("rule").get<std::string>() + ' ' +
                            explanation.at(bound).at("powerCentiDbm").dump());
        }
    }
    if (!explanation.at("headroomCentiDb").is_null()) {
        lines.back() += " +" + explanation.at("headroomCentiDb").dump();
    }
    return lines;
}

void expectJson(const json& fact, const std::string& text) {
    const json values = fact.value("answer", json::object());
    for (const auto& [pointer, value] : values.items()) {
        EXPECT_EQ(valueAt(json::parse(text), pointer), value) << pointer;
    }
    if (fact.contains("powers")) {
        EXPECT_EQ(valueAt(json::parse(text), "/rows/*/maxPowerCentiDbm"), fact.at("powers"));
    }
    if (fact.contains("story")) {
        const json explanation = json::parse(text).at("rows").at(0).at("explanation");
        EXPECT_EQ(storyOf(explanation), fact.at("story").get<Texts>());
        EXPECT_EQ(explanation.at("addsUp"), true);
    }
    const json changes = fact.value("changes", json::object());
    for (const auto& [input, expected] : changes.items()) {
        expectChange(json::parse(text), input, expected);
    }
}

const char* nameOf(Outcome outcome) {
    constexpr std::array names{"Done", "AnswerIsNo", "BadRadioFile", "ServiceDidNotStart",
                               "OtherTrouble"};
    return names.at(static_cast<std::size_t>(outcome));
}

TEST(Facts, OfRadiosAreAnswered) {
    const std::vector<json> all = facts();
    ASSERT_GT(all.size(), 100U);
    for (const json& fact : all) {
        SCOPED_TRACE(fact.at("at").get<std::string>());
        for (const auto& [key, value] : fact.items()) {
            EXPECT_TRUE(knownKeys.contains(key)) << key;
        }

        const Reply reply = replyTo(fact);

        EXPECT_EQ(nameOf(reply.outcome), fact.value("outcome", "Done"));
        EXPECT_EQ(reply.messages, fact.value("messages", Texts()));
        expectText(fact, reply.text);
        EXPECT_NO_THROW(expectJson(fact, reply.text)) << reply.text;
    }
}

} // namespace
