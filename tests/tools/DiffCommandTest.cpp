#include "ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

// The powers of outdoor1.json are worked out in TableCommandTest.cpp: 22.50 at 4QAM and 16QAM by
// the offset table, 21.00 at 64QAM and 19.00 at 256QAM by their Pmax less the cutback of 3.00.
//
// With 25.00 in place of 28.00 as Pmax of 4QAM: 25 - 3 = 22.00 bounds 4QAM itself, and 16QAM as
// the Pmax of the selected minimum; 64QAM and 256QAM are below it.
//
// With a cutback of 4.00 everything is 1.00 less: base 19.50, 21.50 at 4QAM and 16QAM, and
// 24 - 4 = 20.00, 22 - 4 = 18.00.

namespace {

constexpr int equal = 0;
constexpr int different = 1;

std::string outdoorWith(const std::string& from, const std::string& to) {
    std::string text = contentOf("radios/outdoor1.json");
    const std::size_t place = text.find(from);
    if (place == std::string::npos) {
        throw std::runtime_error("not found: " + from);
    }
    return text.replace(place, from.size(), to);
}

/// Compares outdoor1.json with another radio on standard input.
ToolResult diffWith(const std::string& other, std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"diff", "radios/outdoor1.json", "-"});
    return ToolProcess(options).withInput(other).run();
}

TEST(Diff, OfARadioWithItselfIsNone) {
    const ToolResult result = diffWith(contentOf("radios/outdoor1.json"));

    EXPECT_EQ(result.status, equal) << result;
    EXPECT_NE(result.output.find("\nNo input differs.\n"), std::string::npos) << result;
    EXPECT_TRUE(result.output.ends_with("\nThe powers are equal.\n")) << result;
    EXPECT_EQ(result.errors, "");
}

TEST(Diff, ShowsPowersRulesAndStepsThatDiffer) {
    const ToolResult result = diffWith(outdoorWith(R"("4QAM", 2800)", R"("4QAM", 2500)"));

    EXPECT_EQ(result.status, different) << result;
    EXPECT_EQ(result.output, contentOf("golden/diff-pmax.txt"));
    EXPECT_EQ(result.errors, "");
}

TEST(Diff, AsCsvHasOneLineForEachCode) {
    const ToolResult result =
        diffWith(outdoorWith(R"("4QAM", 2800)", R"("4QAM", 2500)"), {"--format", "csv"});

    EXPECT_EQ(result.status, different) << result;
    EXPECT_EQ(result.output, contentOf("golden/diff-pmax.csv"));
}

TEST(Diff, AsJsonSaysWhichStepChangedByHowMuch) {
    const ToolResult result =
        diffWith(outdoorWith(R"("cutback": 300)", R"("cutback": 400)"), {"--format", "json"});

    EXPECT_EQ(result.status, different) << result;
    const auto document = nlohmann::json::parse(result.output);
    EXPECT_EQ(document.at("equal"), false);
    EXPECT_EQ(document.at("a"), R"({"radioFile": "radios/outdoor1.json", "failure": null,
                                    "minPowerCentiDbm": -750})"_json);
    EXPECT_EQ(document.at("b").at("radioFile"), "standard input");
    EXPECT_EQ(document.at("inputs"),
              R"([{"input": "cutback", "a": "3.00 dB", "b": "4.00 dB"}])"_json);
    const std::vector<long> before = {2250, 2250, 2250, 2100, 1900};
    for (std::size_t index = 0; index < before.size(); ++index) {
        const auto& row = document.at("rows").at(index);
        EXPECT_EQ(row.at("a").at("maxPowerCentiDbm"), before[index]);
        EXPECT_EQ(row.at("b").at("maxPowerCentiDbm"), before[index] - 100);
        EXPECT_EQ(row.at("differenceCentiDb"), -100);
        EXPECT_EQ(row.at("equal"), false);
        const auto cutback = R"({"rule": "permanent-cutback", "kind": "change",
                                 "aCentiDb": -300, "bCentiDb": -400})"_json;
        const auto& steps = row.at("steps");
        EXPECT_NE(std::find(steps.begin(), steps.end(), cutback), steps.end()) << row.dump(2);
    }
    const auto& last = document.at("rows").at(5);
    EXPECT_EQ(last.at("equal"), true);
    EXPECT_TRUE(last.at("differenceCentiDb").is_null());
    EXPECT_EQ(last.at("a").at("rule"), "hardware-limit");
}

// The DPD 2 table cannot be fetched, and the DPD 1 table answers in both.
TEST(Diff, OfInputsThatLeadToTheSamePowersIsEqual) {
    const ToolResult result = diffWith(outdoorWith(R"("dpdVersion": 2)", R"("dpdVersion": 1)"));

    EXPECT_EQ(result.status, equal) << result;
    EXPECT_NE(result.output.find("\nInput  A  B\ndpd    2  1\n\n"), std::string::npos) << result;
    EXPECT_TRUE(result.output.ends_with("\nThe powers are equal.\n")) << result;
}

