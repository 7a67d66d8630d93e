#include "FleetReport.h"

#include "AnalysisError.h"
#include "Decibels.h"
#include "TextForms.h"

#include <algorithm>
#include <functional>
#include <set>

namespace {

using Grouping = std::string (*)(const RadioAnswer& answer);

struct NamedGrouping {
    const char* name;
    Grouping of;
};

constexpr NamedGrouping fleetGroupings[] = {
    {"family", [](const RadioAnswer& answer) { return answer.family; }},
    {"product", [](const RadioAnswer& answer) { return answer.productNumber; }},
    {"market", [](const RadioAnswer& answer) { return answer.market; }},
    {"channel-spacing",
     [](const RadioAnswer& answer) { return std::to_string(answer.channelSpacing) + " MHz"; }},
    {"dpd", [](const RadioAnswer& answer) { return std::to_string(answer.dpdVersion); }},
    {"rsec", [](const RadioAnswer& answer) { return answer.rsec; }},
    {"cutback", [](const RadioAnswer& answer) { return Decibels::dB(answer.cutback); }},
    {"folder",
     [](const RadioAnswer& answer) {
         const std::size_t slash = answer.radioFile.rfind('/');
         return slash == std::string::npos ? "" : answer.radioFile.substr(0, slash);
     }},
};

std::string groupOf(const RadioAnswer& answer, const std::string& by) {
    for (const NamedGrouping& grouping : fleetGroupings) {
        if (grouping.name == by) {
            const std::string group = grouping.of(answer);
            return group.empty() ? "none" : group;
        }
    }
    return "";
}

/// Ascending, unknown ones behind.
std::size_t placeOfModulation(const std::string& modulation) {
    const std::vector<std::string>& texts = modulationTextForms().texts();
    return static_cast<std::size_t>(std::ranges::find(texts, modulation) - texts.begin());
}

/// As much of a name as is kept.
std::string shortName(const std::string& name) {
    constexpr std::size_t longest = 200;
    return name.size() <= longest ? name : name.substr(0, longest) + "...";
}

/// The line of a key; of a table that is full the one of others.
template <class Map, class Key>
auto& lineOf(Map& lines, const Key& key, const Key& others) {
    return lines[lines.size() < FleetReport::maxLines || lines.contains(key) ? key : others];
}

/// Keeps the first few of an order, of which equal ones came first.
template <class Before>
void keepExtreme(std::vector<std::pair<std::int64_t, std::string>>& extremes, std::int64_t power,
                 const std::string& name, Before isBefore) {
    const auto place = std::ranges::upper_bound(extremes, power, isBefore,
                                                [](const auto& kept) { return kept.first; });
    if (place == extremes.end() && extremes.size() == FleetReport::maxExtremes) {
        return;
    }
    extremes.emplace(place, power, shortName(name));
    extremes.resize(std::min(extremes.size(), FleetReport::maxExtremes));
}

} // namespace

const std::vector<std::string>& FleetReport::groupings() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (const NamedGrouping& grouping : fleetGroupings) {
            all.emplace_back(grouping.name);
        }
        return all;
    }();
    return names;
}

void FleetReport::add(std::string_view line) {
    try {
        add(RadioAnswer::read(line));
    } catch (const AnalysisError& error) {
        ++m_lines;
        if (++m_unreadable == 1) {
            m_firstUnreadable = "line " + std::to_string(m_lines) + ": " + error.what();
        }
    }
}

void FleetReport::add(RadioAnswer answer) {
    ++m_lines;
    if (answer.name().empty()) {
        answer.id = "line " + std::to_string(m_lines);
    } else if (!m_names.add(answer.name())) {
        ++m_doubled;
        return;
    }
    if (answer.isBad()) {
        ++m_bad;
        return;
    }
    ++m_radios;
    const std::string group = shortName(groupOf(answer, m_by));
    std::set<Limits*> ofRadio;
    for (const RadioAnswer::Row& row : answer.rows) {
        addCode(answer, group, row);
        const auto countCode = [&](const std::string& rule) -> Limits& {
            Limits& limits = limitsOf(group, rule);
            ++limits.codes;
            limits.radios += ofRadio.insert(&limits).second ? 1U : 0U;
            return limits;
        };
        Limits& limits = countCode(row.rule);
        if (row.power && row.headroom) {
            limits.headroom.add(*row.headroom);
        }
        if (!row.cutbackRule.empty()) {
            countCode(row.cutbackRule);
        }
    }
}

