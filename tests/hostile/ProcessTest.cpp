#include "DrivenTool.h"
#include "Expectations.h"
#include "HostileFile.h"
#include "MeasuredTool.h"
#include "ScratchFolder.h"
#include "ToolCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

// What surrounds the tool when it is hostile: paths, standard input, standard output. And files
// that are in order but ask for as much as a file can.

namespace {

using testing::HasSubstr;

class HostilePath : public testing::TestWithParam<ToolCommand> {
protected:
    /// Tries a path that cannot be read.
    void expectUnreadableFrom(const std::string& path, const std::string& problem) {
        expectUnreadable(GetParam(), m_staged.on(path).run(), problem);
        EXPECT_TRUE(m_staged.isUntouched());
    }

    StagedCommand m_staged{GetParam()};
};

const auto nameOf = [](const auto& test) { return std::string(test.param.name); };

/// Those that take a path as an argument. What stands in a list is tried further down.
std::vector<ToolCommand> commandsOfRadioPaths() {
    std::vector<ToolCommand> found = radioFileCommands();
    std::erase_if(found, [](const ToolCommand& command) {
        return command.refusal == ToolCommand::Refusal::LineOfOutput;
    });
    return found;
}

INSTANTIATE_TEST_SUITE_P(OfEveryCommand, HostilePath, testing::ValuesIn(commandsOfRadioPaths()),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(OfAnotherFile, HostilePath, testing::ValuesIn(otherFileCommands()),
                         nameOf);

TEST_P(HostilePath, toAFolderCannotBeRead) {
    const ScratchFolder folder;

    expectUnreadableFrom(folder.path(), "cannot be read: Is a directory");
}

TEST_P(HostilePath, toNothingCannotBeRead) {
    const ScratchFolder folder;

    expectUnreadableFrom(folder.path() / "radio.json", "cannot be read: No such file or directory");
}

TEST_P(HostilePath, thatIsEmptyCannotBeRead) {
    expectUnreadableFrom("", "cannot be read: No such file or directory");
}

TEST_P(HostilePath, thatLeadsInACircleCannotBeRead) {
    const ScratchFolder folder;
    std::filesystem::create_symlink("circle", folder.path() / "circle");

    expectUnreadableFrom(folder.path() / "circle",
                         "cannot be read: Too many levels of symbolic links");
}

TEST_P(HostilePath, throughAFileCannotBeRead) {
    HostileFile file;
    file.add("{}");

    expectUnreadableFrom(file.path() + "/radio.json", "cannot be read: Not a directory");
}

TEST_P(HostilePath, withControlCharactersIsNamedOnOneLine) {
    expectUnreadableFrom("a\nb\x1B[2J\xFF",
                         "a\\nb\\x1b[2J\\xff: cannot be read: No such file or directory");
}

TEST_P(HostilePath, toMemoryThatCannotBeReadIsTrouble) {
    expectUnreadableFrom("/proc/self/mem", "cannot be read: Input/output error");
}

TEST_P(HostilePath, toAStandardInputThatIsNotThereCannotBeRead) {
    const ToolRun run = m_staged.on("-").withoutInput().run();

    expectUnreadable(GetParam(), run, "standard input: cannot be read: Bad file descriptor");
}

/// What can be read but is no radio file. A list and a log are read for as long as they go on.
class HostileStream : public HostilePath {};

INSTANTIATE_TEST_SUITE_P(OfEveryCommand, HostileStream, testing::ValuesIn(commandsOfRadioPaths()),
                         nameOf);

TEST_P(HostileStream, fromADeviceWithoutEndIsTooLarge) {
    const ToolRun run = m_staged.on("/dev/zero").run();

    expectRefusal(GetParam(), run, "/dev/zero: (document): larger than 2097152 bytes");
    EXPECT_TRUE(m_staged.isUntouched());
}

TEST_P(HostileStream, fromStandardInputWithoutEndIsTooLarge) {
    const ToolRun run = m_staged.on("-").withInputFrom("/dev/zero").run();

    expectRefusal(GetParam(), run, "standard input: (document): larger than 2097152 bytes");
}

TEST_P(HostileStream, fromAnEmptyStandardInputIsABadFile) {
    const ToolRun run = m_staged.on("-").run();

    expectRefusal(GetParam(), run, "standard input: 1:1: syntax error");
}

// Lines of a list. Each is answered in its place.

ToolRun runOfList(const HostileFile& list) {
    return MeasuredTool({"batch", "--quiet", list.path()}).run();
}

void expectBadLineFrom(std::string_view line, const std::string& problem) {
    HostileFile list;
    list.add(line).add("\n");

    expectBadLine(runOfList(list), problem);
    EXPECT_TRUE(list.isUntouched());
}

TEST(HostileLine, withAPathThatCannotBeReadIsBad) {
    const ScratchFolder folder;
    std::filesystem::create_symlink("circle", folder.path() / "circle");

    expectBadLineFrom(folder.path().string(), "cannot be read: Is a directory");
    expectBadLineFrom((folder.path() / "radio.json").string(),
                      "cannot be read: No such file or directory");
    expectBadLineFrom((folder.path() / "circle").string(),
                      "cannot be read: Too many levels of symbolic links");
    expectBadLineFrom("/proc/self/mem", "cannot be read: Input/output error");
    expectBadLineFrom("/dev/zero", "larger than 2097152 bytes");
    expectBadLineFrom("a\x1B[2J\xFF", "a\\x1b[2J\\xff: cannot be read: No such file or directory");
    expectBadLineFrom(std::string_view("a\0b", 3), "cannot be read: a path holds no NUL");
    // Standard input is not for radio files here.
    expectBadLineFrom("-", "./-: cannot be read: No such file or directory");
    expectBadLineFrom("", "an empty line");
}

TEST(HostileLine, withABadRadioFileIsBad) {
    expectBadLineFrom("{\"channel\": 1, \"channel\": 1}", "/channel: key given twice");
    expectBadLineFrom("{\"channel\": 1e999999999}", "/channel: number too large: 1e999999999");
    expectBadLineFrom("{\"channel\": \"\xFF\"}", "1:14: syntax error");
    expectBadLineFrom(std::string_view("{\"a\0\": 1}", 9), "1:4: syntax error: NUL byte");
    expectBadLineFrom("\xFF\t{\"channel\": 1", "syntax error");
}

TEST(HostileLine, thatIsNestedDeeplyIsBad) {
    HostileFile list;
    list.add(mebibyte / 4, "{\"a\":");

    expectBadLine(runOfList(list), "nested deeper than 64 levels");
}

TEST(HostileLine, withoutEndIsTooLong) {
    HostileFile list;
    list.add(100, std::string(mebibyte, '\0'));

    expectBadLine(runOfList(list), "longer than 2097152 bytes");
}

TEST(HostileLine, isNotReadFromTheAnswers) {
    HostileFile list;
    list.add("no-such-radio.json\n");

    const ToolRun run = MeasuredTool({"batch", list.path()}).withOutputTo(list.path()).run();

    expectTrouble(run, otherTrouble,
                  list.path() + ": the answers would be added to it, and be read as lines");
    EXPECT_TRUE(list.isUntouched());
}

TEST(HostileLine, doesNotAffectTheOthers) {
    HostileFile radio;
    radio.add(radioStart).add(capabilityHandler).add("}");
    HostileFile list;
    list.add(radio.path() + "\n").add(3 * mebibyte, "[").add("\n" + radio.path());

    const ToolRun run = runOfList(list);

    EXPECT_EQ(run.status, badRadioFile) << run;
    EXPECT_EQ(std::count(run.firstOutput.begin(), run.firstOutput.end(), '\n'), 3) << run;
    EXPECT_THAT(
        run.firstOutput,
        testing::StartsWith("{\"schema\":\"qor-power/batch/1\",\"id\":null,\"radioFile\":\"" +
                            radio.path() + "\",\"error\":null,"));
    EXPECT_THAT(run.firstOutput,
                HasSubstr("\n{\"schema\":\"qor-power/batch/1\",\"id\":null,\"radioFile\":\"" +
                          radio.path() + "\",\"error\":null,"));
    expectWithinLimits(run);
}

// Logs. What goes beyond their bounds is refused, with its line.

void expectBadLog(const HostileFile& log, const std::string& problem) {
    expectTrouble(MeasuredTool({"explain", "--trace-log", log.path()}).run(), otherTrouble,
                  log.path() + ": " + problem + "; take its call out of the log");
    EXPECT_TRUE(log.isUntouched());
}

TEST(HostileLog, withALineWithoutEndIsRefused) {
    HostileFile log;
    log.add("\n{").add(20, std::string(mebibyte, ' '));

    expectBadLog(log, "line 2: longer than 8388608 bytes");
}

TEST(HostileLog, withALineOfTooManyValuesIsRefused) {
    HostileFile log;
    log.add(R"({"call": "findPminPmax", "trace": [)").add(2 * mebibyte, "{},");

    expectBadLog(log, "line 1: /trace/199997: more than 200000 values");
}

TEST(HostileLog, withALineNestedDeeplyIsRefused) {
    HostileFile log;
    log.add(mebibyte, "{\"a\":");

    expectTrouble(MeasuredTool({"explain", "--trace-log", log.path()}).run(), otherTrouble,
                  "nested deeper than 64 levels; take its call out of the log");
}

TEST(HostileLog, withATraceWithoutEndIsRefused) {
    HostileFile log;
    log.add("5 msg a:1 b: ").add(7, std::string(mebibyte, 'c')).add("\n");

    expectBadLog(log, "line 1: a trace longer than 65536 bytes");
}

TEST(HostileLog, withACallOfTooManyTracesIsRefused) {
    HostileFile log;
    log.add("6 enter a:1 getUnrestrictedPmax:\n").add(100000, "5 msg a:1 b: c\n");

    expectBadLog(log, "line 32769: more than 32768 traces in one call");
}

TEST(HostileLog, withACallOfTooLongTracesIsRefused) {
    HostileFile log;
    log.add("6 enter a:1 getUnrestrictedPmax:\n")
        .add(1000, "5 msg a:1 b: " + std::string(32766, 'c') + "\n");

    // Two more bytes of each are the file's and the function's names.
    expectBadLog(log, "line 257: traces of more than 8388608 bytes in one call");
}

TEST(HostileLog, ofTooManyProcessesIsRefused) {
    HostileFile log;
    for (int process = 0; process < 100; ++process) {
        log.add("qor[" + std::to_string(process) + "] 5 msg a:1 b: c\n");
    }

    expectBadLog(log, "line 65: traces of more than 64 processes");
}

TEST(HostileLog, withACallOfTooManyCalculationsIsRefused) {
    HostileFile log;
    log.add("6 enter a:1 getUnrestrictedPmax:\n").add(10000, "6 enter a:1 getFixModMaxPower: \n");

    expectBadLog(log, "line 8194: more than 8192 calculations in one call");
}

/// A radio that starts, with so many requests that their answers fill any pipe.
void addTalkativeRadio(HostileFile& file) {
    file.add(radioStart).add(capabilityHandler).add(",\n\"requests\": [");
    file.add(20000, "{\"call\": \"findPminPmax\"},").add("{\"call\": \"findPminPmax\"}]}");
}

class HostileOutput : public testing::TestWithParam<ToolCommand> {
protected:
    MeasuredTool tool() {
        m_file.add(radioStart).add(capabilityHandler).add("}");
        return m_staged.on(m_file.path());
    }

    bool isUntouched() const { return m_file.isUntouched() && m_staged.isUntouched(); }

private:
    HostileFile m_file;
    StagedCommand m_staged{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(OfEveryCommand, HostileOutput,
                         testing::ValuesIn(DrivenTool::chosen(writingCommands())), nameOf);

TEST_P(HostileOutput, thatIsFullIsTrouble) {
    const ToolRun run = tool().withOutputTo("/dev/full").run();

    expectTrouble(run, otherTrouble, "cannot write to standard output: No space left on device");
    EXPECT_TRUE(isUntouched());
}

TEST_P(HostileOutput, thatNobodyReadsEndsTheToolSilently) {
    const ToolRun run = tool().withReaderOf(0).run();

    expectSilentEnd(run, otherTrouble);
    EXPECT_TRUE(isUntouched());
}

TEST(HostileOutputOfReplay, thatClosesInTheMiddleEndsTheReplay) {
    HostileFile file;
    addTalkativeRadio(file);

    const ToolRun run = MeasuredTool({"replay", file.path()}).withReaderOf(1000).run();

    expectSilentEnd(run, otherTrouble);
}

TEST(HostileOutputOfReplay, thatIsFullIsSaidOnceForAllFiles) {
    HostileFile file;
    file.add(radioStart).add(capabilityHandler).add("}");

    const ToolRun run = MeasuredTool({"replay", file.path(), file.path(), file.path()})
                            .withOutputTo("/dev/full")
                            .run();

    expectTrouble(run, otherTrouble, "cannot write to standard output");
}

TEST(HostileOutputOfBatch, thatClosesInTheMiddleEndsTheBatch) {
    HostileFile list;
    list.add(100000, "no-such-radio.json\n");

    const ToolRun run = MeasuredTool({"batch", "--quiet", list.path()}).withReaderOf(1000).run();

    expectSilentEnd(run, otherTrouble);
}

// Texts that would change what a terminal or an editor shows.

class HostileText : public testing::TestWithParam<ToolCommand> {};

INSTANTIATE_TEST_SUITE_P(OfEveryCommand, HostileText,
                         testing::ValuesIn(DrivenTool::chosen(writingCommands())), nameOf);

TEST_P(HostileText, isShownAsEscapes) {
    constexpr std::string_view hostile =
        "=\\n\\r\\u001b[2J\x7F\u0085\u2028\u061C\u200E\u200F\u202E\u2066";
    HostileFile file;
    file.add(radioStart).add(R"("capabilityHandler": {"productNumber": ")").add(hostile);
    file.add(R"(", "pmaxDpd1Etsi": [["4QAM", 2600]]}, "requests": [{"call": "findPminPmax"},)");
    file.add(R"({"call": "patch", "file": {"variables": {")").add(hostile).add("\": 1}}}]}");
    StagedCommand staged(GetParam());

    const ToolRun run = staged.on(file.path()).run();

    EXPECT_LT(run.status, otherTrouble) << run;
    for (const char* const steering : {"\r", "\x1B", "\x7F", "\u0085", "\u2028", "\u061C", "\u200E",
                                       "\u200F", "\u202E", "\u2066"}) {
        EXPECT_THAT(run.firstOutput, testing::Not(HasSubstr(steering))) << run;
        EXPECT_THAT(run.errors, testing::Not(HasSubstr(steering))) << run;
    }
}

TEST(HostileText, isOneLineOfCsvAndNoFormula) {
    HostileFile file;
    file.add(radioStart).add(R"("capabilityHandler": {"productNumber": "=1+\n\"1\"\u001b"}})");
    HostileFile list;
    list.add(file.path());

    const ToolRun run = MeasuredTool({"batch", list.path(), "--quiet", "--format", "csv"}).run();

    EXPECT_EQ(std::count(run.firstOutput.begin(), run.firstOutput.end(), '\n'), 2) << run;
    EXPECT_THAT(run.firstOutput, HasSubstr(R"(,"'=1+\n""1""\x1b",)"));
}

// Files that are written.

TEST(HostilePicture, whereNothingCanBeWrittenIsTrouble) {
    const ToolCommand command{"plot", {"plot", ToolCommand::radio, "-o", ToolCommand::file}};
    HostileFile file;
    file.add("{}");
    const ScratchFolder folder;
    const auto expectUnwritable = [&command](const std::string& path, const std::string& problem) {
        StagedCommand staged(command);
        expectTrouble(staged.on(path).run(), otherTrouble, problem);
        EXPECT_TRUE(staged.isUntouched());
    };

    expectUnwritable("/dev/full", "/dev/full: cannot be written: No space left on device");
    expectUnwritable(folder.path(), "cannot be written: Is a directory");
    expectUnwritable(folder.path() / "no" / "a.svg",
                     "cannot be written: No such file or directory");
    expectUnwritable(file.path() + "/a.svg", "cannot be written: Not a directory");
    expectUnwritable("no\n/\x1B[2J",
                     "no\\n/\\x1b[2J: cannot be written: No such file or directory");
    EXPECT_TRUE(file.isUntouched());
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(HostilePicture, ofARadioWithoutPowersLeavesTheFileAsItWas) {
    const ToolCommand command{
        "plot", {"plot", ToolCommand::file, "-o", ToolCommand::picture, "--frame-format", "9"}};
    HostileFile file;
    file.add(radioStart).add(capabilityHandler).add("}");
    StagedCommand staged(command);

    expectTrouble(staged.on(file.path()).run(), otherTrouble, "no powers");
    EXPECT_TRUE(staged.isUntouched());
}

TEST(HostileExamples, whereNothingCanBeWrittenAreTrouble) {
    HostileFile file;
    file.add("{}");
    const auto expectUnwritable = [](const std::string& folder, const std::string& problem) {
        expectTrouble(MeasuredTool({"examples", "--all", "-o", folder}).run(), otherTrouble,
                      problem);
    };

    expectUnwritable("no", "cannot be written: No such file or directory");
    expectUnwritable(file.path(), "cannot be written: Not a directory");
    expectUnwritable("no\n\x1B[2J", "no\\n\\x1b[2J/");
    EXPECT_TRUE(file.isUntouched());
}

TEST(HostileExamples, whoseNameIsTakenLeaveAllAsItWas) {
    const ScratchFolder folder;
    const std::string taken = "18ghz-ansi-standard-outdoor1.json";
    std::filesystem::create_directory(folder.path() / taken);

    expectTrouble(MeasuredTool({"examples", "--all", "-o", folder.path()}).run(), otherTrouble,
                  taken + ": cannot be written: File exists; --force overwrites it");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
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

// Files in order. What they ask for may take its time, but not more memory. The files that take
// most are in worst-files.json, as scripts/worst-file found them.

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

/// Variables in JSON, behind one.
void addVariables(HostileFile& file, int count) {
    std::string names;
    for (int variable = 0; variable < count; ++variable) {
        names += ",\"" + std::to_string(variable) + "\":1";
        if (variable % 1000 == 999 || variable == count - 1) {
            file.add(names);
            names.clear();
        }
    }
}

TEST(LargeButGoodFile, ofAsManyVariablesAsAllowedIsPlayedCheckedAndCompared) {
    // It holds no neighbour: almost every value that a file may have is that of a variable.
    HostileFile file;
    HostileFile other;
    for (HostileFile* const each : {&file, &other}) {
        each->add(R"({"channel": 1, "variables": {"v": [0)");
        each->add(1023, each == &file ? ",1" : ",2").add("]");
        for (int list = 0; list < 144; ++list) {
            each->add(",\"v" + std::to_string(list) + "\": [0");
            each->add(1023, each == &file ? ",1" : ",2").add("]");
        }
        addVariables(*each, 879);
        each->add("}}");
    }

    const ToolRun replay = MeasuredTool({"replay", file.path()}).run();
    const ToolRun check = MeasuredTool({"check", file.path()}).run();
    const ToolRun diff = MeasuredTool({"diff", file.path(), other.path()}).run();

    EXPECT_EQ(replay.status, serviceDidNotStart) << replay;
    EXPECT_EQ(check.status, answerIsNo) << check;
    EXPECT_EQ(diff.status, serviceDidNotStart) << diff;
    for (const ToolRun& run : {replay, check, diff}) {
        expectWithinMemory(run);
    }
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