// -8.00 + 2.50 in place of -10.00 + 2.50
TEST(Diff, OfTheMinimumAloneIsADifference) {
    const ToolResult result = diffWith(outdoorWith("-1000", "-800"));

    EXPECT_EQ(result.status, different) << result;
    EXPECT_NE(result.output.find("      Minimum power              -7.50      -5.50              "
                                 "+2.00\n"),
              std::string::npos)
        << result;
    EXPECT_TRUE(result.output.ends_with("\n0 of 6 maximum powers differ, the minimum power does "
                                        "too.\n"))
        << result;
}

TEST(Diff, NamesCodesThatOnlyOneOfTheTwoHas) {
    const std::string other =
        outdoorWith(R"("4QAM_STRONG", "4QAM", "16QAM")", R"("4QAM", "16QAM", "16QAM_LIGHT")");

    const ToolResult text = diffWith(other);
    const ToolResult json = diffWith(other, {"--format", "json"});

    EXPECT_EQ(text.status, different) << text;
    EXPECT_NE(text.output.find("the radio does not have the code\n"), std::string::npos) << text;
    const auto rows = nlohmann::json::parse(json.output).at("rows");
    ASSERT_EQ(rows.size(), 7U);
    EXPECT_EQ(rows[0].at("name"), "4QAM_STRONG");
    EXPECT_TRUE(rows[0].at("b").is_null());
    EXPECT_EQ(rows[1].at("name"), "4QAM");
    EXPECT_EQ(rows[1].at("equal"), true);
    EXPECT_EQ(rows[6].at("name"), "16QAM_LIGHT");
    EXPECT_TRUE(rows[6].at("a").is_null());
    EXPECT_EQ(rows[6].at("b").at("maxPowerCentiDbm"), 2250);
}

// A file under several differences lists each of them once.
TEST(Diff, ListsEveryInputThatDiffers) {
    std::string other = contentOf("radios/outdoor1.json");
    for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {"\"channel\": 1", "\"channel\": 2"},
             {"QZT 846 001", "QZT 846 57"},
             {"{\"Etsi\": \"256QAM\"}", "{\"Etsi\": \"512QAM\"}"},
             {"\"modulation\": \"128QAM\"", "\"modulation\": \"64QAM\""},
             {"\"referenceSec\": \"4L\"", "\"referenceSec\": \"4H\""},
             {"[28, 250]", "[28, 300]"},
             {"[28, 150, 56, -200]", "[28, 100, 56, -200]"}}) {
        other.replace(other.find(from), from.size(), to);
    }

    const auto document = nlohmann::json::parse(diffWith(other, {"--format", "json"}).output);

    std::vector<std::string> names;
    for (const auto& input : document.at("inputs")) {
        names.push_back(input.at("input"));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"rsec", "product", "channel", "modulation",
                                               "highest-modulation", "min-output-power-offset/28",
                                               "variable/channel.1.tx.rf.pmax.cs.comp.v2.array"}));
}

TEST(Diff, TakesTheOptionsForBothRadios) {
    const ToolResult result =
        diffWith(outdoorWith(R"("cutback": 300)", R"("cutback": 400)"), {"--cutback", "1"});

    EXPECT_EQ(result.status, equal) << result;
}

TEST(Diff, OfAQueryThatFailsHasNoAnswer) {
    const ToolResult result = diffWith(contentOf("radios/outdoor1.json"), {"--frame-format", "5"});

    EXPECT_EQ(result.status, otherTrouble) << result;
    EXPECT_EQ(result.errors,
              "qor-power: radios/outdoor1.json: no powers: the hardware configuration has no "
              "frame format 5; it has 7, 8, 9\n"
              "qor-power: standard input: no powers: the hardware configuration has no frame "
              "format 5; it has 7, 8, 9\n");
}

TEST(Diff, OfABadFileOrAServiceThatDoesNotStartHasNoAnswer) {
    const ToolResult bad = diffWith("{}");
    EXPECT_EQ(bad.status, badRadioFile) << bad;
    EXPECT_EQ(bad.errors, "qor-power: standard input: /channel: required key is missing\n");
    EXPECT_EQ(bad.output, "");

    const ToolResult lone = diffWith(R"({"channel": 1})");
    EXPECT_EQ(lone.status, serviceDidNotStart) << lone;
    EXPECT_TRUE(lone.hasOneErrorLine()) << lone;
}

TEST(Diff, NeedsTwoFilesAndReadsStandardInputOnce) {
    const ToolResult lone = runTool({"diff", "radios/outdoor1.json"});
    EXPECT_EQ(lone.status, otherTrouble);
    EXPECT_EQ(lone.errors, "qor-power: B is missing; try qor-power diff --help\n");

    const ToolResult twice = runTool({"diff", "-", "-"});
    EXPECT_EQ(twice.status, otherTrouble);
    EXPECT_EQ(twice.errors, "qor-power: standard input (-) can be read only once\n");
}

} // namespace
