#include "ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

// The powers are those that are worked out by hand in TableCommandTest.cpp, their steps those of
// ExplanationStepsTest.cpp.

namespace {

ToolResult explain(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "explain");
    return runTool(arguments);
}

/// A run whose standard output is kept in a file.
struct ExplainCase {
    std::vector<std::string> arguments; ///< behind "explain"
    const char* output;
};

void PrintTo(const ExplainCase& golden, std::ostream* stream) {
    *stream << golden.output;
}

class GoldenExplanation : public testing::TestWithParam<ExplainCase> {};

TEST_P(GoldenExplanation, IsPrinted) {
    const ToolResult result = explain(GetParam().arguments);

    EXPECT_EQ(result.output, contentOf(std::string("golden/") + GetParam().output));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, done);
}

INSTANTIATE_TEST_SUITE_P(
    Radios, GoldenExplanation,
    testing::Values(ExplainCase{{"radios/outdoor1.json"}, "explain-outdoor1.txt"},
                    ExplainCase{{"radios/outdoor1.json", "41", "--format", "json"},
                                "explain-outdoor1-16qam.json"},
                    ExplainCase{{"radios/fixed-booster.json", "4QAM", "--booster", "1,3,30,256QAM"},
                                "explain-fixed-booster.txt"},
                    ExplainCase{{"radios/radio-unit-booster.json", "64QAM", "512QAM"},
                                "explain-radio-unit-booster.txt"},
                    ExplainCase{{"radios/fixed-modulation.json"}, "explain-fixed-modulation.txt"}));

TEST(ExplainCommand, ExplainsTheLogOfAReplay) {
    const ToolResult replay = runTool({"replay", "--trace", "6", "radios/outdoor1.json"});

    const ToolResult result =
        ToolProcess({"explain", "--trace-log", "-"}).withInput(replay.output).run();

    EXPECT_EQ(result.output, contentOf("golden/explain-log-outdoor1.txt"));
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, done);
}

TEST(ExplainCommand, ExplainsOneLineOfJsonForEachQueryOfALog) {
    const ToolResult replay = runTool({"replay", "--trace", "6", "radios/outdoor1.json"});

    const ToolResult result = ToolProcess({"explain", "--trace-log", "-", "--format", "json"})
                                  .withInput(replay.output + "no trace\n" + replay.output)
                                  .run();

    EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), 2);
    EXPECT_EQ(result.errors,
              "qor-power: standard input: 1 of 13 lines are no traces and were left out\n");
    EXPECT_EQ(result.status, done);
}

TEST(ExplainCommand, ExplainsTextWithTimesInFrontAndTheCutbackThatIsGiven) {
    const std::string before = "2026-03-01 12:00:00.123 node-17 6 enter "
                               "Control/OutputPowerCalculator/private/OutputPowerCalculator:1 ";
    const std::string family =
        "2026-03-01 12:00:00.124 node-17 5 msg "
        "Control/OutputPowerCalculator/private/CalculatorKam:1 getMaxPower: ";
    // 20.00 + 0.50 - 3.00 + 2.00
    const std::string log =
        before + "calculateAdmodPowerCapabilities: actualModulation=16QAM\n" + before +
        "getAdModMaxPower: dpdVersion=1, market=Etsi, convertRsecEnumToString(rsec)=2, "
        "selectedMinMod=4QAM, selectedMaxMod=256QAM, availableMaxMod=256QAM, actualMod=16QAM, "
        "csPowerCompensation=50\n" +
        before + "applyCutbackToMaxPower: \n" + before +
        "getMaxPower: dpdVersion=1, market=Etsi, modulationType=4QAM\n" + before +
        "getMaxPower: dpdVersion=1, market=Etsi, modulationType=16QAM\n" + before +
        "getMaxPower: dpdVersion=1, market=Etsi, modulationType=256QAM\n" + family +
        "getMaxPower std::min parameters: 2200,2050,1950,2400\n" + family +
        "getMaxPower Max power for modulation 16QAM, rsec 0 and max modulation 2000 = 1950\n";

    const ToolResult right =
        ToolProcess({"explain", "--trace-log", "-", "--temporary-cutback", "3"})
            .withInput(log)
            .run();
    const ToolResult wrong =
        ToolProcess({"explain", "--trace-log", "-", "--temporary-cutback", "2"})
            .withInput(log)
            .run();

    EXPECT_EQ(right.status, done) << right;
    EXPECT_NE(right.output.find("16QAM: 19.50 dBm"), std::string::npos) << right;
    EXPECT_EQ(wrong.status, otherTrouble);
    EXPECT_NE(wrong.output.find("DOES NOT ADD UP"), std::string::npos) << wrong;
    EXPECT_EQ(
        wrong.errors,
        "qor-power: standard input, line 1: the steps for 16QAM do not add up: the power by "
        "the offset table at the selected minimum is 21.50 dBm by the steps, 20.50 dBm by the "
        "library\n");
}

TEST(ExplainCommand, ACodeWithoutModulationIsExplained) {
    const ToolResult result = explain({"radios/outdoor1.json", "--frame-format", "9", "5"});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_NE(
        result.output.find("UNDEFINED: no power (code 5 UNDEFINED)\n"
                           "  No power: no modulation has this code (undefined-modulation)\n"),
        std::string::npos)
        << result;
}

TEST(ExplainCommand, AQueryThatFailsIsExplainedAndSaid) {
    const ToolResult result = explain({"radios/outdoor1.json", "--frame-format", "8", "4QAM"});

    EXPECT_NE(result.output.find("undefined-modulation"), std::string::npos) << result;
    EXPECT_EQ(result.errors, "qor-power: radios/outdoor1.json: no powers: the highest code of the "
                             "frame format has no modulation\n");
    EXPECT_EQ(result.status, otherTrouble);
}

struct Refusal {
    std::vector<std::string> arguments;
    const char* errors;
};

void PrintTo(const Refusal& refusal, std::ostream* stream) {
    *stream << refusal.errors;
}

class RefusedExplanation : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedExplanation, SaysWhy) {
    const ToolResult result = explain(GetParam().arguments);

    EXPECT_EQ(result.errors, std::string("qor-power: ") + GetParam().errors + '\n');
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, otherTrouble);
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, RefusedExplanation,
    testing::Values(
        Refusal{{}, "FILE is missing; try qor-power explain --help"},
        Refusal{{"radios/outdoor1.json", "65QAM"},
                "unknown modulation or code \"65QAM\"; did you mean \"64QAM\"?"},
        Refusal{{"radios/outdoor1.json", "8192QAM"},
                "radios/outdoor1.json: the frame format has none of these modulations and codes; "
                "try qor-power table"},
        Refusal{{"--trace-log", "no.log", "--rsec", "2"},
                "--trace-log goes without --frame-format and --rsec: the log says what was asked "
                "for"},
        Refusal{{"--trace-log", "/dev/null"},
                "/dev/null: no query to explain among 0 traces; log what the library traces up to "
                "level 6"},
        Refusal{{"--trace-log", "/dev/null", "41"},
                "traces tell modulations, not codes; name modulations with --trace-log"}));

} // namespace
