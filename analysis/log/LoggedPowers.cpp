#include "LoggedPowers.h"

#include "CalculationStory.h"
#include "Decibels.h"
#include "ModulationAndCoding.h"
#include "TraceText.h"
#include "Waterfall.h"

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

using Cutback = std::optional<ExplanationContext::Cutback>;
using Booster = std::optional<ExplanationContext::Booster>;

LoggedPowers tell(const LoggedCall& call, const Cutback& cutback, const Booster& booster,
                  bool tellsSpacing) {
    LoggedPowers powers;
    powers.call = call.name;
    powers.line = call.line;
    powers.arguments = call.arguments;
    powers.process = call.process;
    powers.trace = QueryTrace::read(call.records);

    ExplanationContext context{cutback, booster, {}, std::nullopt};
    if (tellsSpacing) {
        context.channelSpacing = channelSpacingIn(call.records);
    }
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
    return powers;
}

/// The figures of all calculations, those inside others included.
std::vector<const CalculationFigures*> figuresOf(const QueryTrace& trace) {
    std::vector<const CalculationFigures*> all;
    for (const QueryTrace::Calculation& calculation : trace.calculations) {
        all.push_back(&calculation.figures);
        for (const CalculationFigures& inner : calculation.figures.inner) {
            all.push_back(&inner);
        }
    }
    return all;
}

/// What the figures of a query say of an input that the log tells before it.
enum class Evidence {
    None,
    For,
    Against
};

Evidence evidenceOf(const LoggedPowers& told, const ExplanationContext::Cutback& cutback) {
    Evidence evidence = Evidence::None;
    for (const Explanation& explanation : told.explanations) {
        if (!explanation.addsUp()) {
            return Evidence::Against;
        }
    }
    for (const CalculationFigures* const figures : figuresOf(told.trace)) {
        if (figures->cutbackCount == 0) {
            continue;
        }
        // Their sums hold the cutback, and they add up.
        if (figures->offsetFamily.pmaxReference || figures->capFamily.compensation) {
            evidence = Evidence::For;
        }
        // Pmax of the reference modulation is never cut back.
        const CalculationFigures::RadioUnit& unit = figures->radioUnit;
        if (unit.pmaxActual && unit.pmaxReference && figures->lookups.size() > 2 &&
            figures->modulation == figures->lookups[2].modulation &&
            figures->modulation != Modulation::UNDEFINED) {
            if (Waterfall::wrapped(std::int64_t{*unit.pmaxReference} - *unit.pmaxActual) !=
                Waterfall::wrapped(cutback.amount)) {
                return Evidence::Against;
            }
            evidence = Evidence::For;
        }
    }
    return evidence;
}

/// The booster as far as the figures confirm it: its gain by a calculation that the input does not
/// bound, its input by one that it does.
Booster confirmed(const Booster& heard, const QueryTrace& trace) {
    if (!heard) {
        return std::nullopt;
    }
    bool isGainSure = false;
    bool isInputSure = false;
    for (const CalculationFigures* const figures : figuresOf(trace)) {
        const CalculationFigures::RadioUnit& unit = figures->radioUnit;
        if (!unit.atInput || !unit.withBandAdjustment) {
            continue;
        }
        const std::int32_t after =
            Waterfall::wrapped(std::int64_t{*unit.withBandAdjustment} - heard->gain);
        if (*unit.atInput != std::min(after, heard->maxInputPower)) {
            return std::nullopt;
        }
        isGainSure |= after < heard->maxInputPower;
        isInputSure |= after > heard->maxInputPower;
    }
    if (!isGainSure) {
        return std::nullopt;
    }
    Booster booster = heard;
    booster->isInputKnown = isInputSure;
    return booster;
}

bool isReplayed(const LoggedCall& call) {
    return !call.answer.is_null();
}

/// What an explanation without a power and without a refusal lacks.
void findUntold(LoggedPowers& powers) {
    for (const Explanation& explanation : powers.explanations) {
        if (!explanation.answer && !explanation.refusal) {
            powers.gaps.push_back("the log does not tell the power of " +
                                  convertAcmEnumToString(explanation.modulation));
        }
    }
}

