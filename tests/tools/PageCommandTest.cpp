#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace {

constexpr const char* pageHead = "<html>\n<script type=\"application/json\" id=\"report\">";
constexpr const char* pageFoot = "</script>\n<script>run()</script>\n";

/// A folder with a page as the tool takes it: what stands around the report counts nothing.
class PageCommand : public testing::Test {
protected:
    PageCommand()
        : m_folder(std::filesystem::temp_directory_path() /
                   ("qor-power-page-" +
                    std::string(testing::UnitTest::GetInstance()->current_test_info()->name()))) {
        std::filesystem::remove_all(m_folder);
        std::filesystem::create_directory(m_folder);
        put("page.html", std::string(pageHead) + pageFoot);
    }
    ~PageCommand() override { std::filesystem::remove_all(m_folder); }

    std::string pathTo(const std::string& name) const { return (m_folder / name).string(); }

    void put(const std::string& name, const std::string& content) const {
        std::ofstream(pathTo(name), std::ios::binary) << content;
    }

    std::string contentFrom(const std::string& name) const {
        std::ifstream file(pathTo(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    ToolResult report(std::vector<std::string> words) const {
        words.insert(words.begin(), "report");
        words.insert(words.end(), {"--page", pathTo("page.html")});
        return ToolProcess(words).inFolder(m_folder).run();
    }

    /// What the report holds between head and foot of the page.
    std::string blockIn(const std::string& name) const {
        const std::string whole = contentFrom(name);
        const std::string head = pageHead;
        const std::string foot = pageFoot;
        EXPECT_TRUE(whole.starts_with(head) && whole.ends_with(foot)) << whole;
        return whole.substr(head.size(), whole.size() - head.size() - foot.size());
    }

    std::filesystem::path m_folder;
};

TEST_F(PageCommand, AReportHoldsTheFileAndTheQuestion) {
    put("radio.json", "{\"channel\": 1}\n");

    const ToolResult result =
        report({"radio.json", "--cutback", "3", "--frame-format", "2", "--request", "1", "--set",
                "/a=1", "--code", "64QAM", "--power", "18", "-o", "report.html"});

    EXPECT_EQ(result.status, 0) << result;
    EXPECT_EQ(result.output + result.errors, "");
    EXPECT_EQ(nlohmann::json::parse(blockIn("report.html")), nlohmann::json::parse(R"({
                  "files": [{"name": "radio.json", "text": "{\"channel\": 1}\n"}],
                  "changes": [{"input": "frame-format", "value": "2"},
                              {"input": "request", "value": "1"},
                              {"input": "cutback", "value": "3"},
                              {"input": "set", "value": "/a=1"}],
                  "tab": "why-not", "code": "64QAM", "wanted": "18"})"));
}

TEST_F(PageCommand, NothingInAFileEndsTheBlockOfData) {
    // The last three bytes are a lone surrogate, which is no UTF-8.
    const std::string attack =
        "</script><script>alert(1)</script><!-- <img onerror=x> \\ud800 \xed\xa0\x80";
    put("attack.json", attack);

    ASSERT_EQ(report({"attack.json", "-o", "report.html"}).status, 0);

    const std::string block = blockIn("report.html");
    EXPECT_EQ(block.find('<'), std::string::npos) << block;
    const std::string text = nlohmann::json::parse(block).at("files").at(0).at("text");
    EXPECT_EQ(text.substr(0, attack.size() - 3), attack.substr(0, attack.size() - 3));
}

TEST_F(PageCommand, MoreThanTwoFilesAndAListAreAFleet) {
    std::filesystem::create_directory(m_folder / "site");
    put("a.json", "{}");
    put("site/a.json", "{ }");
    put("list.txt", "n1\tsite/a.json\n{\"channel\": 1}\na.json\n");

    ASSERT_EQ(report({"a.json", "site/a.json", "a.json", "-o", "three.html"}).status, 0);
    ASSERT_EQ(report({"--list", "list.txt", "-o", "list.html"}).status, 0);

    EXPECT_EQ(nlohmann::json::parse(blockIn("three.html")).at("fleet"),
              nlohmann::json::parse(R"([{"name": "a.json", "path": "a.json", "text": "{}"},
                                        {"name": "site/a.json", "path": "site/a.json", "text": "{ }"},
                                        {"name": "a.json", "path": "a.json", "text": "{}"}])"));
    EXPECT_EQ(nlohmann::json::parse(blockIn("list.html")).at("fleet"),
              nlohmann::json::parse(R"([{"name": "n1", "path": "site/a.json", "text": "{ }"},
                                        {"name": "line 2", "path": "", "text": "{\"channel\": 1}"},
                                        {"name": "a.json", "path": "a.json", "text": "{}"}])"));
}

TEST_F(PageCommand, ALogIsTakenAsItIs) {
    put("node.log", "one\ntwo\n");

    ASSERT_EQ(report({"--trace-log", "node.log", "-o", "log.html"}).status, 0);

    EXPECT_EQ(nlohmann::json::parse(blockIn("log.html")),
              nlohmann::json::parse(R"({"log": {"name": "node.log", "text": "one\ntwo\n"}})"));
}

TEST_F(PageCommand, AFileThatIsThereIsLeftAloneUnlessForced) {
    put("radio.json", "{}");
    put("report.html", "of yesterday");

    EXPECT_EQ(report({"radio.json", "-o", "report.html"}).status, 4);
    EXPECT_EQ(contentFrom("report.html"), "of yesterday");

    EXPECT_EQ(report({"radio.json", "-o", "report.html", "--force"}).status, 0);
    EXPECT_NE(contentFrom("report.html"), "of yesterday");
}

TEST_F(PageCommand, WhatCannotBeReportedLeavesNothing) {
    put("radio.json", "{}");
    put("list.txt", "{}\n");
    const std::vector<std::vector<std::string>> refused{
        {"no-such-file.json"},
        {"radio.json", "--power", "abc"},
        {"radio.json", "--over", "nonsense=1"},
        {"radio.json", "--code", "nonsense"},
        {"--list", "list.txt", "--cutback", "3"},
        {"--list", "list.txt", "--code", "64QAM"},
        {"radio.json", "radio.json", "radio.json", "--cutback", "3"},
        {"radio.json", "radio.json", "--power", "20"},
        {"radio.json", "--cutback", "x"},
        {},
        {"radio.json", "--list", "radio.json"},
        {"--list", "no-such-list.txt"}};
    for (std::vector<std::string> words : refused) {
        words.insert(words.end(), {"-o", "report.html"});
        const ToolResult result = report(words);
        EXPECT_EQ(result.status, 4) << result;
        EXPECT_TRUE(result.hasOneErrorLine()) << result;
        EXPECT_FALSE(std::filesystem::exists(pathTo("report.html")));
    }
    const ToolResult noPage = ToolProcess({"report", pathTo("radio.json"), "-o",
                                           pathTo("report.html"), "--page", pathTo("radio.json")})
                                  .run();
    EXPECT_EQ(noPage.status, 4);
    EXPECT_NE(noPage.errors.find("is no page of qor-power"), std::string::npos) << noPage;
}

TEST_F(PageCommand, ThePageIsCopiedOrSaidToBeMissing) {
    ASSERT_EQ(runTool({"page", "--page", pathTo("page.html"), "-o", pathTo("copy.html")}).status,
              0);
    EXPECT_EQ(contentFrom("copy.html"), contentFrom("page.html"));

    // Only an installation has a page where the tool looks for one, and that is named.
    const ToolResult installed = runTool({"page"});
    const std::string found = installed.output.substr(0, installed.output.find('\n'));
    const bool isFound = std::filesystem::is_regular_file(found);
    EXPECT_EQ(installed.status, isFound ? 0 : 4) << installed;
    EXPECT_EQ(installed.hasOneErrorLine(), !isFound) << installed;
    EXPECT_EQ(installed.errors.find("install the package qor-power-page") == std::string::npos,
              isFound)
        << installed;
}

} // namespace
