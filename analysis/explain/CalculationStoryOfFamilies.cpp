#include "CalculationStory.h"

#include "Decibels.h"

namespace {

using Basis = Explanation::Basis;
using Step = Explanation::Step;

std::string decibels(std::int64_t hundredths) {
    return Decibels::formatSigned(hundredths) + " dB";
}

} // namespace

// What each family makes of a power, in the order in which it does.

// The outdoor families with an offset table

void CalculationStory::tellOffsetFamily() {
    const CalculationFigures::OffsetFamily& family = m_figures.offsetFamily;
    const Lookup* const reference = lookup(Rule::PmaxReference);
    const std::string referenceText =
        reference == nullptr
            ? "the reference modulation"
            : convertAcmEnumToString(reference->modulation) + ", the reference modulation";
    const Power referenceOffset = reference == nullptr ? Power() : offsetOf(reference->modulation);
    if (m_offsets && reference != nullptr && !referenceOffset) {
        m_waterfall.start(Rule::MissingOffset,
                          referenceText + ", has no offset at RSEC " + rsecText() +
                              ": the powers count from 0 dBm",
                          0);
    } else {
        startFromTable(Rule::PmaxReference, "Pmax of " + referenceText,
                       family.pmaxReference.value_or(0));
    }
    if (referenceOffset) {
        Step& step =
            m_waterfall.change(Rule::ReferenceOffset, "offset of " + referenceText + ", taken out",
                               -std::int64_t{*referenceOffset});
        step.source = "offset table of the family, RSEC " + rsecText();
        step.basis = Basis::Question;
    }
    addCompensation();
    takeCutback();
    tellOffset();
    m_waterfall.expect("the power by the offset table", family.actualPower);
    boundOffsetFamily();
    m_waterfall.expect("the power of the family", m_figures.maxPower);
}

/// The last change before the bounds: the offset of the modulation.
void CalculationStory::tellOffset() {
    const CalculationFigures::OffsetFamily& family = m_figures.offsetFamily;
    const std::string own = convertAcmEnumToString(m_figures.modulation);
    const std::string source = "offset table of the family, RSEC " + rsecText();
    const std::string name = "offset table at " + own;
    const Power offset = offsetOf(m_figures.modulation);
    if (!offset || !m_isCutbackKnown) {
        const std::int64_t rest =
            std::int64_t{family.actualPower.value_or(0)} - m_waterfall.running();
        Step& step = m_waterfall.change(
            Rule::OffsetTable,
            "offset of " + own + " against the reference" +
                (m_isCutbackKnown ? "" : ", and a cutback that the log does not tell apart"),
            rest);
        step.source = source;
        step.basis = Basis::Difference;
        m_waterfall.nameFirstBound(Rule::OffsetTable, name);
        return;
    }
    const Power selectedOffset = offsetOf(m_figures.selectedMin);
    if (selectedOffset) {
        m_waterfall.expectFigure(
            "the power by the offset table at the selected minimum",
            Waterfall::wrapped(std::int64_t{m_waterfall.running()} + *selectedOffset),
            family.selectedMinPower);
    }
    Step& step = m_waterfall.change(Rule::OffsetTable, "offset of " + own, *offset);
    step.source = source;
    step.basis = Basis::Question;
    m_waterfall.nameFirstBound(Rule::OffsetTable, name);
}

void CalculationStory::boundOffsetFamily() {
    const CalculationFigures::OffsetFamily& family = m_figures.offsetFamily;
    const std::string own = convertAcmEnumToString(m_figures.modulation);
    const std::string selected =
        convertAcmEnumToString(m_figures.selectedMin) + ", the selected minimum";
    boundByTable(Rule::PmaxRow, "at most Pmax of " + own + lessCutback(), family.pmaxActual);
    // The selected minimum itself has no other bounds than its own.
    if (m_figures.modulation == m_figures.selectedMin) {
        return;
    }
    if (family.selectedMinPower) {
        m_waterfall.bound(Rule::SelectedMinimumOffset,
                          "at most what the offset table allows for " + selected,
                          family.selectedMinPower.value_or(0));
    } else {
        m_explanation.notes.emplace_back(selected + ", has no offset and bounds nothing by it");
    }
    boundByTable(Rule::PmaxSelectedMinimum,
                 "at most Pmax of " + selected + (lessCutback().empty() ? "" : "," + lessCutback()),
                 family.pmaxSelectedMin);
}

