#pragma once

#include "CalculationFigures.h"
#include "Explanation.h"
#include "ExplanationContext.h"
#include "LibraryQuestions.h"
#include "Waterfall.h"

#include <cstdint>
#include <optional>
#include <string>

/// Tells one calculation for an adaptive modulation, or one of a fixed one, into an explanation.
class CalculationStory {
public:
    using Power = std::optional<std::int32_t>;

    CalculationStory(ExplanationContext& context, const CalculationFigures& figures,
                     Explanation& explanation)
        : m_context(context)
        , m_figures(figures)
        , m_explanation(explanation)
        , m_waterfall(explanation) {}

    /// To be told first: the steps refer to them.
    void tellLookups();

    /// One fixed modulation without a booster.
    void tellFixed(const Power& answer);

    /// What the calculator of the family made of it.
    void tellFamily(const Power& carried);

    /// With a booster the selected modulation's power bounds that of the asked one.
    void tellSelected(const Explanation& selected);

    void finish(const Power& answer) { m_waterfall.finish(answer); }

    /// Whether there is anything to finish.
    bool hasStarted() const { return !m_explanation.steps.empty(); }

private:
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
    bool hasOffsetFamily() const;
    bool hasCapFamily() const;
    bool hasRadioUnit() const;

    // The figures that steps are made of.
    void findCutback();
    void findOffsets();
    Power withoutCutback(const Power& power) const;
    Power reportedPmax(Rule role) const;
    const Lookup* lookup(Rule role) const;
    Power offsetOf(Modulation modulation) const;

    // Parts of the story.
    void startFromTable(Rule role, const std::string& words, std::int32_t power);
    void startFromMissing(const Lookup& missing);
    void startFixedFromLower(const Power& answer);
    void takeCutback();
    void addCompensation();
    void boundByTable(Rule role, const std::string& words, const Power& bound);
    void tellOffsetFamily();
    void tellOffset();
    void boundOffsetFamily();
    void tellCapFamily(const Power& carried);
    void takeOutCompensation();
    void boundByCap();
    void tellRadioUnit();
    void tellBooster();
    void tellGain();
    void tellIncomplete();

    /// Words behind a Pmax that is cut back.
    std::string lessCutback() const {
        return m_cutback && (m_cutback->amount != 0 || !m_isCutbackKnown) ? " less the cutback"
                                                                          : "";
    }
    std::string compensationWords() const;
    std::string compensationPointer() const;
    std::string rsecText() const;
    void noteRsecOfAnsi();

    ExplanationContext& m_context;
    const CalculationFigures& m_figures;
    Explanation& m_explanation;
    Waterfall m_waterfall;
    std::optional<CutbackStep> m_cutback; ///< nothing: none is taken off
    bool m_isCutbackKnown = true;
    std::optional<LibraryQuestions::Offsets> m_offsets;
};
