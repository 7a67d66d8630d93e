#include "ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

// The powers are those that tests/analysis/facts/table.json works out by hand.

namespace {

constexpr int badLine = 2;

std::vector<nlohmann::json> documentsOf(const std::string& text) {
    std::vector<nlohmann::json> documents;
    for (const std::string& line : linesOf(text)) {
        documents.push_back(nlohmann::json::parse(line));
    }
    return documents;
}

ToolResult runBatch(const std::string& input, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), "batch");
    return ToolProcess(arguments).withInput(input).run();
}

/// A radio file as a list may hold it: on one line.
std::string onOneLine(const std::string& path) {
    return nlohmann::json::parse(contentOf(path), nullptr, true, true).dump();
}

TEST(Batch, AnswersEveryLineInItsPlace) {
    const ToolResult result = runBatch("../analysis/radios/outdoor1.json\n"
                                       "../analysis/radios/radio-unit-booster.json\n");

    EXPECT_EQ(result.status, done) << result;
    const std::vector<nlohmann::json> answers = documentsOf(result.output);
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_EQ(answers[0]["radioFile"], "../analysis/radios/outdoor1.json");
    EXPECT_EQ(answers[1]["radioFile"], "../analysis/radios/radio-unit-booster.json");
    EXPECT_TRUE(answers[0]["error"].is_null());
    EXPECT_TRUE(answers[0]["place"].is_null());
    EXPECT_EQ(answers[0]["minPowerCentiDbm"], -750);
}

TEST(Batch, SaysOfEveryCodeThePowerAndTheRuleThatDecides) {
    const ToolResult result = runBatch("../analysis/radios/outdoor1.json\n");

    const nlohmann::json rows = documentsOf(result.output).at(0)["rows"];
    ASSERT_EQ(rows.size(), 6U);
    EXPECT_EQ(rows[2]["name"], "16QAM");
    EXPECT_EQ(rows[2]["maxPowerCentiDbm"], 2250);
    EXPECT_EQ(rows[2]["rule"], "offset-table");
    EXPECT_EQ(rows[3]["maxPowerCentiDbm"], 2100);
    EXPECT_EQ(rows[3]["rule"], "pmax-row");
    EXPECT_TRUE(rows[5]["maxPowerCentiDbm"].is_null());
    EXPECT_EQ(rows[5]["rule"], "hardware-limit");
}

TEST(Batch, TakesARadioFileThatStandsInTheLine) {
    const ToolResult byPath = runBatch("../analysis/radios/outdoor1.json\n", {"--quiet"});
    const ToolResult inLine =
        runBatch(onOneLine("../analysis/radios/outdoor1.json") + '\n', {"--quiet"});

    nlohmann::json expected = documentsOf(byPath.output).at(0);
    expected["radioFile"] = nullptr;
    EXPECT_EQ(documentsOf(inLine.output).at(0), expected);
}

TEST(Batch, GivesTheIdOfALineBack) {
    const ToolResult result = runBatch("node 17\t../analysis/radios/outdoor1.json\n"
                                       "node 18\t" +
                                       onOneLine("../analysis/radios/outdoor1.json") +
                                       "\n"
                                       "node 19\tno-such-file.json\n"
                                       "\t../analysis/radios/outdoor1.json\n");

    const std::vector<nlohmann::json> answers = documentsOf(result.output);
    ASSERT_EQ(answers.size(), 4U);
    EXPECT_EQ(answers[0]["id"], "node 17");
    EXPECT_EQ(answers[1]["id"], "node 18");
    EXPECT_EQ(answers[1]["rows"], answers[0]["rows"]);
    EXPECT_EQ(answers[2]["id"], "node 19");
    EXPECT_EQ(answers[2]["radioFile"], "no-such-file.json");
    EXPECT_TRUE(answers[3]["id"].is_null());
    EXPECT_EQ(answers[3]["rows"], answers[0]["rows"]);
}

