#include "WhyNot.h"

#include "AnalysisError.h"
#include "Decibels.h"
#include "InputAxis.h"
#include "RadioFilePlaces.h"
#include "TextForms.h"

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <limits>
#include <utility>

namespace {

using Change = WhyNot::Change;
using Power = std::optional<std::int32_t>;

/// How far up a Pmax or a booster's input power is searched, in hundredths of a dB.
constexpr std::int64_t farthestRaise = 10000;

/// The row of a table with the lowest power among those that are chosen; one without a power is
/// lower than all.
std::optional<std::size_t> lowestOf(const PowerTable& table, const ModulationChoice& choice) {
    std::optional<std::size_t> lowest;
    for (std::size_t index = 0; index < table.rows.size(); ++index) {
        if (!choice.includes(table.rows[index])) {
            continue;
        }
        if (!lowest || table.rows[index].maxPower < table.rows[*lowest].maxPower) {
            lowest = index;
        }
    }
    return lowest;
}

/// The values that make sense for a radio, or none.
std::vector<Inputs::Value> usualValuesOf(const InputAxis& axis, const RadioCase& radio) {
    try {
        return axis.usualValues("input", radio);
    } catch (const QuestionError&) {
        return {};
    }
}

/// Tries changes of one radio.
class Search {
public:
    Search(const RadioCase& radio, const ModulationChoice& choice, WhyNot& found)
        : m_radio(radio)
        , m_choice(choice)
        , m_found(found)
        , m_explained(radio.explain()) {}

    const ExplainedTable& explained() const { return m_explained; }

    void searchCutbacks() {
        const OperatingInputs& inputs = m_explained.table.inputs;
        const std::int64_t cutback = inputs.cutbackInForce();
        if (!inputs.isTemporary()) {
            searchInput({"cutback", "permanent cutback", Decibels::dB(cutback)},
                        Rule::PermanentCutback, cutback, 0, Decibels::dB, [](std::int64_t value) {
                            return Inputs::PermanentCutback{static_cast<std::uint32_t>(value)};
                        });
            return;
        }
        const Change change{"temporary-cutback", "temporary cutback", Decibels::dB(cutback)};
        searchInput(
            change, Rule::TemporaryCutback, cutback, 0, Decibels::dB, [](std::int64_t value) {
                return OperatingInputs::TemporaryCutback{true, static_cast<std::uint32_t>(value)};
            });
        if (const Power lifted =
                allowedBy(Inputs::varied(m_radio, OperatingInputs::TemporaryCutback{false, 0}))) {
            add({change.input,
                 change.words,
                 change.from,
                 "lifted",
                 *lifted,
                 {},
                 pointerTo(Rule::TemporaryCutback)});
        }
    }

    void searchSelection() {
        searchCode<Inputs::SelectedMin>("min", "selected minimum", m_explained.table.selectedMin);
        searchCode<Inputs::SelectedMax>("max", "selected maximum", m_explained.table.selectedMax);
    }

    void searchChoices() {
        const PowerTable& table = m_explained.table;
        searchAxis("rsec", InputAxis::labelOf(table.rsec));
        searchAxis("dpd", InputAxis::labelOf(table.dpdVersion));
        searchAxis("market", InputAxis::labelOf(table.market));
        searchAxis("channel-spacing", InputAxis::labelOf(table.channelSpacing));
    }

    void searchPmax() {
        std::vector<Modulation> searched;
        for (const Explanation::Lookup& lookup : m_found.explanation.lookups) {
            if (std::ranges::find(searched, lookup.modulation) == searched.end()) {
                searched.push_back(lookup.modulation);
                searchRow(lookup);
            }
        }
    }

    void searchBooster() {
        const auto& booster = m_explained.table.inputs.booster;
        if (!booster || booster->presence == 0) {
            return;
        }
        if (const Power without = allowedBy(Inputs::varied(m_radio, OperatingInputs::Booster()))) {
            add({"booster", "booster", "present", "none", *without});
        } else {
            giveUp("removal of the booster");
        }
        const auto with = [booster](std::int32_t OperatingInputs::Booster::*member) {
            return [booster, member](std::int64_t value) {
                OperatingInputs::Booster changed = *booster;
                changed.*member = static_cast<std::int32_t>(value);
                return changed;
            };
        };
        using Limits = std::numeric_limits<std::int32_t>;
        searchInput({"booster-gain", "booster gain", Decibels::dB(booster->gain)},
                    Rule::BoosterGain, booster->gain,
                    std::max<std::int64_t>(booster->gain - farthestRaise, Limits::min()),
                    Decibels::dB, with(&OperatingInputs::Booster::gain));
        searchInput({"booster-max-input", "booster's highest input power",
                     Decibels::dBm(booster->maxInputPower)},
                    Rule::BoosterInputLimit, booster->maxInputPower,
                    std::min<std::int64_t>(booster->maxInputPower + farthestRaise, Limits::max()),
                    Decibels::dBm, with(&OperatingInputs::Booster::maxInputPower));
        searchBoosterChoices(*booster);
    }

private:
    /// Makes the radio in which an input has a value.
    using Vary = std::function<RadioCase(std::int64_t value)>;

