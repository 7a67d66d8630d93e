#pragma once

#include <vector>

/// A rule that gives, moves or bounds a power, or that denies one.
enum class Rule {
    // Powers that the radio's own Pmax table gives.
    PmaxRow,             ///< of the modulation that is asked for
    PmaxSelectedMinimum, ///< of the selected minimum; for one fixed modulation, of that one
    PmaxReference,       ///< of the reference modulation
    RsecCap,             ///< of the modulation that caps an RSEC class
    CarriedPower,        ///< no table: the power of the modulation before goes on

    // What moves a power.
    PermanentCutback,
    TemporaryCutback,
    Cutback, ///< a log does not tell which of the two
    ChannelSpacingCompensation,
    ReferenceOffset, ///< of the reference modulation in the family's offset table
    OffsetTable,     ///< of the modulation that is asked for in the family's offset table
    BoosterAdjustment,
    BoosterBandAdjustment,
    BoosterGain,

    // What only bounds a power.
    SelectedMinimumOffset, ///< the power that the offset table allows for the selected minimum
    BoosterInputLimit,
    SelectedModulation, ///< one fixed modulation with a booster: the power of that one

    // What denies a power. Where a power is needed all the same, it counts as 0 dBm.
    HardwareLimit,   ///< above the highest modulation of the radio
    SelectedMaximum, ///< above the selected maximum
    BoosterMaxModulation,
    UndefinedModulation,
    MissingPmaxRow,
    MissingOffset,       ///< of the family's offset table
    MissingBoosterEntry, ///< of one of the family's booster tables
    UnknownDpdVersion,
    MissingCalibration, ///< the stored variables of the channel-spacing compensation
    QueryFailed,        ///< as a whole, for another reason

    Unexplained ///< a log does not tell
};

/// Stable text of a rule for machines, for example "pmax-row".
const char* codeOf(Rule rule);

/// A rule in a few words for people, for example "Pmax of the modulation".
const char* wordsFor(Rule rule);

/// Every rule, in the order of the enumeration.
const std::vector<Rule>& allRules();
