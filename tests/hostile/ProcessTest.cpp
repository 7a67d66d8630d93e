#include "Expectations.h"
#include "HostileFile.h"
#include "MeasuredTool.h"
#include "ScratchFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

// What surrounds the tool when it is hostile: paths, standard input, standard output. And files
// that are in order but ask for as much as a file can.

namespace {

using testing::HasSubstr;

class HostilePath : public testing::TestWithParam<const char*> {
protected:
    ToolRun run(const std::string& path) { return MeasuredTool({GetParam(), path}).run(); }
};

INSTANTIATE_TEST_SUITE_P(OfEveryCommand, HostilePath, testing::Values("replay", "table"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(HostilePath, toAFolderCannotBeRead) {
    const ScratchFolder folder;

    expectTrouble(run(folder.path()), otherTrouble, "cannot be read: Is a directory");
}

TEST_P(HostilePath, toNothingCannotBeRead) {
    const ScratchFolder folder;

    expectTrouble(run(folder.path() / "radio.json"), otherTrouble,
                  "cannot be read: No such file or directory");
}

TEST_P(HostilePath, thatIsEmptyCannotBeRead) {
    expectTrouble(run(""), otherTrouble, "cannot be read: No such file or directory");
}

TEST_P(HostilePath, thatLeadsInACircleCannotBeRead) {
    const ScratchFolder folder;
    std::filesystem::create_symlink("circle", folder.path() / "circle");

    expectTrouble(run(folder.path() / "circle"), otherTrouble,
                  "cannot be read: Too many levels of symbolic links");
}

TEST_P(HostilePath, throughAFileCannotBeRead) {
    HostileFile file;
    file.add("{}");

    expectTrouble(run(file.path() + "/radio.json"), otherTrouble,
                  "cannot be read: Not a directory");
}

TEST_P(HostilePath, withControlCharactersIsNamedOnOneLine) {
    expectTrouble(run("a\nb\x1B[2J\xFF"), otherTrouble,
                  "a\\nb\\x1b[2J\\xff: cannot be read: No such file or directory");
}

TEST_P(HostilePath, toMemoryThatCannotBeReadIsTrouble) {
    expectTrouble(run("/proc/self/mem"), otherTrouble, "cannot be read: Input/output error");
}

TEST_P(HostilePath, toADeviceWithoutEndIsTooLarge) {
    expectTrouble(run("/dev/zero"), badRadioFile,
                  "/dev/zero: (document): larger than 2097152 bytes");
}

TEST_P(HostilePath, toStandardInputWithoutEndIsTooLarge) {
    const ToolRun run = MeasuredTool({GetParam(), "-"}).withInputFrom("/dev/zero").run();

    expectTrouble(run, badRadioFile, "standard input: (document): larger than 2097152 bytes");
}

TEST_P(HostilePath, toAStandardInputThatIsNotThereCannotBeRead) {
    const ToolRun run = MeasuredTool({GetParam(), "-"}).withoutInput().run();

    expectTrouble(run, otherTrouble, "standard input: cannot be read: Bad file descriptor");
}

TEST_P(HostilePath, toAnEmptyStandardInputIsABadFile) {
    const ToolRun run = MeasuredTool({GetParam(), "-"}).run();

    expectTrouble(run, badRadioFile, "standard input: 1:1: syntax error");
}

/// A radio that starts, with so many requests that their answers fill any pipe.
void addTalkativeRadio(HostileFile& file) {
    file.add(radioStart).add(capabilityHandler).add(",\n\"requests\": [");
    file.add(20000, "{\"call\": \"findPminPmax\"},").add("{\"call\": \"findPminPmax\"}]}");
}

class HostileOutput : public testing::TestWithParam<std::vector<std::string>> {};

INSTANTIATE_TEST_SUITE_P(OfEveryCommand, HostileOutput,
                         testing::Values(std::vector<std::string>{"replay"},
                                         std::vector<std::string>{"replay", "--trace", "6"},
                                         std::vector<std::string>{"table"},
                                         std::vector<std::string>{"table", "--format", "json"},
                                         std::vector<std::string>{"table", "--format", "csv"}));

TEST_P(HostileOutput, thatIsFullIsTrouble) {
    HostileFile file;
    file.add(radioStart).add(capabilityHandler).add("}");
    std::vector<std::string> arguments = GetParam();
    arguments.push_back(file.path());

    const ToolRun run = MeasuredTool(arguments).withOutputTo("/dev/full").run();

    expectTrouble(run, otherTrouble, "cannot write to standard output: No space left on device");
}

TEST_P(HostileOutput, thatIsAClosedPipeIsTrouble) {
    HostileFile file;
    file.add(radioStart).add(capabilityHandler).add("}");
    std::vector<std::string> arguments = GetParam();
    arguments.push_back(file.path());

    const ToolRun run = MeasuredTool(arguments).withReaderOf(0).run();

    expectTrouble(run, otherTrouble, "cannot write to standard output: Broken pipe");
}

TEST(HostileOutputOfReplay, thatClosesInTheMiddleEndsTheReplay) {
    HostileFile file;
    addTalkativeRadio(file);

    const ToolRun run = MeasuredTool({"replay", file.path()}).withReaderOf(1000).run();

    expectTrouble(run, otherTrouble, "cannot write to standard output: Broken pipe");
}

TEST(HostileOutputOfReplay, thatIsFullIsSaidOnceForAllFiles) {
    HostileFile file;
    file.add(radioStart).add(capabilityHandler).add("}");

    const ToolRun run = MeasuredTool({"replay", file.path(), file.path(), file.path()})
                            .withOutputTo("/dev/full")
                            .run();

    expectTrouble(run, otherTrouble, "cannot write to standard output");
}

TEST(HostileOutputOfHelp, thatIsFullIsTrouble) {
    expectTrouble(MeasuredTool({"--help"}).withOutputTo("/dev/full").run(), otherTrouble,
                  "cannot write to standard output");
}

TEST(HostileCommandLine, withAThousandBadFilesSaysALineForEach) {
    HostileFile file;
    file.add("[");
    std::vector<std::string> arguments(1000, file.path());
    arguments.insert(arguments.begin(), "replay");

    const ToolRun run = MeasuredTool(arguments).run();

    EXPECT_EQ(run.status, badRadioFile) << run;
    // What was kept of the lines is cut off; each of them is as long as the first.
    const auto lines = std::count(run.errors.begin(), run.errors.end(), '\n');
    ASSERT_THAT(run.errors, HasSubstr("\n"));
    const std::size_t length = run.errors.find('\n') + 1;
    EXPECT_EQ(static_cast<std::size_t>(lines), std::min<std::size_t>(1000, 65536 / length));
    expectWithinLimits(run);
}

TEST(HostileCommandLine, withAnEndlessOptionIsOneLine) {
    const ToolRun run = MeasuredTool({"replay", "--" + std::string(30000, 'k'), "f"}).run();

    EXPECT_EQ(run.status, otherTrouble) << run;
    EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
    expectWithinLimits(run);
}

// Files in order. What they ask for may take its time, but not more memory.

TEST(LargeButGoodFile, ofSixtyThousandRequestsIsPlayed) {
    HostileFile file;
    file.add(radioStart).add(capabilityHandler).add(",\n\"requests\": [");
    file.add(59999, "{\"call\": \"findPminPmax\"},").add("{\"call\": \"findPminPmax\"}]}");

    const ToolRun run = MeasuredTool({"replay", file.path()}).run();

    EXPECT_EQ(run.status, done) << run;
    EXPECT_TRUE(run.errors.empty()) << run;
    const std::string start = R"({"call":"initialize","result":0,"registered":true})";
    const std::string answer = R"({"call":"findPminPmax","result":0,"pmin":0,"pmax":2600})";
    EXPECT_EQ(run.outputSize, start.size() + 1 + 60000 * (answer.size() + 1));
    EXPECT_EQ(run.firstOutput.substr(0, start.size() + answer.size() + 2),
              start + '\n' + answer + '\n');
    expectWithinMemory(run);
}

void addLongestLists(HostileFile& file) {
    file.add(R"({"channel": 1, "acmHandler": {}, "hardwareConfigurationHandler": {},
"systemPowerController": {"referenceSec": "4L", "minOutputPowerOffsets": []},
"variables": {"channel.1.tx.rf.pmax.cs.comp.v2.array": [28, 0],
  "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 2},
"frameFormat": {"modulation": "4QAM", "maxAvailableModulation": "4096QAM", "channelSpacing": 28,
  "dpdVersion": 1, "market": "Etsi", "modulationAndCodes": ["4QAM")");
    // Two modulations in turn: none can take over the power of the code before.
    file.add(2047, R"(, "16QAM", "4QAM")").add(R"(, "16QAM"]},
"capabilityHandler": {"pmaxDpd1Etsi": [)");
    file.add(4093, R"(["BPSK", 3000], )").add(R"(["4QAM", 2600], ["16QAM", 2400]]},
"requests": [{"call": "getMinMaxOutputPowerVsModulationArray"}]})");
}

TEST(LargeButGoodFile, ofTheLongestListsIsTracedInFull) {
    HostileFile file;
    addLongestLists(file);

    const ToolRun run = MeasuredTool({"replay", "--trace", "6", file.path()}).run();

    EXPECT_EQ(run.status, done) << run;
    EXPECT_TRUE(run.errors.empty()) << run;
    expectWithinMemory(run);
}

TEST(LargeButGoodFile, ofTheLongestListsIsShownAsATable) {
    HostileFile file;
    addLongestLists(file);

    for (const char* const format : {"text", "csv", "json"}) {
        const ToolRun run = MeasuredTool({"table", "--format", format, file.path()}).run();

        EXPECT_EQ(run.status, done) << run;
        EXPECT_TRUE(run.errors.empty()) << run;
        expectWithinMemory(run);
    }
}

TEST(LargeButGoodFile, ofAsManyVariablesAsAllowedIsPlayed) {
    HostileFile file;
    file.add(R"({"channel": 1, "variables": {"v": 1)");
    std::string names;
    for (int variable = 0; variable < 149990; ++variable) {
        names += ",\"" + std::to_string(variable) + "\":1";
        if (variable % 1000 == 999 || variable == 149989) {
            file.add(names);
            names.clear();
        }
    }
    file.add("}}");

    const ToolRun run = MeasuredTool({"replay", file.path()}).run();

    // It holds no neighbour: every value that a file may have is a variable.
    EXPECT_EQ(run.status, serviceDidNotStart) << run;
    expectWithinMemory(run);
}

TEST(LargeButGoodFile, ofThousandsOfPatchesIsPlayed) {
    HostileFile file;
    file.add(radioStart).add(capabilityHandler).add(",\n\"requests\": [");
    file.add(9999, "{\"call\": \"patch\", \"file\": {\"frameFormat\": {\"dpdVersion\": 2}}},");
    file.add("{\"call\": \"patch\", \"file\": {\"frameFormat\": {\"dpdVersion\": 1}}}]}");

    const ToolRun run = MeasuredTool({"replay", file.path()}).run();

    EXPECT_EQ(run.status, done) << run;
    EXPECT_TRUE(run.errors.empty()) << run;
    const std::string start = R"({"call":"initialize","result":0,"registered":true})";
    const std::string answer = R"({"call":"patch","result":0})";
    EXPECT_EQ(run.outputSize, start.size() + 1 + 10000 * (answer.size() + 1));
    expectWithinMemory(run);
}

} // namespace
