#include "ExplanationAudit.h"

#include "AnalysisError.h"
#include "Inputs.h"
#include "LoggedPowers.h"
#include "PowerTableQuery.h"
#include "RadioFileReader.h"
#include "Replay.h"
#include "reference/RandomRadioFile.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <random>

namespace {

using Kind = Explanation::Step::Kind;

/// Whether a bound may have wrapped: a few powers and amounts that are nearer to 0 stay within 32
/// bits however they are added up.
bool isFar(const Explanation::Step& step) {
    constexpr std::int64_t near = std::int64_t{1} << 28;
    return std::abs(step.amount) > near || std::abs(std::int64_t{step.running}) > near ||
           std::abs(std::int64_t{step.bound.value_or(0)}) > near;
}

/// Likewise whether any sum of an explanation may have.
bool isFar(const Explanation& explanation) {
    return explanation.wraps ||
           std::ranges::any_of(explanation.steps,
                               [](const Explanation::Step& step) { return isFar(step); }) ||
           std::ranges::any_of(explanation.ofSelected,
                               [](const Explanation& selected) { return isFar(selected); });
}

/// A number of 32 bits that wraps.
std::int32_t in32Bits(std::int64_t number) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
}

/// Operating inputs drawn from a seed: most of them usual, some at the ends of their ranges.
OperatingInputs randomInputs(std::mt19937_64& random) {
    const auto one = [&random](auto... values) {
        const std::int64_t list[] = {values...};
        return list[random() % (sizeof(list) / sizeof(list[0]))];
    };
    OperatingInputs inputs;
    if (one(0, 1) == 1) {
        inputs.permanentCutback = static_cast<std::uint32_t>(
            one(0, 1, 100, 250, 300, 2147483647, 2147483648, 4294967295));
    }
    if (one(0, 1, 1) == 0) {
        inputs.temporaryCutback = {one(0, 1) == 1, static_cast<std::uint32_t>(one(0, 50, 1000))};
    }
    if (one(0, 1) == 1) {
        constexpr Modulation highest[] = {Modulation::QAM4, Modulation::QAM64, Modulation::QAM256,
                                          Modulation::QAM4096, Modulation::UNDEFINED};
        inputs.booster = {static_cast<std::int32_t>(one(0, 1, 2, 7, -1)),
                          static_cast<std::int32_t>(one(0, 1200, 1500, -300, 2147483647)),
                          static_cast<std::int32_t>(one(1400, 900, 3000, -2147483648)),
                          highest[random() % 5]};
    }
    return inputs;
}

std::optional<std::int64_t> integerAt(const nlohmann::json& document, const std::string& pointer) {
    const nlohmann::json::json_pointer place(pointer);
    if (!document.contains(place) || !document.at(place).is_number_integer()) {
        return std::nullopt;
    }
    return document.at(place).get<std::int64_t>();
}

/// Whether a Pmax table of the file ends in a modulation without a power.
bool hasOddTable(const nlohmann::json& document) {
    const nlohmann::json& tables = document.at("capabilityHandler");
    return std::any_of(tables.begin(), tables.end(), [](const nlohmann::json& table) {
        return table.is_object() && table.contains("integers") &&
               table.at("integers").size() % 2 == 1;
    });
}

} // namespace

void ExplanationAudit::find(const std::string& name, const std::string& problem) {
    m_findings.push_back(name + ": " + problem);
}

void ExplanationAudit::auditRandomFile(std::uint64_t seed) {
    const nlohmann::json document = reference::randomRadioFile(seed);
    const RadioFile file = RadioFileReader::read(document.dump());
    std::mt19937_64 random(seed);

    std::vector<std::int32_t> ids = {0};
    if (file.node.hardwareConfigurationHandler) {
        for (const auto& frameFormat : file.node.hardwareConfigurationHandler->frameFormats) {
            ids.push_back(static_cast<std::int32_t>(frameFormat.id));
        }
    }
    for (const std::int32_t id : ids) {
        for (const bool isAsItStands : {true, false}) {
            PowerTableQuery query;
            query.frameFormatId = id;
            if (!isAsItStands) {
                query.inputs = randomInputs(random);
            }
            const std::string name = "file " + std::to_string(seed) + ", frame format " +
                                     std::to_string(id) + (isAsItStands ? "" : ", other inputs");
            try {
                const ExplainedTable explained = query.explain(file);
                audit(explained, document, name);
                auditCutback(explained, query, file, name);
                auditNextBound(explained, query, file, random(), name);
                ++m_starts;
            } catch (const AnalysisError& error) {
                if (error.outcome() != Outcome::ServiceDidNotStart) {
                    find(name, error.what());
                }
            }
        }
    }
}

