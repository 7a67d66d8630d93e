#include "FleetDiff.h"

#include "AnalysisError.h"

#include <algorithm>
#include <set>

namespace {

/// About what it takes in memory.
std::size_t bytesOf(const RadioAnswer& answer) {
    std::size_t weight = sizeof(RadioAnswer) + 2 * answer.name().size() + answer.radioFile.size() +
                         answer.error.size() + answer.family.size() + answer.productNumber.size() +
                         answer.market.size() + answer.rsec.size() + 128;
    for (const RadioAnswer::Row& row : answer.rows) {
        weight +=
            sizeof(RadioAnswer::Row) + row.name.size() + row.modulation.size() + row.rule.size();
    }
    return weight;
}

/// The row of another list that means the same: the n-th of its code.
const RadioAnswer::Row* rowLike(const std::vector<RadioAnswer::Row>& rows,
                                const std::vector<RadioAnswer::Row>& others, std::size_t index) {
    const auto isAlike = [code = others[index].code](const RadioAnswer::Row& row) {
        return row.code == code;
    };
    const auto place = others.begin() + static_cast<std::ptrdiff_t>(index);
    auto before = std::count_if(others.begin(), place, isAlike);
    for (const RadioAnswer::Row& row : rows) {
        if (isAlike(row) && before-- == 0) {
            return &row;
        }
    }
    return nullptr;
}

FleetDiff::Change codeChange(const std::string& radio, const RadioAnswer::Row* before,
                             const RadioAnswer::Row* after) {
    const RadioAnswer::Row& any = before != nullptr ? *before : *after;
    FleetDiff::Change change{FleetDiff::What::Power, radio, any.code, any.name, any.modulation};
    if (before != nullptr) {
        change.before = before->power;
        change.ruleBefore = before->rule;
    }
    if (after != nullptr) {
        change.after = after->power;
        change.ruleAfter = after->rule;
    }
    if (before == nullptr || after == nullptr) {
        change.remark =
            before == nullptr ? "not a code of the radio before" : "no longer a code of the radio";
    }
    return change;
}

template <class Number>
void widen(std::optional<Number>& least, std::optional<Number>& greatest, Number number) {
    least = std::min(least.value_or(number), number);
    greatest = std::max(greatest.value_or(number), number);
}

} // namespace

std::optional<std::int64_t> FleetDiff::Change::difference() const {
    return before && after ? std::optional(*after - *before) : std::nullopt;
}

void FleetDiff::tell(const Change& change) {
    ++m_counts[static_cast<std::size_t>(change.what)];
    m_tell(change);
}

void FleetDiff::tellRemark(What what, const std::string& radio, const std::string& remark) {
    Change change{what, radio};
    change.remark = remark;
    tell(change);
}

void FleetDiff::add(Side side, std::string_view line) {
    const bool isBefore = side == Side::Before;
    const auto own = static_cast<std::size_t>(side);
    const std::string place =
        "line " + std::to_string(++m_lines[own]) + (isBefore ? " before" : " after");
    RadioAnswer answer;
    try {
        answer = RadioAnswer::read(line);
    } catch (const AnalysisError& error) {
        tellRemark(What::Unreadable, "", place + ": " + error.what());
        return;
    }
    const std::string name = answer.name();
    if (name.empty()) {
        tellRemark(What::Nameless, "",
                   place + ": neither an id nor a radio file; let the list of the batch give ids");
        return;
    }
    // A name may be forgotten while its answer waits.
    if (!m_names[own].add(name) || m_waiting[own].contains(name)) {
        tellRemark(isBefore ? What::DoubledBefore : What::DoubledAfter, name,
                   place + ": not compared, as an answer of that name came before");
        return;
    }
    auto& waitingThere = m_waiting[1 - own];
    const auto other = waitingThere.find(name);
    if (other != waitingThere.end()) {
        const RadioAnswer there = std::move(other->second.answer);
        m_waitingBytes -= bytesOf(there);
        waitingThere.erase(other);
        compare(isBefore ? answer : there, isBefore ? there : answer);
        return;
    }
    m_waitingBytes += bytesOf(answer);
    if (m_waitingBytes > maxWaiting) {
        throw AnalysisError(Outcome::OtherTrouble,
                            std::to_string(m_waiting[0].size() + m_waiting[1].size() + 1) +
                                " radios wait for their other answer, which is as many as are kept "
                                "(32 MiB): bring both into one order, for example with LC_ALL=C "
                                "sort");
    }
    m_waiting[own].emplace(name, Waiting{std::move(answer), m_lines[own]});
}

