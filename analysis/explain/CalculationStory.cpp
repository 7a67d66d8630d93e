#include "CalculationStory.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

using Basis = Explanation::Basis;
using Step = Explanation::Step;

} // namespace

bool CalculationStory::hasOffsetFamily() const {
    return m_figures.offsetFamily.actualPower && m_figures.offsetFamily.pmaxReference;
}

bool CalculationStory::hasCapFamily() const {
    return m_figures.capFamily.uncompensated && m_figures.capFamily.compensation &&
           m_figures.maxPower;
}

bool CalculationStory::hasRadioUnit() const {
    return m_figures.radioUnit.pmaxActual && m_figures.radioUnit.pmaxReference &&
           m_figures.radioUnit.offset;
}

// Look-ups

void CalculationStory::tellLookups() {
    findOffsets();
    findCutback();
    constexpr std::array roles = {Rule::PmaxSelectedMinimum, Rule::PmaxRow, Rule::PmaxReference};
    const std::size_t count = std::min(roles.size(), m_figures.lookups.size());
    for (std::size_t i = 0; i < count; ++i) {
        const CalculationFigures::Lookup& reported = m_figures.lookups[i];
        Lookup told{roles[i], reported.modulation, {}, {}, reported.missing};
        if (m_context.radio && reported.missing != Rule::UnknownDpdVersion) {
            const ExplanationContext::Radio& radio = *m_context.radio;
            told.table = radio.places.pmaxTable(radio.dpdVersion, radio.market);
        }
        if (!reported.missing) {
            told.power = reportedPmax(roles[i]);
            // The text of a reference does not tell numbers apart that no modulation has.
            const bool isNamed =
                roles[i] != Rule::PmaxReference || reported.modulation != Modulation::UNDEFINED;
            if (!told.power && isNamed) {
                told.power = m_context.askForPmax(reported.modulation);
                told.basis = told.power ? Basis::Question : Basis::Reported;
            }
        }
        if (m_context.radio && told.power) {
            const ExplanationContext::Radio& radio = *m_context.radio;
            told.pointer = radio.places.pmaxRow(radio.dpdVersion, radio.market, reported.modulation,
                                                *told.power);
        }
        m_explanation.lookups.push_back(std::move(told));
    }
}

const Explanation::Lookup* CalculationStory::lookup(Rule role) const {
    const auto found =
        std::find_if(m_explanation.lookups.begin(), m_explanation.lookups.end(),
                     [role](const Lookup& candidate) { return candidate.role == role; });
    return found == m_explanation.lookups.end() ? nullptr : &*found;
}

CalculationStory::Power CalculationStory::withoutCutback(const Power& power) const {
    if (!power || !m_isCutbackKnown) {
        return std::nullopt;
    }
    return Waterfall::wrapped(*power + (m_cutback ? m_cutback->amount : 0));
}

/// Pmax of a look-up, where the family's reports hold it.
CalculationStory::Power CalculationStory::reportedPmax(Rule role) const {
    const CalculationFigures::OffsetFamily& offset = m_figures.offsetFamily;
    const CalculationFigures::CapFamily& cap = m_figures.capFamily;
    const CalculationFigures::RadioUnit& unit = m_figures.radioUnit;
    if (role == Rule::PmaxSelectedMinimum) {
        return withoutCutback(offset.pmaxSelectedMin);
    }
    if (role == Rule::PmaxReference) {
        return offset.pmaxReference ? offset.pmaxReference : unit.pmaxReference;
    }
    if (cap.uncompensated && cap.compensation) {
        return withoutCutback(
            Waterfall::wrapped(std::int64_t{*cap.uncompensated} + *cap.compensation));
    }
    return withoutCutback(offset.pmaxActual ? offset.pmaxActual : unit.pmaxActual);
}

// Offsets and cutback

void CalculationStory::findOffsets() {
    if (hasOffsetFamily() && m_figures.offsetFamily.rsec) {
        m_offsets = LibraryQuestions::offsets(m_figures.calculator,
                                              EReferenceSEC{*m_figures.offsetFamily.rsec});
    }
}

CalculationStory::Power CalculationStory::offsetOf(Modulation modulation) const {
    if (!m_offsets) {
        return std::nullopt;
    }
    const auto found = m_offsets->find(modulation);
    return found == m_offsets->end() ? Power() : Power(found->second);
}

