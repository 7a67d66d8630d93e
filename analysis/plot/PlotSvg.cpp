#include "Decibels.h"
#include "PlotCanvas.h"
#include "PlotScale.h"
#include "PowerPlot.h"
#include "SvgDocument.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <set>
#include <vector>

namespace {

// Lengths of the layout.
constexpr Tenths leftMargin = pixels(76);
constexpr Tenths rightMargin = pixels(28);
constexpr Tenths labelMargin = pixels(256);  // for the labels of lines
constexpr Tenths axisCharacter = pixels(10); // with its share of the gap between two labels
constexpr Tenths leastWidth = pixels(600);
constexpr Tenths plotHeight = pixels(300);
constexpr Tenths padding = pixels(24);
constexpr Tenths titleHeight = pixels(22);
constexpr Tenths lineHeight = pixels(16);
constexpr Tenths stripHeight = pixels(16);
constexpr Tenths stripGap = pixels(4);
constexpr Tenths swatchWidth = pixels(34);

constexpr std::int64_t maxTicks = 9;
constexpr std::size_t charactersOfLabel = 28;

using Anchor = PlotCanvas::Anchor;
using Font = PlotCanvas::Font;
using LineStyle = PlotCanvas::LineStyle;

constexpr Font plain{};
constexpr Font small{12, PlotCanvas::quiet};
constexpr Font smallHeading{12, PlotCanvas::quiet, true};
constexpr Font headingFont{12, PlotCanvas::ink, true};
constexpr Font axisTitle{13};
constexpr Font title{17, PlotCanvas::ink, true};
constexpr Font ruleLetter{11, PlotCanvas::ink, true};

constexpr PlotCanvas::Stroke thick{PlotCanvas::ink, "3"};
constexpr PlotCanvas::Stroke floorLine{PlotCanvas::ink, "1.5", "3 3"};

constexpr LineStyle lineStyles[] = {
    {PlotCanvas::solid, LineStyle::Marker::Circle, true},
    {"7 4", LineStyle::Marker::Square, true},
    {"2 3", LineStyle::Marker::Triangle, true},
    {"10 3 2 3", LineStyle::Marker::Diamond, true},
    {"14 4", LineStyle::Marker::Circle, false},
    {"4 2 1 2", LineStyle::Marker::Square, false},
    {"1 4", LineStyle::Marker::Triangle, false},
    {"9 3 2 3 2 3", LineStyle::Marker::Diamond, false},
};
static_assert(std::size(lineStyles) == PowerPlot::maxSeries);

/// One past the last step of a line that has a power, where its label belongs; 0 if none has.
std::size_t endOf(const PowerPlot::Series& series) {
    std::size_t end = series.steps.size();
    while (end > 0 && !series.steps[end - 1].power) {
        --end;
    }
    return end;
}

/// Draws one plot.
class Picture {
public:
    explicit Picture(const PowerPlot& plot);

    std::string draw() {
        const std::string width = svgNumber(m_width);
        const std::string length = svgNumber(height());
        m_svg.open("svg", {{"xmlns", "http://www.w3.org/2000/svg"},
                           {"width", width},
                           {"height", length},
                           {"viewBox", "0 0 " + width + ' ' + length},
                           {"role", "img"},
                           {"aria-labelledby", "title description"},
                           {"font-family", "Helvetica, Arial, 'DejaVu Sans', sans-serif"}});
        m_svg.addText("title", {{"id", "title"}}, "Maximum output power: " + m_plot.title);
        m_svg.addText("desc", {{"id", "description"}}, description());
        m_canvas.definePatterns(m_limiting);
        m_svg.add("rect", {{"x", "0.5"},
                           {"y", "0.5"},
                           {"width", svgNumber(m_width - pixels(1))},
                           {"height", svgNumber(height() - pixels(1))},
                           {"rx", "6"},
                           {"fill", PlotCanvas::paper},
                           {"stroke", PlotCanvas::grid}});
        drawHeading();
        drawPowerAxis();
        drawFloor();
        if (hasLines()) {
            drawLines();
        } else if (!m_plot.series.empty()) {
            drawBars(m_plot.series.front());
        }
        drawModulationAxis();
        if (hasLines()) {
            drawStrips();
        }
        drawLegend();
        m_svg.close("svg");
        return m_svg.text();
    }

private:
    bool hasLines() const { return !m_plot.over.empty(); }
    Tenths xOf(std::size_t step) const {
        return leftMargin + static_cast<Tenths>(step) * m_stepWidth;
    }
    Tenths yOf(std::int64_t power) const {
        return m_top + plotHeight - m_scale.placeOf(power, plotHeight);
    }
    Tenths right() const { return xOf(m_plot.modulations.size()); }
    Tenths bottom() const { return m_top + plotHeight; }
    Tenths stripsTop() const { return bottom() + pixels(66); }