TEST(Batch, ReadsAListThatIsAFile) {
    const ToolResult result = runTool({"batch", "list.txt", "--quiet"});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(documentsOf(result.output).size(), 2U);
    EXPECT_EQ(result.errors, "");
}

TEST(Batch, TakesTheQuerysOptions) {
    // The temporary cutback of 5.50 dB: 256QAM is min(18.00, 16.50).
    const ToolResult result =
        runBatch("../analysis/radios/outdoor1.json\n", {"--temporary-cutback", "5.5"});

    EXPECT_EQ(documentsOf(result.output).at(0)["rows"][4]["maxPowerCentiDbm"], 1650);
}

/// A line that is no radio, and what the answer says of it.
struct BadLine {
    const char* what;
    std::string line;
    std::string error; ///< the beginning of it
    nlohmann::json place = nullptr;
};

void PrintTo(const BadLine& bad, std::ostream* stream) {
    *stream << bad.what;
}

class BatchBadLine : public testing::TestWithParam<BadLine> {};

TEST_P(BatchBadLine, IsAnsweredInItsPlaceAndCounted) {
    const ToolResult result = runBatch("../analysis/radios/outdoor1.json\n" + GetParam().line +
                                       "\n../analysis/radios/outdoor1.json\n");

    EXPECT_EQ(result.status, badLine) << result;
    const std::vector<nlohmann::json> answers = documentsOf(result.output);
    ASSERT_EQ(answers.size(), 3U) << result;
    EXPECT_TRUE(answers[0]["error"].is_null());
    EXPECT_TRUE(answers[1]["error"].get<std::string>().starts_with(GetParam().error))
        << answers[1]["error"];
    EXPECT_EQ(answers[1]["place"], GetParam().place);
    EXPECT_EQ(answers[2], answers[0]);
    EXPECT_TRUE(result.errors.starts_with("qor-power: 3 lines: 2 nodes, 1 bad\n")) << result;
}

INSTANTIATE_TEST_SUITE_P(
    Lines, BatchBadLine,
    testing::Values(
        BadLine{"Empty", "", "an empty line"},
        BadLine{"NoSuchFile", "no-such-file.json",
                "no-such-file.json: cannot be read: No such file or directory"},
        BadLine{"Folder", "golden", "golden: cannot be read: Is a directory"},
        BadLine{"AHyphenIsAFileToo", "-", "./-: cannot be read: No such file or directory"},
        BadLine{"NoDocument", R"({"channel": )", "syntax error", "1:13"},
        BadLine{"UnknownKey", R"({"chanel": 1})", "unknown key; did you mean \"channel\"?",
                "/chanel"},
        BadLine{"ServiceDoesNotStart", R"({"channel": 1})", "the service did not start"},
        BadLine{"Nul", std::string("list.txt\0x", 10), "cannot be read: a path"},
        BadLine{"TooLong", '{' + std::string(std::size_t{2} << 20, ' '),
                "longer than 2097152 bytes"}),
    [](const auto& test) { return std::string(test.param.what); });

TEST(Batch, KeepsTheHeadingOfANodeWhoseQueryFails) {
    // Of the two radios only the first one has a frame format 7.
    const ToolResult result =
        runBatch("../analysis/radios/outdoor1.json\n../analysis/radios/radio-unit-booster.json\n",
                 {"--frame-format", "7"});

    EXPECT_EQ(result.status, badLine) << result;
    const std::vector<nlohmann::json> answers = documentsOf(result.output);
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_TRUE(answers[0]["error"].is_null());
    EXPECT_TRUE(answers[1]["error"].get<std::string>().starts_with(
        "no powers: the hardware configuration has no frame format 7"))
        << answers[1]["error"];
    EXPECT_TRUE(answers[1]["minPowerCentiDbm"].is_null());
    EXPECT_TRUE(answers[1].contains("productNumber"));
}

