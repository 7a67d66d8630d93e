#include "PowerPlot.h"

#include "OneLine.h"
#include "PowerTableForms.h"
#include "TextColumns.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

/// The step of each modulation. Codes of one modulation have the same power.
using StepsByModulation = std::map<Modulation, PowerPlot::Step>;

StepsByModulation stepsOf(const RuledTable& powers) {
    StepsByModulation steps;
    for (std::size_t index = 0; index < powers.table.rows.size(); ++index) {
        const PowerTable::Row& row = powers.table.rows[index];
        steps.emplace(row.modulation, PowerPlot::Step{row.maxPower, powers.rules[index]});
    }
    return steps;
}

PowerPlot::Series seriesOf(const RuledTable& powers, const std::string& label) {
    PowerPlot::Series series{label, {}, {}};
    for (const auto& [modulation, step] : stepsOf(powers)) {
        series.steps.push_back(step);
    }
    series.minimum = powers.table.minOutputPower;
    return series;
}

std::string titleOf(const PowerTable& table) {
    const std::string product =
        table.productNumber.empty() ? "No product number" : oneLine(table.productNumber);
    return product + " (" + table.family.name + "), radio channel " +
           std::to_string(table.servedChannel);
}

std::string usedRsecText(const PowerTable& table) {
    return "RSEC " + table.usedRsec.value_or(convertRsecEnumToString(table.rsec));
}

bool hasSelection(const PowerTable& table) {
    return table.selectedMin.code != ModulationAndCoding::UNDEFINED ||
           table.selectedMax.code != ModulationAndCoding::UNDEFINED;
}

/// Conditions under which powers hold, each from the line of a table's heading.
std::vector<std::string> conditionsOf(const PowerTable& table) {
    const Heading heading = headingOf(table);
    const auto line = [&heading](const std::string& label) {
        const auto found = std::ranges::find(heading, label, &Heading::value_type::first);
        return found == heading.end() ? std::string() : found->second;
    };
    const std::string format = line("Frame format");
    const std::string booster = line("Booster");
    return {format == "configured" ? "" : "frame format " + format,
            line("Market"),
            line("Channel spacing"),
            "DPD " + line("DPD version"),
            usedRsecText(table),
            (hasSelection(table) ? "" : "ACM range ") + line("Selected ACM range"),
            "power cutback " + line("Power cutback"),
            booster == "none" ? "" : "booster " + booster};
}

/// What holds for all tables.
std::vector<std::string> conditionsOf(const std::vector<const PowerTable*>& tables) {
    std::vector<std::string> common = conditionsOf(*tables.front());
    for (const PowerTable* const table : tables) {
        const std::vector<std::string> own = conditionsOf(*table);
        for (std::size_t index = 0; index < common.size(); ++index) {
            common[index] = common[index] == own[index] ? common[index] : "";
        }
    }
    std::erase(common, "");
    return common;
}

std::vector<std::string> modulationsOf(const RuledTable& powers) {
    std::vector<std::string> modulations;
    for (const auto& [modulation, step] : stepsOf(powers)) {
        modulations.push_back(convertAcmEnumToString(modulation));
    }
    return modulations;
}

/// Some of the values of a line, evenly spread, the first and the last among them.
std::vector<Inputs::Value> thinnedOut(const std::vector<Inputs::Value>& values,
                                      std::size_t wanted) {
    std::vector<Inputs::Value> chosen;
    chosen.reserve(wanted);
    for (std::size_t index = 0; index < wanted; ++index) {
        chosen.push_back(values[index * (values.size() - 1) / (wanted - 1)]);
    }
    return chosen;
}

/// @param mayThinOut whether some values may be left out to have few enough lines.
DrawnPlot drawnFrom(const RadioCase& radio, const Sweep::Line& line, const AskedInputs& asked,
                    bool mayThinOut) {
    const Sweep sweep = Sweep::run(radio, {line});
    DrawnPlot drawn{PowerPlot::of(sweep), sweep.outcome(), sweep.troubles()};
    const std::size_t count = drawn.plot.series.size();
    if (count > PowerPlot::maxSeries && mayThinOut) {
        constexpr std::size_t wanted = 6;
        return drawnFrom(radio, {line.axis, thinnedOut(line.values, wanted)}, asked, false);
    }
    if (count > PowerPlot::maxSeries) {
        throw QuestionError(asked.prefix + "over " + line.axis->name() + ": " +
                            std::to_string(count) + " lines; at most " +
                            std::to_string(PowerPlot::maxSeries) +
                            " can be told apart, list fewer values");
    }
    return drawn;
}

} // namespace

