#include "PlotCanvas.h"
#include "PlotScale.h"
#include "PowerPlot.h"
#include "SvgDocument.h"
#include "TextColumns.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <regex>
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

/// Where a level text of a picture stands, by a width that most letters have.
struct Label {
    double left;
    double right;
    double y;
    std::string text;
};

std::vector<Label> labelsOf(const std::string& svg) {
    static const std::regex element(
        R"re(<text x="([-\d.]+)" y="([-\d.]+)"([^>]*)>([^<]*)</text>)re");
    std::vector<Label> labels;
    for (auto found = std::sregex_iterator(svg.begin(), svg.end(), element);
         found != std::sregex_iterator(); ++found) {
        const std::string attributes = (*found)[3];
        if (attributes.find("rotate") != std::string::npos) {
            continue; // the axis has the margin for itself
        }
        const double x = std::stod((*found)[1]);
        const double width = 6.5 * static_cast<double>((*found)[4].length());
        const bool isMiddle = attributes.find("\"middle\"") != std::string::npos;
        const bool isEnd = attributes.find("\"end\"") != std::string::npos;
        const double left = isMiddle ? x - width / 2 : x - (isEnd ? width : 0);
        labels.push_back({left, left + width, std::stod((*found)[2]), (*found)[4]});
    }
    return labels;
}

TEST(Picture, HasNoLabelThatOverprintsAnother) {
    // A minimum at the foot of the scale and in its middle, bars that are short, none and below it.
    for (const std::int64_t minimum : {-1000, 700, 1990, 2010}) {
        PowerPlot plot{"A radio", {"a condition"}, "", {"4QAM", "16QAM", "64QAM", "256QAM"}, {}};
        plot.series.push_back({"",
                               {{2000, Rule::PmaxRow},
                                {minimum + 5, Rule::PmaxRow},
                                {std::nullopt, Rule::HardwareLimit},
                                {minimum - 5, Rule::OffsetTable}},
                               minimum});
        const std::vector<Label> labels = labelsOf(svgForm(plot));

        EXPECT_GT(labels.size(), 12U);
        for (const Label& one : labels) {
            for (const Label& other : labels) {
                const bool meet = &one < &other && one.left < other.right &&
                                  other.left < one.right && std::abs(one.y - other.y) < 10;
                EXPECT_FALSE(meet) << minimum << ": " << one.text << " and " << other.text;
            }
        }
    }
}

TEST(AlignedColumns, BreakTextsWhereTheRoomIsBounded) {
    const std::vector<Align> align{Align::Left, Align::Right, Align::Left};

    EXPECT_EQ(alignedColumns(align, {{"ab", "1.00", "one two three four"}}, {24}),
              "ab  1.00  one two three\n"
              "          four\n");
    EXPECT_EQ(alignedColumns(align, {{"ab", "1.00", "/capabilityHandler/pmaxDpd1Etsi/0"}}, {28}),
              "ab  1.00  /capabilityHandler\n"
              "          /pmaxDpd1Etsi/0\n");
}

TEST(AlignedColumns, StandInBlocksWhereTextsAloneDoNotDo) {
    const std::vector<Align> align(4, Align::Right);

    EXPECT_EQ(alignedColumns(align, {{"a", "11.00", "12.00", "13.00"}}, {15}), "a  11.00  12.00\n"
                                                                               "\n"
                                                                               "a  13.00\n");
    EXPECT_EQ(alignedColumns(align, {{"a", "11.00", "12.00", "13.00"}}, {22}),
              "a  11.00  12.00  13.00\n");
}

TEST(Fitted, GoesOnBelowTheLastColumn) {
    EXPECT_EQ(fitted("Market  one two three four\n", 20), "Market  one two\n"
                                                          "        three four\n");
    EXPECT_EQ(fitted("  Note: one two three four\n", 20), "  Note: one two\n"
                                                          "      three four\n");
    EXPECT_EQ(fitted("\x1b[1mone two three four\x1b[0m\n", 18),
              "\x1b[1mone two three four\x1b[0m\n");
    EXPECT_EQ(fitted("as it is, of whatever width\n", 0), "as it is, of whatever width\n");
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
