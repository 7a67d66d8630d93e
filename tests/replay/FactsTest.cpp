#include "CompareReplays.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

// What is known of the rules by hand stands once, in tests/facts, and holds for the library and for
// the plain restatement.
//
// A fact is a radio (what is merged into radio.json), what its start gives and what its requests
// give: "play" lists requests, each alone or with what its line must say. "rows" plays the fact
// once for each row, which puts its values to the places that the first row names, "each" once for
// each value at one place; "each" in a request repeats the request with each value of a key. A
// line's keys must be as given, but for
//   "powers"  the powers of the map, without their codes
//   "upToN"   all trace records up to level N
//   "has"     trace records of level 6 that come in this order, others between them

namespace {

using nlohmann::json;
using Texts = std::vector<std::string>;

/// A key that is misspelt would expect nothing.
const std::set<std::string> factKeys = {"fact", "radio", "start", "play", "rows", "each"};

struct Fact {
    std::string name;
    json radioFile;
    std::vector<json> expected; ///< of each line; the first is that of the start
};

json factFile(const std::string& name) {
    std::ifstream stream(QOR_FACTS "/" + name);
    return json::parse(stream, nullptr, true, true);
}

Texts factFiles() {
    Texts names;
    for (const auto& entry : std::filesystem::directory_iterator(QOR_FACTS)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    names.erase(std::find(names.begin(), names.end(), "radio.json"));
    return names;
}

void addRequest(Fact& fact, json request, const json& expected) {
    if (!request.contains("each")) {
        fact.radioFile["requests"].push_back(request);
        fact.expected.push_back(expected);
        return;
    }
    const json each = request.at("each");
    request.erase("each");
    for (const auto& [key, values] : each.items()) {
        for (const json& value : values) {
            request[key] = value;
            addRequest(fact, request, expected);
        }
    }
}

Fact factOf(const json& stated, const std::string& name) {
    Fact fact{name, factFile("radio.json"), {stated.value("start", json{{"result", 0}})}};
    fact.radioFile.merge_patch(stated.value("radio", json::object()));
    for (const json& step : stated.value("play", json::array())) {
        if (step.is_array()) {
            addRequest(fact, step.at(0), step.at(1));
        } else {
            addRequest(fact, step, json::object());
        }
    }
    return fact;
}

std::vector<Fact> factsIn(const std::string& fileName) {
    std::vector<Fact> facts;
    for (json stated : factFile(fileName)) {
        for (const auto& [key, value] : stated.items()) {
            EXPECT_TRUE(factKeys.contains(key)) << key;
        }
        const std::string name = stated.at("fact").get<std::string>();
        json rows = stated.value("rows", json::array({json::array(), json::array()}));
        if (stated.contains("each")) {
            const auto each = stated.at("each").begin();
            rows = json::array({json::array({each.key()})});
            for (const json& value : each.value()) {
                rows.push_back(json::array({value}));
            }
        }
        for (std::size_t row = 1; row < rows.size(); ++row) {
            for (std::size_t column = 0; column < rows.at(0).size(); ++column) {
                const std::string place = rows.at(0).at(column).get<std::string>();
                stated[json::json_pointer(place)] = rows.at(row).at(column);
            }
            facts.push_back(factOf(stated, name + "; row " + std::to_string(row)));
        }
    }
    return facts;
}

// "enter 6 CalculatorKam::getMaxPower|text", "raw 32768 TxRfMaxPowerCapability::initialize|text"
std::string shown(const json& record) {
    const std::string kind = record.at("kind").get<std::string>();
    const std::string file = record.at("file").get<std::string>();
    return kind + " " + record.at(kind == "raw" ? "code" : "level").dump() + " " +
           file.substr(file.rfind('/') + 1) + "::" + record.at("function").get<std::string>() +
           "|" + record.at("text").get<std::string>();
}

int levelOf(const json& record) {
    if (record.contains("level")) {
        return record.at("level").get<int>();
    }
    return record.at("code") >= 32768 ? 1 : 5;
}

Texts recordsUpTo(int level, const json& line) {
    Texts records;
    for (const json& record : line.at("trace")) {
        if (levelOf(record) <= level) {
            records.push_back(shown(record));
        }
    }
    return records;
}

void expectInOrder(const json& expected, const Texts& records) {
    auto from = records.begin();
    for (const json& record : expected) {
        from = std::find(from, records.end(), record.get<std::string>());
        if (from == records.end()) {
            ADD_FAILURE() << "missing, or too early: " << record << "\nin "
                          << testing::PrintToString(records);
            return;
        }
        ++from;
    }
}

void expectLine(const json& expected, const json& line) {
    json powers = json::array();
    json powerMap = json::array();
    for (const json& entry : line.value("powerMap", json::array())) {
        powers.push_back(entry.at("maxPower"));
        powerMap.push_back({entry.at("code"), entry.at("maxPower")});
    }
    for (const auto& [key, value] : expected.items()) {
        if (key == "powers") {
            EXPECT_EQ(powers, value);
        } else if (key == "powerMap") {
            EXPECT_EQ(powerMap, value);
        } else if (key == "has") {
            expectInOrder(value, recordsUpTo(6, line));
        } else if (key.rfind("upTo", 0) == 0) {
            EXPECT_EQ(recordsUpTo(std::stoi(key.substr(4)), line), value.get<Texts>());
        } else {
            EXPECT_EQ(line.value(key, json()), value) << key;
        }
    }
}

void expectFact(const Fact& fact, const Texts& lines) {
    const bool starts = fact.expected.front().at("result") == 0;
    ASSERT_EQ(lines.size(), starts ? fact.expected.size() : 1U);
    for (std::size_t index = 0; index < lines.size(); ++index) {
        SCOPED_TRACE(lines[index].substr(0, 160));
        expectLine(fact.expected[index], json::parse(lines[index]));
    }
}

} // namespace

class Facts : public testing::TestWithParam<std::string> {};

TEST_P(Facts, holdForTheLibraryAndForTheRestatement) {
    for (const Fact& fact : factsIn(GetParam())) {
        SCOPED_TRACE(fact.name);
        const CompareReplays::Lines lines = CompareReplays::ofThisProcess().play(fact.radioFile, 6);
        {
            SCOPED_TRACE("library");
            expectFact(fact, lines.library);
        }
        SCOPED_TRACE("restatement");
        expectFact(fact, lines.reference);
        EXPECT_EQ(lines.difference(), "");
    }
}

INSTANTIATE_TEST_SUITE_P(, Facts, testing::ValuesIn(factFiles()), [](const auto& test) {
    std::string name = test.param.substr(0, test.param.find('.'));
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});
