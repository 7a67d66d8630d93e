#include "RadioFileReader.h"
#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// Every command that reads a radio file treats a bad one alike.
class BadInput : public testing::TestWithParam<const char*> {
protected:
    ToolResult runWith(const std::string& input) const {
        return ToolProcess({GetParam(), "-"}).withInput(input).run();
    }

    /// The tool's line for a document.
    std::string lineFor(const std::string& input) const {
        const ToolResult result = runWith(input);
        EXPECT_EQ(result.status, badRadioFile) << result;
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(result.hasOneErrorLine()) << result;
        return result.errors;
    }
};

INSTANTIATE_TEST_SUITE_P(Commands, BadInput, testing::Values("table", "replay"));

/// Whether a line begins with a place and goes on with a text somewhere.
testing::AssertionResult says(const std::string& line, const std::string& place,
                              const std::string& text) {
    const std::string beginning = "qor-power: standard input: " + place + ": ";
    if (line.starts_with(beginning) && line.find(text) != std::string::npos) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << line;
}

TEST_P(BadInput, ATruncatedDocumentIsPlacedByLineAndColumn) {
    EXPECT_TRUE(says(lineFor("{\"channel\": 1,\n \"board\": "), "2:11", "end of input"));
}

TEST_P(BadInput, AnEmptyDocument) {
    EXPECT_TRUE(says(lineFor(""), "1:1", "end of input"));
}

TEST_P(BadInput, AnUnknownKeyIsAnsweredWithTheNearest) {
    EXPECT_TRUE(says(lineFor(R"({"channel": 1, "acmHandeler": {}})"), "/acmHandeler",
                     "did you mean \"acmHandler\"?"));
}

TEST_P(BadInput, AWrongType) {
    EXPECT_TRUE(says(lineFor(R"({"channel": "1"})"), "/channel", "integer"));
    EXPECT_TRUE(says(lineFor(R"({"channel": 1.0})"), "/channel", "1.0"));
}

TEST_P(BadInput, ANumberOutOfRange) {
    EXPECT_TRUE(says(lineFor(R"({"channel": 4294967296})"), "/channel", "4294967295"));
    EXPECT_TRUE(says(lineFor(R"({"channel": 1, "capabilityHandler":
                                 {"minOutputPower": -2147483649}})"),
                     "/capabilityHandler/minOutputPower", "-2147483648"));
}

TEST_P(BadInput, AMissingKey) {
    EXPECT_TRUE(says(lineFor("{}"), "/channel", "missing"));
}

TEST_P(BadInput, AKeyGivenTwice) {
    EXPECT_TRUE(says(lineFor(R"({"channel": 1, "channel": 2})"), "/channel", "twice"));
}

TEST_P(BadInput, BytesThatAreNoUtf8) {
    EXPECT_TRUE(says(lineFor("{\"channel\": 1, \"caf\xE9\": 1}"), "1:21", "UTF-8"));
}

TEST_P(BadInput, ANulByte) {
    using namespace std::string_literals;
    const std::string line = lineFor("{\"channel\": 1}\0"s);

    EXPECT_EQ(line.find('\0'), std::string::npos);
}

TEST_P(BadInput, NestingThatIsTooDeep) {
    const std::string deep = "{\"channel\": " + std::string(100000, '[');

    EXPECT_NE(lineFor(deep).find("64"), std::string::npos) << lineFor(deep);
}

TEST_P(BadInput, ALineEndInAKeyDoesNotEndTheLine) {
    EXPECT_TRUE(says(lineFor(R"({"channel": 1, "a\nb": 1})"), "/a\\u000ab", "unknown"));
}

TEST_P(BadInput, ABadPatchIsFoundBeforeAnythingIsPlayed) {
    const std::string line = lineFor(R"({"channel": 1, "requests": [
        {"call": "patch", "file": {"variables": 1}}]})");

    EXPECT_TRUE(says(line, "/requests/0/file/variables", "object"));
}

TEST_P(BadInput, OneByteMoreThanTheLargestSizeIsRefused) {
    EXPECT_TRUE(says(lineFor(std::string(RadioFileReader::maxSize + 1, ' ')), "(document)",
                     std::to_string(RadioFileReader::maxSize) + " bytes"));
}

TEST_P(BadInput, WithoutAnEndIsRefusedToo) {
    const ToolResult result = runTool({GetParam(), "/dev/zero"});

    EXPECT_EQ(result.status, badRadioFile) << result;
    EXPECT_TRUE(result.hasOneErrorLine()) << result;
}

TEST_P(BadInput, OfTheLargestSizeIsReadToItsEnd) {
    const std::string document = R"({"channel": 1, "unknown": 1})";
    const std::string padding(RadioFileReader::maxSize - document.size(), ' ');

    EXPECT_TRUE(says(lineFor(padding + document), "/unknown", "unknown"));
}

class UnreadablePath : public testing::TestWithParam<const char*> {
protected:
    ToolResult runOn(const std::string& path) const { return runTool({GetParam(), path}); }
};

INSTANTIATE_TEST_SUITE_P(Commands, UnreadablePath, testing::Values("table", "replay"));

TEST_P(UnreadablePath, OfNothing) {
    const ToolResult result = runOn("radios/nothing.json");

    EXPECT_EQ(result.errors,
              "qor-power: radios/nothing.json: cannot be read: No such file or directory\n");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST_P(UnreadablePath, OfAFolder) {
    const ToolResult result = runOn("radios");

    EXPECT_EQ(result.errors, "qor-power: radios: cannot be read: Is a directory\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST_P(UnreadablePath, WithALineEndIsShownOnOneLine) {
    const ToolResult result = runOn("no\nsuch\xFF");

    EXPECT_EQ(result.errors,
              "qor-power: no\\nsuch\\xff: cannot be read: No such file or directory\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST_P(UnreadablePath, WithoutAnyText) {
    const ToolResult result = runOn("");

    EXPECT_EQ(result.errors, "qor-power: : cannot be read: No such file or directory\n");
    EXPECT_EQ(result.status, otherTrouble);
}

} // namespace
