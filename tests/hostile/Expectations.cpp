#include "Expectations.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

namespace {

/// What a run may take at most.
struct Limits {
    double processorSeconds;
    double peakMiB;
    double seconds;
};

const Limits& limits() {
    // Other programs take their share of a busy machine, so the last one only tells a tool that
    // waits for something.
    static const Limits measured{1, 64, 60};
    static const Limits unmeasured{60, 4096, 300};
    return DrivenTool::isMeasured() ? measured : unmeasured;
}

bool isControl(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
}

bool isControlWithinLines(char byte) {
    return byte != '\n' && isControl(byte);
}

void expectOneLine(const std::string& errors) {
    constexpr std::size_t readable = 1000;
    EXPECT_LE(errors.size(), readable);
    EXPECT_THAT(errors, testing::StartsWith("qor-power: "));
    ASSERT_THAT(errors, testing::EndsWith("\n"));
    EXPECT_TRUE(std::none_of(errors.begin(), errors.end() - 1, isControl));
}

} // namespace

const char* const radioStart = R"({"channel": 1,
"acmHandler": {"min": "4QAM", "max": "4096QAM"},
"frameFormat": {"modulation": "4QAM", "maxAvailableModulation": "4096QAM",
  "modulationAndCodes": ["4QAM", "16QAM"], "channelSpacing": 28, "dpdVersion": 1, "market": "Etsi"},
"systemPowerController": {"referenceSec": "4L", "minOutputPowerOffsets": []},
"hardwareConfigurationHandler": {},
"variables": {"channel.1.tx.rf.pmax.cs.comp.v2.array": [28, 0],
  "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 2},
)";

const char* const capabilityHandler =
    R"("capabilityHandler": {"pmaxDpd1Etsi": [["4QAM", 2600], ["16QAM", 2400], ["4096QAM", 1500]]})";

void expectWithinMemory(const ToolRun& run) {
    EXPECT_LE(run.peakMiB, limits().peakMiB);
    EXPECT_LE(run.seconds, limits().seconds);
    EXPECT_TRUE(run.leftBehind.empty());
}

void expectWithinLimits(const ToolRun& run) {
    EXPECT_LE(run.processorSeconds, limits().processorSeconds);
    expectWithinMemory(run);
}

void expectComplaint(const ToolRun& run, int status, const std::string& problem) {
    EXPECT_EQ(run.status, status) << run;
    EXPECT_THAT(run.errors, testing::HasSubstr(problem));
    expectOneLine(run.errors);
}

void expectTrouble(const ToolRun& run, int status, const std::string& problem) {
    expectComplaint(run, status, problem);
    EXPECT_EQ(run.outputSize, 0U) << run;
    expectWithinLimits(run);
}

void expectSilentEnd(const ToolRun& run, int status) {
    EXPECT_EQ(run.status, status) << run;
    EXPECT_EQ(run.errors, "");
    expectWithinLimits(run);
}

void expectRefusal(const ToolCommand& command, const ToolRun& run, const std::string& problem) {
    const std::string& output = run.firstOutput;
    switch (command.refusal) {
    case ToolCommand::Refusal::Complaint:
        expectTrouble(run, badRadioFile, problem);
        return;
    case ToolCommand::Refusal::Finding:
        expectComplaint(run, badRadioFile, problem);
        EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1) << run;
        EXPECT_THAT(output, testing::EndsWith(": no radio file\n"));
        EXPECT_TRUE(std::none_of(output.begin(), output.end(), isControlWithinLines)) << run;
        break;
    case ToolCommand::Refusal::JsonFinding:
        expectComplaint(run, badRadioFile, problem);
        EXPECT_THAT(output, testing::HasSubstr("\"isRadioFile\": false,"));
        EXPECT_TRUE(std::none_of(output.begin(), output.end(), isControlWithinLines)) << run;
        break;
    case ToolCommand::Refusal::LineOfOutput:
        expectBadLine(run, problem);
        return;
    }
    expectWithinLimits(run);
}

void expectUnreadable(const ToolCommand& command, const ToolRun& run, const std::string& problem) {
    switch (command.refusal) {
    case ToolCommand::Refusal::Complaint:
    case ToolCommand::Refusal::Finding:
        expectTrouble(run, otherTrouble, problem);
        return;
    case ToolCommand::Refusal::JsonFinding:
        expectComplaint(run, otherTrouble, problem);
        EXPECT_EQ(run.firstOutput, "{\n  \"schema\": \"qor-power/check/1\",\n  \"files\": []\n}\n");
        expectWithinLimits(run);
        return;
    case ToolCommand::Refusal::LineOfOutput:
        expectBadLine(run, problem);
        return;
    }
}

void expectBadLine(const ToolRun& run, const std::string& problem) {
    EXPECT_EQ(run.status, badRadioFile) << run;
    EXPECT_TRUE(run.errors.empty()) << run;
    ASSERT_EQ(std::count(run.firstOutput.begin(), run.firstOutput.end(), '\n'), 1) << run;
    ASSERT_EQ(run.firstOutput.size(), run.outputSize) << run;
    const auto line = nlohmann::json::parse(run.firstOutput, nullptr, false);
    ASSERT_TRUE(line.is_object() && line.at("error").is_string()) << run;
    const std::string place = line.at("place").is_null() ? "" : line.at("place").get<std::string>();
    EXPECT_THAT((place.empty() ? "" : place + ": ") + line.at("error").get<std::string>(),
                testing::HasSubstr(problem));
    expectWithinLimits(run);
}
