#pragma once

#include <string>
#include <vector>

/// The rules that give, move or bound a power, or that deny one: the name, the stable text for
/// machines, and a few words for people.
#define QOR_RULES(RULE)                                                                            \
    /* Powers that the radio's own Pmax table gives. */                                            \
    RULE(PmaxRow, "pmax-row", "Pmax of the modulation")                                            \
    /* PmaxSelectedMinimum: of the selected minimum; for one fixed modulation, of that one */      \
    RULE(PmaxSelectedMinimum, "pmax-selected-minimum", "Pmax of the selected minimum")             \
    RULE(PmaxReference, "pmax-reference", "Pmax of the reference modulation")                      \
    RULE(RsecCap, "rsec-cap", "Pmax that caps the RSEC class")                                     \
    /* CarriedPower: no table: the power of the modulation before goes on */                       \
    RULE(CarriedPower, "carried-power", "power of the modulation before")                          \
    /* What moves a power. */                                                                      \
    RULE(PermanentCutback, "permanent-cutback", "permanent cutback")                               \
    RULE(TemporaryCutback, "temporary-cutback", "temporary cutback")                               \
    /* Cutback: a log does not tell which of the two */                                            \
    RULE(Cutback, "cutback", "cutback")                                                            \
    RULE(ChannelSpacingCompensation, "channel-spacing-compensation",                               \
         "channel-spacing compensation")                                                           \
    RULE(ReferenceOffset, "reference-offset", "offset of the reference modulation")                \
    RULE(OffsetTable, "offset-table", "offset table of the family")                                \
    RULE(BoosterAdjustment, "booster-adjustment", "booster adjustment")                            \
    RULE(BoosterBandAdjustment, "booster-band-adjustment", "booster band adjustment")              \
    RULE(BoosterGain, "booster-gain", "booster gain")                                              \
    /* What only bounds a power. */                                                                \
    /* SelectedMinimumOffset: the power that the offset table allows for the selected minimum */   \
    RULE(SelectedMinimumOffset, "selected-minimum-offset", "offset table at the selected minimum") \
    RULE(BoosterInputLimit, "booster-input-limit", "highest input power of the booster")           \
    /* SelectedModulation: one fixed modulation with a booster: the power of that one */           \
    RULE(SelectedModulation, "selected-modulation", "power of the selected modulation")            \
    /* What denies a power. Where a power is needed all the same, it counts as 0 dBm. */           \
    RULE(HardwareLimit, "hardware-limit", "highest modulation of the radio")                       \
    RULE(SelectedMaximum, "selected-maximum", "selected maximum")                                  \
    RULE(BoosterMaxModulation, "booster-max-modulation", "highest modulation of the booster")      \
    RULE(UndefinedModulation, "undefined-modulation", "undefined modulation")                      \
    RULE(MissingPmaxRow, "missing-pmax-row", "missing row of the Pmax table")                      \
    RULE(MissingOffset, "missing-offset", "missing entry of the offset table")                     \
    RULE(MissingBoosterEntry, "missing-booster-entry", "missing entry of the booster tables")      \
    RULE(UnknownDpdVersion, "unknown-dpd-version", "unknown DPD version")                          \
    /* MissingCalibration: the stored variables of the channel-spacing compensation */             \
    RULE(MissingCalibration, "missing-calibration", "unreadable channel-spacing calibration")      \
    /* QueryFailed: as a whole, for another reason */                                              \
    RULE(QueryFailed, "query-failed", "failed query")                                              \
    RULE(Unexplained, "unexplained", "not told")

enum class Rule {
#define QOR_NAME(name, code, words) name,
    QOR_RULES(QOR_NAME)
#undef QOR_NAME
};

/// Stable text of a rule for machines, for example "pmax-row".
const char* codeOf(Rule rule);

/// A rule in a few words for people, for example "Pmax of the modulation".
const char* wordsFor(Rule rule);

/// The same of a rule's code; a code that is not known stands for itself.
std::string wordsFor(const std::string& code);

/// Every rule, in the order of the enumeration.
const std::vector<Rule>& allRules();
