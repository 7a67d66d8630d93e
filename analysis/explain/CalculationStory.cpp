#include "CalculationStory.h"

#include "Decibels.h"
#include "LibraryQuestions.h"
#include "Waterfall.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace {

using Basis = Explanation::Basis;
using Step = Explanation::Step;

std::string decibels(std::int64_t hundredths) {
    return Decibels::formatSigned(hundredths) + " dB";
}

/// Tells one calculation for an adaptive modulation, or one of a fixed one, into an explanation.
class CalculationStory {
public:
    using Power = std::optional<std::int32_t>;

    static Explanation tell(ExplanationContext& context, const QueryTrace::Calculation& calculation,
                            const Power& answer, const Power& carried) {
        using Path = Explanation::Path;
        const CalculationFigures& figures = calculation.figures;
        Explanation explanation;
        explanation.modulation = figures.modulation;
        explanation.answer = answer ? answer : figures.maxPower;
        const bool hasBooster = figures.inner.size() == 2;
        explanation.path = hasBooster ? Path::FixedWithBooster : Path::Fixed;
        if (!figures.isFixed) {
            explanation.path = Path::Adaptive;
        }
        if (calculation.failed) {
            explanation.answer.reset();
            explanation.refusal = figures.refusal ? figures.refusal->rule : Rule::Unexplained;
            explanation.refusalWords = calculation.words();
        }

        const CalculationFigures& own = hasBooster ? figures.inner.back() : figures;
        CalculationStory story(context, own, explanation);
        story.tellLookups();
        if (calculation.failed) {
            return explanation;
        }
        if (figures.isFixed && !hasBooster) {
            story.tellFixed(answer);
        } else {
            story.tellFamily(hasBooster ? 0 : carried);
        }
        if (hasBooster && !explanation.steps.empty() && figures.modulation != figures.selectedMin) {
            const QueryTrace::Calculation selected{figures.inner.front()};
            explanation.ofSelected.push_back(tell(context, selected, std::nullopt, 0));
            Explanation& told = explanation.ofSelected.front();
            if (!told.answer) {
                told.answer = 0;
            }
            story.tellSelected(told);
        }
        if (!explanation.steps.empty()) {
            if (!explanation.answer) {
                explanation.answer = explanation.steps.back().running;
                explanation.notes.emplace_back(
                    "the log does not hold the answer; it is what the steps "
                    "lead to");
            }
            if (story.m_cutback && story.m_isCutbackKnown) {
                // The power of the modulation before is cut back as well.
                story.m_waterfall.setCutback(story.m_cutback->rule, !own.capFamily.isCarried);
            }
            story.m_waterfall.finish(explanation.answer);
        }
        return explanation;
    }

private:
    CalculationStory(ExplanationContext& context, const CalculationFigures& figures,
                     Explanation& explanation)
        : m_context(context)
        , m_figures(figures)
        , m_explanation(explanation)
        , m_waterfall(explanation) {}

    /// To be told first: the steps refer to them.
    void tellLookups() {
        findOffsets();
        findCutback();
        constexpr std::array roles = {Rule::PmaxSelectedMinimum, Rule::PmaxRow,
                                      Rule::PmaxReference};
        const std::size_t count = std::min(roles.size(), m_figures.lookups.size());
        for (std::size_t i = 0; i < count; ++i) {
            const CalculationFigures::Lookup& reported = m_figures.lookups[i];
            Lookup told{roles[i], reported.modulation, {}, {}, reported.missing};
            if (m_context.radio && reported.missing != Rule::UnknownDpdVersion) {
                told.table = m_context.radio->places.pmaxTable();
            }
            if (!reported.missing) {
                told.power = reportedPmax(roles[i]);
                // The text of a reference does not tell numbers apart that no modulation has.
                const bool isNamed =
                    roles[i] != Rule::PmaxReference || reported.modulation != Modulation::UNDEFINED;
                if (!told.power && isNamed) {
                    told.power = askForPmax(reported.modulation);
                    told.basis = told.power ? Basis::Question : Basis::Reported;
                }
            }
            if (m_context.radio && told.power) {
                told.pointer = m_context.radio->places.pmaxRow(reported.modulation, *told.power);
            }
            m_explanation.lookups.push_back(std::move(told));
        }
    }

