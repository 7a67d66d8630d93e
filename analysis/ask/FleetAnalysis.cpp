#include "FleetAnalysis.h"

#include "TextColumns.h"

#include <utility>

namespace {

FleetDiffForm::Kind fleetFormOf(Question::Form form) {
    switch (form) {
    case Question::Form::Csv:
        return FleetDiffForm::Kind::Csv;
    case Question::Form::Json:
        return FleetDiffForm::Kind::Json;
    case Question::Form::Text:
        return FleetDiffForm::Kind::Text;
    case Question::Form::Svg:
        break;
    }
    throw QuestionError("this question has no answer in that form");
}

} // namespace

FleetComparison::FleetComparison(Question::Form form, TextLook look, Write write)
    : m_look(look)
    , m_write(std::move(write))
    , m_form(fleetFormOf(form), look)
    , m_diff([this](const FleetDiff::Change& change) { m_write(m_form.add(change)); })
    , m_isText(form == Question::Form::Text) {
    m_write(m_form.beginning());
}

Outcome FleetComparison::finish() {
    m_diff.finish();
    if (m_diff.isEmpty()) {
        throw AnalysisError(Outcome::OtherTrouble, "there is no answer, neither before nor after");
    }
    const std::string end = m_form.end(m_diff);
    m_write(m_isText ? fitted(end, m_look.width) : end);
    return m_diff.isEqual() ? Outcome::Done : Outcome::AnswerIsNo;
}
