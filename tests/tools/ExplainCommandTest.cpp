#include "NodeLog.h"
#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

// Explanations of logs; those of radio files are answers, tested in tests/analysis.

namespace {

TEST(ExplainCommand, ExplainsTheLogOfAReplay) {
    const ToolResult replay =
        runTool({"replay", "--trace", "6", "../analysis/radios/outdoor1.json"});

    const ToolResult result =
        ToolProcess({"explain", "--trace-log", "-"}).withInput(replay.output).run();

    EXPECT_EQ(result.output, contentOf("golden/explain-log-outdoor1.txt"));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, done);
}

TEST(ExplainCommand, ExplainsOneLineOfJsonForEachQueryOfALog) {
    const ToolResult replay =
        runTool({"replay", "--trace", "6", "../analysis/radios/outdoor1.json"});

    const ToolResult result = ToolProcess({"explain", "--trace-log", "-", "--format", "json"})
                                  .withInput(replay.output + "no trace\n" + replay.output)
                                  .run();

    EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), 2);
    EXPECT_EQ(result.errors,
              "qor-power: standard input: 1 of 13 lines are no traces and were left out\n");
    EXPECT_EQ(result.status, done);
}

TEST(ExplainCommand, ExplainsTextWithTimesInFrontAndTheCutbackThatIsGiven) {
    const std::string log = textLog("2026-03-01 12:00:00.123 node-17");

    const ToolResult right =
        ToolProcess({"explain", "--trace-log", "-", "--temporary-cutback", "3"})
            .withInput(log)
            .run();
    const ToolResult wrong =
        ToolProcess({"explain", "--trace-log", "-", "--temporary-cutback", "2"})
            .withInput(log)
            .run();

    EXPECT_EQ(right.status, done) << right;
    EXPECT_NE(right.output.find("16QAM: 19.50 dBm\n"), std::string::npos) << right;
    EXPECT_EQ(wrong.status, otherTrouble);
    EXPECT_NE(wrong.output.find("DOES NOT ADD UP"), std::string::npos) << wrong;
    EXPECT_EQ(
        wrong.errors,
        "qor-power: standard input, line 1: the steps for 16QAM do not add up: the power by "
        "the offset table at the selected minimum is 21.50 dBm by the steps, 20.50 dBm by the "
        "library\n");
}

TEST(ExplainCommand, TellsNoPowerOfACutLogAndHasStatusOne) {
    const std::string log = textLog("node-17");

    const ToolResult result = ToolProcess({"explain", "--trace-log", "-"})
                                  .withInput(log.substr(0, log.find("getMaxPower Max power")))
                                  .run();

    EXPECT_EQ(result.output.find("dBm"), std::string::npos) << result;
    EXPECT_NE(result.output.find("Incomplete"), std::string::npos) << result;
    EXPECT_EQ(result.status, answerIsNo);
}

TEST(ExplainCommand, ChoosesQueriesOfALog) {
    const std::string log = textLog("12:00:01 node-17 qor[1]") + textLog("12:00:02 node-17 qor[2]");
    const auto linesWith = [&log](const std::vector<std::string>& options) {
        std::vector<std::string> words{"explain", "--trace-log", "-", "--format", "json"};
        words.insert(words.end(), options.begin(), options.end());
        const ToolResult result = ToolProcess(words).withInput(log).run();
        return std::count(result.output.begin(), result.output.end(), '\n');
    };

    EXPECT_EQ(linesWith({}), 2);
    EXPECT_EQ(linesWith({"--process", "node*qor[2]"}), 1);
    EXPECT_EQ(linesWith({"--process", "qor[3]"}), 0);
    EXPECT_EQ(linesWith({"--since", "12:00:02"}), 1);
    EXPECT_EQ(linesWith({"--call", "2"}), 1);
    EXPECT_EQ(linesWith({"--call", "3"}), 0);
    EXPECT_EQ(linesWith({"--channel", "1"}), 0);
}

TEST(ExplainCommand, ChoosesQueriesOfALogByTheChannelOfTheServicesStart) {
    const std::string log =
        runTool({"replay", "--trace", "6", "../analysis/radios/outdoor1.json"}).output;
    for (const std::string channel : {"1", "2"}) {
        const ToolResult result =
            ToolProcess({"explain", "--trace-log", "-", "--format", "json", "--channel", channel})
                .withInput(log)
                .run();

        EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'),
                  channel == "1" ? 1 : 0)
            << result;
    }
}

TEST(ExplainCommand, SaysWhichLinesOfALogItTakes) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"explain", "--help"}, {"manual"}}) {
        std::string text = runTool(words).output;
        std::ranges::replace(text, '\n', ' ');

        EXPECT_NE(text.find("LEVEL KIND FILE:LINE FUNCTION: TEXT"), std::string::npos) << words[0];
        EXPECT_NE(text.find("exit status is 1"), std::string::npos) << words[0];
    }
}

} // namespace
