#include "NodeLog.h"
#include "ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace {

const std::string radio = "../../examples/radios/18ghz-ansi-high-radio-unit-old-booster.json";

ToolResult importOf(const std::string& log, std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"import", "-"});
    return ToolProcess(options).withInput(log).run();
}

TEST(ImportCommand, MakesAFileThatGetsTheAnswersOfTheLog) {
    const ToolResult log = runTool({"replay", "--trace", "6", radio});
    const ToolResult file = ToolProcess({"import", "-"}).withInput(log.output).run();
    EXPECT_EQ(file.status, done) << file;

    const ToolResult verified =
        ToolProcess({"replay", "--verify", "-"}).withInput(file.output).run();

    EXPECT_EQ(verified.output + verified.errors, "");
    EXPECT_EQ(verified.status, done);
    EXPECT_NE(file.errors.find("QZT35202/1 stands for its family"), std::string::npos);
}

TEST(ImportCommand, TakesFromATextWhatItTellsAndNamesTheRest) {
    const ToolResult result = importOf(textLog("12:00 node7"));

    const nlohmann::json file = nlohmann::json::parse(result.output);
    EXPECT_EQ(file["capabilityHandler"]["productNumber"], "QZT 846 001");
    EXPECT_EQ(file["frameFormat"]["channelSpacing"], 28);
    EXPECT_EQ(file["acmHandler"], nlohmann::json::parse(R"({"min": "4QAM", "max": "256QAM"})"));
    EXPECT_EQ(file["variables"]["channel.1.tx.rf.pmax.cs.comp.v2.array"],
              nlohmann::json::parse("[28, 50]"));
    EXPECT_EQ(file["requests"].size(), 1U);
    EXPECT_NE(result.errors.find("/frameFormat/modulation"), std::string::npos) << result;
    EXPECT_NE(result.errors.find("the log does not begin with initialize"), std::string::npos);
}

TEST(ImportCommand, LeavesOutAQueryWithoutOneOfItsLinesAndNamesIt) {
    const std::string whole = textLog("12:00 node7");
    std::string cut = whole;
    cut.erase(0, cut.find('\n', cut.find("actualMod=16QAM")) + 1);
    const std::string reason =
        "line 22: calculateAdmodPowerCapabilities is not in the file: line 28 ";

    const ToolResult one =
        importOf(whole +
                 whole.substr(0, whole.find("12:00 node7 6 enter Control/"
                                            "OutputPowerCalculator/private/OutputPowerCalculator:1 "
                                            "getAdModMaxPower")) +
                 cut);
    const ToolResult none = importOf(cut);

    const nlohmann::json file = nlohmann::json::parse(one.output);
    EXPECT_EQ(file["requests"].size(), 1U);
    EXPECT_NE(file["notes"].dump().find(reason), std::string::npos) << one;
    EXPECT_NE(one.errors.find(reason), std::string::npos) << one;
    EXPECT_EQ(none.output, "");
    EXPECT_NE(none.errors.find("line 1: a call without its beginning is not in the file"),
              std::string::npos)
        << none;
    EXPECT_EQ(none.status, otherTrouble);
}

TEST(ImportCommand, MixesNoServices) {
    const std::string first = startIn("node qor[1]", 1) + textLog("node qor[1]");
    const std::string second = startIn("node qor[2]", 2) + textLog("node qor[2]");
    const std::string both = first + second;

    const ToolResult mixed = importOf(both);
    EXPECT_EQ(mixed.output, "");
    EXPECT_EQ(mixed.errors,
              "qor-power: standard input: calls of 2 processes, \"node qor[1]\", \"node qor[2]\"; "
              "choose one with --process\n");
    EXPECT_EQ(mixed.status, otherTrouble);

    for (const std::vector<std::string>& options :
         {std::vector<std::string>{"--process", "qor[2]"}, {"--channel", "2"}}) {
        const ToolResult chosen = importOf(both, options);
        const nlohmann::json file = nlohmann::json::parse(chosen.output);
        EXPECT_EQ(file["channel"], 2);
        EXPECT_EQ(file["requests"].size(), 1U);
        EXPECT_NE(chosen.errors.find("2 calls of other services"), std::string::npos) << chosen;
    }
}

TEST(ImportCommand, RefusesTwoChannelsInOneProcessUnlessOneIsChosen) {
    const std::string both =
        startIn("node", 1) + textLog("node") + startIn("node", 2) + textLog("node");

    const ToolResult mixed = importOf(both);
    const ToolResult chosen = importOf(both, {"--channel", "1"});

    EXPECT_EQ(mixed.errors,
              "qor-power: standard input: services of several channels; choose one with "
              "--channel\n");
    EXPECT_EQ(nlohmann::json::parse(chosen.output)["channel"], 1);
    EXPECT_NE(chosen.errors.find("counts as the last one's that started"), std::string::npos)
        << chosen;
}

TEST(ImportCommand, ShowsAnAnswerThatTheFileDoesNotGet) {
    const ToolResult log = runTool({"replay", "--trace", "6", radio});
    std::string changed = log.output;
    const std::string answer = "\"result\":0,\"minPower\":";
    const std::size_t place = changed.find(answer);
    ASSERT_NE(place, std::string::npos);
    changed.insert(place + answer.size(), "1");

    const ToolResult result = ToolProcess({"import", "-"}).withInput(changed).run();

    EXPECT_NE(result.errors.find("the file's replay differs: {\"request\":"), std::string::npos);
    EXPECT_EQ(result.status, answerIsNo);
}

TEST(ImportCommand, RefusesALogWithoutARequest) {
    const ToolResult result = ToolProcess({"import", "-"}).withInput("nothing\n").run();

    EXPECT_EQ(result.output, "");
    EXPECT_NE(result.errors.find("no request among 0 traces; qor-power explain --help shows the "
                                 "forms of lines that are taken\n"),
              std::string::npos)
        << result;
    EXPECT_EQ(result.status, otherTrouble);
}

TEST(ExplainCommand, ExplainsARequestOfTheFileInItsPlace) {
    const std::string file = "../../examples/recorder/field-case.json";

    const ToolResult before = runTool({"explain", file, "--request", "116"});
    const ToolResult after = runTool({"explain", file, "--request", "129"});

    EXPECT_NE(before.output.find("64QAM: 14.50 dBm (code 61 64QAM)\n"), std::string::npos)
        << before;
    EXPECT_NE(after.output.find("64QAM: 15.00 dBm (code 61 64QAM)\n"), std::string::npos) << after;
}

TEST(ExplainCommand, RefusesARequestThatIsNone) {
    const ToolResult beyond =
        runTool({"explain", "../../examples/recorder/field-case.json", "--request", "130"});

    EXPECT_NE(beyond.errors.find("the radio file has requests 0 to 129"), std::string::npos);
    EXPECT_EQ(beyond.status, otherTrouble);
}

} // namespace
