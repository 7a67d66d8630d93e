#include "TextColumns.h"
#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
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

TEST(Help, IsAskedForByAWordToo) {
    EXPECT_EQ(runTool({"help"}).output, runTool({"--help"}).output);
    EXPECT_EQ(runTool({"help", "why-not"}).output, runTool({"why-not", "--help"}).output);
    EXPECT_EQ(runTool({"help", "tabel"}).errors,
              "qor-power: unknown command \"tabel\"; did you mean \"table\"?\n");
    EXPECT_EQ(runTool({"help", "table", "x"}).errors,
              "qor-power: too much on the command line: \"x\"\n");
}

TEST(Help, OfPlotSaysWhatOverTakes) {
    const std::string help = runTool({"plot", "--help"}).output;

    for (const char* const input :
         {"rsec", "channel-spacing", "temporary-cutback", "FIRST..LAST"}) {
        EXPECT_NE(help.find(input), std::string::npos) << input;
    }
}

/// In order, without blanks and line ends: what stands in a text, wherever it is broken.
std::string lettersOf(const std::string& text) {
    std::string letters;
    std::ranges::copy_if(text, std::back_inserter(letters),
                         [](char letter) { return letter != ' ' && letter != '\n'; });
    std::ranges::sort(letters);
    return letters;
}

TEST(Text, FitsIntoTheColumnsThatThereAreAndLosesNothing) {
    const std::string radios = "../../examples/radios/";
    const std::string one = radios + "18ghz-ansi-high-radio-unit-new-booster.json";
    const std::string other = radios + "13ghz-etsi-outdoor1.json";
    const std::string log = runTool({"replay", "--trace", "6", one}).output;
    for (const auto& words :
         std::vector<std::vector<std::string>>{{"explain", one},
                                               {"diff", one, other},
                                               {"sweep", one, "--over", "cutback=0..9"},
                                               {"table", other},
                                               {"why-not", other, "64QAM", "18"},
                                               {"check", "check/rising.json"},
                                               {"check", "--summary", "check/rising.json", one},
                                               {"plot", other},
                                               {"explain", "--trace-log", "-"},
                                               {"examples"},
                                               {"explain", "--help"},
                                               {"--help"}}) {
        SCOPED_TRACE(testing::PrintToString(words));
        const ToolProcess tool = ToolProcess(words).withInput(log);
        const std::string whole = tool.run().output;
        for (const std::size_t columns : {50U, 80U}) {
            const std::string text =
                ToolProcess(tool).withEnvironment("COLUMNS", std::to_string(columns)).run().output;

            for (const std::string& line : linesOf(text)) {
                EXPECT_LE(textWidth(line), columns) << line;
            }
            // The bars of a picture are as long as there is room.
            EXPECT_TRUE(words.front() == "plot" ||
                        std::ranges::includes(lettersOf(text), lettersOf(whole)))
                << text;
        }
    }
}

TEST(Text, OfAMistakeFitsATerminalAndIsOneLineElsewhere) {
    const ToolProcess tool =
        ToolProcess({"explain", "no such folder/of nodes/radio.json", "64QAM", "--xyzzy"});
    const std::string whole = tool.run().errors;
    EXPECT_EQ(ToolProcess(tool).withEnvironment("COLUMNS", "50").run().errors, whole);
    ASSERT_EQ(linesOf(whole).size(), 1U);

    const std::string wide = ToolProcess(tool).withErrorsOnTerminal().run().errors;
    const std::string narrow =
        ToolProcess(tool).withErrorsOnTerminal().withEnvironment("COLUMNS", "50").run().errors;

    for (const auto& [text, columns] : {std::pair(wide, 100U), {narrow, 50U}}) {
        EXPECT_GT(linesOf(text).size(), 1U);
        for (const std::string& line : linesOf(text)) {
            EXPECT_LE(textWidth(line), columns) << line;
        }
        EXPECT_EQ(lettersOf(text), lettersOf(whole));
    }
}

TEST(Text, HasBlocksOnlyWhereTheLocaleHasThem) {
    const ToolProcess plot({"plot", "../analysis/radios/outdoor1.json"});
    const auto isPlain = [](const std::string& text) {
        return std::ranges::all_of(text, [](char byte) { return byte > 0; });
    };

    EXPECT_FALSE(isPlain(ToolProcess(plot).withEnvironment("LC_ALL", "de_DE.utf8").run().output));
    EXPECT_TRUE(isPlain(ToolProcess(plot).withEnvironment("LC_ALL", "C").run().output));
    EXPECT_TRUE(
        isPlain(ToolProcess(plot).withEnvironment("LC_ALL", "de_DE.ISO-8859-1").run().output));
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

TEST(CommandLine, WithAMistakeIsAnsweredInOneLine) {
    const std::vector<std::string> lines = linesOf(contentOf("mistakes.txt"));
    ASSERT_GT(lines.size(), 80U);
    for (std::size_t index = 0; index < lines.size(); index += 2) {
        std::istringstream words(lines[index]);
        const std::vector<std::string> shown(std::istream_iterator<std::string>(words), {});

        const ToolResult result = runTool({shown.begin() + 2, shown.end()});

        EXPECT_EQ(result.errors, lines[index + 1] + '\n') << lines[index];
        EXPECT_EQ(result.output, "");
        EXPECT_EQ(result.status, otherTrouble);
    }
}

TEST(CommandLine, ShowsALineEndInAWord) {
    EXPECT_EQ(runTool({"tab\nle"}).errors,
              "qor-power: unknown command \"tab\\nle\"; did you mean \"table\"?\n");
}

TEST(CommandLine, TakesTheNameOfACommandAsAFileBehindACommand) {
    const ToolResult result = runTool({"replay", "replay", "table"});

    EXPECT_EQ(result.errors, "qor-power: replay: cannot be read: No such file or directory\n"
                             "qor-power: table: cannot be read: No such file or directory\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST(Output, ThatCannotBeWrittenIsSaid) {
    const std::string radio = "../analysis/radios/outdoor1.json";
    for (const auto& words : std::vector<std::vector<std::string>>{
             {"--help"},
             {"--version"},
             {"table", "--help"},
             {"table", radio},
             {"table", radio, "--format", "csv"},
             {"sweep", radio, "--over", "dpd"},
             {"check", radio},
             {"batch", "list.txt", "--quiet"},
             {"replay", radio},
             {"replay", radio, "--trace", "6"}}) { // more than a buffer holds
        const std::string trouble = "qor-power: cannot write to standard output: ";

        const ToolResult full = ToolProcess(words).withOutputTo("/dev/full").run();
        const ToolResult closed = ToolProcess(words).withClosedPipe().run();
        const ToolResult none = ToolProcess(words).withoutOutput().run();

        SCOPED_TRACE(testing::PrintToString(words));
        EXPECT_EQ(full.errors, trouble + "No space left on device\n");
        EXPECT_EQ(closed.errors, "") << "who read has seen enough";
        EXPECT_EQ(none.errors, trouble + "Bad file descriptor\n");
        for (const ToolResult& result : {full, closed, none}) {
            EXPECT_EQ(result.status, otherTrouble);
        }
    }
}

} // namespace
