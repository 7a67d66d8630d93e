#include "RuleStyle.h"

#include <array>
#include <cstddef>

namespace {

using Pattern = RuleStyle::Pattern;

// Colours that stay apart for colour-blind eyes.
constexpr const char* blue = "#0072b2";
constexpr const char* orange = "#c77700";
constexpr const char* green = "#00805c";
constexpr const char* purple = "#a5437e";
constexpr const char* red = "#c44500";
constexpr const char* sky = "#2b8cbe";
constexpr const char* olive = "#7a7000";
constexpr const char* gray = "#555555";

struct Entry {
    Rule rule;
    RuleStyle style;
};

// Rules that limit powers of one radio side by side have patterns of their own.
constexpr std::array entries = {
    Entry{Rule::PmaxRow, {orange, Pattern::Dotted}},
    Entry{Rule::PmaxSelectedMinimum, {purple, Pattern::Falling}},
    Entry{Rule::PmaxReference, {sky, Pattern::Grid}},
    Entry{Rule::RsecCap, {green, Pattern::Level}},
    Entry{Rule::CarriedPower, {gray, Pattern::Plain}},
    Entry{Rule::PermanentCutback, {olive, Pattern::Checked}},
    Entry{Rule::TemporaryCutback, {red, Pattern::Checked}},
    Entry{Rule::Cutback, {gray, Pattern::Checked}},
    Entry{Rule::ChannelSpacingCompensation, {sky, Pattern::Rings}},
    Entry{Rule::ReferenceOffset, {olive, Pattern::Rings}},
    Entry{Rule::OffsetTable, {blue, Pattern::Rising}},
    Entry{Rule::BoosterAdjustment, {red, Pattern::Grid}},
    Entry{Rule::BoosterBandAdjustment, {olive, Pattern::Grid}},
    Entry{Rule::BoosterGain, {purple, Pattern::Plain}},
    Entry{Rule::SelectedMinimumOffset, {sky, Pattern::Upright}},
    Entry{Rule::BoosterInputLimit, {red, Pattern::Crossed}},
    Entry{Rule::SelectedModulation, {green, Pattern::Plain}},
};

} // namespace

RuleStyle styleOf(Rule rule) {
    for (const Entry& entry : entries) {
        if (entry.rule == rule) {
            return entry.style;
        }
    }
    return {gray, Pattern::Plain};
}