// The outdoor family that caps by the RSEC

void CalculationStory::tellCapFamily(const Power& carried) {
    const CalculationFigures::CapFamily& family = m_figures.capFamily;
    const std::int32_t compensation = family.compensation.value_or(0);
    if (m_figures.compensation && m_isCutbackKnown) {
        m_waterfall.expectFigure("the compensation less the cutback",
                                 Waterfall::wrapped(m_figures.compensation.value_or(0) -
                                                    (m_cutback ? m_cutback->amount : 0)),
                                 compensation);
    }
    if (family.isCarried) {
        Step& step = m_waterfall.start(
            Rule::CarriedPower,
            "RSEC " + rsecText() + " has no rule: the power of the modulation before goes on",
            Waterfall::wrapped(std::int64_t{m_figures.maxPower.value_or(0)} - compensation));
        step.basis = Basis::Difference;
        m_waterfall.expect("the power of the modulation before", carried);
    } else {
        const Lookup* const own = lookup(Rule::PmaxRow);
        const std::int32_t uncut =
            own != nullptr && own->power
                ? *own->power
                : Waterfall::wrapped(std::int64_t{family.uncompensated.value_or(0)} + compensation);
        startFromTable(Rule::PmaxRow, "Pmax of " + convertAcmEnumToString(m_figures.modulation),
                       uncut);
        takeCutback();
        takeOutCompensation();
        m_waterfall.expect("Pmax without the compensation", family.uncompensated);
        boundByCap();
    }
    Step& step = m_waterfall.change(
        Rule::ChannelSpacingCompensation,
        compensationWords() + lessCutback() + (family.isCarried ? "" : ", put back"), compensation);
    step.pointer = compensationPointer();
    step.source = m_cutback ? decibels(m_figures.compensation.value_or(0)) + " less " +
                                  Decibels::dB(m_cutback->amount)
                            : "";
    m_waterfall.expect("the power of the family", m_figures.maxPower);
}

void CalculationStory::takeOutCompensation() {
    Step& step = m_waterfall.change(Rule::ChannelSpacingCompensation,
                                    compensationWords() + lessCutback() + ", taken out",
                                    -std::int64_t{m_figures.capFamily.compensation.value_or(0)});
    step.pointer = compensationPointer();
}

void CalculationStory::boundByCap() {
    const CalculationFigures::CapFamily& family = m_figures.capFamily;
    if (!family.cap) {
        return; // RSEC 2 has none
    }
    Lookup cap{Rule::RsecCap, *family.cap, {}, {}, {}};
    const std::string words = "at most Pmax of " + convertAcmEnumToString(*family.cap) +
                              ", the cap of RSEC " + rsecText();
    if (family.isCapMissing) {
        cap.missing = Rule::MissingPmaxRow;
    } else if (family.capped && *family.capped < m_waterfall.running()) {
        cap.power = family.capped;
    } else {
        cap.power = m_context.askForPmax(*family.cap);
        cap.basis = Basis::Question;
    }
    if (m_context.radio) {
        const ExplanationContext::Radio& radio = *m_context.radio;
        cap.table = radio.places.pmaxTable(radio.dpdVersion, radio.market);
        cap.pointer = cap.power ? radio.places.pmaxRow(radio.dpdVersion, radio.market, *family.cap,
                                                       *cap.power)
                                : std::string();
    }
    m_explanation.lookups.push_back(cap);
    if (cap.missing) {
        m_waterfall.bound(Rule::MissingPmaxRow, words + ", which has no row and counts as 0 dBm", 0)
            .source = cap.table;
    } else if (cap.power) {
        boundByTable(Rule::RsecCap, words, cap.power);
    } else {
        m_explanation.notes.emplace_back("the cap of RSEC " + rsecText() + ", Pmax of " +
                                         convertAcmEnumToString(*family.cap) +
                                         ", does not bind; the log does not tell how high it is");
    }
    m_waterfall.expect("the capped power", family.capped);
}

