#include "FleetReport.h"

#include "Decibels.h"
#include "PlotCanvas.h"
#include "PlotScale.h"
#include "SvgDocument.h"

#include <algorithm>

namespace {

/// Draws a report: a panel of boxes for each family, then a bar for each rule.
class FleetPicture {
public:
    explicit FleetPicture(const FleetReport& report)
        : m_limits(report.limits())
        , m_radios(report.radios()) {
        for (FleetReport::Powers& line : report.powers()) {
            if (line.powers.count() == 0) {
                continue;
            }
            if (m_panels.empty() || m_panels.back().front().group != line.group ||
                m_panels.back().front().family != line.family) {
                m_panels.emplace_back();
            }
            m_panels.back().push_back(std::move(line));
        }
        m_hidden = m_panels.size() - std::min(m_panels.size(), maxPanels);
        m_panels.resize(m_panels.size() - m_hidden);
        m_hidden += m_limits.size() - std::min(m_limits.size(), maxBars);
        m_limits.resize(std::min(m_limits.size(), maxBars));
        for (const auto& panel : m_panels) {
            m_width = std::max(m_width, left + static_cast<Tenths>(panel.size()) * slot + padding);
        }
    }

    std::string draw() {
        const Tenths height = heading + static_cast<Tenths>(m_panels.size()) * panelHeight +
                              static_cast<Tenths>(m_limits.size()) * barHeight + pixels(90);
        const std::string title = "Powers of " + std::to_string(m_radios) + " radios";
        m_svg.open("svg", {{"xmlns", "http://www.w3.org/2000/svg"},
                           {"width", svgNumber(m_width)},
                           {"height", svgNumber(height)},
                           {"viewBox", "0 0 " + svgNumber(m_width) + ' ' + svgNumber(height)},
                           {"role", "img"},
                           {"aria-labelledby", "title description"},
                           {"font-family", "Helvetica, Arial, 'DejaVu Sans', sans-serif"}});
        m_svg.addText("title", {{"id", "title"}}, title);
        m_svg.addText("desc", {{"id", "description"}}, description());
        definePatterns();
        m_canvas.fill({0, 0, m_width, height}, PlotCanvas::paper, PlotCanvas::grid);
        m_canvas.write(padding, pixels(34), Anchor::Start, title, {17, PlotCanvas::ink, true});
        m_canvas.write(padding, pixels(54), Anchor::Start,
                       "Line: least to greatest; box: middle half; bar: median",
                       {12, PlotCanvas::quiet});
        Tenths top = heading;
        for (const auto& panel : m_panels) {
            drawPanel(panel, top);
            top += panelHeight;
        }
        drawRules(top + pixels(20));
        if (m_hidden > 0) {
            m_canvas.write(padding, height - pixels(14), Anchor::Start,
                           std::to_string(m_hidden) + " more families and rules are not drawn",
                           {12, PlotCanvas::quiet});
        }
        m_svg.close("svg");
        return m_svg.text();
    }

private:
    using Panel = std::vector<FleetReport::Powers>;
    using Anchor = PlotCanvas::Anchor;

    static constexpr std::size_t maxPanels = 12;
    static constexpr std::size_t maxBars = 30;
    static constexpr Tenths padding = pixels(24);
    static constexpr Tenths left = pixels(76);
    static constexpr Tenths slot = pixels(76);
    static constexpr Tenths heading = pixels(66);
    static constexpr Tenths plotHeight = pixels(180);
    static constexpr Tenths panelHeight = pixels(270);
    static constexpr Tenths barHeight = pixels(22);

    static std::string nameOf(const std::string& group, const std::string& own) {
        return group.empty() ? own : group + ": " + own;
    }

    static const Rule* ruleOf(const std::string& code) {
        const std::vector<Rule>& rules = allRules();
        const auto found =
            std::ranges::find_if(rules, [&code](Rule rule) { return codeOf(rule) == code; });
        return found == rules.end() ? nullptr : &*found;
    }

    std::string description() const {
        std::string text;
        for (const auto& panel : m_panels) {
            text += nameOf(panel.front().group, panel.front().family) + ": ";
            for (const FleetReport::Powers& line : panel) {
                text += line.modulation + ' ' + Decibels::format(*line.powers.least()) + " to " +
                        Decibels::format(*line.powers.greatest()) + " dBm, median " +
                        Decibels::format(*line.powers.at(50)) + " dBm; ";
            }
        }
        for (const FleetReport::Limits& line : m_limits) {
            text += nameOf(line.group, wordsFor(line.rule)) + ": " + std::to_string(line.radios) +
                    " radios; ";
        }
        return text;
    }

