#include "PlotCanvas.h"

#include "Datum.h"
#include "TextColumns.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <sstream>
#include <string_view>
#include <utility>

namespace {

constexpr Tenths tile = pixels(8); // of patterns
constexpr const char* thinEdge = "0.8";

using Pattern = RuleStyle::Pattern;

// Colours that stay apart for colour-blind eyes.
constexpr const char* blue = "#0072b2";
constexpr const char* orange = "#c77700";
constexpr const char* green = "#00805c";
constexpr const char* purple = "#a5437e";
constexpr const char* red = "#c44500";
constexpr const char* sky = "#2b8cbe";
constexpr const char* olive = "#7a7000";
constexpr const char* gray = "#555555";

struct Entry {
    Rule rule;
    RuleStyle style;
};

// Rules that limit powers of one radio side by side have patterns of their own.
constexpr std::array entries = {
    Entry{Rule::PmaxRow, {orange, Pattern::Dotted}},
    Entry{Rule::PmaxSelectedMinimum, {purple, Pattern::Falling}},
    Entry{Rule::PmaxReference, {sky, Pattern::Grid}},
    Entry{Rule::RsecCap, {green, Pattern::Level}},
    Entry{Rule::CarriedPower, {gray, Pattern::Plain}},
    Entry{Rule::PermanentCutback, {olive, Pattern::Checked}},
    Entry{Rule::TemporaryCutback, {red, Pattern::Checked}},
    Entry{Rule::Cutback, {gray, Pattern::Checked}},
    Entry{Rule::ChannelSpacingCompensation, {sky, Pattern::Rings}},
    Entry{Rule::ReferenceOffset, {olive, Pattern::Rings}},
    Entry{Rule::OffsetTable, {blue, Pattern::Rising}},
    Entry{Rule::BoosterAdjustment, {red, Pattern::Grid}},
    Entry{Rule::BoosterBandAdjustment, {olive, Pattern::Grid}},
    Entry{Rule::BoosterGain, {purple, Pattern::Plain}},
    Entry{Rule::SelectedMinimumOffset, {sky, Pattern::Upright}},
    Entry{Rule::BoosterInputLimit, {red, Pattern::Crossed}},
    Entry{Rule::SelectedModulation, {green, Pattern::Plain}},
};

/// How many bytes the first characters of a text take, `count` of them or all.
std::size_t bytesOf(std::string_view text, std::size_t count) {
    std::size_t bytes = 0;
    while (bytes < text.size() && textWidth(text.substr(0, bytes + 1)) <= count) {
        ++bytes;
    }
    return bytes;
}

std::string patternId(Rule rule) {
    return std::string("rule-") + codeOf(rule);
}

std::string paintOf(Rule rule) {
    return "url(#" + patternId(rule) + ')';
}

/// What the tile of a pattern shows, as the data of a path; its width makes dots of short dashes
/// and checks of long ones.
struct Tile {
    const char* path;
    const char* strokeWidth = "1.3";
};

constexpr Tile tiles[] = {
    {""}, // Plain
    {"M-2 2 L2 -2 M0 8 L8 0 M6 10 L10 6"},
    {"M-2 6 L2 10 M0 0 L8 8 M6 -2 L10 2"},
    {"M0 8 L8 0 M0 0 L8 8"},
    {"M0 2 H8 M0 6 H8"},
    {"M2 0 V8 M6 0 V8"},
    {"M2 2 h0.01 M6 6 h0.01", "2.2"},
    {"M0 4 H8 M4 0 V8"},
    {"M2 4 A2 2 0 1 1 6 4 A2 2 0 1 1 2 4"},
    {"M0 2 H4 M4 6 H8", "4"}, // Checked
};
static_assert(std::size(tiles) == static_cast<std::size_t>(Pattern::Checked) + 1);

/// By PlotCanvas::Anchor.
constexpr const char* anchorNames[] = {"start", "middle", "end"};

/// The outline of a marker around a point, as the data of a path.
std::string outlineOf(PlotCanvas::LineStyle::Marker marker, Tenths x, Tenths y, Tenths radius) {
    using Marker = PlotCanvas::LineStyle::Marker;
    const auto point = [x, y](Tenths dx, Tenths dy) {
        return svgNumber(x + dx) + ' ' + svgNumber(y + dy) + ' ';
    };
    const Tenths r = radius;
    if (marker == Marker::Square) {
        return 'M' + point(-r, -r) + 'L' + point(r, -r) + 'L' + point(r, r) + 'L' + point(-r, r) +
               'Z';
    }
    // Pointed shapes reach further out to look as large.
    if (marker == Marker::Triangle) {
        return 'M' + point(0, -r - 10) + 'L' + point(r + 8, r) + 'L' + point(-r - 8, r) + 'Z';
    }
    const Tenths far = r + 12;
    return 'M' + point(0, -far) + 'L' + point(far, 0) + 'L' + point(0, far) + 'L' + point(-far, 0) +
           'Z';
}

} // namespace

RuleStyle styleOf(Rule rule) {
    for (const Entry& entry : entries) {
        if (entry.rule == rule) {
            return entry.style;
        }
    }
    return {gray, Pattern::Plain};
}

std::string ruleLegendJson() {
    Datum::List rules;
    for (const Rule rule : allRules()) {
        const auto* const entry =
            std::find_if(entries.begin(), entries.end(),
                         [rule](const Entry& each) { return each.rule == rule; });
        const bool isDrawn = entry != entries.end();
        const Tile tileOfRule =
            isDrawn ? tiles[static_cast<std::size_t>(entry->style.pattern)] : Tile{""};
        rules.emplace_back(Datum::Object{
            {"rule", codeOf(rule)},
            {"words", wordsFor(rule)},
            {"color", isDrawn ? Datum(entry->style.color) : Datum()},
            {"pattern", isDrawn ? Datum(tileOfRule.path) : Datum()},
            {"width", isDrawn ? Datum(tileOfRule.strokeWidth) : Datum()},
        });
    }
    return jsonDocument(Datum::Object{{"rules", std::move(rules)}});
}

