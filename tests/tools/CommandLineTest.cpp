#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

TEST(Help, OfTheToolBeginsWithExamples) {
    const ToolResult result = runTool({"--help"});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_TRUE(result.output.starts_with("Examples:\n  qor-power table radio.json")) << result;
    EXPECT_NE(result.output.find("\n  table "), std::string::npos) << result;
    EXPECT_NE(result.output.find("\n  replay "), std::string::npos) << result;
    EXPECT_NE(result.output.find("Exit status:\n  0  done"), std::string::npos) << result;
    EXPECT_EQ(result.errors, "");
}

TEST(Help, OfACommandBeginsWithItsExamplesAndNamesEveryOption) {
    const ToolResult table = runTool({"table", "--help"});
    const ToolResult replay = runTool({"replay", "-h"});

    EXPECT_EQ(table.status, done);
    EXPECT_TRUE(table.output.starts_with("Examples:\n  qor-power table radio.json\n")) << table;
    for (const char* const option :
         {"--frame-format ID", "--format FORMAT", "--cutback DB", "--temporary-cutback DB",
          "--booster BOOSTER", "--rsec CLASS"}) {
        EXPECT_NE(table.output.find(option), std::string::npos) << option;
    }
    EXPECT_EQ(replay.status, done);
    EXPECT_TRUE(replay.output.starts_with("Examples:\n  qor-power replay radio.json\n")) << replay;
    EXPECT_NE(replay.output.find("--trace LEVEL"), std::string::npos);
}

/// The commands as the help names them.
std::vector<std::string> commandsOfTheHelp() {
    std::istringstream help(runTool({"--help"}).output);
    std::vector<std::string> commands;
    bool isInList = false;
    for (std::string line; std::getline(help, line);) {
        if (!line.starts_with(' ')) {
            isInList = line.starts_with("Commands") || (isInList && line.empty());
        } else if (isInList) {
            commands.push_back(line.substr(2, line.find(' ', 2) - 2));
        }
    }
    return commands;
}

TEST(Help, OfEveryCommandShowsExamplesAndTheOneTableOfExitStatuses) {
    const std::string help = runTool({"--help"}).output;
    const std::string table = help.substr(help.find("\nExit status:\n"));
    const std::vector<std::string> commands = commandsOfTheHelp();

    EXPECT_GE(commands.size(), 6U);
    for (const std::string& command : commands) {
        const ToolResult result = runTool({command, "--help"});

        EXPECT_EQ(result.status, done) << command;
        EXPECT_TRUE(result.output.starts_with("Examples:\n  ")) << result;
        EXPECT_TRUE(result.output.ends_with(table)) << result;
    }
}

TEST(Help, IsNoWiderThanAHundredColumns) {
    std::vector<std::string> commands = commandsOfTheHelp();
    commands.emplace_back();
    for (const std::string& command : commands) {
        std::istringstream help(runTool(command.empty()
                                            ? std::vector<std::string>{"--help"}
                                            : std::vector<std::string>{command, "--help"})
                                    .output);
        for (std::string line; std::getline(help, line);) {
            EXPECT_LE(line.size(), 100U) << line;
        }
    }
}

TEST(Help, IsOfferedForAWordThatIsNearNoCommand) {
    std::string known;
    for (const std::string& command : commandsOfTheHelp()) {
        known += (known.empty() ? "\"" : ", \"") + command + '"';
    }

    EXPECT_EQ(runTool({"xyzzy"}).errors,
              "qor-power: unknown command \"xyzzy\"; known: " + known + "\n");
    EXPECT_EQ(runTool({""}).errors, "qor-power: unknown command \"\"; known: " + known + "\n");
}

TEST(Version, IsTheProjects) {
    const ToolResult result = runTool({"--version"});

    EXPECT_EQ(result.status, done);
    EXPECT_EQ(result.output, "qor-power " QOR_POWER_VERSION "\n");
    EXPECT_EQ(result.errors, "");
}

