#include "WhyNot.h"

#include "AnalysisError.h"
#include "Lever.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <utility>

namespace {

using Change = WhyNot::Change;
using Power = std::optional<std::int32_t>;

/// The row of a table with the lowest power among those that are chosen; one without a power is
/// lower than all, and of equal ones a doubtful one.
std::optional<std::size_t> lowestOf(const PowerTable& table, const ModulationChoice& choice) {
    std::optional<std::size_t> lowest;
    const auto rank = [&table](std::size_t index) {
        return std::pair(table.rows[index].maxPower, table.rows[index].warning.empty());
    };
    for (std::size_t index = 0; index < table.rows.size(); ++index) {
        if (choice.includes(table.rows[index]) && (!lowest || rank(index) < rank(*lowest))) {
            lowest = index;
        }
    }
    return lowest;
}

/// How a lever is set: a number of its range, or which of its values.
struct Setting {
    const Lever* lever;
    std::int64_t value;

    void applyTo(RadioCase& radio) const {
        if (lever->range) {
            lever->range->apply(radio, value);
        } else {
            chosen().apply(radio);
        }
    }

    Change change() const {
        Change change{lever->input, lever->words, lever->from};
        change.pointer = lever->pointer;
        if (lever->range) {
            change.to = lever->range->text(value);
            change.options = lever->range->options(value);
            if (!lever->range->isAdded) { // there would be nothing that it is added to
                change.amount = value - lever->range->from;
            }
        } else {
            change.to = chosen().text;
            change.options = chosen().options;
        }
        return change;
    }

    void addTo(ChangeCost& cost) const {
        cost.add(lever->input, lever->range ? value - lever->range->from : chosen().steps);
    }

private:
    const Lever::Value& chosen() const { return lever->values[static_cast<std::size_t>(value)]; }
};

/// Asks the library for changed radios.
class Search {
public:
    Search(const RadioCase& radio, const ModulationChoice& choice, std::int32_t wanted)
        : m_radio(radio)
        , m_choice(choice)
        , m_wanted(wanted) {}

    /// The power with settings if it is what is wanted; else nothing, as for each further question
    /// than there may be.
    Power allowedBy(const std::vector<Setting>& settings) const {
        if (m_questions == m_mostQuestions) {
            m_isCutShort = true;
            return std::nullopt;
        }
        RadioCase radio = m_radio;
        for (const Setting& setting : settings) {
            setting.applyTo(radio);
        }
        ++m_questions;
        try {
            const PowerTable table = radio.powers();
            const auto lowest = lowestOf(table, m_choice);
            if (!lowest || !table.rows[*lowest].maxPower ||
                *table.rows[*lowest].maxPower < m_wanted) {
                return std::nullopt;
            }
            const bool isDoubtful = std::ranges::any_of(table.rows, [this](const auto& row) {
                return m_choice.includes(row) && !row.warning.empty();
            });
            return isDoubtful ? Power()
                              : Power(static_cast<std::int32_t>(*table.rows[*lowest].maxPower));
        } catch (const AnalysisError&) {
            return std::nullopt; // a radio whose service does not start gives no power
        }
    }

    /// The setting of a range nearest to what the radio has that allows the power, together with
    /// another one.
    std::optional<Setting> nearest(const Lever& lever, const std::vector<Setting>& others) const {
        const auto allows = [&](std::int64_t value) {
            std::vector<Setting> settings = others;
            settings.push_back({&lever, value});
            return allowedBy(settings).has_value();
        };
        std::int64_t from = lever.range->from;
        std::int64_t to = lever.range->to;
        if (from == to || !allows(to)) {
            return std::nullopt;
        }
        // `to` always allows the power and `from` never does, so that they end as neighbours.
        while (std::abs(to - from) > 1) {
            const std::int64_t middle = from + (to - from) / 2;
            (allows(middle) ? to : from) = middle;
        }
        return Setting{&lever, to};
    }

