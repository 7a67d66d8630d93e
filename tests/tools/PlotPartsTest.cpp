#include "AnalysisError.h"
#include "FileWriter.h"
#include "FootNotes.h"
#include "PlotScale.h"
#include "RuleStyle.h"
#include "SvgDocument.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using Ticks = std::vector<std::int64_t>;

TEST(PlotScale, HasRoundTicksWithRoomOnBothSides) {
    // 7.50 to 10.50 dBm in steps of 1 dB; 8 to 21.5 dBm in steps of 2 dB, five at most of 5 dB.
    EXPECT_EQ(PlotScale(750, 1050, 9).ticks(), (Ticks{700, 800, 900, 1000, 1100}));
    EXPECT_EQ(PlotScale(800, 2150, 9).ticks(),
              (Ticks{600, 800, 1000, 1200, 1400, 1600, 1800, 2000, 2200}));
    EXPECT_EQ(PlotScale(800, 2150, 5).ticks(), (Ticks{500, 1000, 1500, 2000, 2500}));
}

TEST(PlotScale, ReachesBelowZero) {
    EXPECT_EQ(PlotScale(-750, -150, 9).ticks(),
              (Ticks{-800, -700, -600, -500, -400, -300, -200, -100}));
    EXPECT_EQ(PlotScale(-800, -800, 9).ticks(), (Ticks{-900, -800, -700}));
}

TEST(PlotScale, HasThreeTicksWhereFewerAreAskedFor) {
    EXPECT_EQ(PlotScale(0, 0, 1).ticks(), (Ticks{-100, 0, 100}));
    EXPECT_EQ(PlotScale(-150, 150, 0).ticks(), (Ticks{-200, 0, 200}));
}

TEST(PlotScale, OfTheGreatestPowersHasFewTicksAndKeepsThemInside) {
    constexpr std::int64_t least = std::numeric_limits<std::int32_t>::min();
    constexpr std::int64_t greatest = std::numeric_limits<std::int32_t>::max();

    const PlotScale sut(least, greatest, 9);

    EXPECT_LE(sut.ticks().size(), 9U);
    EXPECT_LT(sut.low(), least);
    EXPECT_GT(sut.high(), greatest);
    EXPECT_GE(sut.placeOf(least, 3000), 0);
    EXPECT_LE(sut.placeOf(greatest, 3000), 3000);
}

TEST(PlotScale, PlacesPowersInProportion) {
    const PlotScale sut(800, 2150, 5); // 5 to 25 dBm

    EXPECT_EQ(sut.placeOf(500, 2000), 0);
    EXPECT_EQ(sut.placeOf(1000, 2000), 500);
    EXPECT_EQ(sut.placeOf(2500, 2000), 2000);
    EXPECT_EQ(sut.placeOf(501, 1000), 1); // 0.5, rounded
}

TEST(SvgNumber, HasAtMostOneDecimal) {
    EXPECT_EQ(svgNumber(0), "0");
    EXPECT_EQ(svgNumber(120), "12");
    EXPECT_EQ(svgNumber(125), "12.5");
    EXPECT_EQ(svgNumber(-5), "-0.5");
    EXPECT_EQ(svgNumber(-125), "-12.5");
}

TEST(XmlText, HoldsNothingThatEndsOrBreaksIt) {
    EXPECT_EQ(xmlText("<a href=\"x\">&amp;</a>"),
              "&lt;a href=&quot;x&quot;&gt;&amp;amp;&lt;/a&gt;");
    EXPECT_EQ(xmlText("a\nb\x01\x7f"), "a\\nb\\x01\\x7f");
    EXPECT_EQ(xmlText("\xFF"), "\\xff");
    EXPECT_EQ(xmlText("\xEF\xBF\xBE and \xEF\xBF\xBF"), "\xEF\xBF\xBD and \xEF\xBF\xBD");
    EXPECT_EQ(xmlText("48 \xC2\xB5W"), "48 \xC2\xB5W");
}

TEST(SvgDocument, IndentsWhatIsInside) {
    SvgDocument sut;
    sut.open("svg", {{"width", "3"}});
    sut.addText("text", {}, "a < b");
    sut.add("rect", {{"fill", "\"red\""}});
    sut.close("svg");

    EXPECT_EQ(sut.text(), "<svg width=\"3\">\n"
                          "  <text>a &lt; b</text>\n"
                          "  <rect fill=\"&quot;red&quot;\"/>\n"
                          "</svg>\n");
}