/// The cutback that was set, or what the figures leave for it.
void CalculationStory::findCutback() {
    if (m_figures.cutbackCount == 0) {
        return;
    }
    if (m_context.cutback) {
        const bool isTemporary = m_context.cutback->isTemporary;
        m_cutback = CutbackStep{isTemporary ? Rule::TemporaryCutback : Rule::PermanentCutback,
                                isTemporary ? "temporary cutback" : "permanent cutback",
                                m_context.cutback->amount,
                                Basis::Input,
                                m_context.cutback->pointer,
                                m_context.cutback->source};
        return;
    }
    const CalculationFigures::OffsetFamily& family = m_figures.offsetFamily;
    m_cutback = CutbackStep{Rule::Cutback, "cutback", 0, Basis::Difference};
    if (m_figures.compensation && m_figures.capFamily.compensation) {
        m_cutback->amount = Waterfall::wrapped(std::int64_t{m_figures.compensation.value_or(0)} -
                                               m_figures.capFamily.compensation.value_or(0));
    } else if (hasOffsetFamily() && m_figures.compensation && offsetOf(m_figures.modulation) &&
               m_figures.lookups.size() > 2) {
        const Power reference = offsetOf(m_figures.lookups[2].modulation);
        const std::int64_t start =
            reference ? std::int64_t{family.pmaxReference.value_or(0)} - *reference : 0;
        m_cutback->amount = Waterfall::wrapped(start + m_figures.compensation.value_or(0) +
                                               offsetOf(m_figures.modulation).value_or(0) -
                                               family.actualPower.value_or(0));
    } else {
        m_isCutbackKnown = false;
    }
}

void CalculationStory::takeCutback() {
    if (!m_cutback || !m_isCutbackKnown) {
        return;
    }
    Step& step = m_waterfall.change(m_cutback->rule, m_cutback->words, -m_cutback->amount);
    step.basis = m_cutback->basis;
    step.pointer = m_cutback->pointer;
    step.source = m_cutback->source;
}

// What the families share

void CalculationStory::startFromTable(Rule role, const std::string& words, std::int32_t power) {
    Step& step = m_waterfall.start(role, words, power);
    if (const Lookup* const source = lookup(role)) {
        step.pointer = source->pointer;
        step.source = source->table;
        step.basis = source->basis;
        m_explanation.bounds.front().pointer = source->pointer;
    }
}

void CalculationStory::startFromMissing(const Lookup& missing) {
    const bool isRowMissing = missing.missing == Rule::MissingPmaxRow;
    Step& step = m_waterfall.start(
        missing.missing.value_or(Rule::MissingPmaxRow),
        isRowMissing
            ? "no row for " + convertAcmEnumToString(missing.modulation) + ": Pmax counts as 0 dBm"
            : "unknown DPD version: Pmax of " + convertAcmEnumToString(missing.modulation) +
                  " counts as 0 dBm",
        0);
    step.source = missing.table;
}

std::string CalculationStory::compensationWords() const {
    const std::string words = "channel-spacing compensation";
    return m_context.channelSpacing
               ? words + " of " + std::to_string(*m_context.channelSpacing) + " MHz"
               : words;
}

std::string CalculationStory::compensationPointer() const {
    if (!m_context.radio || !m_figures.compensation) {
        return {};
    }
    return m_context.radio->places.compensation(m_context.radio->channelSpacing,
                                                m_figures.compensation.value_or(0));
}

void CalculationStory::addCompensation() {
    Step& step = m_waterfall.change(Rule::ChannelSpacingCompensation, compensationWords(),
                                    m_figures.compensation.value_or(0));
    step.pointer = compensationPointer();
}

/// @param bound less the cutback, as it counts.
void CalculationStory::boundByTable(Rule role, const std::string& words, const Power& bound) {
    if (!bound) {
        return;
    }
    const Lookup* const source = lookup(role);
    Step& step =
        m_waterfall.bound(role, words, *bound, source == nullptr ? std::string() : source->pointer);
    if (source != nullptr) {
        step.source = source->table;
        step.basis = source->basis;
    }
}