void PlotCanvas::definePatterns(const std::vector<Rule>& rules) {
    m_svg.open("defs", {});
    for (const Rule rule : rules) {
        const RuleStyle style = styleOf(rule);
        const bool isDotted = style.pattern == Pattern::Dotted;
        m_svg.open("pattern", {{"id", patternId(rule)},
                               {"width", svgNumber(tile)},
                               {"height", svgNumber(tile)},
                               {"patternUnits", "userSpaceOnUse"}});
        m_svg.add("rect", {{"width", svgNumber(tile)},
                           {"height", svgNumber(tile)},
                           {"fill", style.color},
                           {"fill-opacity", "0.22"}});
        const Tile& shown = tiles[static_cast<std::size_t>(style.pattern)];
        if (style.pattern != Pattern::Plain) {
            m_svg.add("path", {{"d", shown.path},
                               {"fill", "none"},
                               {"stroke", style.color},
                               {"stroke-width", shown.strokeWidth},
                               {"stroke-linecap", isDotted ? "round" : "butt"}});
        }
        m_svg.close("pattern");
    }
    m_svg.close("defs");
}

void PlotCanvas::write(Tenths x, Tenths y, Anchor anchor, const std::string& text,
                       const Font& font) {
    m_svg.addText("text",
                  {{"x", svgNumber(x)},
                   {"y", svgNumber(y)},
                   {"text-anchor", anchorNames[static_cast<std::size_t>(anchor)]},
                   {"fill", font.color},
                   {"font-size", std::to_string(font.size)},
                   {"font-weight", font.isBold ? "bold" : "normal"},
                   // A rim of paper keeps lines off the letters.
                   {"stroke", paper},
                   {"stroke-width", "3"},
                   {"paint-order", "stroke"}},
                  text);
}

void PlotCanvas::writeUpwards(Tenths x, Tenths y, const std::string& text, const Font& font) {
    const std::string place = svgNumber(x) + ' ' + svgNumber(y);
    m_svg.addText("text",
                  {{"x", svgNumber(x)},
                   {"y", svgNumber(y)},
                   {"text-anchor", "middle"},
                   {"fill", font.color},
                   {"font-size", std::to_string(font.size)},
                   {"transform", "rotate(-90 " + place + ')'}},
                  text);
}

void PlotCanvas::line(Tenths x1, Tenths y1, Tenths x2, Tenths y2, const Stroke& stroke) {
    m_svg.add("line", {{"x1", svgNumber(x1)},
                       {"y1", svgNumber(y1)},
                       {"x2", svgNumber(x2)},
                       {"y2", svgNumber(y2)},
                       {"stroke", stroke.color},
                       {"stroke-width", stroke.width},
                       {"stroke-dasharray", stroke.dashes}});
}

void PlotCanvas::path(const std::string& data, const Stroke& stroke) {
    m_svg.add("path", {{"d", data},
                       {"fill", "none"},
                       {"stroke", stroke.color},
                       {"stroke-width", stroke.width},
                       {"stroke-dasharray", stroke.dashes}});
}

void PlotCanvas::fill(const Area& area, const char* color, const char* edge) {
    m_svg.add("rect", {{"x", svgNumber(area.x)},
                       {"y", svgNumber(area.y)},
                       {"width", svgNumber(area.width)},
                       {"height", svgNumber(area.height)},
                       {"fill", color},
                       {"stroke", edge},
                       {"stroke-width", thinEdge}});
}

void PlotCanvas::fillWith(const Area& area, Rule rule) {
    fill(area, paintOf(rule).c_str(), styleOf(rule).color);
}

void PlotCanvas::marker(const LineStyle& style, Tenths x, Tenths y) {
    constexpr Tenths radius = pixels(4);
    const std::string inside = style.isFilled ? ink : paper;
    constexpr const char* edge = "1.5";
    if (style.marker == LineStyle::Marker::Circle) {
        m_svg.add("circle", {{"cx", svgNumber(x)},
                             {"cy", svgNumber(y)},
                             {"r", svgNumber(radius)},
                             {"fill", inside},
                             {"stroke", ink},
                             {"stroke-width", edge}});
        return;
    }
    m_svg.add("path", {{"d", outlineOf(style.marker, x, y, radius)},
                       {"fill", inside},
                       {"stroke", ink},
                       {"stroke-width", edge}});
}

void PlotCanvas::cross(Tenths x, Tenths y) {
    constexpr Tenths arm = pixels(4);
    constexpr Stroke stroke{ink, "1.8"};
    line(x - arm, y - arm, x + arm, y + arm, stroke);
    line(x - arm, y + arm, x + arm, y - arm, stroke);
}

void PlotCanvas::letter(Tenths x, Tenths y, const std::string& letter) {
    fill({x - pixels(7), y - pixels(6), pixels(14), pixels(12)}, paper);
    write(x, y + pixels(4), Anchor::Middle, letter, {11, ink, true});
}

std::vector<std::string> linesOf(const std::string& text, std::size_t width) {
    std::vector<std::string> lines;
    std::istringstream stream(wrapped(text, width));
    for (std::string line; std::getline(stream, line);) {
        while (textWidth(line) > width) {
            const std::size_t bytes = bytesOf(line, width);
            lines.push_back(line.substr(0, bytes));
            line.erase(0, bytes);
        }
        lines.push_back(line);
    }
    return lines;
}
