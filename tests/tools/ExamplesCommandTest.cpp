#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr const char* one = "13ghz-etsi-outdoor1.json";

std::string textOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// A folder of its own for each test, taken away at the end.
class Examples : public testing::Test {
protected:
    Examples()
        : m_folder(fs::temp_directory_path() /
                   ("qor-power-examples-" +
                    std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                    testing::UnitTest::GetInstance()->current_test_info()->name())) {
        fs::remove_all(m_folder);
        fs::create_directory(m_folder);
    }
    ~Examples() override { fs::remove_all(m_folder); }

    ToolResult runHere(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "examples");
        return ToolProcess(arguments).inFolder(m_folder).run();
    }

    std::size_t countOfFiles() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(m_folder), fs::directory_iterator()));
    }

    fs::path m_folder;
};

TEST_F(Examples, AreListedWithWhatTheyAre) {
    const ToolResult result = runHere({});

    EXPECT_EQ(result.status, done);
    EXPECT_EQ(result.errors, "");
    std::set<std::string> expected;
    for (const fs::path& path : fs::directory_iterator(QOR_EXAMPLE_RADIOS)) {
        expected.insert(path.filename());
    }
    std::set<std::string> listed;
    std::istringstream lines(result.output);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t end = line.find(' ');
        listed.insert(line.substr(0, end));
        EXPECT_GT(line.find("GHz"), end) << line;
        EXPECT_NE(line.find("GHz"), std::string::npos) << line;
    }
    EXPECT_EQ(listed, expected);
    EXPECT_EQ(countOfFiles(), 0U);
}

TEST_F(Examples, AreWrittenAsTheyAreInTheSourceTree) {
    const ToolResult result = runHere({"--all"});

    EXPECT_EQ(result.status, done) << result;
    std::size_t count = 0;
    for (const fs::path& path : fs::directory_iterator(QOR_EXAMPLE_RADIOS)) {
        EXPECT_EQ(textOf(m_folder / path.filename()), textOf(path)) << path;
        ++count;
    }
    EXPECT_EQ(countOfFiles(), count);
}

TEST_F(Examples, ArePrintedByName) {
    const ToolResult result = runHere({one});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.output, textOf(fs::path(QOR_EXAMPLE_RADIOS) / one));
    EXPECT_EQ(countOfFiles(), 0U);
}

TEST_F(Examples, AreWrittenToAFolder) {
    fs::create_directory(m_folder / "radios");

    const ToolResult result = runHere({one, "-o", "radios"});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.output, "radios/" + std::string(one) + "\n");
    EXPECT_TRUE(fs::exists(m_folder / "radios" / one));
}

TEST_F(Examples, NeedAFolderThatExists) {
    const ToolResult result = runHere({one, "-o", "radios"});

    EXPECT_EQ(result.errors, "qor-power: radios/" + std::string(one) +
                                 ": cannot be written: No such file or directory\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST_F(Examples, OverwriteNothing) {
    std::ofstream(m_folder / one) << "mine";

    const ToolResult result = runHere({"--all"});

    EXPECT_EQ(result.errors, "qor-power: " + std::string(one) +
                                 ": cannot be written: File exists; --force overwrites it\n");
    EXPECT_EQ(result.status, otherTrouble);
    EXPECT_EQ(textOf(m_folder / one), "mine");
    EXPECT_EQ(countOfFiles(), 1U);
}

TEST_F(Examples, AreNotWrittenTwice) {
    const ToolResult result = runHere({one, one, "-o", "."});

    EXPECT_EQ(result.errors,
              "qor-power: ./" + std::string(one) + ": cannot be written: it is named twice\n");
    EXPECT_EQ(result.status, otherTrouble);
    EXPECT_EQ(countOfFiles(), 0U);
}

TEST_F(Examples, OverwriteWhenTheyAreToldTo) {
    std::ofstream(m_folder / one) << std::string(100000, 'x');

    const ToolResult result = runHere({one, "-o", ".", "--force"});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(textOf(m_folder / one), textOf(fs::path(QOR_EXAMPLE_RADIOS) / one));
}

TEST_F(Examples, AreNamedWhereOneIsUnknown) {
    const ToolResult result = runHere({"13ghz-etsi-outdor1.json"});

    EXPECT_EQ(result.errors, "qor-power: NAME \"13ghz-etsi-outdor1.json\": unknown; did you mean "
                             "\"13ghz-etsi-outdoor1.json\"?\n");
    EXPECT_EQ(result.status, otherTrouble);
}

} // namespace
