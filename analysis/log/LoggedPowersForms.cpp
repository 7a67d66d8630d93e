#include "LoggedPowersForms.h"

#include "Decibels.h"
#include "ExplanationForms.h"
#include "OneLine.h"
#include "PowerTableForms.h"

namespace {

Heading headingOf(const LoggedPowers& powers) {
    Heading heading = {{"Query", (powers.call.empty() ? "not shown" : powers.call) + ", line " +
                                     std::to_string(powers.line) + " of the log"}};
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

std::string titleOf(const Explanation& explanation) {
    const std::string modulation = convertAcmEnumToString(explanation.modulation) + ": ";
    if (explanation.answer) {
        return modulation + Decibels::format(*explanation.answer) + " dBm";
    }
    return modulation + (explanation.refusal ? "no power" : "the log does not tell the power");
}

} // namespace

std::string textForm(const LoggedPowers& powers, const TextLook& look) {
    std::string text = textOf(headingOf(powers));
    for (const Explanation& explanation : powers.explanations) {
        text += '\n' + textForm(titleOf(explanation), explanation, look);
    }
    const std::string legend = legendOf(powers.explanations);
    return legend.empty() ? text : text + '\n' + legend;
}

std::string jsonLine(const LoggedPowers& powers) {
    OrderedJson object;
    object["call"] = textOrNull(powers.call);
    object["line"] = powers.line;
    object["arguments"] = textOrNull(powers.arguments);
    object["family"] =
        powers.trace.family ? OrderedJson(powers.trace.family->name) : OrderedJson(nullptr);
    object["calculator"] =
        powers.trace.family ? OrderedJson(powers.trace.family->className) : OrderedJson(nullptr);
    object["adaptive"] = powers.trace.isAdaptive;
    object["failure"] = textOrNull(powers.trace.failure);
    object["notes"] = powers.trace.notes;
    object["gaps"] = powers.gaps;
    OrderedJson& explanations = object["explanations"] = OrderedJson::array();
    for (const Explanation& explanation : powers.explanations) {
        explanations.push_back(jsonOf(explanation));
    }
    constexpr int compact = -1;
    return object.dump(compact, ' ', false, OrderedJson::error_handler_t::replace) + '\n';
}
