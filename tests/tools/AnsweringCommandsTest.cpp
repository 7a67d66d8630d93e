#include "QuestionInWords.h"
#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// The commands that answer a question about a radio file: table, explain, why-not, sweep,
// diff, check and plot. What the answers say is tested in tests/analysis.

namespace {

std::string radioFileAt(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Reply replyTo(const std::vector<std::string>& words) {
    Question question = questionIn(words);
    question.otherRadio = radioFileAt(question.otherName);
    return answerTo(question, radioFileAt(question.radioName));
}

/// The options by which the tool gets words that name every form by --format: the name of a
/// picture's file tells its form.
std::vector<std::string> commandLineOf(std::vector<std::string> words) {
    if (words.front() == "plot") {
        const bool isSvg = words.back() == "svg";
        words.resize(words.size() - 2);
        if (isSvg) {
            words.insert(words.end(), {"-o", "-"});
        }
    }
    return words;
}

TEST(AnsweringCommands, PrintTheAnswersOnEveryTopicInEveryForm) {
    // Under an emulator or a sanitizer a process takes long: each asks of every topic in every
    // form, but of few radios.
    std::size_t number = 0;
    for (const std::string& path : exampleRadios()) {
        for (const auto& words : questionsAbout(path, exampleRadios().front())) {
            if (++number % DrivenTool::stride() != 0) {
                continue;
            }
            const Reply reply = replyTo(words);

            const ToolResult result = runTool(commandLineOf(words));

            EXPECT_EQ(result.output, reply.text) << testing::PrintToString(words);
            EXPECT_EQ(result.errors, "");
            EXPECT_EQ(result.status, reply.outcome == Outcome::AnswerIsNo ? answerIsNo : done);
        }
    }
}

const std::string outdoorRadio = "../analysis/radios/outdoor1.json";
const std::string noNeighbour =
    "standard input: the service did not start: Error getting interface to ICapabilityHandler_1";

/// A run of the tool, and what it says.
struct AnsweringRun {
    std::vector<std::string> words;
    std::string input; ///< of standard input
    int status;
    std::string output; ///< the beginning of it, or nothing
    std::string errors; ///< without the tool's name in front
};

const std::vector<AnsweringRun> answeringRuns{
    {{"table", "-"}, contentOf(outdoorRadio), done, "Radio file          standard input\n", ""},
    {{"table", "-"},
     "\xEF\xBB\xBF" + contentOf(outdoorRadio),
     done,
     "Radio file          standard input\n",
     ""},
    {{"why-not", outdoorRadio, "4QAM_STRONG", "--", "-3.5"},
     "",
     done,
     "4QAM_STRONG gets 22.50 dBm",
     ""},
    {{"why-not", outdoorRadio, "512QAM", "1"}, "", answerIsNo, "512QAM gets no power", ""},
    {{"diff", outdoorRadio, "-"},
     contentOf(outdoorRadio),
     done,
     "A  " + outdoorRadio + "\nB  standard input\n",
     ""},
    {{"diff", "-", outdoorRadio},
     contentOf(outdoorRadio),
     done,
     "A  standard input\nB  " + outdoorRadio + '\n',
     ""},
    {{"check", "-"}, contentOf(outdoorRadio), answerIsNo, "standard input:8:5: hint: ", ""},
    {{"sweep", "-", "--over", "dpd"},
     "{}",
     badRadioFile,
     "",
     "standard input: /channel: required key is missing"},
    {{"sweep", "-", "--over", "dpd"}, R"({"channel": 1})", serviceDidNotStart, "", noNeighbour},
    {{"diff", outdoorRadio, "-"}, R"({"channel": 1})", serviceDidNotStart, "", noNeighbour},
    {{"explain", outdoorRadio, "--frame-format", "8"},
     "",
     otherTrouble,
     "Radio file ",
     outdoorRadio + ": no powers: the highest code of the frame format has no modulation"},
};

TEST(AnsweringCommands, SayWhatCameOfTheQuestion) {
    for (const AnsweringRun& run : answeringRuns) {
        const ToolResult result = ToolProcess(run.words).withInput(run.input).run();

        SCOPED_TRACE(testing::PrintToString(run.words));
        EXPECT_EQ(result.status, run.status);
        EXPECT_EQ(result.errors, run.errors.empty() ? "" : "qor-power: " + run.errors + '\n');
        EXPECT_TRUE(result.output.starts_with(run.output)) << result;
        EXPECT_EQ(result.output.empty(), run.output.empty()) << result;
    }
}

} // namespace