/// A command line that is wrong, and the line that says so.
struct Mistake {
    std::vector<std::string> arguments;
    std::string line;
};

void PrintTo(const Mistake& mistake, std::ostream* stream) {
    *stream << "qor-power";
    for (std::string word : mistake.arguments) {
        std::replace(word.begin(), word.end(), '\n', ' ');
        *stream << ' ' << word;
    }
}

class WrongCommandLine : public testing::TestWithParam<Mistake> {};

TEST_P(WrongCommandLine, IsAnsweredInOneLine) {
    const ToolResult result = runTool(GetParam().arguments);

    EXPECT_EQ(result.errors, "qor-power: " + GetParam().line + "\n");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, otherTrouble);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, WrongCommandLine,
    testing::Values(
        Mistake{{}, "a command is missing; try qor-power --help"},
        Mistake{{"tabel", "x.json"}, "unknown command \"tabel\"; did you mean \"table\"?"},
        Mistake{{"Replay", "x.json"}, "unknown command \"Replay\"; did you mean \"replay\"?"},
        Mistake{{"tab\nle"}, "unknown command \"tab\\nle\"; did you mean \"table\"?"},
        Mistake{{"--verison"}, "unknown option \"--verison\"; did you mean \"--version\"?"},
        Mistake{{"--format", "csv", "table", "x.json"},
                "unknown option \"--format\"; known: \"--help\", \"--version\""}));

INSTANTIATE_TEST_SUITE_P(
    Options, WrongCommandLine,
    testing::Values(
        Mistake{{"table", "--frmat", "csv", "x.json"},
                "unknown option \"--frmat\"; did you mean \"--format\"?"},
        Mistake{{"table", "--frmat=csv"}, "unknown option \"--frmat\"; did you mean \"--format\"?"},
        Mistake{{"table", "--frmat", "csv", "--", "x.json"},
                "unknown option \"--frmat\"; did you mean \"--format\"?"},
        Mistake{{"table", "x.json", "--frameformat", "7"},
                "unknown option \"--frameformat\"; did you mean \"--frame-format\"?"},
        Mistake{{"replay", "x.json", "--rsec", "4L"},
                "unknown option \"--rsec\"; known: \"--help\", \"--trace\", \"--color\""},
        Mistake{{"replay", "-t", "6", "x.json"},
                "unknown option \"-t\"; known: \"--help\", \"--trace\", \"--color\""},
        Mistake{{"table", "x.json", "--format"},
                "--format needs a value; try qor-power table --help"},
        Mistake{{"table", "x.json", "--format", "csv", "--format", "csv"},
                "--format is given more than once"},
        Mistake{{"table"}, "FILE is missing; try qor-power table --help"},
        Mistake{{"replay"}, "FILE is missing; try qor-power replay --help"},
        Mistake{{"table", "x.json", "y.json"}, "too much on the command line: \"y.json\""}));

