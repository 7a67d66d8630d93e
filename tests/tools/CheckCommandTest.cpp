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
