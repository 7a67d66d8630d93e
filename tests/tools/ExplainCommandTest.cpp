#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

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

} // namespace
