#include "CheckRules.h"
#include "ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

const std::string sound = "../../examples/radios/18ghz-ansi-high-radio-unit-old-booster.json";
const std::string withHints = "../../examples/radios/13ghz-etsi-radio-unit-old.json";

TEST(Check, ReportsWhatItFindsAsEditorsReadIt) {
    const ToolResult result = runTool({"check", "check/rising.json"});

    EXPECT_EQ(result.output, contentOf("golden/check-rising.txt"));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, answerIsNo);
}

TEST(Check, ReportsWhatItFindsToPrograms) {
    const ToolResult result = runTool({"check", "--format", "json", "check/rising.json"});

    EXPECT_EQ(result.output, contentOf("golden/check-rising.json"));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, answerIsNo);
}

TEST(Check, SaysThatItFoundNothing) {
    const ToolResult result = ToolProcess({"check", "-"}).withInput(contentOf(sound)).run();

    EXPECT_EQ(result.output, "standard input: nothing found\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, done);
}

TEST(Check, LetsHintsCountOnlyWhereTold) {
    const ToolResult usual = runTool({"check", withHints});
    const ToolResult strict = runTool({"check", "--strict", withHints});

    EXPECT_EQ(usual.status, done) << usual;
    EXPECT_EQ(strict.status, answerIsNo) << strict;
    EXPECT_EQ(usual.output, strict.output);
    EXPECT_NE(usual.output.find(": 1 hint\n"), std::string::npos) << usual;
}

TEST(Check, PlacesWhatIsNoRadioFileByLineAndColumnAndPointer) {
    const std::string input = "{\n"
                              "  \"channel\": 1, /* a\n"
                              "  comment */ \"requests\": [{\"call\": \"findPminPmax\"},\n"
                              "    {\"call\": \"setPowerCutback\", \"cutback\": 1.5}]\n"
                              "}\n";

    const ToolResult result = ToolProcess({"check", "-"}).withInput(input).run();

    EXPECT_EQ(result.output, "standard input:4:33: error: expected an integer, found 1.5 [QP-002 "
                             "/requests/1/cutback]\n"
                             "standard input: no radio file\n");
    EXPECT_EQ(result.errors, "qor-power: standard input: /requests/1/cutback: expected an integer, "
                             "found 1.5\n");
    EXPECT_EQ(result.status, badRadioFile);
}

TEST(Check, PlacesAMissingKeyWhereItBelongs) {
    const ToolResult result =
        ToolProcess({"check", "-"}).withInput("{\"channel\": 1,\n \"frameFormat\": {}}").run();

    EXPECT_EQ(result.output, "standard input:2:2: error: required key is missing [QP-002 "
                             "/frameFormat/modulation]\n"
                             "standard input: no radio file\n");
}

TEST(Check, PlacesTheSecondOfTwoEqualKeys) {
    const ToolResult result =
        ToolProcess({"check", "-"}).withInput("{\"channel\": 1,\n\n\"chann\\u0065l\": 2}").run();

    EXPECT_EQ(result.output, "standard input:3:1: error: key given twice [QP-002 /channel]\n"
                             "standard input: no radio file\n");
}

TEST(Check, PlacesASyntaxErrorWithoutAPointer) {
    const ToolResult result =
        ToolProcess({"check", "--format", "json", "-"}).withInput("{\"channel\": }").run();

    const auto finding = nlohmann::json::parse(result.output)["files"][0]["findings"][0];
    EXPECT_EQ(finding["code"], "QP-001");
    EXPECT_EQ(finding["line"], 1);
    EXPECT_EQ(finding["column"], 13);
    EXPECT_TRUE(finding["pointer"].is_null());
    EXPECT_EQ(result.status, badRadioFile);
    EXPECT_TRUE(result.hasOneErrorLine()) << result;
}

TEST(Check, ChecksAllFilesAndEndsWithTheWorstStatus) {
    const ToolResult result =
        runTool({"check", "--format", "json", sound, "check/rising.json", "ToolProcess.h", sound});

    const auto files = nlohmann::json::parse(result.output)["files"];
    ASSERT_EQ(files.size(), 4U);
    EXPECT_EQ(files[0]["warnings"], 0);
    EXPECT_EQ(files[1]["warnings"], 3);
    EXPECT_EQ(files[2]["isRadioFile"], false);
    EXPECT_EQ(files[3]["file"], sound);
    EXPECT_EQ(result.status, badRadioFile);
}

TEST(Check, GoesOnAfterAFileThatCannotBeRead) {
    const ToolResult result = runTool({"check", "no-such-file.json", sound});

    EXPECT_EQ(result.output, sound + ": nothing found\n");
    EXPECT_EQ(result.errors,
              "qor-power: no-such-file.json: cannot be read: No such file or directory\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST(Check, ReadsStandardInputOnce) {
    const ToolResult result = runTool({"check", "-", "-"});

    EXPECT_EQ(result.errors, "qor-power: standard input (-) can be read only once\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST(Check, ColoursTextForPeopleOnly) {
    const ToolResult text = runTool({"check", "--color", "always", "check/rising.json"});
    const ToolResult json =
        runTool({"check", "--color", "always", "--format", "json", "check/rising.json"});

    EXPECT_NE(text.output.find('\x1b'), std::string::npos);
    EXPECT_EQ(json.output, contentOf("golden/check-rising.json"));
}

TEST(Check, FailsWhereItCannotWrite) {
    const ToolResult result = ToolProcess({"check", sound}).withOutputTo("/dev/full").run();

    EXPECT_EQ(result.status, otherTrouble);
    EXPECT_TRUE(result.hasOneErrorLine()) << result;
}

TEST(Check, FindsNoMoreThanHintsInTheExamples) {
    ASSERT_GE(exampleRadios().size(), 8U);
    for (const std::string& path : exampleRadios()) {
        const ToolResult result = runTool({"check", path});

        EXPECT_EQ(result.status, done) << result;
        EXPECT_EQ(result.errors, "");
    }
}

/// "QP-101 warning a Pmax table rises with the modulation" by code, out of the list of all
/// findings.
std::map<std::string, std::string> listedFindings() {
    std::ifstream document(QOR_PROJECT "/docs/reference/checks.md");
    const std::regex row(R"(\| `(QP-\d{3})` \| (\w+) \| ([^|]+) \| [^|]+ \|)");
    std::map<std::string, std::string> findings;
    for (std::string line; std::getline(document, line);) {
        std::smatch match;
        if (std::regex_match(line, match, row)) {
            findings[match[1]] = match[2].str() + ' ' + match[3].str();
        }
    }
    return findings;
}

TEST(Check, ExplainsEveryFindingInTheDocuments) {
    std::map<std::string, std::string> rules;
    for (const CheckRule* const rule : CheckRules::all()) {
        rules[rule->code] = std::string(textOf(rule->severity)) + ' ' + rule->title;
    }

    EXPECT_EQ(listedFindings(), rules);
}

} // namespace