/// Chooses what is known of cutback and booster, and explains with it.
LoggedPowers tellConfirmed(const LoggedCall& call, const LoggedInputs& inputs,
                           const CallCheck& check) {
    const bool tellsSpacing = isReplayed(call) || check.isSpacingConfirmed;
    const Cutback heard = inputs.cutback();
    const Booster booster = inputs.booster();
    LoggedPowers powers = tell(call, heard, booster, tellsSpacing);
    const Booster sure = inputs.isBoosterGiven() ? booster : confirmed(booster, powers.trace);
    if (!inputs.isBoosterGiven() && booster) {
        powers = tell(call, heard, sure, tellsSpacing);
    }
    if (inputs.isCutbackGiven() || !heard) {
        return powers;
    }
    const Evidence evidence = evidenceOf(powers, *heard);
    if (evidence == Evidence::For) {
        return powers;
    }
    const bool matters =
        std::ranges::any_of(figuresOf(powers.trace), [](const CalculationFigures* figures) {
            return figures->cutbackCount != 0;
        });
    powers = tell(call, std::nullopt, sure, tellsSpacing);
    if (evidence == Evidence::Against) {
        powers.trace.notes.push_back("the log sets a cutback of " + Decibels::dB(heard->amount) +
                                     " before, but the figures hold another one: a line that sets "
                                     "it may be missing, or of another service");
    } else if (matters && heard->amount != 0) {
        powers.trace.notes.push_back("the log sets a cutback of " + Decibels::dB(heard->amount) +
                                     " before, which no figure of this query confirms and which "
                                     "does not count; if it is right, give it");
    }
    return powers;
}

} // namespace

LoggedPowers LoggedPowers::asTold(const LoggedCall& call, const LoggedInputs& inputs) {
    return tell(call, inputs.cutback(), inputs.booster(), true);
}

LoggedPowers LoggedPowers::of(const LoggedCall& call, const LoggedInputs& inputs,
                              const CallCheck& check) {
    if (check.isWhole()) {
        LoggedPowers powers = tellConfirmed(call, inputs, check);
        if (!isReplayed(call)) {
            powers.unconfirmed = check.unconfirmed;
        }
        findUntold(powers);
        return powers;
    }
    LoggedCall whole = call;
    whole.records.erase(whole.records.begin() + static_cast<std::ptrdiff_t>(check.wholeRecords),
                        whole.records.end());
    LoggedPowers powers = tellConfirmed(whole, inputs, check);
    powers.keepFirst(check.calculations);
    powers.gaps.push_back(check.trouble);
    findUntold(powers);
    return powers;
}

void LoggedPowers::keepFirst(std::size_t calculations) {
    explanations.resize(std::min(calculations, explanations.size()));
}

LoggedQueries::LoggedQueries(Choice choice, Sink sink)
    : m_choice(std::move(choice))
    , m_sink(std::move(sink))
    , m_log([this](const LoggedCall& call) { take(call); }) {}

bool LoggedQueries::isChosen(const LoggedCall& call, const Process& process) {
    m_isSince =
        m_isSince || m_choice.since.empty() || (!call.time.empty() && call.time >= m_choice.since);
    return m_isSince && m_choice.source.includes(call, process.inputs) &&
           (!m_choice.query || *m_choice.query == m_found);
}

void LoggedQueries::take(const LoggedCall& call) {
    Process& process = m_processes[call.process];
    process.inputs.fix(m_choice.inputs);
    process.inputs.follow(call);
    const CallCheck check = CallCheck::of(call);
    const std::size_t brokenOff =
        std::exchange(process.brokenOff, check.endsAtItsEnd ? 0 : call.line);
    const bool isQuery = call.name.empty() || TraceLog::isQuery(call.name);
    if (isQuery || !check.isWhole()) {
        ++m_found;
        if (isChosen(call, process)) {
            LoggedPowers powers = LoggedPowers::of(call, process.inputs, check);
            powers.number = m_found;
            if (brokenOff != 0 && !isReplayed(call)) {
                powers.gaps.push_back("the call before, line " + std::to_string(brokenOff) +
                                      " of the log, breaks off, and its lines may stand among "
                                      "these");
                powers.keepFirst(0);
            }
            if (m_log.highestLevel() < TraceLog::neededLevel) {
                powers.gaps.assign(1, "the log holds traces up to level " +
                                          std::to_string(m_log.highestLevel()) +
                                          " here, and steps are told by level 6: have " +
                                          "QOR.SPC.Calculator trace at level 6");
            }
            m_sink(powers);
        }
    }
    if (!check.isWhole()) {
        process.inputs.forget();
    }
}
