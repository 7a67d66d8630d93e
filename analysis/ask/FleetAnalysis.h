#pragma once

#include "Analysis.h"
#include "FleetDiff.h"
#include "FleetReport.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Questions about fleets, in memory that does not grow with them: the lines that a batch has
/// printed go in one by one, the answer comes out. Faces have them beside answerTo(); no radio is
/// asked anything, so nothing of the process is touched.
///
/// What a batch's answers say of the fleet as a whole.
///
///     FleetOverview overview({.form = Question::Form::Json, .by = "market"});
///     for (...) {
///         overview.add(line);
///     }
///     const Reply reply = overview.reply();
class FleetOverview {
public:
    struct Choice {
        Question::Form form = Question::Form::Text; ///< every one
        std::string by = {};                        ///< see FleetReport::groupings(); empty: none
        std::string table = {};  ///< of Csv, one of tables(); empty: the first one
        std::string prefix = {}; ///< of by and table in messages: "--" on a command line
        TextLook look = {};
    };

    static const std::vector<std::string>& tables();

    /// @throw QuestionError for a choice that there is not.
    explicit FleetOverview(Choice choice);

    void add(std::string_view line) { m_report.add(line); }

    /// BadRadioFile if a line was no answer, OtherTrouble if there was no answer at all.
    Reply reply() const;

private:
    Choice m_choice;
    FleetReport m_report;
};

/// What tells the answers of two batches apart.
///
///     FleetComparison comparison(Question::Form::Csv, {}, print);
///     for (...) {
///         comparison.add(FleetDiff::Side::Before, line); // in turn, as long as there are lines
///         comparison.add(FleetDiff::Side::After, line);
///     }
///     const Outcome outcome = comparison.finish();
class FleetComparison {
public:
    using Write = std::function<void(std::string_view piece)>;

    /// @param write gets the pieces of the answer in order.
    /// @throw QuestionError for a form that there is not: Text, Csv and Json are.
    FleetComparison(Question::Form form, TextLook look, Write write);

    /// @throw AnalysisError OtherTrouble if the order of the two is too different.
    void add(FleetDiff::Side side, std::string_view line);

    /// @return AnswerIsNo if there is any difference.
    /// @throw AnalysisError OtherTrouble if there was no line.
    Outcome finish();

private:
    TextLook m_look;
    Write m_write;
    FleetDiffForm m_form;
    FleetDiff m_diff;
    bool m_isText;
};