    /// The power of a changed radio; nothing if there is none, or no answer.
    Power powerOf(const RadioCase& radio) const {
        try {
            const PowerTable table = radio.powers();
            const auto row = lowestOf(table, m_choice);
            return row && table.rows[*row].maxPower
                       ? Power(static_cast<std::int32_t>(*table.rows[*row].maxPower))
                       : std::nullopt;
        } catch (const AnalysisError&) {
            return std::nullopt; // a radio whose service does not start gives no power
        }
    }

    /// The power of a changed radio if it is what is wanted; else nothing.
    Power allowedBy(const RadioCase& radio) const {
        const Power power = powerOf(radio);
        return power && *power >= m_found.wanted ? power : std::nullopt;
    }

    /// Searches between a value that does not allow the power and one that may.
    /// @return the nearest one to the first that does; nothing if not even the last does.
    std::optional<std::int64_t> nearest(std::int64_t from, std::int64_t to,
                                        const Vary& vary) const {
        if (from == to || !allowedBy(vary(to))) {
            return std::nullopt;
        }
        // `to` always allows the power and `from` never does, so that they end as neighbours.
        while (std::abs(to - from) > 1) {
            const std::int64_t middle = from + (to - from) / 2;
            (allowedBy(vary(middle)) ? to : from) = middle;
        }
        return to;
    }

    /// Adds the change to the nearest value, or says that there is none.
    /// @param text of a value, with its unit.
    void searchNumber(Change change, std::int64_t from, std::int64_t to, const Vary& vary,
                      std::string (*text)(std::int64_t)) {
        const std::optional<std::int64_t> value = nearest(from, to, vary);
        if (!value) {
            giveUp(change.words);
            return;
        }
        change.to = text(*value);
        change.amount = *value - from;
        change.power = powerOf(vary(*value)).value_or(0);
        add(std::move(change));
    }

    /// Likewise for the input of a step, of which a number makes a value.
    template <class MakeValue>
    void searchInput(Change change, Rule step, std::int64_t from, std::int64_t to,
                     std::string (*text)(std::int64_t), MakeValue makeValue) {
        change.pointer = pointerTo(step);
        searchNumber(
            std::move(change), from, to,
            [&](std::int64_t value) { return Inputs::varied(m_radio, makeValue(value)); }, text);
    }

    /// Adds each value of an axis that allows the power, or says that there is none.
    void searchAxis(const std::string& name, const std::string& current) {
        static const std::string anInput = "input";
        const InputAxis& axis = InputAxis::named(anInput, name);
        bool isFound = false;
        for (const Inputs::Value& value : usualValuesOf(axis, m_radio)) {
            if (InputAxis::labelOf(value) == current) {
                continue;
            }
            if (const Power power = allowedBy(Inputs::varied(m_radio, value))) {
                add({name,
                     axis.words(),
                     current,
                     InputAxis::labelOf(value),
                     *power,
                     {},
                     placeOf(name)});
                isFound = true;
            }
        }
        if (!isFound) {
            giveUp(axis.words());
        }
    }

    /// Adds the code nearest to the selected one that allows the power.
    template <class Selected>
    void searchCode(const std::string& name, const std::string& words,
                    ModulationAndCoding current) {
        std::vector<ModulationAndCoding> codes;
        for (const PowerTable::Row& row : m_explained.table.rows) {
            if (row.modulationAndCode.code != current.code &&
                row.modulation != Modulation::UNDEFINED) {
                codes.push_back(row.modulationAndCode);
            }
        }
        std::ranges::sort(codes, [current](ModulationAndCoding left, ModulationAndCoding right) {
            // Of two that are equally near the lower one comes first.
            return std::make_pair(std::abs(left.code - current.code), left.code) <
                   std::make_pair(std::abs(right.code - current.code), right.code);
        });
        // A frame format may list a code again and again; it is tried once.
        codes.erase(std::unique(codes.begin(), codes.end()), codes.end());
        for (const ModulationAndCoding code : codes) {
            if (const Power power = allowedBy(Inputs::varied(m_radio, Selected{code}))) {
                const bool isSelected = current.code != ModulationAndCoding::UNDEFINED;
                add({name,
                     words,
                     isSelected ? convertCodeAndModulationEnumToString(current) : "none",
                     convertCodeAndModulationEnumToString(code),
                     *power,
                     {},
                     isSelected ? "/acmHandler/" + name : ""});
                return;
            }
        }
        giveUp(words);
    }