// What limits the powers of one family side by side must be told apart without colours too.
TEST(RuleStyle, HasAPatternOfItsOwnForEachCommonRule) {
    std::set<RuleStyle::Pattern> patterns;
    const std::vector<Rule> common = {Rule::PmaxRow,      Rule::PmaxSelectedMinimum,
                                      Rule::RsecCap,      Rule::SelectedMinimumOffset,
                                      Rule::OffsetTable,  Rule::BoosterInputLimit,
                                      Rule::PmaxReference};
    for (const Rule rule : common) {
        patterns.insert(styleOf(rule).pattern);
    }

    EXPECT_EQ(patterns.size(), common.size());
}

TEST(RuleStyle, OfEveryLimitingRuleIsThereOnce) {
    std::set<std::pair<std::string, RuleStyle::Pattern>> styles;
    std::size_t count = 0;
    for (const Rule rule : allRules()) {
        if (rule < Rule::HardwareLimit) {
            styles.emplace(styleOf(rule).color, styleOf(rule).pattern);
            ++count;
        }
    }

    EXPECT_EQ(styles.size(), count);
}

TEST(FootNotes, GiveEqualRemarksOneMark) {
    FootNotes sut;

    EXPECT_EQ(sut.markOf("too high"), "[1]");
    EXPECT_EQ(sut.markOf("too low"), "[2]");
    EXPECT_EQ(sut.markOf("too high"), "[1]");
    EXPECT_EQ(sut.markOf(""), "");
    EXPECT_EQ(sut.text(), "\n[1] too high\n[2] too low\n");
}

TEST(FootNotes, WithoutRemarksAreEmpty) {
    EXPECT_EQ(FootNotes().text(), "");
}

// A folder of its own for each test, with the umask that is usual.
class FileWriterTest : public testing::Test {
protected:
    FileWriterTest() {
        std::string name = (fs::temp_directory_path() / "qor-file-writer-XXXXXX").string();
        m_folder = ::mkdtemp(name.data());
    }
    ~FileWriterTest() override { fs::remove_all(m_folder); }

    std::string path(const std::string& name) const { return (m_folder / name).string(); }

    static std::string contentOf(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::size_t filesInFolder() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(m_folder), fs::directory_iterator()));
    }

private:
    fs::path m_folder;
};

TEST_F(FileWriterTest, MakesANewFileThatOthersMayRead) {
    const mode_t before = ::umask(022);
    writeFile(path("new.svg"), "picture");
    ::umask(before);

    EXPECT_EQ(contentOf(path("new.svg")), "picture");
    EXPECT_EQ(fs::status(path("new.svg")).permissions(), fs::perms(0644));
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileWriterTest, ReplacesAFileAndKeepsItsPermissions) {
    std::ofstream(path("old.svg")) << "something longer than before";
    fs::permissions(path("old.svg"), fs::perms(0600));

    writeFile(path("old.svg"), "picture");

    EXPECT_EQ(contentOf(path("old.svg")), "picture");
    EXPECT_EQ(fs::status(path("old.svg")).permissions(), fs::perms(0600));
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileWriterTest, FollowsALink) {
    std::ofstream(path("target.svg")) << "before";
    fs::create_symlink(path("target.svg"), path("link.svg"));

    writeFile(path("link.svg"), "picture");

    EXPECT_TRUE(fs::is_symlink(path("link.svg")));
    EXPECT_EQ(contentOf(path("target.svg")), "picture");
}

TEST_F(FileWriterTest, LeavesTheFileAsItWasWhenTheDiskIsFull) {
    std::ofstream(path("old.svg")) << "before";
    // A limit on the size of files stands in for the disk.
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{100, before.rlim_max};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &small);

    std::string message;
    try {
        writeFile(path("old.svg"), std::string(1000, 'x'));
    } catch (const AnalysisError& error) {
        message = error.what();
        EXPECT_EQ(error.outcome(), Outcome::OtherTrouble);
    }

    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(message, path("old.svg") + ": cannot be written: File too large");
    EXPECT_EQ(contentOf(path("old.svg")), "before");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(FileWriterTest, RefusesAFolderAndAPathBelowNothing) {
    EXPECT_THROW(writeFile(path("."), "picture"), AnalysisError);
    EXPECT_THROW(writeFile(path("missing/new.svg"), "picture"), AnalysisError);
    EXPECT_EQ(filesInFolder(), 0U);
}

} // namespace
