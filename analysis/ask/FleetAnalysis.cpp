#include "FleetAnalysis.h"

#include "Arguments.h"
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

/// @param name one of FleetOverview::tables(), or empty.
FleetTable tableOf(const std::string& name) {
    if (name == "rules") {
        return FleetTable::Rules;
    }
    return name == "outliers" ? FleetTable::Outliers : FleetTable::Powers;
}

} // namespace

const std::vector<std::string>& FleetOverview::tables() {
    static const std::vector<std::string> names{"powers", "rules", "outliers"};
    return names;
}

FleetOverview::FleetOverview(Choice choice)
    : m_choice(std::move(choice))
    , m_report(m_choice.by) {
    if (!m_choice.by.empty()) {
        Arguments::word(m_choice.prefix + "by", m_choice.by, FleetReport::groupings());
    }
    if (!m_choice.table.empty()) {
        Arguments::word(m_choice.prefix + "table", m_choice.table, tables());
        if (m_choice.form != Question::Form::Csv) {
            throw QuestionError(m_choice.prefix +
                                "table is of csv; the other forms have all tables");
        }
    }
}

Reply FleetOverview::reply() const {
    Reply reply;
    if (m_report.unreadable() > 0) {
        reply.outcome = Outcome::BadRadioFile;
        reply.messages.push_back(m_report.firstUnreadable());
    }
    if (m_report.radios() + m_report.bad() == 0) {
        reply.outcome = Outcome::OtherTrouble;
        reply.messages.emplace_back("there is no answer of a radio");
        return reply;
    }
    switch (m_choice.form) {
    case Question::Form::Text:
        reply.text = fitted(textForm(m_report, m_choice.look), m_choice.look.width);
        break;
    case Question::Form::Csv:
        reply.text = csvForm(m_report, tableOf(m_choice.table));
        break;
    case Question::Form::Json:
        reply.text = jsonForm(m_report);
        break;
    case Question::Form::Svg:
        reply.text = svgForm(m_report);
        break;
    }
    return reply;
}

FleetComparison::FleetComparison(Question::Form form, TextLook look, Write write)
    : m_look(look)
    , m_write(std::move(write))
    , m_form(fleetFormOf(form), look)
    , m_diff([this](const FleetDiff::Change& change) { m_write(m_form.add(change)); })
    , m_isText(form == Question::Form::Text) {}

void FleetComparison::add(FleetDiff::Side side, std::string_view line) {
    if (m_diff.isEmpty()) {
        m_write(m_form.beginning());
    }
    m_diff.add(side, line);
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
