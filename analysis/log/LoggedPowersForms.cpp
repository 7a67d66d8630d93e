#include "LoggedPowers.h"

#include "Decibels.h"
#include "ExplanationForms.h"
#include "OneLine.h"

namespace {

Heading headingOf(const LoggedPowers& powers) {
    Heading heading = {{"Query", std::to_string(powers.number) + ", " +
                                     (powers.call.empty() ? "not shown" : powers.call) + ", line " +
                                     std::to_string(powers.line) + " of the log"}};
    if (!powers.process.empty()) {
        heading.emplace_back("Process", oneLine(powers.process));
    }
    if (powers.isComplete()) {
        heading.emplace_back("Complete", powers.unconfirmed.empty()
                                             ? "every line of the query is there"
                                             : "every line of the query is there, but a cut would "
                                               "not show of:");
    }
    for (const std::string& number : powers.unconfirmed) {
        heading.emplace_back("Unconfirmed", number);
    }
    if (!powers.arguments.empty()) {
        heading.emplace_back("Asked for", oneLine(powers.arguments));
    }
    if (powers.trace.family) {
        heading.emplace_back("Family", powers.trace.family->name + " (" +
                                           powers.trace.family->className + ")");
    }
    if (!powers.explanations.empty()) {
        heading.emplace_back("Selection", powers.trace.isAdaptive ? "adaptive modulation"
                                                                  : "one fixed modulation");
    }
    for (const std::string& note : powers.trace.notes) {
        heading.emplace_back("Note", note);
    }
    if (!powers.trace.failure.empty()) {
        heading.emplace_back("No powers", powers.trace.failure);
    }
    for (const std::string& gap : powers.gaps) {
        heading.emplace_back("Incomplete", gap);
    }
    return heading;
}

std::string titleOf(const Explanation& explanation, bool isComplete) {
    const std::string modulation = convertAcmEnumToString(explanation.modulation) + ": ";
    if (explanation.answer) {
        return modulation + Decibels::dBm(*explanation.answer) +
               (isComplete ? "" : ", of an incomplete query");
    }
    return modulation + (explanation.refusal ? "no power" : "the log does not tell the power");
}

} // namespace

std::string textForm(const LoggedPowers& powers, const TextLook& look) {
    std::string text = textOf(headingOf(powers));
    for (const Explanation& explanation : powers.explanations) {
        text += '\n' + textForm(titleOf(explanation, powers.isComplete()), explanation, look);
    }
    const std::string legend = legendOf(powers.explanations);
    return legend.empty() ? text : text + '\n' + legend;
}

std::string jsonLine(const LoggedPowers& powers) {
    const std::optional<QueryTrace::Family>& family = powers.trace.family;
    Datum::List explanations;
    for (const Explanation& explanation : powers.explanations) {
        explanations.push_back(datumOf(explanation));
    }
    return jsonLine(
        answerOf("explain", {
                                {"query", powers.number},
                                {"process", Datum::orNothing(powers.process)},
                                {"call", Datum::orNothing(powers.call)},
                                {"line", powers.line},
                                {"arguments", Datum::orNothing(powers.arguments)},
                                {"family", family ? Datum(family->name) : Datum()},
                                {"calculator", family ? Datum(family->className) : Datum()},
                                {"adaptive", powers.trace.isAdaptive},
                                {"failure", Datum::orNothing(powers.trace.failure)},
                                {"notes", powers.trace.notes},
                                {"complete", powers.isComplete()},
                                {"gaps", powers.gaps},
                                {"unconfirmed", powers.unconfirmed},
                                {"explanations", std::move(explanations)},
                            }));
}
