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
    if (!whyNot.warning.empty()) {
        return text + ", but that is doubtful: " + whyNot.warning + '\n';
    }
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

std::string joined(const std::vector<std::string>& words, const char* separator) {
    std::string list;
    for (const std::string& word : words) {
        list += (list.empty() ? "" : separator) + word;
    }
    return list;
}

Fields<WhyNot::Change> changeFields(bool isPaired = false) {
    using enum Shown;
    const auto kind = [](const WhyNot::Change& change) { return kindOf(change.input); };
    const auto options = [](const WhyNot::Change& change) { return Datum(change.options); };
    Fields<WhyNot::Change> fields = {
        {{"input"}, &WhyNot::Change::input},
        {{"kind"}, kind},
        {{"words"}, &WhyNot::Change::words, InJson, "Change"},
        {{"from"}, &WhyNot::Change::from, InJson, "From"},
        {{"to"}, &WhyNot::Change::to, InJson, "To"},
        {{"amount", "dB"}, &WhyNot::Change::amount, InJson, "By"},
        {{"maxPower", "dBm"}, &WhyNot::Change::power, InJson, "Power"},
        {{"pointer"}, orNothing<WhyNot::Change>(&WhyNot::Change::pointer), InJson, "Where"},
        {{"options"}, options},
    };
    if (isPaired) {
        fields.insert(fields.begin(), {{"pair"}, &WhyNot::Change::pair, InJson, "Pair"});
    }
    return fields;
}

} // namespace

std::string textForm(const WhyNot& whyNot, const std::string& asked, const TextLook& look) {
    std::string text = standing(whyNot, asked);
    if (whyNot.isAllowed()) {
        return fitted(text, look.width);
    }
    if (!whyNot.changes.empty()) {
        text += "Any one of these changes alone allows it, the smallest first:\n\n" +
                textColumns(changeFields(), whyNot.changes, "", nullptr, {look.width}) + '\n';
    }
    if (!whyNot.without.empty()) {
        text += "No change alone allows it of: " + joined(whyNot.without, ", ") + '\n';
    }
    if (!whyNot.pairs.empty()) {
        text += "\nThese pairs of changes allow it, the smallest first:\n\n" +
                textColumns(changeFields(true), whyNot.pairs, "", nullptr, {look.width}) + '\n';
    } else if (whyNot.changes.empty()) {
        text += "Nothing that was tried allows it.\n";
    }
    return fitted(text + "Not tried: " + joined(whyNot.notTried, "; ") + '\n', look.width);
}

std::string jsonForm(const WhyNot& whyNot, const std::string& asked) {
    return jsonDocument(answerOf("why-not", {
                                                {"radioFile", whyNot.radioFile},
                                                {"asked", asked},
                                                {"wantedCentiDbm", whyNot.wanted},
                                                {"maxPowerCentiDbm", whyNot.power},
                                                {"rule", codeOf(whyNot.explanation.decisiveRule())},
                                                {"allowed", whyNot.isAllowed()},
                                                {"changes", listOf(changeFields(), whyNot.changes)},
                                                {"pairs", listOf(changeFields(true), whyNot.pairs)},
                                                {"without", whyNot.without},
                                                {"notTried", whyNot.notTried},
                                                {"warning", Datum::orNothing(whyNot.warning)},
                                            }));
}
