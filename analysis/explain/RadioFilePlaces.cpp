#include "RadioFilePlaces.h"

#include "JsonPointer.h"
#include "Node.h"
#include "TraceText.h"

#include <algorithm>
#include <cstddef>

namespace {

/// A table of the capability handler as the library numbers it: those of ANSI first.
const PmaxTableName& tableOf(int number) {
    return pmaxTables.at((static_cast<std::size_t>(number) + 2) % pmaxTables.size());
}

/// The key of the first row with a modulation, in a table of flat integers; nothing without one.
/// Of numbers that no enumerator has a text does not tell one from another; the power does.
std::optional<std::size_t> rowOf(const std::vector<int>& integers, Modulation modulation,
                                 std::int32_t power) {
    for (std::size_t index = 0; index < integers.size(); index += 2) {
        const Modulation row{integers[index]};
        const int rowPower = index + 1 < integers.size() ? integers[index + 1] : 0;
        if (modulation == Modulation::UNDEFINED
                ? convertAcmEnumToString(row) == "UNDEFINED" && rowPower == power
                : row == modulation) {
            return rowPower == power && index + 1 < integers.size() ? std::optional(index)
                                                                    : std::nullopt;
        }
    }
    return std::nullopt;
}

} // namespace

RadioFilePlaces::RadioFilePlaces(const RadioFile& file, const std::vector<TraceRecord>& startTrace,
                                 EDpdVersion dpdVersion, EFrameFormatMarket market)
    : m_file(file) {
    // DPD 3 has no tables of its own, and every market but ANSI reads the ETSI one.
    const std::int64_t version = std::min<std::int64_t>(static_cast<std::int32_t>(dpdVersion), 2);
    const std::int64_t ansi = market == EFrameFormatMarket::Ansi ? 1 : 0;
    Fetched* current = nullptr;
    for (const TraceRecord& record : startTrace) {
        const std::string& text = record.text;
        if (record.kind != TraceRecord::Kind::Raw) {
            continue;
        }
        if (const auto named = TraceText::numberAfter(text, "m_dpdVersion = ")) {
            const bool isAsked = *named == version &&
                                 TraceText::numberBehind(text, "m_market = ").value_or(-1) == ansi;
            current = isAsked ? &m_fetched.emplace() : nullptr;
            continue;
        }
        const auto table = TraceText::numberAfter(text, "PmaxTable with value ");
        if (current == nullptr || !table || *table < 0 ||
            *table >= static_cast<std::int64_t>(pmaxTables.size())) {
            continue;
        }
        if (TraceText::contains(text, " succeeded for channel ")) {
            current->table = static_cast<int>(*table);
        } else {
            current->failed.push_back(static_cast<int>(*table));
        }
    }
}

std::string RadioFilePlaces::pmaxTable() const {
    if (!m_fetched) {
        return {};
    }
    std::string failed;
    for (const int table : m_fetched->failed) {
        failed += (failed.empty() ? "" : ", ") + std::string(tableOf(table).key);
    }
    if (!m_fetched->table) {
        return "no table: the radio refuses " + failed;
    }
    const PmaxTableName& table = tableOf(*m_fetched->table);
    std::string words = table.key;
    if (!failed.empty()) {
        words += " (fallback: the radio refuses " + failed + ")";
    }
    if (m_file.node.capabilityHandler && !((*m_file.node.capabilityHandler).*table.answer)) {
        words += " (which is empty: the radio has none)";
    }
    return words;
}

std::string RadioFilePlaces::pmaxRow(Modulation modulation, std::int32_t power) const {
    if (!m_fetched || !m_fetched->table || !m_file.node.capabilityHandler) {
        return {};
    }
    const PmaxTableName& table = tableOf(*m_fetched->table);
    const auto& answer = (*m_file.node.capabilityHandler).*table.answer;
    const auto* const integers = answer ? std::get_if<std::vector<int>>(&*answer) : nullptr;
    const auto row = integers == nullptr ? std::nullopt : rowOf(*integers, modulation, power);
    if (!row) {
        return {};
    }
    std::vector<std::string> path = {"capabilityHandler", table.key};
    if (m_file.flatPmaxTables.contains(table.key)) {
        path.insert(path.end(), {"integers", std::to_string(*row + 1)});
    } else {
        path.insert(path.end(), {std::to_string(*row / 2), "1"});
    }
    return m_file.placeOf(path);
}

std::string RadioFilePlaces::pmaxTableKey() const {
    return m_fetched && m_fetched->table ? tableOf(*m_fetched->table).key : "";
}

RadioFilePlaces::PmaxAnswer RadioFilePlaces::pmaxAnswer(const std::string& tableKey) {
    const auto* const table = std::ranges::find(pmaxTables, tableKey, &PmaxTableName::key);
    return table == pmaxTables.end() ? nullptr : table->answer;
}

std::string RadioFilePlaces::compensation(EChannelSpacingType spacing,
                                          std::int32_t compensation) const {
    if (!m_file.node.variables) {
        return {};
    }
    const std::string name = Node::calibrationOf(m_file.channel);
    const auto array = m_file.node.variables->find(name);
    if (array == m_file.node.variables->end()) {
        return {};
    }
    const std::vector<std::int32_t>& elements = array->second;
    for (std::size_t index = 0; index + 1 < elements.size(); index += 2) {
        if (elements[index] == static_cast<std::int32_t>(spacing)) {
            // Behind the number of valid elements a pair does not count.
            return elements[index + 1] == compensation
                       ? m_file.placeOf({"variables", name, std::to_string(index + 1)})
                       : std::string();
        }
    }
    return {};
}

std::string RadioFilePlaces::request(std::size_t index, const std::string& member) {
    return pointerText({"requests", std::to_string(index), member});
}
