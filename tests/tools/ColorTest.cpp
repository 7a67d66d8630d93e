#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr const char* bold = "\x1b[1m";

/// Whether a run colours the list of examples, whose names are bold.
bool isColoured(const ToolProcess& tool) {
    const ToolResult result = tool.run();
    EXPECT_EQ(result.status, 0) << result;
    EXPECT_NE(result.output.find("13ghz-etsi-outdoor1.json"), std::string::npos) << result;
    return result.output.find(bold) != std::string::npos;
}

ToolProcess examples(std::vector<std::string> options = {}) {
    options.insert(options.begin(), "examples");
    return ToolProcess(options);
}

TEST(Color, IsUsedOnATerminal) {
    EXPECT_TRUE(isColoured(examples().withOutputOnTerminal()));
}

TEST(Color, IsNotUsedInAFileOrPipe) {
    EXPECT_FALSE(isColoured(examples()));
}

TEST(Color, IsNotUsedWhereOnlyStandardErrorIsATerminal) {
    EXPECT_FALSE(isColoured(examples().withErrorsOnTerminal()));
}

TEST(Color, IsNotUsedAgainstNO_COLOR) {
    EXPECT_FALSE(isColoured(examples().withOutputOnTerminal().withEnvironment("NO_COLOR", "1")));
}

TEST(Color, IsNotUsedOnATerminalThatKnowsNone) {
    EXPECT_FALSE(isColoured(examples().withOutputOnTerminal().withEnvironment("TERM", "dumb")));
    EXPECT_FALSE(isColoured(examples().withOutputOnTerminal().withEnvironment("TERM", "")));
}

TEST(Color, IsUsedAlwaysOrNeverWhenTheCommandLineSaysSo) {
    EXPECT_TRUE(isColoured(examples({"--color", "always"})));
    EXPECT_TRUE(isColoured(examples({"--color=always"}).withEnvironment("NO_COLOR", "1")));
    EXPECT_FALSE(isColoured(examples({"--color=never"}).withOutputOnTerminal()));
    EXPECT_TRUE(isColoured(examples({"--color=auto"}).withOutputOnTerminal()));
}

TEST(Color, IsNeverInWhatMachinesRead) {
    for (const char* const format : {"csv", "json"}) {
        const ToolResult result = runTool(
            {"table", "../analysis/radios/outdoor1.json", "--format", format, "--color=always"});

        EXPECT_EQ(result.output.find('\x1b'), std::string::npos) << format;
    }
}

} // namespace
