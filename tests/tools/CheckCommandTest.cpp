#include "ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace {

const std::string sound = "../../examples/radios/18ghz-ansi-high-radio-unit-old-booster.json";

TEST(Check, ReportsWhatItFindsToEditorsAndPrograms) {
    for (const std::string format : {"txt", "json"}) {
        const ToolResult result =
            runTool({"check", "--format", format == "txt" ? "text" : format, "check/rising.json"});

        EXPECT_EQ(result.output, contentOf("golden/check-rising." + format));
        EXPECT_EQ(result.errors, "");
        EXPECT_EQ(result.status, answerIsNo);
    }
}

TEST(Check, LetsHintsCountWhereTold) {
    const std::string withHints = "../../examples/radios/13ghz-etsi-radio-unit-old.json";

    EXPECT_EQ(runTool({"check", withHints}).status, done);
    EXPECT_EQ(runTool({"check", "--strict", withHints}).status, answerIsNo);
}

TEST(Check, ChecksAllFilesAndEndsWithTheWorstStatus) {
    const std::vector<std::string> files{sound, "check/rising.json", "ToolProcess.h", sound};
    std::vector<std::string> words{"check"};
    words.insert(words.end(), files.begin(), files.end());

    const ToolResult text = runTool(words);
    words.insert(words.end(), {"--format", "json"});
    const ToolResult json = runTool(words);

    const auto checked = nlohmann::json::parse(json.output)["files"];
    ASSERT_EQ(checked.size(), files.size());
    EXPECT_EQ(checked[0]["warnings"], 0);
    EXPECT_EQ(checked[1]["warnings"], 3);
    EXPECT_EQ(checked[2]["isRadioFile"], false);
    EXPECT_EQ(checked[3]["file"], sound);
    EXPECT_TRUE(
        text.output.starts_with(sound + ": nothing found\n" + contentOf("golden/check-rising.txt")))
        << text;
    for (const ToolResult& result : {text, json}) {
        EXPECT_EQ(result.status, badRadioFile);
        EXPECT_TRUE(result.hasOneErrorLine()) << result;
    }
}

TEST(Check, ReportsABadFileOnce) {
    const ToolResult result = ToolProcess({"check", "-"}).withInput("{\"channel\": }").run();

    EXPECT_EQ(result.output, "standard input: no radio file\n");
    EXPECT_TRUE(result.errors.starts_with("qor-power: standard input: 1:13: syntax error"));
    EXPECT_TRUE(result.hasOneErrorLine()) << result;
}

TEST(Check, CountsTheFindingsOfAFleetByCode) {
    // By path, with an id in front, as a document behind a byte order mark, and one that is none.
    const std::string list = "\xEF\xBB\xBF{\"channel\": }\n17\tcheck/rising.json\n" + sound + '\n' +
                             "no-such-file.json\n";

    const ToolResult json =
        ToolProcess({"check", "--summary", "check/rising.json", "--list", "-", "--format", "json"})
            .withInput(list)
            .run();
    const ToolResult text = ToolProcess({"check", "--summary", "check/rising.json", "--list", "-"})
                                .withInput(list)
                                .run();

    const auto summary = nlohmann::json::parse(json.output).at("summary");
    EXPECT_EQ(summary.at("files"), 4);
    EXPECT_EQ(summary.at("clean"), 1);
    ASSERT_EQ(summary.at("findings").size(), 5U);
    EXPECT_EQ(summary.at("findings")[0].at("code"), "QP-001");
    EXPECT_EQ(summary.at("findings")[0].at("first")[0].at("file"), "standard input, line 1");
    const auto& rising = summary.at("findings")[1];
    EXPECT_EQ(rising.at("code"), "QP-101");
    EXPECT_EQ(rising.at("findings"), 2);
    EXPECT_EQ(rising.at("files"), 2);
    EXPECT_EQ(rising.at("first")[1].at("file"), "check/rising.json");
    EXPECT_EQ(rising.at("first")[1].at("line"), 8);
    EXPECT_NE(text.output.find("QP-101  warning          2      2  a Pmax table rises"),
              std::string::npos)
        << text;
    EXPECT_TRUE(text.output.ends_with("4 files, in 1 nothing found\n")) << text;
    for (const ToolResult& result : {json, text}) {
        EXPECT_NE(result.errors.find("standard input, line 4: no-such-file.json: cannot be read"),
                  std::string::npos)
            << result;
        EXPECT_EQ(result.status, otherTrouble);
    }
}

TEST(Check, GoesOnAfterAFileThatCannotBeRead) {
    const ToolResult result = runTool({"check", "no-such-file.json", sound});

    EXPECT_EQ(result.output, sound + ": nothing found\n");
    EXPECT_EQ(result.errors,
              "qor-power: no-such-file.json: cannot be read: No such file or directory\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST(Check, ColoursTextForPeopleOnly) {
    const ToolResult text = runTool({"check", "--color", "always", "check/rising.json"});
    const ToolResult json =
        runTool({"check", "--color", "always", "--format", "json", "check/rising.json"});

    EXPECT_NE(text.output.find('\x1b'), std::string::npos);
    EXPECT_EQ(json.output, contentOf("golden/check-rising.json"));
}

} // namespace
