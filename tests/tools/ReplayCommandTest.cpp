#include "ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>
#include <string>
#include <vector>

namespace {

// fixed-modulation.json sets a cutback and asks nothing.
const std::string fixedModulationLines = R"({"call":"initialize","result":0,"registered":true}
{"call":"setPowerCutback","result":0}
)";

const std::string noNeighbours = R"({"channel": 1})";
const std::string startFailed = R"({"call":"initialize","result":32768,"registered":false}
)";

/// outdoor1.json with an array query at the given cutback.
std::string outdoorWith(const std::string& requests) {
    auto file =
        nlohmann::json::parse(contentOf("../analysis/radios/outdoor1.json"), nullptr, true, true);
    file["requests"] = nlohmann::json::parse(requests);
    return file.dump();
}

TEST(Replay, PrintsOneLineForTheStartAndOneForEachRequest) {
    const ToolResult result = runTool({"replay", "../analysis/radios/fixed-modulation.json"});

    EXPECT_EQ(result.output, fixedModulationLines);
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, done);
}

TEST(Replay, AnswersWithHandWorkedPowers) {
    // The array as in tests/analysis/facts/table.json. 64QAM as a fixed modulation: the selected
    // 4QAM has 28.00 - 3.00 = 25.00, 64QAM 24.00 - 3.00 = 21.00, plus 1.50 of compensation: 22.50.
    // The minimum is -10.00 + 2.50.
    const std::string input = outdoorWith(R"([
        {"call": "setPowerCutback", "cutback": 300},
        {"call": "getMinMaxOutputPowerVsModulationArray"},
        {"call": "calculatePowerCapabilities", "modulation": "64QAM"}])");

    const ToolResult result = ToolProcess({"replay", "-"}).withInput(input).run();

    EXPECT_EQ(result.output, contentOf("golden/replay-outdoor1.jsonl"));
    EXPECT_EQ(result.status, done);
}

// 64QAM as above without a cutback: 24.00 and 1.50 of compensation.
const std::string recorded64Qam =
    R"([{"call": "setPowerCutback", "cutback": 0, "expect": {"result": 0}},
    {"call": "calculatePowerCapabilities", "modulation": "64QAM",
     "expect": {"result": 0, "minPower": -750, "maxPower": )";

TEST(Replay, VerifyIsSilentWhenEveryRecordedAnswerComesOutAgain) {
    const ToolResult result = ToolProcess({"replay", "--verify", "-"})
                                  .withInput(outdoorWith(recorded64Qam + "2550}}]"))
                                  .run();

    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, done);
}

TEST(Replay, VerifyPrintsTheOutputsThatDifferAndSaysNo) {
    const ToolResult result = ToolProcess({"replay", "--verify", "-"})
                                  .withInput(outdoorWith(recorded64Qam + "2540}}]"))
                                  .run();

    EXPECT_EQ(result.output, R"({"request":1,"call":"calculatePowerCapabilities",)"
                             R"("recorded":{"maxPower":2540},"replayed":{"maxPower":2550}})"
                             "\n");
    EXPECT_EQ(result.errors, "qor-power: standard input: 1 of 2 recorded answers differ\n");
    EXPECT_EQ(result.status, answerIsNo);
}

TEST(Replay, VerifyNeedsARecordedAnswerAndPrintsNoTraces) {
    const ToolResult nothing =
        runTool({"replay", "--verify", "../analysis/radios/fixed-modulation.json"});
    const ToolResult traced =
        runTool({"replay", "--verify", "--trace", "6", "../analysis/radios/fixed-modulation.json"});

    EXPECT_EQ(nothing.output + traced.output, "");
    EXPECT_NE(nothing.errors.find("no request has a recorded answer"), std::string::npos);
    EXPECT_NE(traced.errors.find("leave out --trace"), std::string::npos);
    EXPECT_EQ(nothing.status, otherTrouble);
    EXPECT_EQ(traced.status, otherTrouble);
}

TEST(Replay, PlaysSeveralFilesInOrderEachInAFreshService) {
    // Had the second file the first one's service, its powers would be 3 dB lower.
    const ToolResult result = ToolProcess({"replay", "../analysis/radios/fixed-modulation.json",
                                           "-", "../analysis/radios/fixed-modulation.json"})
                                  .withInput(outdoorWith(R"([{"call": "calculatePowerCapabilities",
                                        "modulation": "64QAM"}])"))
                                  .run();

    EXPECT_EQ(result.output, fixedModulationLines +
                                 R"({"call":"initialize","result":0,"registered":true}
{"call":"calculatePowerCapabilities","result":0,"minPower":-750,"maxPower":2550}
)" + fixedModulationLines);
    EXPECT_EQ(result.status, done);
}

