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
#include <stdexcept>
#include <string>
#include <vector>

// The powers of the radios are worked out in TableCommandTest.cpp.

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

std::size_t count(const std::string& text, const std::string& part) {
    std::size_t number = 0;
    for (std::size_t place = text.find(part); place != std::string::npos;
         place = text.find(part, place + part.size())) {
        ++number;
    }
    return number;
}

/// What is wrong with a text as XML: tags that do not match, an open quotation, a bare ampersand.
std::string xmlTroubleOf(const std::string& text) {
    std::vector<std::string> open;
    std::size_t place = text.find("?>") + 2;
    while ((place = text.find_first_of("<&", place)) != std::string::npos) {
        const std::size_t end = text.find(text[place] == '<' ? '>' : ';', place);
        if (end == std::string::npos) {
            return "no end of what begins at " + text.substr(place, 40);
        }
        const std::string inside = text.substr(place + 1, end - place - 1);
        if (text[place] == '&') {
            if (inside != "amp" && inside != "lt" && inside != "gt" && inside != "quot") {
                return "unknown entity " + inside.substr(0, 40);
            }
        } else if (count(inside, "\"") % 2 != 0) {
            return "open quotation in " + inside;
        } else if (inside.front() == '/') {
            if (open.empty() || open.back() != inside.substr(1)) {
                return "unexpected end " + inside;
            }
            open.pop_back();
        } else if (inside.back() != '/') {
            open.push_back(inside.substr(0, inside.find(' ')));
        }
        place = end + 1;
    }
    return open.empty() ? "" : "no end of " + open.back();
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

class ExamplePicture : public testing::TestWithParam<std::vector<std::string>> {};

TEST_P(ExamplePicture, IsWellFormedAndHasNoScript) {
    for (const auto& entry : fs::directory_iterator(QOR_EXAMPLE_RADIOS)) {
        const std::string svg = svgOf(entry.path().string(), GetParam());

        EXPECT_EQ(xmlTroubleOf(svg), "") << entry.path();
        EXPECT_TRUE(svg.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns="));
        EXPECT_EQ(svg.find("<script"), std::string::npos);
        EXPECT_EQ(svg.find("href"), std::string::npos);
        EXPECT_EQ(count(svg, "<title id=\"title\">"), 1U);
        EXPECT_EQ(count(svg, "<desc id=\"description\">"), 1U);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, ExamplePicture,
                         testing::Values(std::vector<std::string>{},
                                         std::vector<std::string>{"--over", "rsec"},
                                         std::vector<std::string>{"--over", "cutback"},
                                         std::vector<std::string>{"--over", "channel-spacing"}));

TEST(Picture, ShowsEveryPowerTheMinimumAndTheRules) {
    const std::string svg = svgOf("radios/outdoor1.json");

    EXPECT_EQ(count(svg, ">22.50</text>"), 2U); // 4QAM and 16QAM
    EXPECT_EQ(count(svg, ">21.00</text>"), 1U);
    EXPECT_EQ(count(svg, ">19.00</text>"), 1U);
    EXPECT_EQ(count(svg, ">Minimum power -7.50 dBm</text>"), 1U);
    EXPECT_EQ(count(svg, ">Maximum output power in dBm</text>"), 1U);
    EXPECT_EQ(count(svg, ">Modulation</text>"), 1U);
    EXPECT_EQ(count(svg, ">offset table of the family</text>"), 1U);
    EXPECT_EQ(count(svg, ">Pmax of the modulation</text>"), 1U);
    EXPECT_EQ(count(svg, ">no power: highest modulation of the radio</text>"), 1U);
    // Two bars of each rule and its swatch in the legend.
    EXPECT_EQ(count(svg, "fill=\"url(#rule-offset-table)\""), 3U);
    EXPECT_EQ(count(svg, "fill=\"url(#rule-pmax-row)\""), 3U);
}

TEST(Picture, TellsItsPowersToWhoDoesNotSeeIt) {
    const std::string svg = svgOf("radios/outdoor1.json");

    EXPECT_NE(svg.find("<title id=\"title\">Maximum output power: QZT 846 001 (first outdoor "
                       "family), radio channel 1</title>"),
              std::string::npos)
        << svg;
    EXPECT_NE(svg.find("4QAM 22.50 dBm, limited by offset table of the family; "
                       "16QAM 22.50 dBm, limited by offset table of the family; "
                       "64QAM 21.00 dBm, limited by Pmax of the modulation; "
                       "256QAM 19.00 dBm, limited by Pmax of the modulation; "
                       "512QAM no power, denied by highest modulation of the radio; "
                       "minimum -7.50 dBm. "),
              std::string::npos)
        << svg;
}

TEST(Picture, OfASweepHasALineForEachDifferentValue) {
    // 4L and 4H have the same offsets; 5B and 6B too.
    const std::string svg = svgOf("radios/outdoor1.json", {"--over", "rsec=4L,5B,4H,6B"});

    EXPECT_EQ(count(svg, ">4L, 4H</text>"), 1U) << svg;
    EXPECT_EQ(count(svg, ">5B, 6B</text>"), 1U) << svg;
    EXPECT_EQ(count(svg, ">RSEC</text>"), 1U) << svg;
    EXPECT_EQ(count(svg, ">Binding rule of each line</text>"), 1U) << svg;
}

TEST(Picture, IsTheSameEveryTime) {
    const std::vector<std::string> options = {"--over", "cutback=0..3"};

    EXPECT_EQ(svgOf("radios/outdoor1.json", options), svgOf("radios/outdoor1.json", options));
}

TEST(Picture, EscapesTheTextsOfTheFile) {
    std::string radio = contentOf("radios/outdoor1.json");
    const std::string number = "QZT 846 001";
    radio.replace(radio.find(number), number.size(), R"(<script>&\"'\n\u0007)");

    const ToolResult result = ToolProcess({"plot", "-", "-o", "-"}).withInput(radio).run();

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(xmlTroubleOf(result.output), "");
    EXPECT_EQ(result.output.find("<script"), std::string::npos);
    EXPECT_NE(result.output.find("&lt;script&gt;&amp;&quot;'\\n\\x07 (newer radio-unit family)"),
              std::string::npos)
        << result;
}

// Powers at both ends of 32 bits.
TEST(Picture, HoldsTheGreatestPowers) {
    std::string radio = contentOf("radios/outdoor1.json");
    for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {"\"64QAM\", 2400", "\"64QAM\", -2147483000"},
             {"\"minOutputPower\": -1000", "\"minOutputPower\": 2147483000"}}) {
        radio.replace(radio.find(from), from.size(), to);
    }

    const ToolResult result = ToolProcess({"plot", "-", "-o", "-"}).withInput(radio).run();
    const ToolResult blocks = ToolProcess({"plot", "-"}).withInput(radio).run();

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(xmlTroubleOf(result.output), "");
    // -21474830.00 less the cutback of 3.00
    EXPECT_EQ(count(result.output, ">-21474833.00</text>"), 1U) << result;
    EXPECT_EQ(blocks.status, done) << blocks;
}

TEST(PictureOfTheManual, IsWhatTheToolDraws) {
    const std::string radios = QOR_EXAMPLE_RADIOS;
    const std::string pictures = QOR_PROJECT "/docs/reference/pictures/";

    EXPECT_EQ(svgOf(radios + "/18ghz-ansi-high-radio-unit-new-booster.json", {"--cutback", "1"}),
              contentAt(pictures + "powers.svg"));
    EXPECT_EQ(svgOf(radios + "/13ghz-etsi-outdoor3.json", {"--over", "rsec"}),
              contentAt(pictures + "powers-over-rsec.svg"));
}

TEST_F(PlotFile, HoldsThePicture) {
    const ToolResult result = plot("radios/outdoor1.json", {"-o", path("radio.svg")});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(contentAt(path("radio.svg")), svgOf("radios/outdoor1.json"));
}

TEST_F(PlotFile, KeepsItsPermissionsWhenItIsReplaced) {
    const fs::perms readByTheGroup =
        fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    std::ofstream(path("radio.svg")) << "before";
    fs::permissions(path("radio.svg"), readByTheGroup);

    const ToolResult result = plot("radios/outdoor1.json", {"-o", path("radio.svg")});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(contentAt(path("radio.svg")), svgOf("radios/outdoor1.json"));
    EXPECT_EQ(fs::status(path("radio.svg")).permissions(), readByTheGroup);
}

TEST_F(PlotFile, IsNotWrittenUnlessItIsNamed) {
    const ToolResult result =
        ToolProcess({"plot", std::string(QOR_TOOL_TESTS) + "/radios/outdoor1.json"})
            .inFolder(folder())
            .run();

    EXPECT_EQ(result.status, done) << result;
    EXPECT_TRUE(isFolderEmpty());
}

TEST_F(PlotFile, StaysAsItWasWhenThereIsNothingToDraw) {
    std::ofstream(path("radio.svg")) << "before";

    const ToolResult bad =
        ToolProcess({"plot", "-", "-o", path("radio.svg")}).withInput("{}").run();
    const ToolResult failed =
        plot("radios/outdoor1.json", {"--frame-format", "5", "--output", path("radio.svg")});

    EXPECT_EQ(bad.status, badRadioFile) << bad;
    EXPECT_EQ(failed.status, otherTrouble) << failed;
    EXPECT_EQ(failed.errors, "qor-power: radios/outdoor1.json: no powers: the hardware "
                             "configuration has no frame format 5; it has 7, 8, 9\n");
    EXPECT_EQ(contentAt(path("radio.svg")), "before");
}

TEST_F(PlotFile, ThatCannotBeWrittenIsATrouble) {
    const std::string below = path("missing/radio.svg");
    const ToolResult missing = plot("radios/outdoor1.json", {"-o", below});
    EXPECT_EQ(missing.status, otherTrouble) << missing;
    EXPECT_EQ(missing.errors,
              "qor-power: " + below + ": cannot be written: No such file or directory\n");
    EXPECT_TRUE(isFolderEmpty());

    const ToolResult full = plot("radios/outdoor1.json", {"-o", "/dev/full"});
    EXPECT_EQ(full.status, otherTrouble) << full;
    EXPECT_EQ(full.errors, "qor-power: /dev/full: cannot be written: No space left on device\n");

    const ToolResult folderItself = plot("radios/outdoor1.json", {"-o", folder()});
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

TEST(PlotInTheTerminal, IsMadeOfBlocks) {
    const ToolResult result = plot("radios/outdoor1.json");

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.output, contentOf("golden/plot-outdoor1.txt"));
    EXPECT_EQ(result.errors, "");
}

TEST(PlotInTheTerminal, HasABarForEachValue) {
    const ToolResult result = plot("radios/outdoor1.json", {"--over", "cutback=0,6"});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.output, contentOf("golden/plot-outdoor1-cutback.txt"));
}