FleetReport::Limits& FleetReport::limitsOf(const std::string& group, const std::string& rule) {
    Limits& limits = lineOf(m_limits, std::pair(group, rule),
                            std::pair<std::string, std::string>("others", "others"));
    if (limits.codes == 0) {
        const bool isOthers = !m_limits.contains({group, rule});
        limits.group = isOthers ? "others" : group;
        limits.rule = isOthers ? "others" : rule;
    }
    return limits;
}

void FleetReport::addCode(const RadioAnswer& answer, const std::string& group,
                          const RadioAnswer::Row& row) {
    using Key = decltype(m_powers)::key_type;
    const Key key(group, answer.family, placeOfModulation(row.modulation), row.modulation);
    const Key others("others", "others", modulationTextForms().texts().size(), "others");
    Powers& powers = lineOf(m_powers, key, others);
    if (powers.powers.count() + powers.denied == 0) {
        const Key& own = m_powers.contains(key) ? key : others;
        powers.group = std::get<0>(own);
        powers.family = std::get<1>(own);
        powers.modulation = std::get<3>(own);
    }
    if (!row.power) {
        ++powers.denied;
        return;
    }
    powers.powers.add(*row.power);
    addToKind(answer, row);
}

void FleetReport::addToKind(const RadioAnswer& answer, const RadioAnswer::Row& row) {
    const std::string words = (answer.productNumber.empty() ? "no product" : answer.productNumber) +
                              ", " + answer.market + ", " + std::to_string(answer.channelSpacing) +
                              " MHz, DPD " + std::to_string(answer.dpdVersion) + ", RSEC " +
                              answer.rsec;
    const auto key = std::pair(words, row.code);
    if (m_kinds.size() >= maxLines && !m_kinds.contains(key)) {
        ++m_unsorted;
        return;
    }
    Kind& kind = m_kinds.try_emplace(key, Kind{words, row.name}).first->second;
    kind.powers.add(*row.power);
    keepExtreme(kind.lowest, *row.power, answer.name(), std::less());
    keepExtreme(kind.highest, *row.power, answer.name(), std::greater());
}

std::optional<std::pair<std::int64_t, std::int64_t>> FleetReport::Kind::usualRange() const {
    if (powers.count() < leastLike) {
        return std::nullopt;
    }
    const std::int64_t low = *powers.at(25);
    // Of powers that are counted together, all may be the one meant.
    const std::int64_t high = std::min(*powers.at(75) + powers.step() - 1, *powers.greatest());
    const std::int64_t reach = (high - low) * 3 / 2;
    return std::pair(low - reach, high + reach);
}

std::vector<FleetReport::Powers> FleetReport::powers() const {
    std::vector<Powers> lines;
    lines.reserve(m_powers.size());
    for (const auto& [key, line] : m_powers) {
        lines.push_back(line);
    }
    return lines;
}

std::vector<FleetReport::Limits> FleetReport::limits() const {
    std::vector<Limits> lines;
    lines.reserve(m_limits.size());
    for (const auto& [key, line] : m_limits) {
        lines.push_back(line);
    }
    std::ranges::stable_sort(lines, [](const Limits& left, const Limits& right) {
        return std::tie(left.group, right.radios) < std::tie(right.group, left.radios);
    });
    return lines;
}

std::vector<FleetReport::Outlier> FleetReport::outliers() const {
    std::map<std::string, Outlier> byRadio;
    for (const auto& ofKey : m_kinds) {
        const auto& kind = ofKey.second;
        const auto range = kind.usualRange();
        if (!range) {
            continue;
        }
        const std::int64_t usual = *kind.powers.at(50);
        const auto addUnlike = [&](const auto& extremes) {
            for (const auto& [power, radio] : extremes) {
                if (power >= range->first && power <= range->second) {
                    continue;
                }
                Outlier found{radio, kind.words, kind.name, power, usual, kind.powers.count()};
                Outlier& known = byRadio.try_emplace(radio, found).first->second;
                const std::uint64_t codes = known.codes + 1;
                if (std::abs(found.difference()) > std::abs(known.difference())) {
                    known = found;
                }
                known.codes = codes;
            }
        };
        addUnlike(kind.lowest);
        addUnlike(kind.highest);
    }
    std::vector<Outlier> all;
    all.reserve(byRadio.size());
    for (const auto& [radio, outlier] : byRadio) {
        all.push_back(outlier);
    }
    std::ranges::stable_sort(all, std::ranges::greater(),
                             [](const Outlier& outlier) { return std::abs(outlier.difference()); });
    return all;
}

std::uint64_t FleetReport::unlikeCodes() const {
    std::uint64_t count = 0;
    for (const auto& [key, kind] : m_kinds) {
        if (const auto range = kind.usualRange()) {
            count += kind.powers.outside(range->first, range->second);
        }
    }
    return count;
}
