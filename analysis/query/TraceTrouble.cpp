#include "TraceTrouble.h"

#include "OneLine.h"
#include "TraceText.h"

#include <algorithm>
#include <iterator>
#include <string_view>

// The texts that are looked for are the library's own messages, letter for letter, its oddities
// included.

namespace {

constexpr const char* noPmaxRow = "the Pmax table has no row for ";

/// A table of the family's own, and what the library says before the key that is missing from it.
struct FamilyTable {
    std::string_view complaint;
    const char* what;
    std::string_view againstLabel; ///< of the modulation that the entry holds against; may be empty
    Rule rule;
};

constexpr FamilyTable familyTables[] = {
    {"No power offset found for ref acm=", "power offset", "ref acm=", Rule::MissingOffset},
    {"No power offset found for selected max acm=", "power offset",
     "selected max acm=", Rule::MissingOffset},
    {"No power offset found for rsec=", "power offset", "", Rule::MissingOffset},
    {"No boosted power offset found for ref acm=", "booster adjustment", "",
     Rule::MissingBoosterEntry},
    {"No boosted band power offset found for ref acm=", "booster band adjustment", "",
     Rule::MissingBoosterEntry},
};

/// A missing entry of the family's own tables, of which each family has its own message.
std::optional<TraceTrouble> missingEntry(const TraceRecord& record) {
    const std::string& text = record.text;
    const auto* const table =
        std::find_if(std::begin(familyTables), std::end(familyTables),
                     [&text](const FamilyTable& each) { return text.starts_with(each.complaint); });
    if (table == std::end(familyTables)) {
        return std::nullopt;
    }
    std::string words = std::string("the family has no ") + table->what + " for " +
                        TraceText::valueBehind(text, ", acm=").value_or("?") + " at RSEC " +
                        TraceText::valueBehind(text, "rsec=").value_or("?");
    if (!table->againstLabel.empty()) {
        words += " against " + TraceText::valueBehind(text, table->againstLabel).value_or("?");
    }
    return TraceTrouble{words, false, table->rule};
}

/// A rule by which a calculator does not apply to a modulation.
std::optional<TraceTrouble> notApplicable(const TraceRecord& record) {
    if (const auto booster =
            TraceText::inBrackets(record.text, " is higher than booster max ACM (")) {
        return TraceTrouble{"above the booster's highest modulation, " + *booster, true,
                            Rule::BoosterMaxModulation};
    }
    if (const auto selected =
            TraceText::inBrackets(record.text, " is higher than selected max ACM (")) {
        return TraceTrouble{"above the selected maximum, " + *selected, true,
                            Rule::SelectedMaximum};
    }
    if (TraceText::contains(record.text, " type invalid, selected max ")) {
        return TraceTrouble{"the modulation or the selected maximum is undefined", true,
                            Rule::UndefinedModulation};
    }
    return std::nullopt;
}

/// Messages that only repeat, further up, that something failed.
bool isConsequence(const TraceRecord& record) {
    constexpr std::string_view beginnings[] = {
        "Could not get max ref output power for ",
        "Could not get max output power for reference offset ",
        "Unable to get power for modulation ",
        "Modulation not supported ",
        "Failed to get AdMod capabilities",
        "Failed to calculate power capabilities for modulation ",
    };
    return std::any_of(
        std::begin(beginnings), std::end(beginnings),
        [&record](std::string_view beginning) { return record.text.starts_with(beginning); });
}

/// Which role the modulation of a missing row has, said by the message that follows it.
std::string roleOf(const TraceRecord& record) {
    if (record.text.starts_with("Could not get max ref output power for selected min ")) {
        return ", the selected minimum";
    }
    if (record.text.starts_with("Could not get max output power for reference offset ")) {
        return ", the reference modulation";
    }
    return {};
}

} // namespace

std::optional<TraceTrouble> TraceTrouble::in(const TraceRecord& record) {
    if (record.kind == TraceRecord::Kind::Enter) {
        return std::nullopt;
    }
    if (const auto modulation = TraceText::missingRow(record)) {
        return TraceTrouble{noPmaxRow + *modulation, true, Rule::MissingPmaxRow};
    }
    if (const auto trouble = missingEntry(record)) {
        return trouble;
    }
    if (const auto trouble = notApplicable(record)) {
        return trouble;
    }
    if (record.level > highestLevel || isConsequence(record)) {
        return std::nullopt;
    }
    if (const auto dpdVersion = TraceText::rest(record.text, "Unknown DPD version ")) {
        return TraceTrouble{"DPD version " + *dpdVersion + " is unknown", true,
                            Rule::UnknownDpdVersion};
    }
    if (record.text.ends_with("No matching RSEC")) {
        return TraceTrouble{
            "the family has no rule for this RSEC and goes on from the power of the "
            "modulation before",
            false, Rule::CarriedPower};
    }
    return unknown(record);
}

TraceTrouble TraceTrouble::unknown(const TraceRecord& record) {
    return {"the library reports " + inQuotes(record.text), false, Rule::Unexplained};
}

void TraceTrouble::learnFrom(const TraceRecord& record) {
    if (rule == Rule::MissingPmaxRow) {
        text += roleOf(record);
    }
}
