#include "LoggedPowers.h"

#include "CalculationStory.h"
#include "ModulationAndCoding.h"
#include "TraceText.h"

#include <algorithm>
#include <utility>

namespace {

using Power = std::optional<std::int32_t>;

Power integerOf(const nlohmann::json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_number_integer()
               ? Power(static_cast<std::int32_t>(found->get<std::int64_t>()))
               : Power();
}

/// The one power that all codes of a modulation have in an answered map; nothing if they differ:
/// then one of them may have stood there before the call.
Power powerInMap(const nlohmann::json& map, Modulation modulation) {
    Power power;
    for (const nlohmann::json& entry : map) {
        const Power code = entry.is_object() ? integerOf(entry, "code") : Power();
        const Power value = entry.is_object() ? integerOf(entry, "maxPower") : Power();
        if (!code || !value || convertCodeToModulation({*code}) != modulation) {
            continue;
        }
        if (power && *power != *value) {
            return std::nullopt;
        }
        power = value;
    }
    return power;
}

/// The answer to one of the calculations of a call, as far as the log holds it.
Power answerTo(const LoggedCall& call, const QueryTrace& trace, std::size_t index) {
    if (!call.answer.is_object() || integerOf(call.answer, "result") != 0) {
        return std::nullopt;
    }
    const Modulation modulation = trace.calculations[index].figures.modulation;
    const auto map = call.answer.find("powerMap");
    if (map == call.answer.end()) {
        return integerOf(call.answer, call.name == "getUnrestrictedPmax" ? "pmax" : "maxPower");
    }
    const auto times = std::ranges::count_if(
        trace.calculations, [modulation](const QueryTrace::Calculation& calculation) {
            return calculation.figures.modulation == modulation;
        });
    return times == 1 && map->is_array() ? powerInMap(*map, modulation) : Power();
}

/// The channel spacing that the family was asked to compensate, in MHz.
std::optional<std::int32_t> channelSpacingIn(const std::vector<TraceRecord>& records) {
    for (const TraceRecord& record : records) {
        if (TraceText::isEntryOf(record, "getCompensationForChannelSpacing")) {
            const auto named = TraceText::numberBehind(record.text, ", channelSpacing=");
            const auto spacing = named ? named : TraceText::number(record.text);
            return spacing ? std::optional(static_cast<std::int32_t>(*spacing)) : std::nullopt;
        }
    }
    return std::nullopt;
}

bool holdsEntries(const std::vector<TraceRecord>& records) {
    return std::ranges::any_of(
        records, [](const TraceRecord& record) { return record.kind == TraceRecord::Kind::Enter; });
}

void findGaps(const LoggedCall& call, LoggedPowers& powers) {
    if (call.name.empty()) {
        powers.gaps.emplace_back("the log does not show which call these traces belong to");
    }
    if (!powers.explanations.empty() || !powers.trace.failure.empty()) {
        return;
    }
    if (!holdsEntries(call.records)) {
        powers.gaps.emplace_back("the log holds no function entries here, which are traces of "
                                 "level 6, so no step can be told");
    } else if (TraceLog::isQuery(call.name)) {
        powers.gaps.emplace_back("the log holds no calculation of this query");
    }
}

} // namespace

LoggedPowers LoggedPowers::of(const LoggedCall& call, const LoggedInputs& inputs) {
    LoggedPowers powers;
    powers.call = call.name;
    powers.line = call.line;
    powers.arguments = call.arguments;
    powers.trace = QueryTrace::read(call.records);

    ExplanationContext context{inputs.cutback(), inputs.booster(), channelSpacingIn(call.records),
                               std::nullopt};
    // A query through the modulation-and-codes starts with 0 in hand; what a caller of the others
    // passed is not known.
    Power carried = call.name == "getMinMaxOutputPowerVsModulationArray" ? Power(0) : std::nullopt;
    for (std::size_t index = 0; index < powers.trace.calculations.size(); ++index) {
        const QueryTrace::Calculation& calculation = powers.trace.calculations[index];
        powers.explanations.push_back(
            explanationOf(context, calculation, answerTo(call, powers.trace, index), carried));
        if (!calculation.failed) {
            carried = powers.explanations.back().answer;
        }
    }
    findGaps(call, powers);
    return powers;
}
