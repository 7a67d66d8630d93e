#include "WhyNot.h"

#include "Decibels.h"
#include "Field.h"

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
    text += ", " + Decibels::dB(std::int64_t{whyNot.wanted} - *whyNot.power) + " less than " +
            Decibels::dBm(whyNot.wanted);
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

Fields<WhyNot::Change> changeFields() {
    using enum Shown;
    return {
        {{"input"}, &WhyNot::Change::input},
        {{"words"}, &WhyNot::Change::words, InJson, "Change"},
        {{"from"}, &WhyNot::Change::from, InJson, "From"},
        {{"to"}, &WhyNot::Change::to, InJson, "To"},
        {{"amount", "dB"}, &WhyNot::Change::amount, InJson, "By"},
        {{"maxPower", "dBm"}, &WhyNot::Change::power, InJson, "Power"},
        {{"pointer"}, orNothing<WhyNot::Change>(&WhyNot::Change::pointer), InJson, "Where"},
    };
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
    text += "Any one of these changes alone allows it:\n\n" +
            textColumns(changeFields(), whyNot.changes, "");
    return whyNot.without.empty()
               ? text
               : text + "\nNo change alone allows it of: " + without(whyNot) + '\n';
}

std::string jsonForm(const WhyNot& whyNot, const std::string& asked) {
    return jsonDocument(Datum::Object{
        {"radioFile", whyNot.radioFile},
        {"asked", asked},
        {"wantedCentiDbm", whyNot.wanted},
        {"maxPowerCentiDbm", whyNot.power},
        {"rule", codeOf(whyNot.explanation.decisiveRule())},
        {"allowed", whyNot.isAllowed()},
        {"changes", listOf(changeFields(), whyNot.changes)},
        {"without", whyNot.without},
    });
}