TEST(Batch, TellsAtTheEndHowManyNodesEachRuleLimits) {
    // Each outdoor1.json: 3 codes by the offset table, 2 by the Pmax row, 1 above the radio's
    // highest modulation. The cutback lowers the first 5.
    const ToolResult result =
        runBatch("../analysis/radios/outdoor1.json\n../analysis/radios/outdoor1.json\n\n");

    EXPECT_EQ(result.errors,
              "qor-power: 3 lines: 2 nodes, 1 bad\n"
              "qor-power: Bad because                Lines\n"
              "qor-power: no radio file on the line      1\n"
              "qor-power: Limited by         Nodes  Codes  In words\n"
              "qor-power: pmax-row               2      4  Pmax of the modulation\n"
              "qor-power: permanent-cutback      2     10  permanent cutback\n"
              "qor-power: offset-table           2      6  offset table of the family\n"
              "qor-power: hardware-limit         2      2  highest modulation of the "
              "radio\n");
}

TEST(Batch, OfNothingIsNothing) {
    const ToolResult result = runBatch("");

    EXPECT_EQ(result.status, done);
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "qor-power: 0 lines: 0 nodes, 0 bad\n");
}

TEST(Batch, AndCheckTellARadioFileThatIsNoList) {
    const std::string radio = "../analysis/radios/outdoor1.json";
    const std::string words =
        "qor-power: " + radio +
        ": this is a radio file itself; a list has the path of one on each line\n";

    EXPECT_TRUE(runTool({"batch", radio}).errors.ends_with(words));
    EXPECT_TRUE(runTool({"check", "--list", radio}).errors.ends_with(words));
    EXPECT_EQ(runTool({"batch", "list.txt"}).errors.find("itself"), std::string::npos);
    EXPECT_EQ(runTool({"check", "--list", "list.txt"}).errors.find("itself"), std::string::npos);
}

TEST(Batch, NeedsNoLineEndBehindTheLastLine) {
    EXPECT_EQ(runBatch("../analysis/radios/outdoor1.json").output,
              runBatch("../analysis/radios/outdoor1.json\n").output);
}

TEST(Batch, TakesTheLineEndsOfOtherSystems) {
    EXPECT_EQ(runBatch("../analysis/radios/outdoor1.json\r\n").output,
              runBatch("../analysis/radios/outdoor1.json\n").output);
}

/// The fields of a line of comma-separated values without quotation marks.
std::vector<std::string> fieldsOf(const std::string& line) {
    std::istringstream stream(line + ',');
    std::vector<std::string> fields;
    for (std::string field; std::getline(stream, field, ',');) {
        fields.push_back(field);
    }
    return fields;
}

TEST(BatchCsv, HasAColumnForEachCode) {
    const ToolResult result =
        runBatch("node 17\t../analysis/radios/outdoor1.json\n", {"--format", "csv"});

    const std::vector<std::string> lines = linesOf(result.output);
    ASSERT_EQ(lines.size(), 2U) << result;
    const std::vector<std::string> names = fieldsOf(lines[0]);
    const std::vector<std::string> fields = fieldsOf(lines[1]);
    ASSERT_EQ(fields.size(), names.size());
    const auto valueOf = [&](const std::string& name) {
        const auto found = std::find(names.begin(), names.end(), name);
        return found == names.end() ? "no " + name
                                    : fields[static_cast<std::size_t>(found - names.begin())];
    };
    EXPECT_EQ(valueOf("id"), "node 17");
    EXPECT_EQ(valueOf("radio_file"), "../analysis/radios/outdoor1.json");
    EXPECT_EQ(valueOf("product_number"), "QZT 846 001");
    EXPECT_EQ(valueOf("channel_spacing_MHz"), "28");
    EXPECT_EQ(valueOf("cutback_dB"), "3.00");
    EXPECT_EQ(valueOf("min_power_dBm"), "-7.50");
    EXPECT_EQ(valueOf("max_power_4QAM_STRONG_dBm"), "22.50");
    EXPECT_EQ(valueOf("max_power_64QAM_dBm"), "21.00");
    EXPECT_EQ(valueOf("max_power_256QAM_dBm"), "19.00");
    EXPECT_EQ(valueOf("max_power_512QAM_dBm"), "");
    EXPECT_EQ(valueOf("max_power_128QAM_dBm"), "");
    EXPECT_EQ(valueOf("rules"), "permanent-cutback:5 offset-table:3 pmax-row:2 hardware-limit:1");
    EXPECT_EQ(valueOf("error"), "");
}

