#include "BatchForms.h"

#include "Csv.h"
#include "Decibels.h"
#include "PowerTableJson.h"
#include "RuleCounts.h"
#include "TextForms.h"

#include <algorithm>
#include <cstddef>
#include <sstream>
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

OrderedJson jsonOf(const ExplainedTable& powers) {
    OrderedJson table = jsonOf(powers.table);
    for (std::size_t index = 0; index < powers.explanations.size(); ++index) {
        table["rows"][index]["rule"] = codeOf(powers.explanations[index].decisiveRule());
    }
    return table;
}

std::vector<std::string> cellsOf(const PowerTable& table) {
    const OperatingInputs& inputs = table.inputs;
    const bool isTemporary = inputs.temporaryCutback && inputs.temporaryCutback->inForce;
    const std::uint32_t cutback =
        isTemporary ? inputs.temporaryCutback->cutback : inputs.permanentCutback.value_or(0);
    std::ostringstream market;
    market << table.market;
    return {table.productNumber,
            table.family.name,
            market.str(),
            std::to_string(static_cast<std::int32_t>(table.channelSpacing)),
            std::to_string(static_cast<std::int32_t>(table.dpdVersion)),
            convertRsecEnumToString(table.rsec),
            Decibels::format(cutback),
            table.minOutputPower ? Decibels::format(*table.minOutputPower) : ""};
}

/// The maximum power of each code; of one that the frame format lacks nothing.
std::vector<std::string> powersOf(const PowerTable& table) {
    std::vector<std::string> cells(codeNames().size());
    for (const PowerTable::Row& row : table.rows) {
        const auto name = std::find(codeNames().begin(), codeNames().end(),
                                    convertCodeAndModulationEnumToString(row.modulationAndCode));
        if (name != codeNames().end() && row.maxPower) {
            cells[static_cast<std::size_t>(name - codeNames().begin())] =
                Decibels::format(*row.maxPower);
        }
    }
    return cells;
}

/// "pmax-row:7 rsec-cap:2", the most frequent first.
std::string rulesOf(const ExplainedTable& powers) {
    RuleCounts counts;
    counts.add(powers);
    std::string text;
    for (const RuleCounts::Count& count : counts.sortedByCodes()) {
        text += (text.empty() ? "" : " ") + std::string(codeOf(count.rule)) + ':' +
                std::to_string(count.codes);
    }
    return text;
}

constexpr std::size_t tableColumns = 8;

} // namespace

std::string batchJsonLine(const BatchResult& result) {
    OrderedJson line;
    line["id"] = textOrNull(result.id);
    line["radioFile"] = textOrNull(result.radioFile);
    line["error"] = textOrNull(result.error);
    line["place"] = textOrNull(result.place);
    if (result.powers) {
        const OrderedJson table = jsonOf(*result.powers);
        for (const auto& [key, value] : table.items()) {
            // The keys above stay in front.
            if (!line.contains(key)) {
                line[key] = value;
            }
        }
    }
    return line.dump(-1, ' ', false, OrderedJson::error_handler_t::replace) + '\n';
}

std::string batchCsvHeader() {
    std::vector<std::string> names{"id",         "radio_file",          "product_number", "family",
                                   "market",     "channel_spacing_MHz", "dpd_version",    "rsec",
                                   "cutback_dB", "min_power_dBm"};
    for (const std::string& code : codeNames()) {
        names.push_back("max_power_" + code + "_dBm");
    }
    names.insert(names.end(), {"rules", "error", "place"});
    return csvLine(names);
}

std::string batchCsvLine(const BatchResult& result) {
    std::vector<std::string> cells{result.id, result.radioFile};
    if (result.powers) {
        for (const std::vector<std::string>& some :
             {cellsOf(result.powers->table), powersOf(result.powers->table)}) {
            cells.insert(cells.end(), some.begin(), some.end());
        }
        cells.push_back(rulesOf(*result.powers));
    } else {
        cells.resize(cells.size() + tableColumns + codeNames().size() + 1);
    }
    cells.push_back(result.error);
    cells.push_back(result.place);
    return csvLine(cells);
}
