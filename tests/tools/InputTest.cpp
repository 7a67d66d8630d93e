#include "RadioFileReader.h"
#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using namespace std::string_literals;

/// A document that is no radio file, and what the tool says of it. What else can be wrong with one
/// is tested in tests/desk.
struct BadDocument {
    std::string text;
    std::string place; ///< the beginning of the line, behind the file's name
    std::string words; ///< somewhere in the line
};

const std::vector<BadDocument> badDocuments{
    {"", "1:1", "end of input"},
    {"{\"channel\": 1,\n \"board\": ", "2:11", "end of input"},
    {"{}", "/channel", "missing"},
    {R"({"channel": 1, "acmHandeler": {}})", "/acmHandeler", "did you mean \"acmHandler\"?"},
    {R"({"channel": 4294967296})", "/channel", "4294967295"},
    {R"({"channel": 1, "a\nb": 1})", "/a\\u000ab", "unknown"},
    {"{\"channel\": 1, \"caf\xE9\": 1}", "1:21", "UTF-8"},
    {"{\"channel\": 1}\0"s, "1:15", ""},
    {"{\"channel\": " + std::string(100000, '['), "", "64"},
    // Found before anything is played.
    {R"({"channel": 1, "requests": [{"call": "patch", "file": {"variables": 1}}]})",
     "/requests/0/file/variables", "object"},
    {std::string(RadioFileReader::maxSize + 1, ' '), "(document)",
     std::to_string(RadioFileReader::maxSize) + " bytes"},
    // Of the largest size, and read to its end.
    {std::string(RadioFileReader::maxSize - 28, ' ') + R"({"channel": 1, "unknown": 1})",
     "/unknown", "unknown"},
};

const std::vector<std::string> readingCommands{"table", "replay"};

TEST(Input, ThatIsNoRadioFileIsSaidInOneLine) {
    for (const std::string& command : readingCommands) {
        for (const BadDocument& bad : badDocuments) {
            const ToolResult result = ToolProcess({command, "-"}).withInput(bad.text).run();

            SCOPED_TRACE(command + ' ' + bad.text.substr(0, 60));
            EXPECT_EQ(result.status, badRadioFile);
            EXPECT_EQ(result.output, "");
            EXPECT_TRUE(result.hasOneErrorLine()) << result;
            EXPECT_TRUE(result.errors.starts_with("qor-power: standard input: " + bad.place))
                << result;
            EXPECT_NE(result.errors.find(bad.words), std::string::npos) << result;
            EXPECT_EQ(result.errors.find('\0'), std::string::npos);
        }
    }
}

TEST(Input, WithoutAnEndIsRefused) {
    for (const std::string& command : readingCommands) {
        const ToolResult result = runTool({command, "/dev/zero"});

        EXPECT_EQ(result.status, badRadioFile) << result;
        EXPECT_TRUE(result.hasOneErrorLine()) << result;
    }
}

TEST(Input, ThatCannotBeReadIsSaidInOneLine) {
    for (const std::string& command : readingCommands) {
        for (const auto& [path, errors] : std::vector<std::pair<std::string, std::string>>{
                 {"nothing.json", "nothing.json: cannot be read: No such file or directory"},
                 {"golden", "golden: cannot be read: Is a directory"},
                 {"no\nsuch\xFF", "no\\nsuch\\xff: cannot be read: No such file or directory"},
                 {"", ": cannot be read: No such file or directory"}}) {
            const ToolResult result = runTool({command, path});

            EXPECT_EQ(result.errors, "qor-power: " + errors + '\n');
            EXPECT_EQ(result.output, "");
            EXPECT_EQ(result.status, otherTrouble);
        }
    }
}

} // namespace