    void definePatterns() {
        std::vector<Rule> rules;
        for (const FleetReport::Limits& line : m_limits) {
            const Rule* const rule = ruleOf(line.rule);
            if (rule != nullptr && std::ranges::find(rules, *rule) == rules.end()) {
                rules.push_back(*rule);
            }
        }
        m_canvas.definePatterns(rules);
    }

    void drawPanel(const Panel& panel, Tenths top) {
        std::int64_t least = *panel.front().powers.least();
        std::int64_t greatest = least;
        for (const FleetReport::Powers& line : panel) {
            least = std::min(least, *line.powers.least());
            greatest = std::max(greatest, *line.powers.greatest());
        }
        const PlotScale scale(least, greatest, 7);
        top += pixels(34);
        const Tenths bottom = top + plotHeight;
        const Tenths right = left + static_cast<Tenths>(panel.size()) * slot;
        const auto yOf = [&](std::int64_t power) {
            return bottom - scale.placeOf(power, plotHeight);
        };
        m_canvas.write(padding, top - pixels(14), Anchor::Start,
                       nameOf(panel.front().group, panel.front().family) + ", in dBm",
                       {13, PlotCanvas::ink, true});
        for (const std::int64_t tick : scale.ticks()) {
            m_canvas.line(left, yOf(tick), right, yOf(tick), {PlotCanvas::grid, "1"});
            m_canvas.write(left - pixels(8), yOf(tick) + pixels(4), Anchor::End,
                           std::to_string(tick / 100), {12, PlotCanvas::quiet});
        }
        Tenths x = left + slot / 2;
        for (const FleetReport::Powers& line : panel) {
            const Distribution& powers = line.powers;
            const Tenths boxTop = yOf(*powers.at(75));
            const Tenths boxBottom = yOf(*powers.at(25));
            m_canvas.line(x, yOf(*powers.greatest()), x, yOf(*powers.least()),
                          {PlotCanvas::ink, "1.5"});
            m_canvas.fill({x - pixels(14), boxTop, pixels(28),
                           std::max<Tenths>(boxBottom - boxTop, pixels(2))},
                          PlotCanvas::floor, PlotCanvas::ink);
            const Tenths median = yOf(*powers.at(50));
            m_canvas.line(x - pixels(14), median, x + pixels(14), median, {PlotCanvas::ink, "3"});
            m_canvas.write(x, bottom + pixels(18), Anchor::Middle, line.modulation, {});
            m_canvas.write(x, bottom + pixels(34), Anchor::Middle, std::to_string(powers.count()),
                           {11, PlotCanvas::quiet});
            x += slot;
        }
    }

    void drawRules(Tenths top) {
        m_canvas.write(padding, top, Anchor::Start, "Radios that each rule limits",
                       {13, PlotCanvas::ink, true});
        const Tenths longest = m_width - padding * 2 - pixels(330);
        for (const FleetReport::Limits& line : m_limits) {
            top += barHeight;
            const Tenths length =
                std::max<Tenths>(longest * static_cast<Tenths>(line.radios) /
                                     static_cast<Tenths>(std::max<std::uint64_t>(m_radios, 1)),
                                 pixels(1));
            const PlotCanvas::Area bar{padding, top - pixels(12), length, pixels(16)};
            const Rule* const rule = ruleOf(line.rule);
            if (rule != nullptr) {
                m_canvas.fillWith(bar, *rule);
            } else {
                m_canvas.fill(bar, PlotCanvas::floor, PlotCanvas::ink);
            }
            const auto headroom = line.headroom.at(50);
            m_canvas.write(padding + length + pixels(8), top, Anchor::Start,
                           std::to_string(line.radios) + "  " +
                               nameOf(line.group, wordsFor(line.rule)) +
                               (headroom ? ", headroom " + Decibels::dB(*headroom) : ""),
                           {});
        }
    }

    std::vector<Panel> m_panels;
    std::vector<FleetReport::Limits> m_limits;
    std::uint64_t m_radios;
    std::size_t m_hidden = 0;
    Tenths m_width = pixels(640);
    SvgDocument m_svg;
    PlotCanvas m_canvas{m_svg};
};

} // namespace

std::string svgForm(const FleetReport& report) {
    return FleetPicture(report).draw();
}