    Tenths legendTop() const {
        const auto strips = hasLines() ? static_cast<Tenths>(m_plot.series.size()) : 0;
        return stripsTop() + (strips == 0 ? 0 : strips * (stripHeight + stripGap) + pixels(22));
    }

    Tenths height() const {
        const auto entries =
            static_cast<Tenths>(m_limiting.size() + m_denying.size() + m_minima.size());
        return legendTop() + entries * pixels(22) + pixels(36);
    }

    std::string description() const {
        std::string text;
        for (const PowerPlot::Series& series : m_plot.series) {
            text += series.label.empty() ? "" : series.label + ": ";
            for (std::size_t step = 0; step < series.steps.size(); ++step) {
                const PowerPlot::Step& shown = series.steps[step];
                text += m_plot.modulations[step] + ' ' +
                        (shown.power ? Decibels::format(*shown.power) + " dBm, limited by "
                                     : std::string("no power, denied by ")) +
                        wordsFor(shown.rule) + "; ";
            }
            text += series.minimum ? "minimum " + Decibels::format(*series.minimum) + " dBm. "
                                   : std::string("no minimum. ");
        }
        for (const std::string& condition : m_plot.conditions) {
            text += (&condition == &m_plot.conditions.front() ? "" : ", ") + condition;
        }
        return text + '.';
    }

    std::string letterFor(Rule rule) const { return letterOf(m_plot.placeOf(rule)); }

    void drawHeading() {
        Tenths y = pixels(12);
        for (const std::string& line : m_title) {
            y += titleHeight;
            m_canvas.write(padding, y, Anchor::Start, line, title);
        }
        y += pixels(4);
        for (const std::string& line : m_conditions) {
            y += lineHeight;
            m_canvas.write(padding, y, Anchor::Start, line, small);
        }
    }

    void drawPowerAxis() {
        for (const std::int64_t tick : m_scale.ticks()) {
            const Tenths y = yOf(tick);
            m_canvas.line(leftMargin, y, right(), y, {PlotCanvas::grid, "1"});
            m_canvas.write(leftMargin - pixels(8), y + pixels(4), Anchor::End,
                           std::to_string(tick / 100), small);
        }
        m_canvas.writeUpwards(pixels(22), m_top + plotHeight / 2, "Maximum output power in dBm",
                              axisTitle);
    }

    void drawModulationAxis() {
        m_canvas.line(leftMargin, bottom(), right(), bottom(), {PlotCanvas::ink, "1.5"});
        for (std::size_t step = 0; step < m_plot.modulations.size(); ++step) {
            m_canvas.write(xOf(step) + m_stepWidth / 2, bottom() + pixels(18), Anchor::Middle,
                           m_plot.modulations[step], plain);
        }
        m_canvas.write((leftMargin + right()) / 2, bottom() + pixels(40), Anchor::Middle,
                       "Modulation", axisTitle);
    }

    void drawFloor() {
        if (m_minima.empty()) {
            return;
        }
        const Tenths top = yOf(*m_minima.rbegin());
        m_canvas.fill({leftMargin, top, right() - leftMargin, bottom() - top}, PlotCanvas::floor);
        for (const std::int64_t minimum : m_minima) {
            const Tenths y = yOf(minimum);
            m_canvas.line(leftMargin, y, right(), y, floorLine);
        }
    }

    void drawBars(const PowerPlot::Series& series) {
        const std::int64_t floor = series.minimum.value_or(m_scale.low());
        for (std::size_t step = 0; step < series.steps.size(); ++step) {
            drawBar(step, series.steps[step], floor);
        }
        for (std::size_t step = 1; step < series.steps.size(); ++step) {
            const PowerPlot::Step& before = series.steps[step - 1];
            const PowerPlot::Step& after = series.steps[step];
            if (before.power && after.power) {
                m_canvas.line(xOf(step), yOf(*before.power), xOf(step), yOf(*after.power), thick);
            }
        }
    }

