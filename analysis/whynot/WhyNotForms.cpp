#include "WhyNotForms.h"

#include "Decibels.h"
#include "ExplanationForms.h"
#include "PowerTableJson.h"
#include "TextColumns.h"

namespace {

/// What the radio gives now, and why not more.
std::string standing(const WhyNot& whyNot, const std::string& asked) {
    const Explanation& explanation = whyNot.explanation;
    if (!whyNot.power) {
        return asked + " gets no power: " + explanation.refusalWords + " (" +
               codeOf(explanation.decisiveRule()) + ")\n";
    }
    std::string text = asked + " gets " + Decibels::dBm(*whyNot.power);
    if (whyNot.isAllowed()) {
        return text + ", so " + Decibels::dBm(whyNot.wanted) + " is allowed already\n";
    }
    text += ", " + Decibels::format(std::int64_t{whyNot.wanted} - *whyNot.power) +
            " dB less than " + Decibels::dBm(whyNot.wanted);
    if (const Explanation::Bound* const binding = explanation.binding()) {
        text += "; limited by: " + binding->words + " (" + codeOf(binding->rule) + ")";
    }
    return text + '\n';
}

std::string without(const WhyNot& whyNot) {
    std::string list;
    for (const std::string& words : whyNot.without) {
        list += (list.empty() ? "" : ", ") + words;
    }
    return list;
}

std::string changesOf(const WhyNot& whyNot) {
    std::vector<std::vector<std::string>> lines = {
        {"Change", "From", "To", "By/dB", "Power/dBm", "Where"}};
    for (const WhyNot::Change& change : whyNot.changes) {
        lines.push_back({change.words, change.from, change.to,
                         change.amount ? Decibels::formatSigned(*change.amount) : "",
                         Decibels::format(change.power), change.pointer});
    }
    return alignedColumns(
        {Align::Left, Align::Left, Align::Left, Align::Right, Align::Right, Align::Left}, lines);
}

OrderedJson changeOf(const WhyNot::Change& change) {
    OrderedJson object;
    object["input"] = change.input;
    object["words"] = change.words;
    object["from"] = change.from;
    object["to"] = change.to;
    object["amountCentiDb"] = orNull(change.amount);
    object["maxPowerCentiDbm"] = change.power;
    object["pointer"] = textOrNull(change.pointer);
    return object;
}

} // namespace

std::string textForm(const WhyNot& whyNot, const std::string& asked) {
    std::string text = standing(whyNot, asked);
    if (whyNot.isAllowed()) {
        return text;
    }
    if (whyNot.changes.empty()) {
        return text + "No single change allows it of: " + without(whyNot) + '\n';
    }
    text += "Any one of these changes alone allows it:\n\n" + changesOf(whyNot);
    return whyNot.without.empty()
               ? text
               : text + "\nNo change alone allows it of: " + without(whyNot) + '\n';
}

std::string jsonForm(const WhyNot& whyNot, const std::string& asked) {
    OrderedJson object;
    object["radioFile"] = whyNot.radioFile;
    object["asked"] = asked;
    object["wantedCentiDbm"] = whyNot.wanted;
    object["maxPowerCentiDbm"] = orNull(whyNot.power);
    object["rule"] = codeOf(whyNot.explanation.decisiveRule());
    object["allowed"] = whyNot.isAllowed();
    OrderedJson& changes = object["changes"] = OrderedJson::array();
    for (const WhyNot::Change& change : whyNot.changes) {
        changes.push_back(changeOf(change));
    }
    object["without"] = whyNot.without;
    return printed(object);
}