    /// Counts questions anew, up to so many.
    void bound(std::size_t most) {
        m_mostQuestions = most;
        m_questions = 0;
    }

    std::size_t questions() const { return m_questions; }

    /// Whether a question was not asked because of the bound.
    bool isCutShort() const { return m_isCutShort; }

private:
    const RadioCase& m_radio;
    const ModulationChoice& m_choice;
    std::int32_t m_wanted;
    std::size_t m_mostQuestions = std::numeric_limits<std::size_t>::max();
    mutable std::size_t m_questions = 0;
    mutable bool m_isCutShort = false;
};

/// Settings of one or two levers that allow the power.
struct Found {
    std::vector<Setting> settings;
    std::int32_t power;
    ChangeCost cost;

    Found(std::vector<Setting> made, std::int32_t allowed)
        : settings(std::move(made))
        , power(allowed) {
        for (const Setting& setting : settings) {
            setting.addTo(cost);
        }
    }
};

/// Every change of a lever alone that allows the power: the smallest of a number, of the selected
/// range and of a highest modulation, and each one of other values.
std::vector<Found> singlesOf(const Lever& lever, const Search& search) {
    std::vector<Found> found;
    if (lever.range) {
        if (const auto setting = search.nearest(lever, {})) {
            found.emplace_back(std::vector{*setting}, search.allowedBy({*setting}).value_or(0));
        }
        return found;
    }
    const bool isOrdered = lever.values.front().steps != lever.values.back().steps;
    for (std::size_t index = 0; index < lever.values.size(); ++index) {
        const Setting setting{&lever, static_cast<std::int64_t>(index)};
        if (const Power power = search.allowedBy({setting})) {
            found.emplace_back(std::vector{setting}, *power);
            if (isOrdered) {
                break;
            }
        }
    }
    return found;
}

/// The cheapest settings of two levers that together allow the power.
class PairSearch {
public:
    PairSearch(const Lever& first, const Lever& second, const Search& search)
        : m_first(first)
        , m_second(second)
        , m_search(search) {
        if (first.range && second.range) {
            tryRanges();
        } else if (first.range) {
            tryValues(second, first);
        } else if (second.range) {
            tryValues(first, second);
        } else {
            tryAllValues();
        }
    }

    const std::optional<Found>& best() const { return m_best; }

private:
    void take(const Setting& first, const Setting& second) {
        const std::vector<Setting> settings{first, second};
        if (const Power power = m_search.allowedBy(settings)) {
            Found found(settings, *power);
            if (!m_best || found.cost < m_best->cost) {
                m_best = std::move(found);
            }
        }
    }

    /// A power is the least of sums in which a number counts once or not at all. So the cost falls
    /// or rises all the way between the least change of one number and that of the other: one of
    /// these two ends is the cheapest.
    void tryRanges() {
        for (const auto& [one, other] :
             {std::pair(&m_first, &m_second), std::pair(&m_second, &m_first)}) {
            const auto least = m_search.nearest(*one, {{other, other->range->to}});
            const auto rest = least ? m_search.nearest(*other, {*least}) : std::nullopt;
            if (!rest) {
                return;
            }
            take(*least, *rest);
        }
    }

    void tryValues(const Lever& values, const Lever& range) {
        for (std::size_t index = 0; index < values.values.size(); ++index) {
            const Setting value{&values, static_cast<std::int64_t>(index)};
            if (const auto number = m_search.nearest(range, {value})) {
                take(value, *number);
            }
        }
    }

    void tryAllValues() {
        for (std::size_t first = 0; first < m_first.values.size(); ++first) {
            for (std::size_t second = 0; second < m_second.values.size(); ++second) {
                const Setting one{&m_first, static_cast<std::int64_t>(first)};
                const Setting other{&m_second, static_cast<std::int64_t>(second)};
                ChangeCost cost;
                one.addTo(cost);
                other.addTo(cost);
                if (!m_best || cost < m_best->cost) {
                    take(one, other);
                }
            }
        }
    }

