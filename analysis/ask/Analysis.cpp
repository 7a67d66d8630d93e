#include "Analysis.h"

#include "Arguments.h"
#include "ExplanationForms.h"
#include "InputOverview.h"
#include "ModulationChoice.h"
#include "OneLine.h"
#include "PowerDiff.h"
#include "PowerPlot.h"
#include "PowerTableForms.h"
#include "PowerTableQuery.h"
#include "RadioFileCheck.h"
#include "RadioFileError.h"
#include "Sweep.h"
#include "TextColumns.h"
#include "WhyNot.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <utility>

namespace {

using Form = Question::Form;
using Topic = Question::Topic;

/// What stands in front of a message on a radio file.
std::string behind(const std::string& name) {
    return name.empty() ? "" : oneLine(name) + ": ";
}

RadioCase radioCase(const Question& question, const std::string& name, std::string_view text) {
    try {
        return question.inputs.radio(text, name);
    } catch (const RadioFileError& error) {
        throw AnalysisError(Outcome::BadRadioFile,
                            behind(name) + oneLine(error.what()) +
                                (question.inputs.set.empty()
                                     ? ""
                                     : " (as changed by " + question.inputs.prefix + "set)"));
    }
}

std::int32_t wantedPower(const Question& question) {
    return Arguments::power("DBM", question.power);
}

std::size_t changesOf(const Question& question) {
    return static_cast<std::size_t>(
        Arguments::integer(question.inputs.prefix + "changes", question.changes, 1, 2));
}

/// Says why there are no powers, if there are none.
void tellFailure(const PowerTable& table, Reply& reply) {
    if (!table.failure.empty()) {
        reply.messages.push_back(behind(table.radioFile) + "no powers: " + table.failure);
        reply.outcome = Outcome::OtherTrouble;
    }
}

template <class Value>
std::string tabularForm(const Question& question, const Value& value) {
    const Form form = question.form;
    if (form == Form::Csv) {
        return csvForm(value);
    }
    return form == Form::Json ? jsonForm(value) : textForm(value, question.look);
}

void answerTable(const Question& question, const RadioCase& radio, Reply& reply) {
    const PowerTable table = radio.powers();
    reply.text = tabularForm(question, table);
    tellFailure(table, reply);
}

void answerExplanation(const Question& question, const RadioCase& radio, Reply& reply) {
    const ModulationChoice wanted(question.modulations);
    ExplainedTable explained = radio.explain();
    const bool hadRows = !explained.table.rows.empty();
    wanted.reduce(explained);
    if (hadRows && explained.table.rows.empty()) {
        throw AnalysisError(Outcome::OtherTrouble,
                            behind(radio.name) + "the frame format has none of these modulations "
                                                 "and codes; the table shows those that it has");
    }
    reply.text =
        question.form == Form::Json ? jsonForm(explained) : textForm(explained, question.look);
    tellFailure(explained.table, reply);
    for (const std::string& line : mismatchesOf(explained)) {
        reply.messages.push_back(line);
        reply.outcome = Outcome::OtherTrouble;
    }
}

void answerWhyNot(const Question& question, const WhyNot& whyNot, Reply& reply) {
    const std::string& asked = question.modulations.front();
    reply.text = question.form == Form::Json ? jsonForm(whyNot, asked)
                                             : textForm(whyNot, asked, question.look);
    reply.messages = whyNot.mismatches;
    reply.outcome = whyNot.isAllowed() || !whyNot.changes.empty() || !whyNot.pairs.empty()
                        ? Outcome::Done
                        : Outcome::AnswerIsNo;
}

void answerWhyNot(const Question& question, const RadioCase& radio, Reply& reply) {
    answerWhyNot(question,
                 WhyNot::ask(radio, ModulationChoice(question.modulations), wantedPower(question),
                             changesOf(question)),
                 reply);
}

void answerSweep(const Question& question, const RadioCase& radio, Reply& reply) {
    const Sweep sweep = Sweep::run(radio, Sweep::linesOf(question.over, question.inputs, radio));
    reply.text = tabularForm(question, sweep);
    reply.messages = sweep.troubles();
    reply.outcome = sweep.outcome();
}

void answerDiff(const Question& question, const RadioCase& before, Reply& reply) {
    const RadioCase after = radioCase(question, question.otherName, question.otherRadio);
    const PowerDiff diff = PowerDiff::between(before, after);
    reply.text = tabularForm(question, diff);
    reply.messages = diff.mismatches;
    reply.outcome = diff.isEqual() ? Outcome::Done : Outcome::AnswerIsNo;
    tellFailure(diff.before, reply);
    tellFailure(diff.after, reply);
}

void answerPicture(const Question& question, const RadioCase& radio, Reply& reply) {
    DrawnPlot drawn = DrawnPlot::of(radio, question.over, question.inputs);
    if (!question.title.empty()) {
        drawn.plot.title = oneLine(question.title);
    }
    reply.text =
        question.form == Form::Svg ? svgForm(drawn.plot) : blockForm(drawn.plot, question.look);
    reply.messages = drawn.troubles;
    reply.outcome = drawn.outcome;
}

void answerInputs(const Question&, const RadioCase& radio, Reply& reply) {
    reply.text = inputOverviewJson(radio);
}

void answerCheck(const Question& question, std::string_view radioFile, Reply& reply) {
    const CheckedFile file{question.radioName, RadioFileCheck::run(radioFile)};
    reply.text = question.form == Form::Json ? jsonForm({file}) : textForm(file, question.look);
    reply.outcome = file.check.outcome(question.isStrict);
    if (!file.check.isRadioFile) {
        reply.messages.push_back(messageOf(file));
    }
}

void answerRadio(const Question& question, std::string_view radioFile, Reply& reply) {
    using Answer = void (*)(const Question&, const RadioCase&, Reply&);
    static const std::map<Topic, Answer> answers{
        {Topic::Table, answerTable},   {Topic::Explanation, answerExplanation},
        {Topic::WhyNot, answerWhyNot}, {Topic::Sweep, answerSweep},
        {Topic::Diff, answerDiff},     {Topic::Picture, answerPicture},
        {Topic::Inputs, answerInputs},
    };
    answers.at(question.topic)(question, radioCase(question, question.radioName, radioFile), reply);
}

/// Does something for a reply; trouble becomes its outcome.
template <class Work>
void guard(Reply& reply, const Work& work) {
    try {
        work();
    } catch (const AnalysisError& error) {
        reply.outcome = error.outcome();
        reply.messages.emplace_back(error.what());
    }
}

} // namespace

