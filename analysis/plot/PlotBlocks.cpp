#include "Decibels.h"
#include "PowerPlot.h"
#include "TextColumns.h"

#include <algorithm>
#include <vector>

namespace {

constexpr std::size_t leastBar = 16;
constexpr std::size_t longestLabel = 20;
constexpr std::int64_t columnsOfTick = 7;

/// How a bar shows a rule: by letter, by shade and, where colours are allowed, by colour.
constexpr const char* shades[] = {"█", "▓", "▒", "░"};
constexpr const char* plainShades[] = {"#", "=", "+", "-"};
constexpr std::size_t usualWidth = 80;
constexpr TextStyle colors[] = {TextStyle::Blue,    TextStyle::Yellow, TextStyle::Green,
                                TextStyle::Magenta, TextStyle::Cyan,   TextStyle::Red};

std::string repeated(const std::string& text, std::int64_t count) {
    std::string all;
    for (std::int64_t index = 0; index < count; ++index) {
        all += text;
    }
    return all;
}

/// Draws one plot line by line: a bar for each step of each series.
class Blocks {
public:
    Blocks(const PowerPlot& plot, const TextLook& look);

    std::string draw() const {
        std::string text = m_look.styled(wrapped(m_plot.title, m_look.width), TextStyle::Bold) +
                           '\n' + conditions() + "\nMaximum power in dBm over modulation" +
                           (m_plot.over.empty() ? "" : " and " + m_plot.over) + "\n\n";
        for (std::size_t step = 0; step < m_plot.modulations.size(); ++step) {
            if (!m_plot.over.empty()) {
                text += m_plot.modulations[step] + '\n';
            }
            for (const PowerPlot::Series& series : m_plot.series) {
                text += lineOf(series, step);
            }
        }
        return text + axis() + '\n' + legend();
    }

private:
    std::string labelOf(const PowerPlot::Series& series, std::size_t step) const {
        if (m_plot.over.empty()) {
            return m_plot.modulations[step];
        }
        return "  " + (m_hasLongLabels ? numberOf(series) : series.label);
    }

    std::string numberOf(const PowerPlot::Series& series) const {
        return std::to_string(&series - m_plot.series.data() + 1);
    }

    std::string shadeOf(std::size_t rule) const {
        return (m_look.allowsBlocks ? shades : plainShades)[rule % std::size(shades)];
    }

    /// Of the minimum.
    std::string mark() const { return m_look.allowsBlocks ? "│" : "|"; }

    std::string barOf(const PowerPlot::Series& series, const PowerPlot::Step& step) const {
        const std::int64_t length = step.power ? m_scale.placeOf(*step.power, m_barWidth) : 0;
        const std::int64_t floor =
            series.minimum ? std::min(m_scale.placeOf(*series.minimum, m_barWidth), m_barWidth - 1)
                           : -1;
        const std::size_t index = m_plot.placeOf(step.rule);
        const auto styled = [this, index](const std::string& text) {
            return m_look.styled(text, colors[index % std::size(colors)]);
        };
        const std::string shade = shadeOf(index);
        if (floor < 0) {
            return styled(repeated(shade, length));
        }
        // The minimum is a mark across the bars.
        if (length <= floor) {
            return styled(repeated(shade, length)) + repeated(" ", floor - length) + mark();
        }
        return styled(repeated(shade, floor)) + mark() +
               styled(repeated(shade, length - floor - 1));
    }

    std::string lineOf(const PowerPlot::Series& series, std::size_t step) const {
        const PowerPlot::Step& shown = series.steps[step];
        std::string line =
            padded(labelOf(series, step), m_labelWidth, Align::Left) + "  " +
            padded(shown.power ? Decibels::format(*shown.power) : "-", m_powerWidth, Align::Right) +
            ' ' + letterOf(m_plot.placeOf(shown.rule)) + ' ';
        line += barOf(series, shown);
        return line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
    }