TEST(BatchCsv, AnswersABadLineInItsPlace) {
    const ToolResult result = runBatch("../analysis/radios/outdoor1.json\n"
                                       "{\"chanel\": 1}\n"
                                       "../analysis/radios/outdoor1.json\n",
                                       {"--format", "csv", "--quiet"});

    EXPECT_EQ(result.status, badLine);
    const std::vector<std::string> lines = linesOf(result.output);
    ASSERT_EQ(lines.size(), 4U) << result;
    EXPECT_EQ(lines[1], lines[3]);
    EXPECT_TRUE(lines[2].ends_with(R"(,"unknown key; did you mean ""channel""?",/chanel)"))
        << lines[2];
    EXPECT_EQ(std::count(lines[2].begin(), lines[2].end(), ','),
              std::count(lines[1].begin(), lines[1].end(), ','));
}

TEST(BatchCsv, LeavesTheColumnNamesOutWhereParallelRunsWouldRepeatThem) {
    const std::vector<std::string> lines = linesOf(
        runBatch("../analysis/radios/outdoor1.json\n", {"--format", "csv", "--no-header"}).output);

    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(lines[0].starts_with(",../analysis/radios/outdoor1.json,"));
}

/// A list of many lines, some of them bad.
std::string longList() {
    std::string list;
    for (int number = 0; number < 300; ++number) {
        list +=
            "node " + std::to_string(number) +
            (number % 7 == 0 ? "\tno-such-file.json\n" : "\t../analysis/radios/outdoor1.json\n");
    }
    return list;
}

TEST(BatchJobs, ChangeNoByteOfWhatIsSaid) {
    const ToolResult one = runBatch(longList(), {"--jobs", "1"});
    for (const char* const jobs : {"2", "5"}) {
        const ToolResult several = runBatch(longList(), {"--jobs", jobs});

        EXPECT_EQ(several.output, one.output) << jobs;
        EXPECT_EQ(several.errors, one.errors) << jobs;
        EXPECT_EQ(several.status, one.status) << jobs;
    }
    EXPECT_EQ(documentsOf(one.output).size(), 300U);
}

TEST(BatchForms, ByCodeHaveALineForEachCodeAndOneForABadRadio) {
    const ToolResult result = runBatch(
        "7\t../analysis/radios/outdoor1.json\n8\tno-such-file.json\n", {"--long", "--quiet"});

    const std::vector<nlohmann::json> lines = documentsOf(result.output);
    ASSERT_EQ(lines.size(), 7U) << result;
    EXPECT_EQ(lines[3]["id"], "7");
    EXPECT_EQ(lines[3]["productNumber"], "QZT 846 001");
    EXPECT_EQ(lines[3]["name"], "64QAM");
    EXPECT_EQ(lines[3]["maxPowerCentiDbm"], 2100);
    EXPECT_EQ(lines[3]["rule"], "pmax-row");
    EXPECT_TRUE(lines[3]["error"].is_null());
    EXPECT_EQ(lines[6]["id"], "8");
    EXPECT_TRUE(lines[6]["name"].is_null());
    EXPECT_TRUE(lines[6]["error"].get<std::string>().starts_with("no-such-file.json: cannot"));
}