    /// One fixed modulation without a booster.
    void tellFixed(const Power& answer) {
        const Lookup* const own = lookup(Rule::PmaxRow);
        const Lookup* const selected = lookup(Rule::PmaxSelectedMinimum);
        if (own == nullptr || selected == nullptr || !m_figures.compensation) {
            tellIncomplete();
            return;
        }
        const bool isOne = m_figures.modulation == m_figures.selectedMin;
        const bool areKnown =
            (own->missing || own->power) && (selected->missing || selected->power);
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

    /// What the calculator of the family made of it.
    void tellFamily(const Power& carried) {
        if (m_figures.outcome == CalculationFigures::Outcome::NotApplicable && m_figures.refusal) {
            m_waterfall.start(m_figures.refusal->rule,
                              m_figures.refusal->text + ": counts as 0 dBm", 0);
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

    /// With a booster the selected modulation's power bounds that of the asked one.
    void tellSelected(const Explanation& selected) {
        if (selected.answer) {
            m_waterfall.bound({Rule::SelectedModulation,
                               "at most the power of " +
                                   convertAcmEnumToString(m_figures.selectedMin) +
                                   ", the selected modulation",
                               *selected.answer,
                               {},
                               {},
                               cutbackOf(selected)});
        }
    }

    /// By how much the cutback lowers the selected modulation's power, as far as that is told.
    std::int64_t cutbackOf(const Explanation& selected) const {
        if (selected.withoutCutback) {
            return std::int64_t{*selected.withoutCutback} - *selected.answer;
        }
        return selected.cutback && m_cutback ? m_cutback->amount : 0;
    }

    using Lookup = Explanation::Lookup;

    /// A cutback, or what stands for it.
    struct CutbackStep {
        Rule rule;
        std::string words;
        std::int64_t amount; ///< that is taken off
        Explanation::Basis basis;
        std::string pointer = {};
        std::string source = {};
    };

    // Whether a family reported the figures that its steps need; they are read with value_or(0)
    // where this is known.

    bool hasOffsetFamily() const {
        return m_figures.offsetFamily.actualPower && m_figures.offsetFamily.pmaxReference;
    }

    bool hasCapFamily() const {
        return m_figures.capFamily.uncompensated && m_figures.capFamily.compensation &&
               m_figures.maxPower;
    }

    bool hasRadioUnit() const {
        return m_figures.radioUnit.pmaxActual && m_figures.radioUnit.pmaxReference &&
               m_figures.radioUnit.offset;
    }

    // The figures that steps are made of.

    /// The cutback that was set, or what the figures leave for it.
    void findCutback() {
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
            m_cutback->amount =
                Waterfall::wrapped(std::int64_t{m_figures.compensation.value_or(0)} -
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

    void findOffsets() {
        if (hasOffsetFamily() && m_figures.offsetFamily.rsec) {
            m_offsets = LibraryQuestions::offsets(m_figures.calculator,
                                                  EReferenceSEC{*m_figures.offsetFamily.rsec});
        }
    }

    Power withoutCutback(const Power& power) const {
        if (!power || !m_isCutbackKnown) {
            return std::nullopt;
        }
        return Waterfall::wrapped(*power + (m_cutback ? m_cutback->amount : 0));
    }

    /// Pmax of a look-up, where the family's reports hold it.
    Power reportedPmax(Rule role) const {
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

    const Lookup* lookup(Rule role) const {
        const auto found = std::ranges::find(m_explanation.lookups, role, &Lookup::role);
        return found == m_explanation.lookups.end() ? nullptr : &*found;
    }

    /// By a further query to the library; nothing if there is no row or no radio.
    Power askForPmax(Modulation modulation) {
        if (!m_context.radio) {
            return std::nullopt;
        }
        const auto known = m_context.pmax.find(modulation);
        if (known != m_context.pmax.end()) {
            return known->second;
        }
        const ExplanationContext::Radio& radio = *m_context.radio;
        return m_context.pmax[modulation] =
                   LibraryQuestions::pmax(radio.file, radio.dpdVersion, radio.market, modulation);
    }

    Power offsetOf(Modulation modulation) const {
        if (!m_offsets) {
            return std::nullopt;
        }
        const auto found = m_offsets->find(modulation);
        return found == m_offsets->end() ? Power() : Power(found->second);
    }

    // Parts of the story.

    void startFromTable(Rule role, const std::string& words, std::int32_t power) {
        const Lookup* const source = lookup(role);
        Step& step = m_waterfall.start(role, words, power, figureOf(source));
        if (source != nullptr) {
            step.pointer = source->pointer;
            step.source = source->table;
            step.basis = source->basis;
            m_explanation.bounds.front().pointer = source->pointer;
        }
    }

    /// What a bound from the Pmax table rises with.
    static std::string figureOf(const Lookup* lookup) {
        return lookup == nullptr || lookup->missing || lookup->modulation == Modulation::UNDEFINED
                   ? std::string()
                   : "Pmax of " + convertAcmEnumToString(lookup->modulation);
    }

    void startFromMissing(const Lookup& missing) {
        const bool isRowMissing = missing.missing == Rule::MissingPmaxRow;
        Step& step = m_waterfall.start(
            missing.missing.value_or(Rule::MissingPmaxRow),
            isRowMissing ? "no row for " + convertAcmEnumToString(missing.modulation) +
                               ": Pmax counts as 0 dBm"
                         : "unknown DPD version: Pmax of " +
                               convertAcmEnumToString(missing.modulation) + " counts as 0 dBm",
            0);
        step.source = missing.table;
    }

    /// A log does not hold the two values of Pmax; the lower of them follows from the answer.
    void startFixedFromLower(const Power& answer) {
        const std::string own = convertAcmEnumToString(m_figures.modulation);
        if (!answer) {
            m_explanation.notes.emplace_back(
                "the log tells neither Pmax nor the power of one fixed "
                "modulation");
            return;
        }
        const bool isOne = m_figures.modulation == m_figures.selectedMin;
        const Lookup* const row = lookup(Rule::PmaxRow);
        const bool isMissing = row != nullptr && row->missing.has_value();
        const Rule ownRule = isMissing ? row->missing.value_or(Rule::PmaxRow) : Rule::PmaxRow;
        std::string words = isOne ? "Pmax of " + own + (isMissing ? ", which counts as 0 dBm" : "")
                                  : "the lower of Pmax of " + own + " and of " +
                                        convertAcmEnumToString(m_figures.selectedMin) +
                                        ", the selected modulation";
        std::int64_t lower = std::int64_t{*answer} - m_figures.compensation.value_or(0);
        if (m_isCutbackKnown) {
            lower += m_cutback ? m_cutback->amount : 0;
        } else {
            words += ", less a cutback that the log does not tell";
        }
        Step& step = m_waterfall.start(isOne ? ownRule : Rule::Unexplained, words,
                                       Waterfall::wrapped(lower));
        step.basis = Basis::Difference;
        m_waterfall.leaveOpen(!isOne);
        takeCutback();
        addCompensation();
    }

    void takeCutback() {
        if (!m_cutback || !m_isCutbackKnown) {
            return;
        }
        Step& step = m_waterfall.change(m_cutback->rule, m_cutback->words, -m_cutback->amount,
                                        m_cutback->amount);
        step.basis = m_cutback->basis;
        step.pointer = m_cutback->pointer;
        step.source = m_cutback->source;
    }

    void addCompensation() {
        Step& step = m_waterfall.change(Rule::ChannelSpacingCompensation, compensationWords(),
                                        m_figures.compensation.value_or(0));
        step.pointer = compensationPointer();
    }

    /// @param bound less the cutback, as it counts.
    void boundByTable(Rule role, const std::string& words, const Power& bound) {
        if (!bound) {
            return;
        }
        const Lookup* const source = lookup(role);
        Step& step = m_waterfall.bound(
            {role, words, *bound, source == nullptr ? std::string() : source->pointer,
             figureOf(source), role == Rule::RsecCap ? 0 : knownCutback()});
        if (source != nullptr) {
            step.source = source->table;
            step.basis = source->basis;
        }
    }

    /// The outdoor families with an offset table.
    void tellOffsetFamily() {
        const CalculationFigures::OffsetFamily& family = m_figures.offsetFamily;
        const Lookup* const reference = lookup(Rule::PmaxReference);
        const std::string referenceText =
            reference == nullptr
                ? "the reference modulation"
                : convertAcmEnumToString(reference->modulation) + ", the reference modulation";
        const Power referenceOffset =
            reference == nullptr ? Power() : offsetOf(reference->modulation);
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
            Step& step = m_waterfall.change(Rule::ReferenceOffset,
                                            "offset of " + referenceText + ", taken out",
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
    void tellOffset() {
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

    void boundOffsetFamily() {
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
            m_waterfall.bound({Rule::SelectedMinimumOffset,
                               "at most what the offset table allows for " + selected,
                               family.selectedMinPower.value_or(0),
                               {},
                               m_explanation.bounds.front().figure,
                               knownCutback()});
        } else {
            m_explanation.notes.emplace_back(selected + ", has no offset and bounds nothing by it");
        }
        boundByTable(Rule::PmaxSelectedMinimum,
                     "at most Pmax of " + selected +
                         (lessCutback().empty() ? "" : "," + lessCutback()),
                     family.pmaxSelectedMin);
    }

    /// The outdoor family that caps by the RSEC.
    void tellCapFamily(const Power& carried) {
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
                    : Waterfall::wrapped(std::int64_t{family.uncompensated.value_or(0)} +
                                         compensation);
            startFromTable(Rule::PmaxRow, "Pmax of " + convertAcmEnumToString(m_figures.modulation),
                           uncut);
            takeCutback();
            takeOutCompensation();
            m_waterfall.expect("Pmax without the compensation", family.uncompensated);
            boundByCap();
        }
        Step& step = m_waterfall.change(Rule::ChannelSpacingCompensation,
                                        compensationWords() + lessCutback() +
                                            (family.isCarried ? "" : ", put back"),
                                        compensation, knownCutback());
        step.pointer = compensationPointer();
        step.source = m_cutback ? decibels(m_figures.compensation.value_or(0)) + " less " +
                                      Decibels::dB(m_cutback->amount)
                                : "";
        m_waterfall.expect("the power of the family", m_figures.maxPower);
    }

    void takeOutCompensation() {
        Step& step = m_waterfall.change(
            Rule::ChannelSpacingCompensation, compensationWords() + lessCutback() + ", taken out",
            -std::int64_t{m_figures.capFamily.compensation.value_or(0)}, -knownCutback());
        step.pointer = compensationPointer();
    }

    void boundByCap() {
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
            cap.power = askForPmax(*family.cap);
            cap.basis = Basis::Question;
        }
        if (m_context.radio) {
            const RadioFilePlaces& places = m_context.radio->places;
            cap.table = places.pmaxTable();
            cap.pointer = cap.power ? places.pmaxRow(*family.cap, *cap.power) : std::string();
        }
        m_explanation.lookups.push_back(cap);
        if (cap.missing) {
            m_waterfall
                .bound({Rule::MissingPmaxRow, words + ", which has no row and counts as 0 dBm"})
                .source = cap.table;
        } else if (cap.power) {
            boundByTable(Rule::RsecCap, words, cap.power);
        } else {
            m_explanation.notes.emplace_back(
                "the cap of RSEC " + rsecText() + ", Pmax of " +
                convertAcmEnumToString(*family.cap) +
                ", does not bind; the log does not tell how high it is");
            m_waterfall.leaveOpen(false);
        }
        m_waterfall.expect("the capped power", family.capped);
    }

    /// The radio-unit families.
    void tellRadioUnit() {
        const CalculationFigures::RadioUnit& unit = m_figures.radioUnit;
        const std::string own = convertAcmEnumToString(m_figures.modulation);
        const Lookup* const reference = lookup(Rule::PmaxReference);
        startFromTable(Rule::PmaxReference,
                       "Pmax of " + (reference == nullptr
                                         ? std::string("the reference modulation")
                                         : convertAcmEnumToString(reference->modulation) +
                                               ", the reference modulation"),
                       unit.pmaxReference.value_or(0));
        Step& step =
            m_waterfall.change(Rule::OffsetTable, "offset of " + own, unit.offset.value_or(0));
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

    void tellBooster() {
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
            .source =
            "band table of the family, presence " + std::to_string(unit.presence.value_or(0));
        m_waterfall.expect("the power with the booster band adjustment", unit.withBandAdjustment);
        tellGain();
        m_waterfall.expect("the power at the booster's input", unit.atInput);
        boundByTable(Rule::PmaxRow, "at most Pmax of " + own + lessCutback() + ", again",
                     unit.pmaxActual);
        m_waterfall.expect("the power before the booster", unit.bounded);
    }

    void tellGain() {
        if (!m_context.booster) {
            Step& step = m_waterfall.change(
                Rule::BoosterGain,
                "booster gain, or its highest input power: the log does not tell them",
                std::int64_t{m_figures.radioUnit.atInput.value_or(0)} - m_waterfall.running());
            step.basis = Basis::Difference;
            m_waterfall.leaveOpen(true);
            return;
        }
        const ExplanationContext::Booster& booster = *m_context.booster;
        Step& gain =
            m_waterfall.change(Rule::BoosterGain, "booster gain", -std::int64_t{booster.gain});
        gain.pointer = booster.gainPointer;
        gain.source = booster.source;
        gain.basis = Basis::Input;
        if (!booster.isInputKnown) {
            m_waterfall.leaveOpen(false);
            m_explanation.notes.emplace_back(
                "the booster's highest input power does not bind; the log does not tell how high "
                "it is");
            return;
        }
        Step& input =
            m_waterfall.bound({Rule::BoosterInputLimit, "at most the booster's highest input power",
                               booster.maxInputPower, booster.maxInputPowerPointer,
                               "the booster's highest input power"});
        input.source = booster.source;
        input.basis = Basis::Input;
    }

    void tellIncomplete() {
        m_explanation.notes.emplace_back(
            "the log holds too little of this calculation; it needs traces up to level 6");
    }

    /// What is taken off where a cutback is; 0 where a log does not tell it.
    std::int64_t knownCutback() const {
        return m_cutback && m_isCutbackKnown ? m_cutback->amount : 0;
    }

    /// Words behind a Pmax that is cut back.
    std::string lessCutback() const {
        return m_cutback && (m_cutback->amount != 0 || !m_isCutbackKnown) ? " less the cutback"
                                                                          : "";
    }

    std::string compensationWords() const {
        const std::string words = "channel-spacing compensation";
        return m_context.channelSpacing
                   ? words + " of " + std::to_string(*m_context.channelSpacing) + " MHz"
                   : words;
    }

    std::string compensationPointer() const {
        if (!m_context.radio || !m_figures.compensation) {
            return {};
        }
        return m_context.radio->places.compensation(m_context.radio->channelSpacing,
                                                    m_figures.compensation.value_or(0));
    }

    std::string rsecText() const {
        if (m_figures.offsetFamily.rsec) {
            return convertRsecEnumToString(EReferenceSEC{*m_figures.offsetFamily.rsec});
        }
        return m_figures.capFamily.rsec.empty() ? m_figures.radioUnit.rsec
                                                : m_figures.capFamily.rsec;
    }

    void noteRsecOfAnsi() {
        const std::string used = rsecText();
        if (!used.empty() && !m_figures.rsec.empty() && used != m_figures.rsec) {
            m_explanation.notes.emplace_back("RSEC " + m_figures.rsec + " counts as " + used +
                                             " on the ANSI market");
        }
    }

    ExplanationContext& m_context;
    const CalculationFigures& m_figures;
    Explanation& m_explanation;
    Waterfall m_waterfall;
    std::optional<CutbackStep> m_cutback; ///< nothing: none is taken off
    bool m_isCutbackKnown = true;
    std::optional<LibraryQuestions::Offsets> m_offsets;
};

} // namespace

Explanation explanationOf(ExplanationContext& context, const QueryTrace::Calculation& calculation,
                          const std::optional<std::int32_t>& answer,
                          const std::optional<std::int32_t>& carried) {
    return CalculationStory::tell(context, calculation, answer, carried);
}
