#include "FleetDiff.h"

#include "Field.h"
#include "OneLine.h"
#include "Rule.h"
#include "TextColumns.h"

namespace {

/// Of every FleetDiff::What in its order: what programs and people call it, and what a count of
/// them means.
constexpr struct {
    const char* key;
    const char* words;
    const char* counted; ///< behind the number; empty: is told elsewhere
} fleetWhatTexts[FleetDiff::whats] = {
    {"power", "power", ""},
    {"minPower", "minimum power", "with another minimum power"},
    {"onlyBefore", "only before", "only before"},
    {"onlyAfter", "only after", "only after"},
    {"failedBefore", "failed before", "failed before, not after"},
    {"failedAfter", "fails after", "failed after, not before"},
    {"doubledBefore", "doubled before", "answered again before, not compared"},
    {"doubledAfter", "doubled after", "answered again after, not compared"},
    {"nameless", "nameless", "without a name, not compared"},
    {"unreadable", "no answer", "no answers of batch"},
};

const auto& fleetTexts(FleetDiff::What what) {
    return fleetWhatTexts[static_cast<std::size_t>(what)];
}

std::string rulesInWords(const std::string& before, const std::string& after) {
    const auto words = [](const std::string& code) {
        return code.empty() ? "none" : wordsFor(code);
    };
    return before == after ? words(before) : words(before) + " -> " + words(after);
}

Fields<FleetDiff::Change> fleetChangeFields() {
    using enum Shown;
    const auto ofCode = [](auto value) {
        return [value](const FleetDiff::Change& change) {
            return change.name.empty() ? Datum() : Datum(change.*value);
        };
    };
    return {
        {{"radio"}, orNothing<FleetDiff::Change>(&FleetDiff::Change::radio), InBoth, "Radio"},
        {{"what"},
         [](const FleetDiff::Change& change) { return fleetTexts(change.what).key; },
         InBoth},
        {{"whatInWords"},
         [](const FleetDiff::Change& change) { return fleetTexts(change.what).words; },
         Nowhere,
         "What"},
        {{"code"}, ofCode(&FleetDiff::Change::code), InBoth},
        {{"name"}, ofCode(&FleetDiff::Change::name), InBoth, "Name"},
        {{"modulation"}, ofCode(&FleetDiff::Change::modulation), InBoth},
        {{"before", "dBm"}, &FleetDiff::Change::before, InBoth, "Before"},
        {{"after", "dBm"}, &FleetDiff::Change::after, InBoth, "After"},
        {{"difference", "dB"}, &FleetDiff::Change::difference, InBoth, "Difference"},
        {{"ruleBefore"}, orNothing<FleetDiff::Change>(&FleetDiff::Change::ruleBefore), InBoth},
        {{"ruleAfter"}, orNothing<FleetDiff::Change>(&FleetDiff::Change::ruleAfter), InBoth},
        {{"rule"},
         [](const FleetDiff::Change& change) {
             return change.name.empty() ? Datum()
                                        : Datum(rulesInWords(change.ruleBefore, change.ruleAfter));
         },
         Nowhere,
         "Rule"},
        {{"remark"}, orNothing<FleetDiff::Change>(&FleetDiff::Change::remark), InBoth, "Remark"},
    };
}

Fields<FleetDiff::Move> fleetMoveFields() {
    using enum Shown;
    return {
        {{"ruleBefore"}, orNothing<FleetDiff::Move>(&FleetDiff::Move::ruleBefore)},
        {{"ruleAfter"}, orNothing<FleetDiff::Move>(&FleetDiff::Move::ruleAfter)},
        {{"rule"},
         [](const FleetDiff::Move& move) { return rulesInWords(move.ruleBefore, move.ruleAfter); },
         Nowhere,
         "Rule"},
        {{"radios"}, &FleetDiff::Move::radios, InJson, "Radios"},
        {{"codes"}, &FleetDiff::Move::codes, InJson, "Codes"},
        {{"least", "dB"}, &FleetDiff::Move::least, InJson, "Least"},
        {{"greatest", "dB"}, &FleetDiff::Move::greatest, InJson, "Greatest"},
    };
}

std::string fleetTotalsText(const FleetDiff& diff) {
    std::string text = counted(diff.compared(), "radio") + " compared: the powers of " +
                       std::to_string(diff.changed()) + " changed, in " +
                       counted(diff.changedCodes(), "code");
    if (diff.otherRules() > 0) {
        text += "; " + counted(diff.otherRules(), "code") + " of equal power for another rule";
    }
    if (diff.badInBoth() > 0) {
        text += "; " + std::to_string(diff.badInBoth()) + " failed before and after";
    }
    for (std::size_t what = 0; what < FleetDiff::whats; ++what) {
        const std::uint64_t count = diff.count(static_cast<FleetDiff::What>(what));
        if (count > 0 && *fleetWhatTexts[what].counted != '\0') {
            text += "; " + std::to_string(count) + ' ' + fleetWhatTexts[what].counted;
        }
    }
    return text + '\n';
}

Datum::Object fleetTotalsOf(const FleetDiff& diff) {
    Datum::Object totals{{"equal", diff.isEqual()},         {"compared", diff.compared()},
                         {"changed", diff.changed()},       {"changedCodes", diff.changedCodes()},
                         {"otherRules", diff.otherRules()}, {"failedInBoth", diff.badInBoth()}};
    for (std::size_t what = 1; what < FleetDiff::whats; ++what) {
        totals.emplace_back(fleetWhatTexts[what].key,
                            diff.count(static_cast<FleetDiff::What>(what)));
    }
    totals.emplace_back("rules", listOf(fleetMoveFields(), diff.moves()));
    return totals;
}

} // namespace

std::string FleetDiffForm::beginning() const {
    if (m_kind == Kind::Csv) {
        return csvHeader(fleetChangeFields());
    }
    return m_kind == Kind::Json ? R"({"schema":"qor-power/diff/1","fleet":{"changes":[)" : "";
}

std::string FleetDiffForm::add(const FleetDiff::Change& change) {
    ++m_count;
    if (m_kind == Kind::Csv) {
        return csvLine(fleetChangeFields(), change);
    }
    if (m_kind == Kind::Text) {
        if (m_first.size() < shownChanges) {
            m_first.push_back(change);
        }
        return "";
    }
    std::string line = jsonLine(objectOf(fleetChangeFields(), change));
    line.pop_back();
    return (m_count == 1 ? "\n" : ",\n") + line;
}

std::string FleetDiffForm::end(const FleetDiff& diff) const {
    if (m_kind == Kind::Csv) {
        return "";
    }
    if (m_kind == Kind::Json) {
        std::string summary = jsonLine(fleetTotalsOf(diff));
        summary.pop_back();
        return "\n],\"summary\":" + summary + "}}\n";
    }
    std::string text;
    if (!m_first.empty()) {
        text += textColumns(fleetChangeFields(), m_first, "-", nullptr, {m_look.width});
        text += m_count > m_first.size() ? "and " + std::to_string(m_count - m_first.size()) +
                                               " more, which csv and json have\n\n"
                                         : "\n";
    }
    if (const std::vector<FleetDiff::Move> moves = diff.moves(); !moves.empty()) {
        text += textColumns(fleetMoveFields(), moves, "-", nullptr, {m_look.width}) + '\n';
    }
    return text + fleetTotalsText(diff);
}