TEST(BatchForms, HaveTheColumnsThatAreSelectedInTheirOrder) {
    const std::string list = "7\t../analysis/radios/outdoor1.json\n";
    EXPECT_EQ(runBatch(list, {"--quiet", "--select", "minPowerCentiDbm,id"}).output,
              "{\"schema\":\"qor-power/batch/1\",\"minPowerCentiDbm\":-750,\"id\":\"7\"}\n");
    EXPECT_EQ(runBatch(list, {"--quiet", "--select", "id,schema"}).output,
              "{\"id\":\"7\",\"schema\":\"qor-power/batch/1\"}\n");
    EXPECT_EQ(
        runBatch(list, {"--quiet", "--format", "csv", "--select", "max_power_64QAM_dBm,id"}).output,
        "max_power_64QAM_dBm,id\n21.00,7\n");
    EXPECT_TRUE(runBatch(list, {"--quiet", "--format", "csv", "--long", "--select", "id,name,rule"})
                    .output.starts_with("id,name,rule\n7,4QAM_STRONG,offset-table\n"));
    const ToolResult unknown = runBatch(list, {"--select", "id,maxPower"});
    EXPECT_EQ(unknown.status, 4);
    EXPECT_TRUE(unknown.errors.starts_with("qor-power: --select \"maxPower\": unknown")) << unknown;
}

TEST(BatchForms, OfErrorsOnlyLeaveOutWhatIsGood) {
    const ToolResult result = runBatch(longList(), {"--errors-only"});

    const std::vector<nlohmann::json> lines = documentsOf(result.output);
    ASSERT_EQ(lines.size(), 43U);
    EXPECT_EQ(lines[1]["id"], "node 7");
    EXPECT_TRUE(result.errors.starts_with("qor-power: 300 lines: 257 nodes, 43 bad\n")) << result;
}

/// A run that was interrupted: the beginning of its answers in a file.
class BatchResume : public testing::Test {
protected:
    ToolResult resumeWith(const std::string& answers, std::vector<std::string> arguments = {},
                          const std::string& list = longList()) {
        std::ofstream(m_path, std::ios::binary) << answers;
        arguments.insert(arguments.end(), {"--resume", m_path});
        return runBatch(list, arguments);
    }