std::vector<Question::Form> Question::formsOf(Topic topic) {
    switch (topic) {
    case Topic::Table:
    case Topic::Sweep:
    case Topic::Diff:
        return {Form::Text, Form::Csv, Form::Json};
    case Topic::Explanation:
    case Topic::WhyNot:
    case Topic::Check:
        return {Form::Text, Form::Json};
    case Topic::Picture:
        return {Form::Text, Form::Svg};
    case Topic::Inputs:
        return {Form::Json};
    }
    return {};
}

void Question::validate() const {
    static_cast<void>(inputs.query());
    const std::vector<Form> forms = formsOf(topic);
    if (std::ranges::find(forms, form) == forms.end()) {
        throw QuestionError("this question has no answer in that form");
    }
    if (topic == Topic::Picture && over.size() > 1) {
        throw QuestionError(inputs.prefix + "over is given twice; a picture has one");
    }
    if (topic == Topic::Sweep && over.empty()) {
        throw QuestionError(inputs.prefix + "over is missing: a sweep varies one input or two");
    }
    if (topic == Topic::WhyNot) {
        if (modulations.size() != 1) {
            throw QuestionError("one modulation or code is wanted");
        }
        static_cast<void>(wantedPower(*this));
        static_cast<void>(changesOf(*this));
    }
    static_cast<void>(ModulationChoice(modulations));
}

Reply answerTo(const Question& question, std::string_view radioFile) {
    Reply reply;
    guard(reply, [&] {
        question.validate();
        if (question.topic == Topic::Check) {
            answerCheck(question, radioFile, reply);
        } else {
            answerRadio(question, radioFile, reply);
        }
        if (question.form == Form::Text && question.topic != Topic::Picture) {
            reply.text = fitted(reply.text, question.look.width);
        }
    });
    return reply;
}

StepwiseAnswer::StepwiseAnswer(Question question, std::string_view radioFile)
    : m_question(std::move(question)) {
    guard(m_reply, [&] {
        m_question.topic = Topic::WhyNot;
        m_question.validate();
        m_search =
            std::make_unique<WhyNotSearch>(radioCase(m_question, m_question.radioName, radioFile),
                                           ModulationChoice(m_question.modulations),
                                           wantedPower(m_question), changesOf(m_question));
    });
}

StepwiseAnswer::~StepwiseAnswer() = default;

bool StepwiseAnswer::goOn(std::size_t questions) {
    bool isMore = m_search != nullptr;
    const std::size_t last = isMore ? m_search->questions() + questions : 0;
    guard(m_reply, [&] {
        while (isMore && m_search->questions() < last) {
            isMore = m_search->step();
        }
        if (m_search && !isMore) {
            answerWhyNot(m_question, m_search->answer(), m_reply);
        }
    });
    return !isMore;
}

std::size_t StepwiseAnswer::steps() const {
    return m_search ? m_search->steps() : 0;
}

std::size_t StepwiseAnswer::all() const {
    return m_search ? m_search->all() : 0;
}