void ExplanationAudit::auditCutback(const ExplainedTable& explained, PowerTableQuery query,
                                    const RadioFile& file, const std::string& name) {
    // One of half the 32 bits and more may come to a small number, or to one that is put on.
    constexpr std::uint32_t near = std::uint32_t{1} << 28;
    const std::uint32_t cutback = explained.table.inputs.cutbackInForce();
    const auto& booster = explained.table.inputs.booster;
    // A booster's gain may wrap as well.
    const bool isGainFar = booster && std::abs(std::int64_t{booster->gain}) > near;
    if (cutback == 0 || cutback > near || isGainFar) {
        return;
    }
    if (explained.table.inputs.isTemporary()) {
        query.inputs.temporaryCutback = {true, 0};
    } else {
        query.inputs.permanentCutback = 0;
    }
    const PowerTable without = query.run(file);
    for (std::size_t index = 0; index < without.rows.size(); ++index) {
        const Explanation& explanation = explained.explanations[index];
        const auto& power = without.rows[index].maxPower;
        if (!power || isFar(explanation) || explanation.path == Explanation::Path::None) {
            continue;
        }
        if (explanation.withoutCutback ? *explanation.withoutCutback != *power
                                       : !explanation.cutback && explanation.answer != *power) {
            find(name + ", " + convertAcmEnumToString(explanation.modulation),
                 "without the cutback it has " + std::to_string(*power));
        }
        m_cutBack += explanation.withoutCutback ? 1U : 0U;
    }
}

void ExplanationAudit::auditNextBound(const ExplainedTable& explained, const PowerTableQuery& query,
                                      const RadioFile& file, std::uint64_t start,
                                      const std::string& name) {
    const auto& explanations = explained.explanations;
    for (std::size_t count = 0; count < explanations.size(); ++count) {
        const std::size_t index = static_cast<std::size_t>((start + count) % explanations.size());
        const Explanation& explanation = explanations[index];
        const std::string figure = explanation.bindingFigure();
        const auto row = std::ranges::find_if(
            explained.explanations[index].lookups, [&figure](const Explanation::Lookup& lookup) {
                return figure == "Pmax of " + convertAcmEnumToString(lookup.modulation) &&
                       lookup.power && !lookup.pointer.empty();
            });
        if (figure.empty() || isFar(explanation) || row == explanation.lookups.end()) {
            continue;
        }
        // By as much as the next bound is away, and by 10 dB more.
        for (const std::int64_t more : {0, 1000}) {
            const std::int64_t raise = explanation.headroom.value_or(0) + more;
            const RadioFile raised =
                Inputs::withPmax(file, explained.pmaxTableKey, row->modulation,
                                 static_cast<std::int32_t>(*row->power + raise));
            const std::int64_t expected =
                explanation.next ? explanation.next->value : *explanation.answer + raise;
            const auto power = query.run(raised).rows[index].maxPower;
            if (power != expected) {
                find(name + ", " + convertAcmEnumToString(explanation.modulation),
                     figure + " raised by " + std::to_string(raise) + " gives " +
                         std::to_string(power.value_or(0)) + ", not " + std::to_string(expected));
            }
        }
        m_raised += 1;
        m_raisedTogether += explanation.sameFigure.empty() ? 0U : 1U;
        return;
    }
}

void ExplanationAudit::audit(const ExplainedTable& explained, const nlohmann::json& document,
                             const std::string& name) {
    const std::vector<PowerTable::Row>& rows = explained.table.rows;
    if (rows.size() != explained.explanations.size()) {
        find(name, "not one explanation for each row");
        return;
    }
    for (std::size_t index = 0; index < rows.size(); ++index) {
        const Explanation& explanation = explained.explanations[index];
        const std::string row =
            name + ", code " + std::to_string(rows[index].modulationAndCode.code);
        ++m_decisive[explanation.decisiveRule()];
        if (explanation.answer != rows[index].maxPower) {
            find(row, "the answer is not that of the table");
        }
        if (explanation.decisiveRule() == Rule::Unexplained) {
            find(row, "no decisive rule");
        }
        if (rows[index].maxPower) {
            ++m_answers;
            auditAnswer(explanation, document, row);
        } else {
            ++m_refusals;
            if (!explanation.refusal || explanation.refusalWords.empty()) {
                find(row, "no reason why there is no power");
            }
        }
    }
}

void ExplanationAudit::auditRandomLog(std::uint64_t seed) {
    const RadioFile file = RadioFileReader::read(reference::randomRadioFile(seed).dump());
    LoggedQueries log({}, [&](const LoggedPowers& powers) {
        const std::string name =
            "log " + std::to_string(seed) + ", line " + std::to_string(powers.line);
        for (const std::string& gap : powers.gaps) {
            // Of two codes of a modulation the answer may hold different powers.
            if (!gap.starts_with("the log does not tell the power of ")) {
                find(name, gap);
            }
        }
        for (const Explanation& explanation : powers.explanations) {
            if (explanation.answer) {
                ++m_loggedAnswers;
                auditSteps(explanation, name);
            } else if (!explanation.refusal && explanation.notes.empty()) {
                find(name, "neither a power nor a reason");
            }
        }
    });
    // Explaining asks the library, which it can only once the replay's node is gone.
    std::vector<std::string> lines;
    Replay(6).play(file, [&lines](const std::string& line) { lines.push_back(line); });
    for (const std::string& line : lines) {
        log.read(line);
    }
    log.end();
}

