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

std::string rsecText(const PowerTable& table) {
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
        const auto found = std::find_if(heading.begin(), heading.end(),
                                        [&label](const auto& one) { return one.first == label; });
        return found == heading.end() ? std::string() : found->second;
    };
    const std::string format = line("Frame format");
    const std::string booster = line("Booster");
    return {format == "configured" ? "" : "frame format " + format,
            line("Market"),
            line("Channel spacing"),
            "DPD " + line("DPD version"),
            rsecText(table),
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
        const auto same =
            std::find_if(plot.series.begin(), plot.series.end(), [&series](const Series& known) {
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

std::vector<Rule> PowerPlot::limitingRules() const {
    return rulesWhere(true);
}

std::vector<Rule> PowerPlot::denyingRules() const {
    return rulesWhere(false);
}

std::optional<std::int64_t> PowerPlot::commonMinimum() const {
    const auto differs = [this](const Series& other) {
        return other.minimum != series.front().minimum;
    };
    const bool isCommon = !series.empty() && std::none_of(series.begin(), series.end(), differs);
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
    const auto [least, greatest] = std::minmax_element(figures.begin(), figures.end());
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