    void drawBar(std::size_t step, const PowerPlot::Step& shown, std::int64_t floor) {
        const Tenths x = xOf(step);
        const Tenths middle = x + m_stepWidth / 2;
        if (!shown.power) {
            const Tenths y = yOf(floor) - pixels(12);
            m_canvas.cross(middle - pixels(9), y);
            m_canvas.write(middle + pixels(2), y + pixels(4), Anchor::Start, letterFor(shown.rule),
                           ruleLetter);
            return;
        }
        // A power below the minimum stands in the floor.
        const Tenths y = yOf(*shown.power);
        const Tenths low = *shown.power < floor ? bottom() : yOf(floor);
        m_canvas.fillWith({x, y, m_stepWidth, low - y}, shown.rule);
        m_canvas.line(x, y, x + m_stepWidth, y, thick);
        m_canvas.write(middle, y - pixels(7), Anchor::Middle, Decibels::format(*shown.power),
                       plain);
        constexpr Tenths roomForLetter = pixels(22);
        if (low - y > roomForLetter) {
            m_canvas.letter(middle, low - pixels(12), letterFor(shown.rule));
        }
    }

    void drawLines() {
        for (std::size_t index = 0; index < m_plot.series.size(); ++index) {
            drawLine(m_plot.series[index], index);
        }
        drawLabels();
    }

    void drawLine(const PowerPlot::Series& series, std::size_t index) {
        const LineStyle& style = lineStyles[index];
        std::string path;
        bool isDrawing = false;
        for (std::size_t step = 0; step < series.steps.size(); ++step) {
            const std::optional<std::int64_t>& power = series.steps[step].power;
            if (power) {
                const std::string y = svgNumber(yOf(*power));
                path += isDrawing ? " V" + y : " M" + svgNumber(xOf(step)) + ' ' + y;
                path += " H" + svgNumber(xOf(step + 1));
            }
            isDrawing = power.has_value();
        }
        if (!path.empty()) {
            m_canvas.path(path.substr(1), {PlotCanvas::ink, "2", style.dashes});
        }
        // Where lines lie on each other, their markers stand side by side.
        const auto count = static_cast<Tenths>(m_plot.series.size());
        const Tenths shift = m_stepWidth * (static_cast<Tenths>(index) * 2 + 1) / (count * 2);
        for (std::size_t step = 0; step < series.steps.size(); ++step) {
            if (series.steps[step].power) {
                m_canvas.marker(style, xOf(step) + shift, yOf(*series.steps[step].power));
            }
        }
    }

    void drawLabels() {
        std::vector<std::size_t> order(m_plot.series.size());
        std::iota(order.begin(), order.end(), 0);
        const auto placeOf = [this](std::size_t index) {
            const PowerPlot::Series& series = m_plot.series[index];
            const std::size_t end = endOf(series);
            return end == 0 ? m_scale.low() : *series.steps[end - 1].power;
        };
        std::ranges::stable_sort(order, [&placeOf](std::size_t left, std::size_t right) {
            return placeOf(left) > placeOf(right);
        });
        const bool isSameFloor = m_plot.commonMinimum().has_value();
        // From the top down, each below the one before.
        Tenths next = m_top;
        for (const std::size_t index : order) {
            const PowerPlot::Series& series = m_plot.series[index];
            std::string label = series.label;
            if (!isSameFloor && series.minimum) {
                label += " (minimum " + Decibels::format(*series.minimum) + " dBm)";
            }
            const std::vector<std::string> lines = linesOf(label, charactersOfLabel);
            const Tenths y = std::max(next, yOf(placeOf(index)));
            drawLabel(index, lines, y);
            next = y + static_cast<Tenths>(lines.size()) * lineHeight + pixels(2);
        }
        m_canvas.write(right() + pixels(18), m_top - pixels(16), Anchor::Start, m_plot.over,
                       smallHeading);
    }

    void drawLabel(std::size_t index, const std::vector<std::string>& lines, Tenths y) {
        const Tenths x = right() + pixels(28);
        const PowerPlot::Series& series = m_plot.series[index];
        if (const std::size_t end = endOf(series); end > 0) {
            m_canvas.line(xOf(end) + pixels(3), yOf(*series.steps[end - 1].power), x - pixels(8), y,
                          {PlotCanvas::quiet, "0.8", "1 3"});
        }
        m_canvas.marker(lineStyles[index], x, y);
        for (std::size_t line = 0; line < lines.size(); ++line) {
            m_canvas.write(x + pixels(11), y + pixels(4) + static_cast<Tenths>(line) * lineHeight,
                           Anchor::Start, lines[line], plain);
        }
    }