    std::string answers() const {
        std::ifstream file(m_path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    ~BatchResume() override { std::remove(m_path.c_str()); }

private:
    std::string m_path = testing::TempDir() + "qor-resumed-" + std::to_string(::getpid());
};

TEST_F(BatchResume, GoesOnBehindTheLastWholeLine) {
    for (const char* const format : {"ndjson", "csv"}) {
        const std::string whole = runBatch(longList(), {"--format", format}).output;
        for (const std::size_t size :
             {std::size_t{0}, std::size_t{5}, whole.size() / 2, whole.size() - 1, whole.size()}) {
            const ToolResult result = resumeWith(whole.substr(0, size), {"--format", format});

            EXPECT_EQ(answers(), whole) << format << " cut at " << size << '\n' << result;
            EXPECT_EQ(result.output, "");
        }
    }
}

TEST_F(BatchResume, SaysHowMuchWasAnsweredBefore) {
    const std::string whole = runBatch(longList()).output;
    const std::size_t two = whole.find('\n', whole.find('\n') + 1) + 1;

    EXPECT_TRUE(resumeWith(whole.substr(0, two + 10))
                    .errors.starts_with("qor-power: 2 lines answered before\n"
                                        "qor-power: 298 lines: 256 nodes, 42 bad\n"));
}

TEST_F(BatchResume, RefusesTheAnswersOfAnotherList) {
    const std::string whole = runBatch(longList()).output;
    const std::string withoutFirst = whole.substr(whole.find('\n') + 1);
    const auto isRefused = [this](const ToolResult& result, const std::string& before,
                                  const std::string& why) {
        EXPECT_EQ(result.status, 4);
        EXPECT_NE(result.errors.find("cannot go on: " + why), std::string::npos) << result;
        EXPECT_EQ(answers(), before);
    };
    isRefused(resumeWith(withoutFirst), withoutFirst,
              "its line 299 does not answer line 299 of the list");
    isRefused(resumeWith(whole + whole), whole + whole,
              "it holds more answers than the list has lines");
    isRefused(resumeWith(whole, {"--format", "csv"}), whole,
              "its first line is not that of these columns");
    const std::string half = withoutFirst + "{\"schema\":\"qor";
    isRefused(resumeWith(half), half, "its line 299 does not answer line 299 of the list");
    const std::string other = "{\"channel\": 1}";
    isRefused(resumeWith(other), other, "it holds something else than answers");
    isRefused(resumeWith(other, {"--format", "csv"}), other,
              "it holds something else than answers");
    std::string older = whole;
    const std::string schema = R"("schema":"qor-power/batch/1",)";
    for (std::size_t at = older.find(schema); at != std::string::npos; at = older.find(schema)) {
        older.erase(at, schema.size());
    }
    isRefused(resumeWith(older), older, "its lines do not begin with {" + schema);
    EXPECT_EQ(resumeWith("", {"--errors-only"}).status, 4);
}

TEST_F(BatchResume, GoesOnWithColumnsWithoutNames) {
    const std::vector<std::string> form{"--format", "csv", "--no-header"};
    const std::string whole = runBatch(longList(), form).output;

    resumeWith(whole.substr(0, whole.size() / 2), form);

    EXPECT_EQ(answers(), whole);
}

TEST(BatchOutput, IsNoDeviceThatItCouldGoOnWith) {
    const ToolResult result = runBatch("", {"--resume", "/dev/null"});

    EXPECT_EQ(result.errors, "qor-power: /dev/null: cannot go on: it is no plain file\n");
    EXPECT_EQ(result.status, 4);
}

TEST(BatchProgress, IsShownOnATerminalAndTakenAwayAtTheEnd) {
    const ToolResult result = ToolProcess({"batch"})
                                  .withInput("../analysis/radios/outdoor1.json\n")
                                  .withErrorsOnTerminal()
                                  .run();

    EXPECT_EQ(result.status, done);
    EXPECT_TRUE(result.errors.starts_with("\r1 line, 0 bad, ")) << result;
    EXPECT_NE(result.errors.find(" lines/s\r  "), std::string::npos) << result;
    EXPECT_NE(result.errors.find(" \rqor-power: 1 line: 1 node, 0 bad\n"), std::string::npos)
        << result;
    EXPECT_EQ(documentsOf(result.output).size(), 1U);
}

TEST(BatchProgress, KeepsAwayFromResultsOnTheSameTerminal) {
    const ToolResult result = ToolProcess({"batch"})
                                  .withInput("../analysis/radios/outdoor1.json\n")
                                  .withOutputOnTerminal()
                                  .withErrorsOnTerminal()
                                  .run();

    EXPECT_EQ(result.output.find('\r'), std::string::npos) << result;
}

TEST(BatchProgress, IsNotShownWhereThereIsNoTerminal) {
    const ToolResult result = runBatch("../analysis/radios/outdoor1.json\n");

    EXPECT_TRUE(result.errors.starts_with("qor-power: 1 line: 1 node, 0 bad\n")) << result;
}

TEST(BatchProgress, IsShownThereWhenItIsAskedFor) {
    const ToolResult result = runBatch("../analysis/radios/outdoor1.json\n", {"--progress"});

    EXPECT_TRUE(result.errors.starts_with("qor-power: 1 line, 0 bad, ")) << result;
    EXPECT_EQ(result.errors.find('\r'), std::string::npos);
}

TEST(BatchProgress, AndSummaryStayAwayWhenQuietIsAskedFor) {
    const ToolResult result = ToolProcess({"batch", "--quiet"})
                                  .withInput("../analysis/radios/outdoor1.json\n\n")
                                  .withErrorsOnTerminal()
                                  .run();

    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, badLine);
}

} // namespace
