#include "ExplanationMaker.h"

#include "CalculationStory.h"

Explanation ExplanationMaker::explain(const QueryTrace::Calculation& calculation,
                                      const std::optional<std::int32_t>& answer,
                                      const std::optional<std::int32_t>& carried) {
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
    CalculationStory story(m_context, own, explanation);
    story.tellLookups();
    if (calculation.failed) {
        return explanation;
    }
    if (figures.isFixed && !hasBooster) {
        story.tellFixed(answer);
    } else {
        story.tellFamily(hasBooster ? 0 : carried);
    }
    if (hasBooster && story.hasStarted() && figures.modulation != figures.selectedMin) {
        const QueryTrace::Calculation selected{figures.inner.front()};
        explanation.ofSelected.push_back(explain(selected, std::nullopt, 0));
        Explanation& told = explanation.ofSelected.front();
        if (!told.answer) {
            told.answer = 0;
        }
        story.tellSelected(told);
    }
    if (story.hasStarted()) {
        if (!explanation.answer) {
            explanation.answer = explanation.steps.back().running;
            explanation.notes.emplace_back("the log does not hold the answer; it is what the steps "
                                           "lead to");
        }
        story.finish(explanation.answer);
    }
    return explanation;
}