INSTANTIATE_TEST_SUITE_P(
    Values, WrongCommandLine,
    testing::Values(
        Mistake{{"table", "x.json", "--format", "xml"},
                "--format \"xml\": unknown; known: \"text\", \"csv\", \"json\""},
        Mistake{{"table", "x.json", "--format", "jsn"},
                "--format \"jsn\": unknown; did you mean \"json\"?"},
        Mistake{{"table", "x.json", "--frame-format", "-1"},
                "--frame-format \"-1\": out of range, 0 to 2147483647"},
        Mistake{{"table", "x.json", "--frame-format", "2147483648"},
                "--frame-format \"2147483648\": out of range, 0 to 2147483647"},
        Mistake{{"table", "x.json", "--frame-format", "seven"},
                "--frame-format \"seven\": an integer is wanted"},
        Mistake{{"table", "x.json", "--cutback", "-1"},
                "--cutback \"-1\": out of range, 0.00 to 42949672.95 dB"},
        Mistake{{"table", "x.json", "--cutback", "1.555"},
                "--cutback \"1.555\": a decimal number of dB with at most two decimals is wanted, "
                "for example 1.5"},
        Mistake{{"table", "x.json", "--temporary-cutback", "42949672.96"},
                "--temporary-cutback \"42949672.96\": out of range, 0.00 to 42949672.95 dB"},
        Mistake{{"table", "x.json", "--booster", "1,15,14"},
                "--booster \"1,15,14\": PRESENCE,GAIN,MAXINPUT,MAXMODULATION or none is wanted, "
                "for example 1,15,14,256QAM"},
        Mistake{{"table", "x.json", "--booster", "1,15,14,257QAM"},
                "--booster MAXMODULATION \"257QAM\": unknown modulation; did you mean \"256QAM\"?"},
        Mistake{{"table", "x.json", "--rsec", "4M"},
                "--rsec \"4M\": unknown RSEC; did you mean \"4L\"?"},
        Mistake{{"replay", "x.json", "--trace", "-1"},
                "--trace \"-1\": out of range, 0 to 2147483647"},
        Mistake{{"replay", "x.json", "--trace", "six"}, "--trace \"six\": an integer is wanted"},
        Mistake{{"replay", "x.json", "--color", "allways"},
                "--color \"allways\": unknown; did you mean \"always\"?"},
        Mistake{{"completion", "csh"}, "SHELL \"csh\": unknown; did you mean \"zsh\"?"},
        Mistake{{"replay", "-", "-"}, "standard input (-) can be read only once"}));

TEST(CommandLine, TakesTheNameOfACommandAsAFileBehindACommand) {
    const ToolResult result = runTool({"replay", "replay", "table"});

    EXPECT_EQ(result.errors, "qor-power: replay: cannot be read: No such file or directory\n"
                             "qor-power: table: cannot be read: No such file or directory\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST(CommandLine, TakesEverythingAsAFileBehindTwoHyphens) {
    const ToolResult result = runTool({"table", "--", "--format"});

    EXPECT_EQ(result.errors, "qor-power: --format: cannot be read: No such file or directory\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST(CommandLine, TakesNoMoreThanItNeedsBehindTwoHyphens) {
    const ToolResult result = runTool({"table", "x.json", "--", "--format"});

    EXPECT_EQ(result.errors, "qor-power: too much on the command line: \"--format\"\n");
    EXPECT_EQ(result.status, otherTrouble);
}

/// Command lines that write to standard output.
class WritingCommand : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(WritingCommand, SaysThatTheDiskIsFull) {
    const ToolResult result = ToolProcess(GetParam()).withOutputTo("/dev/full").run();

    EXPECT_EQ(result.errors,
              "qor-power: cannot write to standard output: No space left on device\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST_P(WritingCommand, SaysThatThePipeIsClosed) {
    const ToolResult result = ToolProcess(GetParam()).withClosedPipe().run();

    EXPECT_EQ(result.errors, "qor-power: cannot write to standard output: Broken pipe\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST_P(WritingCommand, SaysThatThereIsNoStandardOutput) {
    const ToolResult result = ToolProcess(GetParam()).withoutOutput().run();

    EXPECT_EQ(result.errors, "qor-power: cannot write to standard output: Bad file descriptor\n");
    EXPECT_EQ(result.status, otherTrouble);
}

INSTANTIATE_TEST_SUITE_P(
    CommandLines, WritingCommand,
    testing::Values(std::vector<std::string>{"--help"}, std::vector<std::string>{"--version"},
                    std::vector<std::string>{"table", "--help"},
                    std::vector<std::string>{"table", "radios/outdoor1.json"},
                    std::vector<std::string>{"table", "radios/outdoor1.json", "--format", "csv"},
                    std::vector<std::string>{"replay", "radios/outdoor1.json"},
                    // More than a buffer holds.
                    std::vector<std::string>{"replay", "radios/outdoor1.json", "--trace", "6"}));

} // namespace