void FleetDiff::finish() {
    for (const bool isBefore : {true, false}) {
        auto& waiting = m_waiting[isBefore ? 0 : 1];
        std::map<std::uint64_t, const RadioAnswer*> inOrder;
        for (const auto& [name, entry] : waiting) {
            inOrder.emplace(entry.line, &entry.answer);
        }
        for (const auto& [line, answer] : inOrder) {
            tellRemark(isBefore ? What::OnlyBefore : What::OnlyAfter, answer->name(),
                       answer->error);
        }
        waiting.clear();
    }
    m_waitingBytes = 0;
}

void FleetDiff::compare(const RadioAnswer& before, const RadioAnswer& after) {
    if (before.isBad() && after.isBad()) {
        ++m_badInBoth;
    } else if (before.isBad() || after.isBad()) {
        tellRemark(before.isBad() ? What::FailedBefore : What::FailedAfter, after.name(),
                   before.error + after.error);
    } else {
        ++m_compared;
        const std::uint64_t told = m_changedCodes + count(What::MinPower);
        compareCodes(before, after);
        if (before.minPower != after.minPower) {
            tell({What::MinPower, after.name(), 0, "", "", before.minPower, after.minPower});
        }
        m_changed += m_changedCodes + count(What::MinPower) > told ? 1U : 0U;
    }
}

void FleetDiff::compareCodes(const RadioAnswer& before, const RadioAnswer& after) {
    std::set<Move*> ofRadio;
    const auto tellCode = [&](const RadioAnswer::Row* left, const RadioAnswer::Row* right) {
        const Change change = codeChange(after.name(), left, right);
        ++m_changedCodes;
        Move& move = moveOf(change);
        ++move.codes;
        move.radios += ofRadio.insert(&move).second ? 1U : 0U;
        if (const auto difference = change.difference()) {
            widen(move.least, move.greatest, *difference);
        }
        tell(change);
    };
    for (std::size_t index = 0; index < before.rows.size(); ++index) {
        const RadioAnswer::Row& row = before.rows[index];
        const RadioAnswer::Row* const other = rowLike(after.rows, before.rows, index);
        if (other == nullptr || other->power != row.power) {
            tellCode(&row, other);
        } else if (other->rule != row.rule) {
            ++m_otherRules;
        }
    }
    for (std::size_t index = 0; index < after.rows.size(); ++index) {
        if (rowLike(before.rows, after.rows, index) == nullptr) {
            tellCode(nullptr, &after.rows[index]);
        }
    }
}

FleetDiff::Move& FleetDiff::moveOf(const Change& change) {
    constexpr std::size_t maxMoves = 256;
    std::pair<std::string, std::string> rules{change.ruleBefore, change.ruleAfter};
    if (m_moves.size() >= maxMoves && !m_moves.contains(rules)) {
        rules = {"others", "others"};
    }
    return m_moves.try_emplace(rules, Move{rules.first, rules.second}).first->second;
}

bool FleetDiff::isEqual() const {
    return std::ranges::all_of(m_counts, [](std::uint64_t count) { return count == 0; });
}

std::vector<FleetDiff::Move> FleetDiff::moves() const {
    std::vector<Move> moves;
    moves.reserve(m_moves.size());
    for (const auto& [rules, move] : m_moves) {
        moves.push_back(move);
    }
    std::ranges::stable_sort(moves, std::ranges::greater(), &Move::radios);
    return moves;
}