    std::string conditions() const {
        std::string text;
        for (const std::string& line : m_plot.conditionLines(m_look.width)) {
            text += wrapped(line, m_look.width) + '\n';
        }
        return text;
    }

    std::string axis() const {
        std::string ruler(static_cast<std::size_t>(m_barWidth) + columnsOfTick, ' ');
        std::string numbers = ruler;
        for (const std::int64_t tick : m_scale.ticks()) {
            const auto place = static_cast<std::size_t>(m_scale.placeOf(tick, m_barWidth));
            const std::string number = std::to_string(tick / 100);
            ruler[place] = '|';
            numbers.replace(place, number.size(), number);
        }
        const std::size_t start = m_labelWidth + m_powerWidth + 5;
        const std::string blanks(start, ' ');
        const std::string unit = padded("dBm", start - 1, Align::Right) + ' ';
        const auto trimmed = [](const std::string& line) {
            return line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
        };
        return blanks + trimmed(ruler) + unit + trimmed(numbers);
    }

    std::string legend() const {
        const std::size_t limiting = m_plot.rulesWhere(true).size();
        std::string text;
        if (m_hasLongLabels) {
            for (const PowerPlot::Series& series : m_plot.series) {
                text += padded(numberOf(series), 6, Align::Left) + series.label + '\n';
            }
        }
        for (std::size_t index = 0; index < m_rules.size(); ++index) {
            const bool isDenied = index >= limiting;
            const std::string swatch = isDenied ? "   "
                                                : m_look.styled(repeated(shadeOf(index), 3),
                                                                colors[index % std::size(colors)]);
            text += letterOf(index) + ' ' + swatch + ' ' +
                    (isDenied ? "no power: " : "limited by ") + wordsFor(m_rules[index]) + '\n';
        }
        if (const std::optional<std::int64_t> minimum = m_plot.commonMinimum()) {
            text += mark() + "     minimum power " + Decibels::format(*minimum) + " dBm\n";
        } else {
            text += mark() + "     minimum power\n";
        }
        return text;
    }

    const PowerPlot& m_plot;
    TextLook m_look;
    std::vector<Rule> m_rules;
    bool m_hasLongLabels; ///< they stand in the legend, and numbers beside the bars
    std::size_t m_labelWidth = 0;
    std::size_t m_powerWidth = 0;
    std::int64_t m_barWidth = 0;
    PlotScale m_scale;
};

Blocks::Blocks(const PowerPlot& plot, const TextLook& look)
    : m_plot(plot)
    , m_look(look)
    , m_rules(plot.rulesWhere(true))
    , m_hasLongLabels(std::ranges::any_of(
          plot.series,
          [](const PowerPlot::Series& series) { return textWidth(series.label) > longestLabel; }))
    , m_scale(0, 0, 3) {
    m_look.width = look.width == 0 ? usualWidth : look.width;
    const std::vector<Rule> denying = plot.rulesWhere(false);
    m_rules.insert(m_rules.end(), denying.begin(), denying.end());
    for (const PowerPlot::Series& series : plot.series) {
        for (std::size_t step = 0; step < series.steps.size(); ++step) {
            const std::optional<std::int64_t>& power = series.steps[step].power;
            m_labelWidth = std::max(m_labelWidth, textWidth(labelOf(series, step)));
            m_powerWidth =
                std::max(m_powerWidth, power ? Decibels::format(*power).size() : std::size_t{1});
        }
    }
    // The label, the power, the letter of the rule, the gaps between them and the number of the
    // last tick.
    const std::size_t lastTick = std::to_string(plot.extremes().second / 100).size();
    const std::size_t others = m_labelWidth + m_powerWidth + 5 + lastTick + 1;
    const std::size_t width = m_look.width;
    m_barWidth = static_cast<std::int64_t>(std::max(leastBar, width - std::min(width, others)));
    m_scale = plot.scale(m_barWidth / columnsOfTick);
}

} // namespace

std::string blockForm(const PowerPlot& plot, const TextLook& look) {
    return Blocks(plot, look).draw();
}
