#include "PowerDiff.h"

#include "Decibels.h"
#include "InputAxis.h"
#include "OneLine.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string_view>
#include <unordered_map>

namespace {

using RadioInputs = std::vector<RadioInput>;

constexpr const char* noValue = "none";

void add(RadioInputs& inputs, const Inputs::Value& value) {
    inputs.push_back({InputAxis::of(value).name(), InputAxis::labelOf(value)});
}

std::string resultText(const ResultOnly& answer) {
    return "result " + std::to_string(answer.result);
}

/// A Pmax table row by row, rows of one modulation numbered; an odd integer at its end is no row.
void addPmax(RadioInputs& inputs, const std::string& name,
             const std::optional<CapabilityHandlerAnswers::Pmax>& pmax) {
    if (!pmax) {
        return;
    }
    if (const auto* const failed = std::get_if<ResultOnly>(&*pmax)) {
        inputs.push_back({name, resultText(*failed)});
        return;
    }
    const auto& integers = std::get<std::vector<int>>(*pmax);
    std::map<std::string, int> timesOf;
    for (std::size_t place = 0; place + 1 < integers.size(); place += 2) {
        const auto modulation = static_cast<Modulation>(integers[place]);
        std::string row = name + '/' + convertAcmEnumToString(modulation);
        const int times = ++timesOf[row];
        if (times > 1) {
            row += '#' + std::to_string(times);
        }
        inputs.push_back({row, Decibels::dBm(integers[place + 1])});
    }
}

void addCapabilities(RadioInputs& inputs, const CapabilityHandlerAnswers& handler) {
    if (handler.minOutputPower) {
        const auto* const failed = std::get_if<ResultOnly>(&*handler.minOutputPower);
        inputs.push_back({"min-output-power", failed != nullptr ? resultText(*failed)
                                                                : Decibels::dBm(std::get<int>(
                                                                      *handler.minOutputPower))});
    }
    addPmax(inputs, "pmax-dpd1-etsi", handler.pmaxDpd1Etsi);
    addPmax(inputs, "pmax-dpd2-etsi", handler.pmaxDpd2Etsi);
    addPmax(inputs, "pmax-dpd1-ansi", handler.pmaxDpd1Ansi);
    addPmax(inputs, "pmax-dpd2-ansi", handler.pmaxDpd2Ansi);
}

void addOffsets(RadioInputs& inputs, const SystemPowerControllerAnswers& controller) {
    std::set<std::int32_t> known;
    for (const auto& offset : controller.minOutputPowerOffsets) {
        const auto spacing = static_cast<std::int32_t>(offset.channelSpacing);
        // Of two offsets for one spacing the first counts.
        if (known.insert(spacing).second) {
            inputs.push_back({"min-output-power-offset/" + std::to_string(spacing),
                              Decibels::dB(offset.offset)});
        }
    }
}

void addVariables(RadioInputs& inputs, const NodeAnswers::Variables& variables) {
    for (const auto& [name, elements] : variables) {
        std::string text;
        for (const std::int32_t element : elements) {
            text += text.empty() ? "" : " ";
            text += std::to_string(element);
        }
        inputs.push_back({"variable/" + oneLine(name), text});
    }
}

std::string codesOf(const PowerTable& table) {
    std::string codes;
    for (const PowerTable::Row& row : table.rows) {
        codes += codes.empty() ? "" : " ";
        codes += convertCodeAndModulationEnumToString(row.modulationAndCode);
    }
    return codes.empty() ? noValue : codes;
}

/// The values of inputs by their names. A radio may have as many as a file has variables.
using ValuesByName = std::unordered_map<std::string_view, std::string_view>;

ValuesByName valuesOf(const RadioInputs& inputs) {
    ValuesByName values;
    for (const RadioInput& input : inputs) {
        values.emplace(input.name, input.value);
    }
    return values;
}

} // namespace

std::vector<RadioInput> inputsOf(const RadioCase& radio, const PowerTable& table) {
    const NodeAnswers& node = radio.file.node;
    RadioInputs inputs;
    add(inputs, table.rsec);
    add(inputs, table.market);
    add(inputs, table.dpdVersion);
    add(inputs, table.channelSpacing);
    add(inputs, Inputs::PermanentCutback{table.inputs.permanentCutback.value_or(0)});
    add(inputs, table.inputs.temporaryCutback.value_or(OperatingInputs::TemporaryCutback{}));
    add(inputs, table.inputs.booster.value_or(OperatingInputs::Booster{}));
    add(inputs, Inputs::ProductNumber{table.productNumber});
    add(inputs, Inputs::SelectedMin{table.selectedMin});
    add(inputs, Inputs::SelectedMax{table.selectedMax});

    inputs.push_back({"channel", std::to_string(table.servedChannel)});
    inputs.push_back({"codes", codesOf(table)});
    if (node.frameFormat != nullptr) {
        inputs.push_back({"modulation", convertAcmEnumToString(node.frameFormat->modulation)});
    }
    inputs.push_back(
        {"highest-modulation", table.modulationLimit ? table.modulationLimit->radio : noValue});
    inputs.push_back({"carrier-aggregation", node.carrierAggregation ? "yes" : "no"});
    if (node.capabilityHandler != nullptr) {
        addCapabilities(inputs, *node.capabilityHandler);
    }
    if (node.systemPowerController != nullptr) {
        addOffsets(inputs, *node.systemPowerController);
    }
    if (node.variables != nullptr) {
        addVariables(inputs, *node.variables);
    }
    return inputs;
}

std::vector<InputChange> changesBetween(const std::vector<RadioInput>& before,
                                        const std::vector<RadioInput>& after) {
    const ValuesByName valuesBefore = valuesOf(before);
    const ValuesByName valuesAfter = valuesOf(after);
    std::vector<InputChange> changes;
    for (const RadioInput& input : before) {
        const auto other = valuesAfter.find(input.name);
        const bool isThere = other != valuesAfter.end();
        if (!isThere || other->second != input.value) {
            changes.push_back({input.name, input.value, std::string(isThere ? other->second : "")});
        }
    }
    for (const RadioInput& input : after) {
        if (!valuesBefore.contains(input.name)) {
            changes.push_back({input.name, "", input.value});
        }
    }
    return changes;
}