    void drawStrips() {
        m_canvas.write(leftMargin, stripsTop() - pixels(7), Anchor::Start,
                       "Binding rule of each line", small);
        for (std::size_t index = 0; index < m_plot.series.size(); ++index) {
            const Tenths y = stripsTop() + static_cast<Tenths>(index) * (stripHeight + stripGap);
            const Tenths middle = y + stripHeight / 2;
            m_canvas.marker(lineStyles[index], leftMargin - pixels(14), middle);
            for (std::size_t step = 0; step < m_plot.series[index].steps.size(); ++step) {
                const PowerPlot::Step& shown = m_plot.series[index].steps[step];
                const PlotCanvas::Area cell{xOf(step), y, m_stepWidth, stripHeight};
                if (shown.power) {
                    m_canvas.fillWith(cell, shown.rule);
                } else {
                    m_canvas.fill(cell, PlotCanvas::paper, PlotCanvas::grid);
                }
                const Tenths x = xOf(step) + m_stepWidth / 2;
                m_canvas.letter(x, middle, letterFor(shown.rule));
                if (!shown.power) {
                    m_canvas.cross(x - pixels(14), middle);
                }
            }
        }
    }

    void drawLegend() {
        Tenths y = legendTop();
        m_canvas.write(padding, y, Anchor::Start, "What limits the power", headingFont);
        for (const Rule rule : m_limiting) {
            y += pixels(22);
            m_canvas.fillWith({padding, y - pixels(12), swatchWidth, pixels(16)}, rule);
            m_canvas.letter(padding + swatchWidth / 2, y - pixels(4), letterFor(rule));
            m_canvas.write(pixels(34) + swatchWidth, y, Anchor::Start, wordsFor(rule), plain);
        }
        for (const Rule rule : m_denying) {
            y += pixels(22);
            m_canvas.cross(pixels(32), y - pixels(4));
            m_canvas.write(padding + swatchWidth / 2 + pixels(4), y, Anchor::Start, letterFor(rule),
                           ruleLetter);
            m_canvas.write(pixels(34) + swatchWidth, y, Anchor::Start,
                           std::string("no power: ") + wordsFor(rule), plain);
        }
        // At its line a minimum's words would meet those of bars and of the axis.
        for (const std::int64_t minimum : m_minima) {
            y += pixels(22);
            m_canvas.line(padding, y - pixels(4), padding + swatchWidth, y - pixels(4), floorLine);
            m_canvas.write(pixels(34) + swatchWidth, y, Anchor::Start,
                           "minimum power " + Decibels::format(minimum) + " dBm", plain);
        }
    }

    const PowerPlot& m_plot;
    std::vector<Rule> m_limiting;
    std::vector<Rule> m_denying;
    std::set<std::int64_t, std::greater<>> m_minima;
    std::vector<std::string> m_title;
    std::vector<std::string> m_conditions;
    PlotScale m_scale;
    Tenths m_stepWidth = 0;
    Tenths m_width = 0;
    Tenths m_top = 0;
    SvgDocument m_svg;
    PlotCanvas m_canvas{m_svg};
};

Picture::Picture(const PowerPlot& plot)
    : m_plot(plot)
    , m_limiting(plot.rulesWhere(true))
    , m_denying(plot.rulesWhere(false))
    , m_scale(plot.scale(maxTicks)) {
    for (const PowerPlot::Series& series : plot.series) {
        if (series.minimum) {
            m_minima.insert(*series.minimum);
        }
    }
    const auto steps = static_cast<Tenths>(std::max<std::size_t>(plot.modulations.size(), 1));
    std::size_t longest = 0;
    for (const std::string& modulation : plot.modulations) {
        longest = std::max(longest, modulation.size());
    }
    m_stepWidth = std::max(static_cast<Tenths>(longest) * axisCharacter, leastWidth / steps);
    m_width = leftMargin + steps * m_stepWidth + (hasLines() ? labelMargin : rightMargin);
    // Wide enough for most letters of most fonts.
    constexpr Tenths titleCharacter = pixels(11);
    constexpr Tenths character = pixels(7);
    const Tenths textSpace = m_width - 2 * padding;
    m_title = linesOf(plot.title, static_cast<std::size_t>(textSpace / titleCharacter));
    const auto charactersOfLine = static_cast<std::size_t>(textSpace / character);
    for (const std::string& line : plot.conditionLines(charactersOfLine)) {
        const std::vector<std::string> parts = linesOf(line, charactersOfLine);
        m_conditions.insert(m_conditions.end(), parts.begin(), parts.end());
    }
    m_top = pixels(50) + static_cast<Tenths>(m_title.size()) * titleHeight +
            static_cast<Tenths>(m_conditions.size()) * lineHeight + (hasLines() ? pixels(10) : 0);
}

} // namespace

std::string letterOf(std::size_t index) {
    constexpr std::size_t letters = 26;
    const std::string letter(1, static_cast<char>('A' + index % letters));
    return index < letters ? letter : letter + std::to_string(index / letters + 1);
}

std::string svgForm(const PowerPlot& plot) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + Picture(plot).draw();
}
