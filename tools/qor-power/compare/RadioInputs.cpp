#include "RadioInputs.h"

#include "Decibels.h"
#include "InputAxis.h"
#include "OneLine.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace {

using RadioInputs = std::vector<RadioInput>;

constexpr const char* noValue = "none";

void add(RadioInputs& inputs, const Inputs::Value& value) {
    inputs.push_back({InputAxis::of(value).name(), Inputs::labelOf(value)});
}

std::string resultText(const ResultOnly& answer) {
    return "result " + std::to_string(answer.result);
}

/// A name that no other input of the list has: repetitions are numbered.
std::string uniqueName(const RadioInputs& inputs, const std::string& name) {
    std::string unique = name;
    const auto isTaken = [&unique](const RadioInput& input) { return input.name == unique; };
    for (int number = 2; std::any_of(inputs.begin(), inputs.end(), isTaken); ++number) {
        unique = name + '#' + std::to_string(number);
    }
    return unique;
}

/// A Pmax table row by row; an odd integer at its end is no row.
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
    for (std::size_t place = 0; place + 1 < integers.size(); place += 2) {
        const auto modulation = static_cast<Modulation>(integers[place]);
        inputs.push_back({uniqueName(inputs, name + '/' + convertAcmEnumToString(modulation)),
                          Decibels::format(integers[place + 1]) + " dBm"});
    }
}

void addCapabilities(RadioInputs& inputs, const CapabilityHandlerAnswers& handler) {
    if (handler.minOutputPower) {
        const auto* const failed = std::get_if<ResultOnly>(&*handler.minOutputPower);
        inputs.push_back({"min-output-power",
                          failed != nullptr
                              ? resultText(*failed)
                              : Decibels::format(std::get<int>(*handler.minOutputPower)) + " dBm"});
    }
    addPmax(inputs, "pmax-dpd1-etsi", handler.pmaxDpd1Etsi);
    addPmax(inputs, "pmax-dpd2-etsi", handler.pmaxDpd2Etsi);
    addPmax(inputs, "pmax-dpd1-ansi", handler.pmaxDpd1Ansi);
    addPmax(inputs, "pmax-dpd2-ansi", handler.pmaxDpd2Ansi);
}

void addOffsets(RadioInputs& inputs, const SystemPowerControllerAnswers& controller) {
    for (const auto& offset : controller.minOutputPowerOffsets) {
        const auto spacing = static_cast<std::int32_t>(offset.channelSpacing);
        const std::string name = "min-output-power-offset/" + std::to_string(spacing);
        // Of two offsets for one spacing the first counts.
        if (uniqueName(inputs, name) == name) {
            inputs.push_back({name, Decibels::format(offset.offset) + " dB"});
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

const RadioInput* find(const RadioInputs& inputs, const std::string& name) {
    const auto found = std::find_if(inputs.begin(), inputs.end(), [&name](const RadioInput& input) {
        return input.name == name;
    });
    return found == inputs.end() ? nullptr : &*found;
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
    std::vector<InputChange> changes;
    for (const RadioInput& input : before) {
        const RadioInput* const other = find(after, input.name);
        if (other == nullptr || other->value != input.value) {
            changes.push_back({input.name, input.value, other == nullptr ? "" : other->value});
        }
    }
    for (const RadioInput& input : after) {
        if (find(before, input.name) == nullptr) {
            changes.push_back({input.name, "", input.value});
        }
    }
    return changes;
}
