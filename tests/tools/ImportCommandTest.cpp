#include "ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace {

const std::string radio = "../../examples/radios/18ghz-ansi-high-radio-unit-old-booster.json";

/// Four traces of a radio of the first outdoor family, as text. 17.00 of the reference and 23.00 of
/// the asked modulation, both without a cutback; 19.00 is what comes of it.
const std::string service =
    "12:00 node7 6 enter Control/OutputPowerCalculator/private/OutputPowerCalculator:1 ";
const std::string textLog =
    service +
    "calculateAdmodPowerCapabilities: actualModulation=16QAM, "
    "convertRsecEnumToString(rsec)=4L\n"
    "6 msg Control/OutputPowerCalculator/private/OutputPowerCalculator:1 getCalculator: "
    "Using KaM max power algorithm\n"
    "6 enter Control/OutputPowerCalculator/private/CalculatorKam:1 "
    "getCompensationForChannelSpacing: 28\n" +
    service +
    "getAdModMaxPower: dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=4L, "
    "selectedMinMod=4QAM, selectedMaxMod=256QAM, availableMaxMod=256QAM, "
    "actualMod=16QAM, csPowerCompensation=-50\n";

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
    const ToolResult result = ToolProcess({"import", "-"}).withInput(textLog).run();

    const nlohmann::json file = nlohmann::json::parse(result.output);
    EXPECT_EQ(file["capabilityHandler"]["productNumber"], "QZT 846 001");
    EXPECT_EQ(file["frameFormat"]["channelSpacing"], 28);
    EXPECT_EQ(file["acmHandler"], nlohmann::json::parse(R"({"min": "4QAM", "max": "256QAM"})"));
    EXPECT_EQ(file["variables"]["channel.1.tx.rf.pmax.cs.comp.v2.array"],
              nlohmann::json::parse("[28, -50]"));
    EXPECT_EQ(file["requests"].size(), 1U);
    EXPECT_NE(result.errors.find("/frameFormat/modulation"), std::string::npos) << result;
    EXPECT_NE(result.errors.find("the log does not begin with initialize"), std::string::npos);
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
    EXPECT_NE(result.errors.find("no request among 0 traces"), std::string::npos);
    EXPECT_EQ(result.status, otherTrouble);
}

TEST(ExplainCommand, ExplainsARequestOfTheFileInItsPlace) {
    const std::string file = "../../examples/recorder/field-case.json";

    const ToolResult before = runTool({"explain", file, "--request", "116"});
    const ToolResult after = runTool({"explain", file, "--request", "129"});

    EXPECT_NE(before.output.find("64QAM: 14.50 dBm\n"), std::string::npos) << before;
    EXPECT_NE(after.output.find("64QAM: 15.00 dBm\n"), std::string::npos) << after;
}

TEST(ExplainCommand, RefusesARequestThatIsNoneOrHasNoPower) {
    const std::string file = "../../examples/recorder/field-case.json";

    const ToolResult setter = runTool({"explain", file, "--request", "84"});
    const ToolResult beyond = runTool({"explain", file, "--request", "130"});
    const ToolResult twice = runTool({"explain", file, "--request", "1", "--cutback", "1"});

    EXPECT_NE(setter.errors.find("asks for no power that can be explained"), std::string::npos);
    EXPECT_NE(beyond.errors.find("out of range, 0 to 129"), std::string::npos);
    EXPECT_NE(twice.errors.find("--request goes alone"), std::string::npos);
    EXPECT_EQ(setter.status, otherTrouble);
    EXPECT_EQ(beyond.status, otherTrouble);
    EXPECT_EQ(twice.status, otherTrouble);
}

} // namespace