std::string CalculationStory::rsecText() const {
    if (m_figures.offsetFamily.rsec) {
        return convertRsecEnumToString(EReferenceSEC{*m_figures.offsetFamily.rsec});
    }
    return m_figures.capFamily.rsec.empty() ? m_figures.radioUnit.rsec : m_figures.capFamily.rsec;
}

void CalculationStory::noteRsecOfAnsi() {
    const std::string used = rsecText();
    if (!used.empty() && !m_figures.rsec.empty() && used != m_figures.rsec) {
        m_explanation.notes.emplace_back("RSEC " + m_figures.rsec + " counts as " + used +
                                         " on the ANSI market");
    }
}

// One fixed modulation

void CalculationStory::tellFixed(const Power& answer) {
    const Lookup* const own = lookup(Rule::PmaxRow);
    const Lookup* const selected = lookup(Rule::PmaxSelectedMinimum);
    if (own == nullptr || selected == nullptr || !m_figures.compensation) {
        tellIncomplete();
        return;
    }
    const bool isOne = m_figures.modulation == m_figures.selectedMin;
    const bool areKnown = (own->missing || own->power) && (selected->missing || selected->power);
    if (!areKnown || !m_isCutbackKnown) {
        startFixedFromLower(answer);
        return;
    }
    if (own->missing) {
        startFromMissing(*own);
    } else {
        startFromTable(Rule::PmaxRow, "Pmax of " + convertAcmEnumToString(m_figures.modulation),
                       *own->power);
    }
    takeCutback();
    if (!isOne) {
        const std::int64_t power = selected->power.value_or(0);
        boundByTable(Rule::PmaxSelectedMinimum,
                     "at most Pmax of " + convertAcmEnumToString(selected->modulation) +
                         ", the selected modulation" +
                         (selected->missing ? ", which has no row and counts as 0 dBm" : "") +
                         (lessCutback().empty() ? "" : "," + lessCutback()),
                     Waterfall::wrapped(power - (m_cutback ? m_cutback->amount : 0)));
        if (selected->missing) {
            m_explanation.steps.back().rule = *selected->missing;
            m_explanation.bounds.back().rule = *selected->missing;
        }
    }
    addCompensation();
}

/// A log does not hold the two values of Pmax; the lower of them follows from the answer.
void CalculationStory::startFixedFromLower(const Power& answer) {
    const std::string own = convertAcmEnumToString(m_figures.modulation);
    if (!answer) {
        m_explanation.notes.emplace_back("the log tells neither Pmax nor the power of one fixed "
                                         "modulation");
        return;
    }
    const bool isOne = m_figures.modulation == m_figures.selectedMin;
    std::string words = isOne ? "Pmax of " + own
                              : "the lower of Pmax of " + own + " and of " +
                                    convertAcmEnumToString(m_figures.selectedMin) +
                                    ", the selected modulation";
    std::int64_t lower = std::int64_t{*answer} - m_figures.compensation.value_or(0);
    if (m_isCutbackKnown) {
        lower += m_cutback ? m_cutback->amount : 0;
    } else {
        words += ", less a cutback that the log does not tell";
    }
    Step& step = m_waterfall.start(isOne ? Rule::PmaxRow : Rule::Unexplained, words,
                                   Waterfall::wrapped(lower));
    step.basis = Basis::Difference;
    takeCutback();
    addCompensation();
}

void CalculationStory::tellSelected(const Explanation& selected) {
    if (selected.answer) {
        m_waterfall.bound(Rule::SelectedModulation,
                          "at most the power of " + convertAcmEnumToString(m_figures.selectedMin) +
                              ", the selected modulation",
                          *selected.answer);
    }
}

// The families

void CalculationStory::tellFamily(const Power& carried) {
    if (m_figures.outcome == CalculationFigures::Outcome::NotApplicable && m_figures.refusal) {
        m_waterfall.start(m_figures.refusal->rule, m_figures.refusal->text + ": counts as 0 dBm",
                          0);
    } else if (hasOffsetFamily()) {
        tellOffsetFamily();
    } else if (hasCapFamily()) {
        tellCapFamily(carried);
    } else if (hasRadioUnit()) {
        tellRadioUnit();
    } else {
        tellIncomplete();
        return;
    }
    noteRsecOfAnsi();
}

void CalculationStory::tellIncomplete() {
    m_explanation.notes.emplace_back(
        "the log holds too little of this calculation; it needs traces up to level 6");
}