TEST(PlotInTheTerminal, IsNotWiderThanEightyColumnsWhereThereIsNoTerminal) {
    for (const auto& entry : fs::directory_iterator(QOR_EXAMPLE_RADIOS)) {
        const ToolResult result = plot(entry.path().string(), {"--over", "temporary-cutback"});

        EXPECT_LE(widestLineOf(result.output), 80) << result;
    }
}

TEST(PlotInTheTerminal, FillsTheTerminalAndIsColoured) {
    const ToolResult result =
        ToolProcess({"plot", "radios/outdoor1.json"}).withOutputOnTerminal().run();

    EXPECT_EQ(result.status, done) << result;
    EXPECT_NE(result.output.find("\x1b["), std::string::npos) << result;
    EXPECT_GT(widestLineOf(result.output), 90) << result;
    EXPECT_LE(widestLineOf(result.output), 100) << result;
}

TEST(PlotInTheTerminal, IsColouredOnlyWhenAskedWhereThereIsNoTerminal) {
    const std::string escape = "\x1b[";

    EXPECT_EQ(plot("radios/outdoor1.json").output.find(escape), std::string::npos);
    EXPECT_NE(plot("radios/outdoor1.json", {"--color", "always"}).output.find(escape),
              std::string::npos);
}

TEST(Plot, RefusesMoreLinesThanCanBeToldApart) {
    const ToolResult result = plot("radios/outdoor1.json", {"--over", "cutback=0..8"});

    EXPECT_EQ(result.status, otherTrouble) << result;
    EXPECT_EQ(result.errors, "qor-power: --over cutback: 9 lines; at most 8 can be told apart, "
                             "list fewer values\n");
    EXPECT_EQ(result.output, "");
}

TEST(Plot, DrawsSomeOfTheUsualValuesWhereTheyAreMore) {
    const ToolResult result = plot("radios/outdoor1.json", {"--over", "cutback"});

    EXPECT_EQ(result.status, done) << result;
    // 0 to 10 dB, six of eleven values for each of five modulations.
    for (const char* const label : {"0.00", "2.00", "4.00", "6.00", "8.00", "10.00"}) {
        EXPECT_EQ(count(result.output, "\n  " + std::string(label) + " dB "), 5U) << result;
    }
    EXPECT_EQ(count(result.output, "\n  1.00 dB "), 0U);
}

TEST(Plot, TakesOneInput) {
    const ToolResult result = plot("radios/outdoor1.json", {"--over", "cutback", "--over", "dpd"});

    EXPECT_EQ(result.status, otherTrouble) << result;
    EXPECT_EQ(result.errors, "qor-power: --over is given twice; a picture has one\n");
}

} // namespace