void ExplanationAudit::auditAnswer(const Explanation& explanation, const nlohmann::json& document,
                                   const std::string& name) {
    auditSteps(explanation, name);
    auditPlaces(explanation, document, name);
    for (const Explanation& selected : explanation.ofSelected) {
        auditAnswer(selected, document, name + ", selected");
    }
}

void ExplanationAudit::auditSteps(const Explanation& explanation, const std::string& name) {
    if (!explanation.addsUp()) {
        find(name, explanation.mismatch);
    }
    if (explanation.steps.empty() || explanation.steps.front().kind != Kind::Start) {
        find(name, "no start");
        return;
    }
    std::int32_t sum = explanation.steps.front().running;
    bool wraps = isFar(explanation.steps.front());
    for (std::size_t index = 1; index < explanation.steps.size(); ++index) {
        const Explanation::Step& step = explanation.steps[index];
        wraps |= isFar(step);
        if (step.kind == Kind::Bound) {
            if (std::min(sum, *step.bound) - std::int64_t{sum} != step.amount) {
                find(name, "a bound takes away what it does not");
            }
            sum = std::min(sum, *step.bound);
        } else {
            sum = in32Bits(sum + step.amount);
        }
        if (step.running != sum) {
            find(name, "step " + std::to_string(index) + " runs to another power");
        }
    }
    if (sum != explanation.answer) {
        find(name, "the steps add up to " + std::to_string(sum) + ", the answer is " +
                       std::to_string(*explanation.answer));
    }
    auditBounds(explanation, wraps, name);
}

void ExplanationAudit::auditBounds(const Explanation& explanation, bool wraps,
                                   const std::string& name) {
    if (explanation.binding() == nullptr) {
        if (!explanation.hasOpenBound) {
            find(name, "no binding bound");
        }
        return;
    }
    if (explanation.binding()->value != explanation.answer) {
        find(name, "the binding bound is not the answer");
    }
    if (wraps) {
        return;
    }
    for (const Explanation::Bound& bound : explanation.bounds) {
        if (bound.value < *explanation.answer) {
            find(name, "a bound is below the answer");
        }
    }
    const auto* const runnerUp = explanation.runnerUp();
    const bool hasMore = explanation.bounds.size() > 1 + explanation.sameFigure.size();
    if (explanation.ofSelected.empty() &&
        (hasMore && !explanation.hasOpenBound) != (runnerUp != nullptr)) {
        find(name, "no runner-up");
    }
    if (explanation.headroom &&
        (runnerUp == nullptr ||
         *explanation.headroom != std::int64_t{runnerUp->value} - *explanation.answer)) {
        find(name, "the headroom does not lead to the runner-up");
    }
}

void ExplanationAudit::auditPlaces(const Explanation& explanation, const nlohmann::json& document,
                                   const std::string& name) {
    for (const Explanation::Lookup& lookup : explanation.lookups) {
        if (lookup.missing || !lookup.power) {
            continue;
        }
        if (lookup.pointer.empty()) {
            if (*lookup.power == 0 && hasOddTable(document)) {
                continue; // the power of the last row does not stand in the file
            }
            find(name, "no place for Pmax of " + convertAcmEnumToString(lookup.modulation));
        } else if (integerAt(document, lookup.pointer) != *lookup.power) {
            find(name, lookup.pointer + " holds another Pmax");
        }
    }
    for (const Explanation::Step& step : explanation.steps) {
        if (step.pointer.empty() || step.rule == Rule::ChannelSpacingCompensation) {
            continue;
        }
        const std::optional<std::int64_t> figure = integerAt(document, step.pointer);
        const bool isCutback =
            step.rule == Rule::PermanentCutback || step.rule == Rule::TemporaryCutback;
        const bool isGain = step.rule == Rule::BoosterGain;
        if (!figure) {
            find(name, step.pointer + " is not there");
        } else if ((isCutback || isGain) && *figure != -step.amount) {
            find(name, step.pointer + " holds another figure");
        } else if (step.rule == Rule::BoosterInputLimit && *figure != *step.bound) {
            find(name, step.pointer + " holds another input power");
        } else if (step.kind == Kind::Start && *figure != step.running) {
            find(name, step.pointer + " holds another start");
        }
    }
}

std::string lineOf(const Explanation::Step& step) {
    std::string line = codeOf(step.rule);
    if (step.bound) {
        line += " <=" + std::to_string(*step.bound);
    } else if (step.kind == Explanation::Step::Kind::Change) {
        line += (step.amount < 0 ? " " : " +") + std::to_string(step.amount);
    }
    return line + ' ' + std::to_string(step.running);
}

std::vector<std::string> stepsOf(const Explanation& explanation) {
    std::vector<std::string> lines;
    for (const Explanation::Step& step : explanation.steps) {
        lines.push_back(lineOf(step));
    }
    return lines;
}