PowerPlot PowerPlot::of(const RuledTable& powers) {
    PowerPlot plot;
    plot.title = titleOf(powers.table);
    plot.conditions = conditionsOf(std::vector{&powers.table});
    plot.modulations = modulationsOf(powers);
    plot.series.push_back(seriesOf(powers, ""));
    return plot;
}

PowerPlot PowerPlot::of(const Sweep& sweep) {
    PowerPlot plot;
    const Sweep::Line& line = sweep.lines.front();
    plot.over = line.axis->heading();
    std::vector<const PowerTable*> tables;
    std::set<std::string> titles;
    for (const Sweep::Point& point : sweep.points) {
        if (!point.trouble.empty()) {
            continue;
        }
        tables.push_back(&point.powers.table);
        titles.insert(titleOf(point.powers.table));
        plot.modulations = modulationsOf(point.powers);
        Series series = seriesOf(point.powers, InputAxis::labelOf(point.values.front()));
        const auto same = std::ranges::find_if(plot.series, [&series](const Series& known) {
            return known.steps == series.steps && known.minimum == series.minimum;
        });
        if (same == plot.series.end()) {
            plot.series.push_back(std::move(series));
        } else {
            same->label += ", " + series.label;
        }
    }
    if (tables.empty()) {
        return plot;
    }
    plot.title = titles.size() == 1 ? *titles.begin()
                                    : "Radio channel " + std::to_string(sweep.asIs.servedChannel);
    plot.conditions = conditionsOf(tables);
    return plot;
}

std::vector<std::string> PowerPlot::conditionLines(std::size_t width) const {
    std::vector<std::string> lines;
    for (const std::string& condition : conditions) {
        const bool fits =
            !lines.empty() && textWidth(lines.back()) + 2 + textWidth(condition) <= width;
        if (fits) {
            lines.back() += "; " + condition;
        } else {
            lines.push_back(condition);
        }
    }
    return lines;
}

std::size_t PowerPlot::placeOf(Rule rule) const {
    std::vector<Rule> rules = rulesWhere(true);
    const std::vector<Rule> denying = rulesWhere(false);
    rules.insert(rules.end(), denying.begin(), denying.end());
    return static_cast<std::size_t>(std::ranges::find(rules, rule) - rules.begin());
}

PlotScale PowerPlot::scale(std::int64_t maxTicks) const {
    const auto [least, greatest] = extremes();
    return {least, greatest, maxTicks};
}

std::optional<std::int64_t> PowerPlot::commonMinimum() const {
    const auto differs = [this](const Series& other) {
        return other.minimum != series.front().minimum;
    };
    const bool isCommon = !series.empty() && std::ranges::none_of(series, differs);
    return isCommon ? series.front().minimum : std::nullopt;
}

std::pair<std::int64_t, std::int64_t> PowerPlot::extremes() const {
    std::vector<std::int64_t> figures;
    for (const Series& line : series) {
        for (const Step& step : line.steps) {
            if (step.power) {
                figures.push_back(*step.power);
            }
        }
        if (line.minimum) {
            figures.push_back(*line.minimum);
        }
    }
    if (figures.empty()) {
        return {0, 0};
    }
    const auto [least, greatest] = std::ranges::minmax_element(figures);
    return {*least, *greatest};
}

std::vector<Rule> PowerPlot::rulesWhere(bool hasPower) const {
    std::set<Rule> rules;
    for (const Series& line : series) {
        for (const Step& step : line.steps) {
            if (step.power.has_value() == hasPower) {
                rules.insert(step.rule);
            }
        }
    }
    return {rules.begin(), rules.end()};
}

DrawnPlot DrawnPlot::of(const RadioCase& radio, const std::vector<std::string>& over,
                        const AskedInputs& asked) {
    if (over.empty()) {
        const RuledTable powers(radio.explain());
        if (!powers.table.failure.empty()) {
            throw AnalysisError(Outcome::OtherTrouble,
                                (radio.name.empty() ? "" : radio.name + ": ") +
                                    "no powers: " + powers.table.failure);
        }
        return {PowerPlot::of(powers), Outcome::Done, powers.mismatches};
    }
    const bool isUsual = over.front().find('=') == std::string::npos;
    return drawnFrom(radio, Sweep::linesOf(over, asked, radio).front(), asked, isUsual);
}
