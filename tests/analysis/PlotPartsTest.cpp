#include "PlotCanvas.h"
#include "PlotScale.h"
#include "SvgDocument.h"
#include "TextColumns.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <vector>

namespace {

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

} // namespace