    const Lever& m_first;
    const Lever& m_second;
    const Search& m_search;
    std::optional<Found> m_best;
};

/// The changes of what was found, in words.
std::vector<Change> changesOf(const Found& found) {
    std::vector<Change> changes;
    for (const Setting& setting : found.settings) {
        changes.push_back(setting.change());
        changes.back().power = found.power;
        changes.back().cost = found.cost;
    }
    return changes;
}

using PairOfLevers = std::pair<const Lever*, const Lever*>;
using Kinds = std::pair<std::int64_t, std::int64_t>;

Kinds kindsOf(const ChangeCost& cost) {
    return {cost.hardware, cost.calibrations};
}

Kinds kindsOf(const PairOfLevers& pair) {
    ChangeCost cost;
    cost.add(pair.first->input, 0);
    cost.add(pair.second->input, 0);
    return kindsOf(cost);
}

/// Each two levers, those with the fewest changes of hardware and calibrations first.
std::vector<PairOfLevers> pairsOf(const std::vector<Lever>& levers) {
    std::vector<PairOfLevers> pairs;
    for (std::size_t first = 0; first < levers.size(); ++first) {
        for (std::size_t second = first + 1; second < levers.size(); ++second) {
            if (levers[first].input != levers[second].input || levers[first].range) {
                pairs.emplace_back(&levers[first], &levers[second]);
            }
        }
    }
    std::ranges::stable_sort(pairs, {}, [](const PairOfLevers& pair) { return kindsOf(pair); });
    return pairs;
}

} // namespace

struct WhyNotSearch::Parts {
    Parts(const RadioCase& asked, ModulationChoice chosen, std::int32_t wanted, std::size_t atOnce,
          std::size_t questions)
        : radio(asked)
        , choice(std::move(chosen))
        , most(atOnce)
        , mostQuestions(questions)
        , search(radio, choice, wanted) {}

    RadioCase radio;
    ModulationChoice choice;
    std::size_t most;
    std::size_t mostQuestions;
    Search search;
    WhyNot whyNot;
    std::vector<Lever> levers;
    std::vector<PairOfLevers> pairs; ///< once no lever alone has helped
    std::size_t next = 0;            ///< of the levers, then of the pairs
    std::vector<Found> found;
    bool isSingle = false;
    std::size_t singleQuestions = 0; ///< once pairs are searched

    void tryLever(const Lever& lever) {
        const std::vector<Found> singles = singlesOf(lever, search);
        if (singles.empty() &&
            std::ranges::find(whyNot.without, lever.words) == whyNot.without.end()) {
            whyNot.without.push_back(lever.words);
        }
        found.insert(found.end(), singles.begin(), singles.end());
        if (next == levers.size()) {
            isSingle = !found.empty();
            if (!isSingle && most > 1) {
                pairs = pairsOf(levers);
                singleQuestions = search.questions();
                search.bound(mostQuestions);
            }
        }
    }

    /// A pair within which the questions come to their end is left out, because it need not be the
    /// cheapest of its levers.
    /// @return false if none that is left may be cheaper, or nothing more may be asked.
    bool tryPair(const PairOfLevers& pair) {
        if (!found.empty() && kindsOf(pair) > kindsOf(found.front().cost)) {
            return false;
        }
        const auto best = PairSearch(*pair.first, *pair.second, search).best();
        if (search.isCutShort()) {
            return false;
        }
        if (best) {
            found.push_back(*best);
        }
        return true;
    }
};

