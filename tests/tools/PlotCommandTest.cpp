#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::string contentAt(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

ToolResult plot(const std::string& file, std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"plot", file});
    return runTool(options);
}

/// The SVG of a radio.
std::string svgOf(const std::string& file, std::vector<std::string> options = {}) {
    options.insert(options.end(), {"-o", "-"});
    const ToolResult result = plot(file, options);
    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.errors, "");
    return result.output;
}

/// A folder that goes with the test.
class PlotFile : public testing::Test {
protected:
    PlotFile() {
        std::string name = (fs::temp_directory_path() / "qor-plot-XXXXXX").string();
        m_folder = ::mkdtemp(name.data());
    }
    ~PlotFile() override { fs::remove_all(m_folder); }

    std::string path(const std::string& name) const { return (m_folder / name).string(); }
    std::string folder() const { return m_folder.string(); }
    bool isFolderEmpty() const { return fs::is_empty(m_folder); }

private:
    fs::path m_folder;
};

TEST(PictureOfTheManual, IsWhatTheToolDraws) {
    const std::string radios = QOR_EXAMPLE_RADIOS;
    const std::string pictures = QOR_PROJECT "/docs/reference/pictures/";

    EXPECT_EQ(svgOf(radios + "/18ghz-ansi-high-radio-unit-new-booster.json", {"--cutback", "1"}),
              contentAt(pictures + "powers.svg"));
    EXPECT_EQ(svgOf(radios + "/13ghz-etsi-outdoor3.json", {"--over", "rsec"}),
              contentAt(pictures + "powers-over-rsec.svg"));
}

TEST(Picture, HasTheTitleThatIsGiven) {
    const std::string radio = "../analysis/radios/outdoor1.json";

    EXPECT_NE(svgOf(radio, {"--title", "Mast <7>"}).find(">Mast &lt;7&gt;</text>"),
              std::string::npos);
    EXPECT_TRUE(plot(radio, {"--title", "Mast <7>"}).output.starts_with("Mast <7>\n"));
}

TEST_F(PlotFile, HoldsThePicture) {
    const ToolResult result = plot("../analysis/radios/outdoor1.json", {"-o", path("radio.svg")});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(contentAt(path("radio.svg")), svgOf("../analysis/radios/outdoor1.json"));
}

TEST_F(PlotFile, KeepsItsPermissionsWhenItIsReplaced) {
    const fs::perms readByTheGroup =
        fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    std::ofstream(path("radio.svg")) << "before";
    fs::permissions(path("radio.svg"), readByTheGroup);

    const ToolResult result = plot("../analysis/radios/outdoor1.json", {"-o", path("radio.svg")});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(contentAt(path("radio.svg")), svgOf("../analysis/radios/outdoor1.json"));
    EXPECT_EQ(fs::status(path("radio.svg")).permissions(), readByTheGroup);
}

TEST_F(PlotFile, IsNotWrittenUnlessItIsNamed) {
    const ToolResult result =
        ToolProcess({"plot", std::string(QOR_TOOL_TESTS) + "/../analysis/radios/outdoor1.json"})
            .inFolder(folder())
            .run();

    EXPECT_EQ(result.status, done) << result;
    EXPECT_TRUE(isFolderEmpty());
}

TEST_F(PlotFile, StaysAsItWasWhenThereIsNothingToDraw) {
    std::ofstream(path("radio.svg")) << "before";

    const ToolResult bad =
        ToolProcess({"plot", "-", "-o", path("radio.svg")}).withInput("{}").run();
    const ToolResult failed = plot("../analysis/radios/outdoor1.json",
                                   {"--frame-format", "5", "--output", path("radio.svg")});

    EXPECT_EQ(bad.status, badRadioFile) << bad;
    EXPECT_EQ(failed.status, otherTrouble) << failed;
    EXPECT_EQ(failed.errors, "qor-power: ../analysis/radios/outdoor1.json: no powers: the hardware "
                             "configuration has no frame format 5; it has 7, 8, 9\n");
    EXPECT_EQ(contentAt(path("radio.svg")), "before");
}

TEST_F(PlotFile, ThatCannotBeWrittenIsATrouble) {
    const std::string below = path("missing/radio.svg");
    const ToolResult missing = plot("../analysis/radios/outdoor1.json", {"-o", below});
    EXPECT_EQ(missing.status, otherTrouble) << missing;
    EXPECT_EQ(missing.errors,
              "qor-power: " + below + ": cannot be written: No such file or directory\n");
    EXPECT_TRUE(isFolderEmpty());

    const ToolResult full = plot("../analysis/radios/outdoor1.json", {"-o", "/dev/full"});
    EXPECT_EQ(full.status, otherTrouble) << full;
    EXPECT_EQ(full.errors, "qor-power: /dev/full: cannot be written: No space left on device\n");

    const ToolResult folderItself = plot("../analysis/radios/outdoor1.json", {"-o", folder()});
    EXPECT_EQ(folderItself.status, otherTrouble) << folderItself;
    EXPECT_TRUE(folderItself.hasOneErrorLine()) << folderItself;
}

/// How many columns a text takes on a terminal, colours apart.
std::ptrdiff_t widestLineOf(const std::string& text) {
    static const std::regex colour("\x1b\\[[0-9;]*m");
    std::istringstream lines(std::regex_replace(text, colour, ""));
    std::ptrdiff_t widest = 0;
    for (std::string line; std::getline(lines, line);) {
        const auto width = std::count_if(line.begin(), line.end(), [](char byte) {
            return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
        });
        widest = std::max(widest, width);
    }
    return widest;
}

TEST(PlotInTheTerminal, FillsTheTerminalAndIsColoured) {
    const ToolResult result =
        ToolProcess({"plot", "../analysis/radios/outdoor1.json"}).withOutputOnTerminal().run();

    EXPECT_EQ(result.status, done) << result;
    EXPECT_NE(result.output.find("\x1b["), std::string::npos) << result;
    EXPECT_GT(widestLineOf(result.output), 90) << result;
    EXPECT_LE(widestLineOf(result.output), 100) << result;
}

TEST(PlotInTheTerminal, IsColouredOnlyWhenAskedWhereThereIsNoTerminal) {
    const std::string escape = "\x1b[";

    EXPECT_EQ(plot("../analysis/radios/outdoor1.json").output.find(escape), std::string::npos);
    EXPECT_NE(plot("../analysis/radios/outdoor1.json", {"--color", "always"}).output.find(escape),
              std::string::npos);
}

} // namespace