    void searchRow(const Explanation::Lookup& lookup) {
        if (lookup.missing == Rule::UnknownDpdVersion || (!lookup.missing && !lookup.power)) {
            return;
        }
        const Vary vary = [this, &lookup](std::int64_t power) {
            RadioCase changed = m_radio;
            changed.file = Inputs::withPmax(m_radio.file, m_explained.pmaxTableKey,
                                            lookup.modulation, static_cast<std::int32_t>(power));
            return changed;
        };
        const std::string words = "Pmax of " + convertAcmEnumToString(lookup.modulation);
        Change change{"pmax-row", words, lookup.power ? Decibels::dBm(*lookup.power) : "no row"};
        change.pointer = lookup.pointer;
        const std::int64_t from = lookup.power.value_or(-farthestRaise);
        const std::int64_t to = std::min<std::int64_t>(from + 2 * farthestRaise,
                                                       std::numeric_limits<std::int32_t>::max());
        const std::size_t before = m_found.changes.size();
        searchNumber(change, from, to, vary, Decibels::dBm);
        if (lookup.missing && m_found.changes.size() > before) {
            m_found.changes.back().amount.reset(); // there is nothing that it is added to
        }
    }

    void searchBoosterChoices(const OperatingInputs::Booster& booster) {
        // Only one presence selects the other band.
        constexpr std::int32_t presenceOfOtherBand = 7;
        OperatingInputs::Booster changed = booster;
        changed.presence = booster.presence == presenceOfOtherBand ? 1 : presenceOfOtherBand;
        if (const Power otherBand = allowedBy(Inputs::varied(m_radio, changed))) {
            add({"booster-presence", "booster presence", std::to_string(booster.presence),
                 std::to_string(changed.presence), *otherBand});
        } else {
            giveUp("booster presence");
        }
        const std::string words = "booster's highest modulation";
        for (const std::string& text : modulationTextForms().texts()) {
            changed = booster;
            changed.maxModulation =
                modulationTextForms().find(text).value_or(Modulation::UNDEFINED);
            if (changed.maxModulation <= booster.maxModulation ||
                changed.maxModulation == Modulation::UNDEFINED) {
                continue;
            }
            if (const Power power = allowedBy(Inputs::varied(m_radio, changed))) {
                add({"booster-max-modulation", words, convertAcmEnumToString(booster.maxModulation),
                     text, *power});
                return;
            }
        }
        giveUp(words);
    }

    /// Where the radio file holds the figure of a step; or empty.
    std::string pointerTo(Rule rule) const {
        for (const Explanation::Step& step : m_found.explanation.steps) {
            if (step.rule == rule) {
                return step.pointer;
            }
        }
        return {};
    }

    /// Where the radio file holds an input that an axis varies; or empty.
    std::string placeOf(const std::string& axis) const {
        if (axis == "rsec") {
            return m_explained.table.isRsecGiven ? "" : "/systemPowerController/referenceSec";
        }
        std::string key = axis == "dpd" ? "dpdVersion" : "channelSpacing";
        if (axis == "market") {
            key = axis;
        }
        const std::int32_t id = m_explained.table.frameFormatId;
        if (id < 1) {
            return "/frameFormat/" + key;
        }
        const auto& frameFormats = m_radio.file.node.hardwareConfigurationHandler->frameFormats;
        for (std::size_t index = 0; index < frameFormats.size(); ++index) {
            if (frameFormats[index].id == id) {
                return "/hardwareConfigurationHandler/frameFormats/" + std::to_string(index) + '/' +
                       key;
            }
        }
        return {};
    }

    void add(Change change) { m_found.changes.push_back(std::move(change)); }
    void giveUp(const std::string& words) { m_found.without.push_back(words); }

    const RadioCase& m_radio;
    const ModulationChoice& m_choice;
    WhyNot& m_found;
    ExplainedTable m_explained;
};

} // namespace

WhyNot WhyNot::ask(const RadioCase& radio, const ModulationChoice& choice, std::int32_t wanted) {
    WhyNot whyNot;
    whyNot.radioFile = radio.name;
    whyNot.wanted = wanted;
    Search search(radio, choice, whyNot);
    const ExplainedTable& explained = search.explained();
    const auto row = lowestOf(explained.table, choice);
    if (!row) {
        throw AnalysisError(Outcome::OtherTrouble,
                            radio.name + ": the frame format has no such modulation or code; the "
                                         "table shows those that it has");
    }
    whyNot.mismatches = mismatchesOf(explained);
    whyNot.explanation = explained.explanations[*row];
    whyNot.power = whyNot.explanation.answer;
    if (whyNot.isAllowed()) {
        return whyNot;
    }
    search.searchCutbacks();
    search.searchSelection();
    search.searchPmax();
    search.searchChoices();
    search.searchBooster();
    return whyNot;
}