WhyNotSearch::WhyNotSearch(const RadioCase& radio, const ModulationChoice& choice,
                           std::int32_t wanted, std::size_t most, std::size_t mostQuestions)
    : m_parts(std::make_unique<Parts>(radio, choice, wanted, most, mostQuestions)) {
    WhyNot& whyNot = m_parts->whyNot;
    whyNot.radioFile = radio.name;
    whyNot.wanted = wanted;
    const ExplainedTable explained = radio.explain();
    const auto row = lowestOf(explained.table, choice);
    if (!row) {
        throw AnalysisError(Outcome::OtherTrouble,
                            radio.name + ": the frame format has no such modulation or code; the "
                                         "table shows those that it has");
    }
    whyNot.mismatches = mismatchesOf(explained);
    whyNot.explanation = explained.explanations[*row];
    whyNot.power = whyNot.explanation.answer;
    whyNot.warning = explained.table.rows[*row].warning;
    if (!whyNot.isAllowed()) {
        m_parts->levers = leversOf(m_parts->radio, explained, whyNot.explanation, choice);
    }
}

WhyNotSearch::~WhyNotSearch() = default;

bool WhyNotSearch::step() {
    Parts& parts = *m_parts;
    if (parts.next == all()) {
        return false;
    }
    const std::size_t index = parts.next++;
    if (index < parts.levers.size()) {
        parts.tryLever(parts.levers[index]);
    } else if (!parts.tryPair(parts.pairs[index - parts.levers.size()])) {
        parts.next = all();
    }
    return true;
}

std::size_t WhyNotSearch::steps() const {
    return m_parts->next;
}

std::size_t WhyNotSearch::all() const {
    return m_parts->levers.size() + m_parts->pairs.size();
}

std::size_t WhyNotSearch::questions() const {
    return m_parts->singleQuestions + m_parts->search.questions();
}

WhyNot WhyNotSearch::answer() const {
    WhyNot whyNot = m_parts->whyNot;
    if (whyNot.isAllowed()) {
        return whyNot;
    }
    const bool isSingle = m_parts->isSingle;
    if (!m_parts->pairs.empty()) {
        whyNot.pairQuestions = m_parts->search.questions();
    }
    std::vector<Found> found = m_parts->found;
    std::ranges::stable_sort(found, {}, &Found::cost);
    const std::size_t count = isSingle ? found.size() : std::min(found.size(), WhyNot::maxPairs);
    for (std::size_t index = 0; index < count; ++index) {
        for (Change& change : changesOf(found[index])) {
            if (isSingle) {
                whyNot.changes.push_back(std::move(change));
            } else {
                change.pair = index + 1;
                whyNot.pairs.push_back(std::move(change));
            }
        }
    }

    whyNot.notTried = {"numbers changed by more than 100 dB, a missing Pmax row above 100 dBm",
                       "rows of the Pmax table that the power was not looked up in",
                       "a booster where there is none",
                       "other codes, channels or performance profiles in a frame format",
                       "what would exclude what is asked for, and what the table calls doubtful"};
    for (const Lever& lever : m_parts->levers) {
        if (!lever.notTried.empty()) {
            whyNot.notTried.push_back(lever.notTried);
        }
    }
    if (m_parts->most == 1) {
        whyNot.notTried.emplace_back("several changes at once");
    } else {
        whyNot.notTried.emplace_back("more than two changes at once");
        if (isSingle) {
            whyNot.notTried.emplace_back("pairs, because a single change does it");
        } else if (!found.empty()) {
            whyNot.notTried.emplace_back(
                "pairs with more calibrations or changes of hardware than the smallest one");
        }
        if (m_parts->search.isCutShort()) {
            whyNot.notTried.emplace_back("pairs beyond " + std::to_string(m_parts->mostQuestions) +
                                         " questions to the library");
        }
    }
    return whyNot;
}

WhyNot WhyNot::ask(const RadioCase& radio, const ModulationChoice& choice, std::int32_t wanted,
                   std::size_t most, std::size_t mostQuestions) {
    WhyNotSearch search(radio, choice, wanted, most, mostQuestions);
    while (search.step()) {
    }
    return search.answer();
}
