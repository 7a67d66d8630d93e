#include "InputOverview.h"

#include "AnalysisError.h"
#include "Arguments.h"
#include "Datum.h"
#include "InputAxis.h"
#include "TextForms.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace {

/// A file may have more, from which nobody chooses in a list.
constexpr std::size_t maxRequests = 1000;

Datum choiceOf(const Inputs::Value& value) {
    return Datum::Object{{"value", Inputs::textOf(value)}, {"label", InputAxis::labelOf(value)}};
}

/// The value in force of each axis, in their order.
std::vector<Inputs::Value> valuesInForce(const PowerTable& table) {
    const OperatingInputs& inputs = table.inputs;
    return {table.rsec,
            table.market,
            table.dpdVersion,
            table.channelSpacing,
            Inputs::PermanentCutback{inputs.permanentCutback.value_or(0)},
            inputs.temporaryCutback.value_or(OperatingInputs::TemporaryCutback{}),
            inputs.booster.value_or(OperatingInputs::Booster{}),
            Inputs::ProductNumber{table.productNumber},
            Inputs::SelectedMin{table.selectedMin},
            Inputs::SelectedMax{table.selectedMax}};
}

/// What makes sense for a radio, and what it has.
Datum choicesOf(const InputAxis& axis, const RadioCase& radio, const Inputs::Value& inForce) {
    std::vector<Inputs::Value> values;
    try {
        values = axis.usualValues("input", radio);
    } catch (const QuestionError&) {
        values.clear();
    }
    const auto isInForce = [&inForce](const Inputs::Value& value) {
        return Inputs::textOf(value) == Inputs::textOf(inForce);
    };
    if (std::ranges::none_of(values, isInForce)) {
        values.insert(values.begin(), inForce);
    }
    Datum::List choices;
    for (const Inputs::Value& value : values) {
        choices.emplace_back(choiceOf(value));
    }
    return choices;
}

/// "28 MHz, Etsi, DPD 2"; what the radio refuses to tell is left out.
std::string wordsOf(const HardwareConfigurationHandlerAnswers::FrameFormat& format) {
    std::string words;
    if (const auto* const spacing = std::get_if<EChannelSpacingType>(&format.channelSpacing)) {
        words += InputAxis::labelOf(*spacing) + ", ";
    }
    if (const auto* const market = std::get_if<EFrameFormatMarket>(&format.market)) {
        words += InputAxis::labelOf(*market) + ", ";
    }
    return words + "DPD " + InputAxis::labelOf(format.dpdVersion);
}

Datum formatsOf(const NodeAnswers& node) {
    Datum::List formats{Datum::Object{{"value", "0"}, {"label", "configured"}}};
    if (node.hardwareConfigurationHandler) {
        for (const auto& record : node.hardwareConfigurationHandler->frameFormats) {
            const std::string id = std::to_string(record.id);
            formats.emplace_back(
                Datum::Object{{"value", id}, {"label", id + ": " + wordsOf(record)}});
        }
    }
    return formats;
}

/// In whose place can be asked.
Datum requestsOf(const RadioFile& file) {
    Datum::List requests{
        Datum::Object{{"value", Arguments::none}, {"label", "none: behind all of them"}}};
    const std::size_t count = std::min(file.requests.size(), maxRequests);
    for (std::size_t index = 0; index < count; ++index) {
        PowerTableQuery query;
        static_cast<void>(query.askAt(index, file.requests[index], {}));
        const std::string number = std::to_string(index);
        requests.emplace_back(
            Datum::Object{{"value", number}, {"label", number + ": " + query.request->words}});
    }
    return requests;
}

} // namespace

std::string inputOverviewJson(const RadioCase& radio) {
    const std::vector<Inputs::Value> inForce = valuesInForce(radio.powers());
    Datum::List inputs;
    for (const Inputs::Value& value : inForce) {
        const InputAxis& axis = InputAxis::of(value);
        inputs.emplace_back(Datum::Object{
            {"input", axis.name()},
            {"words", axis.words()},
            {"unit", Datum::orNothing(axis.unit())},
            {"value", Inputs::textOf(value)},
            {"label", InputAxis::labelOf(value)},
            {"values", choicesOf(axis, radio, value)},
        });
    }
    return jsonDocument(Datum::Object{
        {"inputs", std::move(inputs)},
        {"modulations", modulationTextForms().texts()},
        {"frameFormats", formatsOf(radio.file.node)},
        {"requests", requestsOf(radio.file)},
    });
}
