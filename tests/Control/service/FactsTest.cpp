#include "RadioFileReader.h"
#include "Replay.h"
#include "reference/Node.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

// Facts about the service are data, in facts/: a file of facts says what they are about and what is
// `usually` asked. Each holds for the library as it stands there, and the plain restatement of the
// rules prints the same lines for it, every trace included. A fact has
//
//     fact          what holds, as the end of a sentence that begins with what the file is about
//     radio         what this radio has besides radio.json
//     frameFormat7  the one frame format that the hardware configuration knows
//     before, ask   requests of a radio file; outputs hold -123456789 before the last, `ask`
//     answer        the result and every output that was written, powers by their codes
//     level, trace  the lines of `ask` up to a level, 5 unless given: "1 Class.function: text",
//     "6>"
//                   for an entry, "#32776" for a raw trace and its code
//     cases         several such facts, each of them what it adds to the rest

namespace {

using nlohmann::json;
using Lines = std::vector<std::string>;

const std::set<std::string> knownKeys = {"fact",   "radio", "frameFormat7", "before", "ask",
                                         "answer", "level", "trace",        "cases"};

/// What a power holds that nothing has written.
constexpr int untouched = -123456789;

json read(const std::filesystem::path& path) {
    std::ifstream stream(path);
    constexpr bool withComments = true;
    return json::parse(stream, nullptr, true, withComments);
}

json merged(json target, const json& patch) {
    target.merge_patch(patch);
    return target;
}

/// Every fact by its name, with what its file and its radio leave open filled in.
std::map<std::string, json> readFacts() {
    const std::filesystem::path folder(QOR_FACTS_FOLDER);
    const json radio = {{"radio", read(folder / "radio.json")}};
    std::map<std::string, json> facts;
    for (const auto& entry : std::filesystem::directory_iterator(folder / "facts")) {
        const json file = read(entry.path());
        for (const json& fact : file.at("facts")) {
            const std::string name =
                file.at("about").get<std::string>() + "_" + fact.at("fact").get<std::string>();
            if (!facts.emplace(name, merged(merged(radio, file.at("usually")), fact)).second) {
                throw std::runtime_error("two facts of one name: " + name);
            }
        }
    }
    return facts;
}

const std::map<std::string, json>& facts() {
    static const std::map<std::string, json> instance = readFacts();
    return instance;
}

std::vector<std::string> namesOfFacts() {
    std::vector<std::string> names;
    for (const auto& [name, fact] : facts()) {
        names.push_back(name);
    }
    return names;
}

/// The radio file that asks what a fact asks: whatever comes before, and the question as the last.
json radioFileOf(const json& fact) {
    json file = fact.at("radio");
    if (fact.contains("frameFormat7")) {
        file["hardwareConfigurationHandler"]["frameFormats"] = json::array({fact["frameFormat7"]});
    }
    file["requests"] = fact.value("before", json::array());
    file["requests"].push_back(merged({{"preset", untouched}}, fact.at("ask")));
    return file;
}

/// What an answer holds besides its call and its trace; powers that were not written are left out.
json answerIn(const json& line) {
    json answer = json::object();
    for (const auto& [key, value] : line.items()) {
        if (key != "call" && key != "trace" && key != "powerMap" && value != untouched) {
            answer[key] = value;
        }
    }
    for (const json& entry : line.value("powerMap", json::array())) {
        answer["powers"][std::to_string(entry.at("code").get<int>())] = entry.at("maxPower");
    }
    return answer;
}

/// "1 OutputPowerCalculator.getMaxPowerArray: Unknown DPD version 4"; ">" stands for an entry,
/// "#" before the code of a raw trace.
Lines traceIn(const json& line) {
    Lines lines;
    for (const json& record : line.value("trace", json::array())) {
        const std::string file = record.at("file");
        const std::string mark = record.at("kind") == "raw"
                                     ? "#" + std::to_string(record.at("code").get<unsigned>())
                                     : std::to_string(record.at("level").get<int>());
        std::string text = record.at("text");
        if (text.ends_with('\n')) { // the code line of a raw trace
            text.resize(text.rfind("      code: 0x"));
        }
        lines.push_back(mark + (record.at("kind") == "enter" ? "> " : " ") +
                        file.substr(file.rfind('/') + 1) + "." +
                        record.at("function").get<std::string>() + ": " + text);
    }
    return lines;
}

class Fact : public testing::TestWithParam<std::string> {
protected:
    /// Plays a radio file at a trace level and compares every line with the restatement's.
    /// @return the last line.
    static json play(const json& file, int level) {
        static reference::ProcessState process;
        Lines lines;
        Replay(level).play(RadioFileReader::read(file.dump()),
                           [&lines](const std::string& line) { lines.push_back(line); });
        EXPECT_EQ(lines, reference::replay(file, level, process));
        return json::parse(lines.back());
    }

    /// The newer radio units trace the building of their tables once in a process: no fact's trace
    /// depends on which facts were tried before.
    static void SetUpTestSuite() {
        json file = read(std::filesystem::path(QOR_FACTS_FOLDER) / "radio.json");
        file["capabilityHandler"]["productNumber"] = "X";
        file["requests"] = {
            {{"call", "calculateAdmodPowerCapabilities"}, {"modulation", "4QAM"}, {"rsec", "2"}}};
        play(file, 0);
    }

    void check(const json& fact) {
        const json file = radioFileOf(fact);
        const int level = fact.value("level", 5);

        const json line = play(file, level);

        EXPECT_EQ(answerIn(line), fact.at("answer"));
        if (fact.contains("trace")) {
            EXPECT_EQ(traceIn(line), fact["trace"].get<Lines>());
        }
        // What is traced decides which way the library takes to its answer.
        for (const int other : {0, 3, 6}) {
            EXPECT_EQ(answerIn(play(file, other)), fact.at("answer")) << other;
        }
    }
};

} // namespace

TEST_P(Fact, holds) {
    const json& fact = facts().at(GetParam());
    for (const auto& [key, value] : fact.items()) {
        EXPECT_TRUE(knownKeys.contains(key)) << key;
    }
    if (!fact.contains("cases")) {
        check(fact);
    }
    for (const json& each : fact.value("cases", json::array())) {
        SCOPED_TRACE(each.dump());
        check(merged(fact, each));
    }
}

INSTANTIATE_TEST_SUITE_P(, Fact, testing::ValuesIn(namesOfFacts()),
                         [](const auto& shown) { return shown.param; });