TEST(Replay, AFailingRequestIsALineAndTheStatusStays) {
    const ToolResult result = ToolProcess({"replay", "-"})
                                  .withInput(outdoorWith(R"([
                {"call": "getMinMaxOutputPowerVsModulationArray", "frameFormatId": 99},
                {"call": "setTemperature", "temperature": 20}])"))
                                  .run();

    EXPECT_EQ(result.output, R"({"call":"initialize","result":0,"registered":true}
{"call":"getMinMaxOutputPowerVsModulationArray","result":32771,"minOutputPower":0,"powerMap":[]}
{"call":"setTemperature","result":0}
)");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, done);
}

TEST(Replay, AServiceThatDoesNotStartIsTheOnlyLine) {
    const ToolResult result = ToolProcess({"replay", "-"}).withInput(noNeighbours).run();

    EXPECT_EQ(result.output, startFailed);
    EXPECT_EQ(result.errors, "qor-power: standard input: the service did not start; --trace 1 "
                             "shows why\n");
    EXPECT_EQ(result.status, serviceDidNotStart);
}

TEST(Replay, ABadFileIsReportedAndTheOthersArePlayed) {
    const ToolResult result = ToolProcess({"replay", "../analysis/radios/fixed-modulation.json",
                                           "-", "../analysis/radios/fixed-modulation.json"})
                                  .withInput("{}")
                                  .run();

    EXPECT_EQ(result.output, fixedModulationLines + fixedModulationLines);
    EXPECT_TRUE(result.hasOneErrorLine()) << result;
    EXPECT_EQ(result.status, badRadioFile);
}

TEST(Replay, TheHighestStatusOfAllFilesCounts) {
    const auto statusOf = [](const std::vector<std::string>& files, const std::string& input) {
        std::vector<std::string> arguments = {"replay"};
        arguments.insert(arguments.end(), files.begin(), files.end());
        return ToolProcess(arguments).withInput(input).run().status;
    };

    EXPECT_EQ(statusOf({"-", "../analysis/radios/fixed-modulation.json"}, noNeighbours),
              serviceDidNotStart);
    EXPECT_EQ(statusOf({"../analysis/radios/nothing.json", "-"}, noNeighbours), otherTrouble);
    EXPECT_EQ(statusOf({"-", "../analysis/radios/nothing.json"}, "{}"), otherTrouble);
}

TEST(Replay, WithTracesEndsEveryLineWithThem) {
    const ToolResult result =
        runTool({"replay", "../analysis/radios/fixed-modulation.json", "--trace", "6"});

    const std::vector<std::string> lines = linesOf(result.output);
    ASSERT_EQ(lines.size(), 2U) << result;
    EXPECT_EQ(lines[1],
              R"({"call":"setPowerCutback","result":0,"trace":[{"level":6,"kind":"enter",)"
              R"("file":"Control/OutputPowerCalculator/private/OutputPowerCalculator",)"
              R"("function":"setPowerCutback","text":"200"}]})");
    EXPECT_TRUE(lines[0].starts_with(
        R"({"call":"initialize","result":0,"registered":true,"trace":[{"level":6,"kind":"enter",)"))
        << lines[0];
    const auto start = nlohmann::json::parse(lines[0]);
    EXPECT_EQ(start.at("trace").at(1).at("kind"), "raw");
    EXPECT_EQ(start.at("trace").at(1).at("code"), 2080);
}

TEST(Replay, WithALowTraceLevelHasEmptyTraces) {
    const ToolResult result =
        runTool({"replay", "--trace", "1", "../analysis/radios/fixed-modulation.json"});

    EXPECT_EQ(result.output, R"({"call":"initialize","result":0,"registered":true,"trace":[]}
{"call":"setPowerCutback","result":0,"trace":[]}
)");
}

TEST(Replay, ATraceLevelAboveTheHighestShowsTheSame) {
    const ToolResult highest =
        runTool({"replay", "../analysis/radios/outdoor1.json", "--trace", "6"});
    const ToolResult above =
        runTool({"replay", "../analysis/radios/outdoor1.json", "--trace", "2147483647"});

    EXPECT_EQ(above.output, highest.output);
    EXPECT_EQ(above.status, done);
}

TEST(Replay, WithTraceZeroHasNoTraceKey) {
    EXPECT_EQ(
        runTool({"replay", "../analysis/radios/fixed-modulation.json", "--trace", "0"}).output,
        fixedModulationLines);
}

TEST(Replay, PlaysTheExampleRadiosTogether) {
    std::vector<std::string> words = exampleRadios();
    words.insert(words.begin(), {"replay", "--trace", "6"});

    const ToolResult result = runTool(words);

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.errors, "");
    EXPECT_GT(linesOf(result.output).size(), 2 * exampleRadios().size());
}

} // namespace
