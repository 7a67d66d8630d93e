#include "BatchResult.h"

#include "ExplanationForms.h"
#include "TextForms.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <set>
#include <utility>
#include <vector>

namespace {

/// The texts of all codes, but for the one that is none.
const std::vector<std::string>& codeNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all = modulationAndCodeTextForms().texts();
        std::erase(all, convertCodeAndModulationEnumToString(
                            ModulationAndCoding{ModulationAndCoding::UNDEFINED}));
        return all;
    }();
    return names;
}

/// "pmax-row:7 rsec-cap:2", the most frequent first.
std::string rulesOf(const ExplainedTable& powers) {
    RuleCounts counts;
    counts.add(powers);
    std::string text;
    for (const RuleCounts::Count& count : counts.sortedBy(&RuleCounts::Count::codes)) {
        text += (text.empty() ? "" : " ") + std::string(codeOf(count.rule)) + ':' +
                std::to_string(count.codes);
    }
    return text;
}

/// The maximum power of a code; nothing if the frame format lacks it. Of equal codes the last
/// counts.
Datum powerOf(const PowerTable& table, const ModulationAndCoding& code) {
    Datum power;
    for (const PowerTable::Row& row : table.rows) {
        if (row.modulationAndCode == code && row.maxPower) {
            power = row.maxPower;
        }
    }
    return power;
}

/// A field that says something of the powers, and nothing where there are none.
template <class Get>
Field<BatchResult> ofPowers(FieldNames names, Get get) {
    return {std::move(names),
            [get](const BatchResult& result) {
                return result.powers ? Datum(get(*result.powers)) : Datum();
            },
            Shown::InCsv};
}

template <class Get>
Field<BatchResult> ofTable(FieldNames names, Get get) {
    return ofPowers(std::move(names),
                    [get](const ExplainedTable& powers) { return std::invoke(get, powers.table); });
}

Fields<BatchResult> makeFields() {
    using enum Shown;
    Fields<BatchResult> fields = {
        {{"id"}, orNothing<BatchResult>(&BatchResult::id), InBoth},
        {{"radioFile"}, orNothing<BatchResult>(&BatchResult::radioFile), InBoth},
        ofTable({"productNumber"}, &PowerTable::productNumber),
        ofTable({"family"}, [](const PowerTable& table) { return table.family.name; }),
        ofTable({"market"}, &PowerTable::market),
        ofTable({"channelSpacing", "MHz"}, &PowerTable::channelSpacing),
        ofTable({"dpdVersion"}, &PowerTable::dpdVersion),
        ofTable({"rsec"}, &PowerTable::rsec),
        ofTable({"cutback", "dB"},
                [](const PowerTable& table) { return table.inputs.cutbackInForce(); }),
        ofTable({"minPower", "dBm"}, &PowerTable::minOutputPower),
    };
    for (const std::string& name : codeNames()) {
        const ModulationAndCoding code = *modulationAndCodeTextForms().find(name);
        fields.push_back(ofTable({"maxPower_" + name, "dBm"},
                                 [code](const PowerTable& table) { return powerOf(table, code); }));
    }
    fields.push_back(ofPowers({"rules"}, rulesOf));
    fields.push_back({{"error"}, orNothing<BatchResult>(&BatchResult::error), InBoth});
    fields.push_back({{"place"}, orNothing<BatchResult>(&BatchResult::place), InBoth});
    return fields;
}

const Fields<BatchResult>& resultFields() {
    static const Fields<BatchResult> fields = makeFields();
    return fields;
}

} // namespace

std::string batchJsonLine(const BatchResult& result) {
    Datum::Object line = objectOf(resultFields(), result);
    if (result.powers) {
        const Datum::List rows = listOf(lineFields(true), linesOf(RuledTable(*result.powers)));
        for (auto& member : objectOf(result.powers->table, rows)) {
            // The batch itself says where the radio comes from.
            if (member.first != "radioFile") {
                line.push_back(std::move(member));
            }
        }
    }
    return jsonLine(line);
}

std::string batchCsvHeader() {
    return csvHeader(resultFields());
}

std::string batchCsvLine(const BatchResult& result) {
    return csvLine(resultFields(), result);
}

std::string BatchResult::errorOf(const ExplainedTable& powers) {
    const std::vector<std::string> mismatches = mismatchesOf(powers.explanations);
    if (!mismatches.empty()) {
        return mismatches.front();
    }
    return powers.table.failure.empty() ? "" : "no powers: " + powers.table.failure;
}

void RuleCounts::add(const ExplainedTable& powers) {
    std::set<Rule> ofNode;
    for (const Explanation& explanation : powers.explanations) {
        const Rule rule = explanation.decisiveRule();
        Count& count = m_counts.try_emplace(rule, Count{rule}).first->second;
        ++count.codes;
        if (ofNode.insert(rule).second) {
            ++count.nodes;
        }
    }
}

std::vector<RuleCounts::Count> RuleCounts::sortedBy(std::uint64_t Count::*number) const {
    std::vector<Count> counts;
    counts.reserve(m_counts.size());
    for (const auto& [rule, count] : m_counts) {
        counts.push_back(count);
    }
    std::ranges::stable_sort(counts, [number](const Count& left, const Count& right) {
        return left.*number > right.*number;
    });
    return counts;
}