// The radio-unit families

void CalculationStory::tellRadioUnit() {
    const CalculationFigures::RadioUnit& unit = m_figures.radioUnit;
    const std::string own = convertAcmEnumToString(m_figures.modulation);
    const Lookup* const reference = lookup(Rule::PmaxReference);
    startFromTable(Rule::PmaxReference,
                   "Pmax of " + (reference == nullptr
                                     ? std::string("the reference modulation")
                                     : convertAcmEnumToString(reference->modulation) +
                                           ", the reference modulation"),
                   unit.pmaxReference.value_or(0));
    Step& step = m_waterfall.change(Rule::OffsetTable, "offset of " + own, unit.offset.value_or(0));
    step.source = "offset table of the family against " + unit.against + ", RSEC " + rsecText();
    m_waterfall.nameFirstBound(Rule::OffsetTable, "offset table at " + own);
    m_waterfall.expect("the power by the offset table", unit.adjusted);
    boundByTable(Rule::PmaxRow, "at most Pmax of " + own + lessCutback(), unit.pmaxActual);
    m_waterfall.expect("the power without the booster", unit.withoutBooster);
    if (unit.presence.value_or(0) != 0) {
        tellBooster();
    }
    m_waterfall.expect("the power of the family", m_figures.maxPower);
}

void CalculationStory::tellBooster() {
    const CalculationFigures::RadioUnit& unit = m_figures.radioUnit;
    if (!unit.boosterAdjustment || !unit.boosterBandAdjustment || !unit.atInput) {
        tellIncomplete();
        return;
    }
    const std::string own = convertAcmEnumToString(m_figures.modulation);
    m_waterfall
        .change(Rule::BoosterAdjustment, "booster adjustment of " + own,
                unit.boosterAdjustment.value_or(0))
        .source = "booster table of the family, RSEC " + rsecText();
    m_waterfall.expect("the power with the booster adjustment", unit.withAdjustment);
    m_waterfall
        .change(Rule::BoosterBandAdjustment, "booster band adjustment of " + own,
                unit.boosterBandAdjustment.value_or(0))
        .source = "band table of the family, presence " + std::to_string(unit.presence.value_or(0));
    m_waterfall.expect("the power with the booster band adjustment", unit.withBandAdjustment);
    tellGain();
    m_waterfall.expect("the power at the booster's input", unit.atInput);
    boundByTable(Rule::PmaxRow, "at most Pmax of " + own + lessCutback() + ", again",
                 unit.pmaxActual);
    m_waterfall.expect("the power before the booster", unit.bounded);
}

void CalculationStory::tellGain() {
    if (!m_context.booster) {
        Step& step = m_waterfall.change(
            Rule::BoosterGain,
            "booster gain, or its highest input power: the log does not tell them",
            std::int64_t{m_figures.radioUnit.atInput.value_or(0)} - m_waterfall.running());
        step.basis = Basis::Difference;
        return;
    }
    const ExplanationContext::Booster& booster = *m_context.booster;
    Step& gain = m_waterfall.change(Rule::BoosterGain, "booster gain", -std::int64_t{booster.gain});
    gain.pointer = booster.gainPointer;
    gain.source = booster.source;
    gain.basis = Basis::Input;
    Step& input =
        m_waterfall.bound(Rule::BoosterInputLimit, "at most the booster's highest input power",
                          booster.maxInputPower, booster.maxInputPowerPointer);
    input.source = booster.source;
    input.basis = Basis::Input;
}
