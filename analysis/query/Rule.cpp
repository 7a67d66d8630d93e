#include "Rule.h"

#include <array>
#include <cstddef>

namespace {

struct RuleText {
    Rule rule;
    const char* code;
    const char* words;
};

constexpr std::array ruleTexts = {
    RuleText{Rule::PmaxRow, "pmax-row", "Pmax of the modulation"},
    RuleText{Rule::PmaxSelectedMinimum, "pmax-selected-minimum", "Pmax of the selected minimum"},
    RuleText{Rule::PmaxReference, "pmax-reference", "Pmax of the reference modulation"},
    RuleText{Rule::RsecCap, "rsec-cap", "Pmax that caps the RSEC class"},
    RuleText{Rule::CarriedPower, "carried-power", "power of the modulation before"},
    RuleText{Rule::PermanentCutback, "permanent-cutback", "permanent cutback"},
    RuleText{Rule::TemporaryCutback, "temporary-cutback", "temporary cutback"},
    RuleText{Rule::Cutback, "cutback", "cutback"},
    RuleText{Rule::ChannelSpacingCompensation, "channel-spacing-compensation",
             "channel-spacing compensation"},
    RuleText{Rule::ReferenceOffset, "reference-offset", "offset of the reference modulation"},
    RuleText{Rule::OffsetTable, "offset-table", "offset table of the family"},
    RuleText{Rule::BoosterAdjustment, "booster-adjustment", "booster adjustment"},
    RuleText{Rule::BoosterBandAdjustment, "booster-band-adjustment", "booster band adjustment"},
    RuleText{Rule::BoosterGain, "booster-gain", "booster gain"},
    RuleText{Rule::SelectedMinimumOffset, "selected-minimum-offset",
             "offset table at the selected minimum"},
    RuleText{Rule::BoosterInputLimit, "booster-input-limit", "highest input power of the booster"},
    RuleText{Rule::SelectedModulation, "selected-modulation", "power of the selected modulation"},
    RuleText{Rule::HardwareLimit, "hardware-limit", "highest modulation of the radio"},
    RuleText{Rule::SelectedMaximum, "selected-maximum", "selected maximum"},
    RuleText{Rule::BoosterMaxModulation, "booster-max-modulation",
             "highest modulation of the booster"},
    RuleText{Rule::UndefinedModulation, "undefined-modulation", "undefined modulation"},
    RuleText{Rule::MissingPmaxRow, "missing-pmax-row", "missing row of the Pmax table"},
    RuleText{Rule::MissingOffset, "missing-offset", "missing entry of the offset table"},
    RuleText{Rule::MissingBoosterEntry, "missing-booster-entry",
             "missing entry of the booster tables"},
    RuleText{Rule::UnknownDpdVersion, "unknown-dpd-version", "unknown DPD version"},
    RuleText{Rule::MissingCalibration, "missing-calibration",
             "unreadable channel-spacing calibration"},
    RuleText{Rule::QueryFailed, "query-failed", "failed query"},
    RuleText{Rule::Unexplained, "unexplained", "not told"},
};

constexpr bool standInOrder() {
    for (std::size_t i = 0; i < ruleTexts.size(); ++i) {
        if (static_cast<std::size_t>(ruleTexts[i].rule) != i) {
            return false;
        }
    }
    return static_cast<std::size_t>(Rule::Unexplained) + 1 == ruleTexts.size();
}
static_assert(standInOrder(), "one text for each rule, in the order of the enumeration");

const RuleText& textOf(Rule rule) {
    return ruleTexts.at(static_cast<std::size_t>(rule));
}

} // namespace

const char* codeOf(Rule rule) {
    return textOf(rule).code;
}

const char* wordsFor(Rule rule) {
    return textOf(rule).words;
}

const std::vector<Rule>& allRules() {
    static const std::vector<Rule> rules = [] {
        std::vector<Rule> all;
        all.reserve(ruleTexts.size());
        for (const RuleText& text : ruleTexts) {
            all.push_back(text.rule);
        }
        return all;
    }();
    return rules;
}
