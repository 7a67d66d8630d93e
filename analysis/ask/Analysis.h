#pragma once

#include "AnalysisError.h"
#include "Arguments.h"
#include "TextLook.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class WhyNotSearch;

/// A question about a radio, as a face puts it: words that a person chose or typed.
struct Question {
    enum class Topic {
        Table,       ///< which powers does the radio get?
        Explanation, ///< why just these, step by step?
        WhyNot,      ///< what would have to change for a higher one?
        Sweep,       ///< and over other values of an input?
        Diff,        ///< what tells the powers of two radios apart?
        Check,       ///< what is wrong in the radio file, or likely not meant?
        Picture,     ///< how do the powers look?
        Inputs       ///< what can be set, to which values? See InputOverview.
    };

    /// Not every topic has every form: see formsOf().
    enum class Form {
        Text, ///< for people; of a picture block characters
        Csv,  ///< for spreadsheets
        Json, ///< for programs
        Svg
    };

    Topic topic = Topic::Table;
    Form form = Form::Text;
    std::string radioName; ///< what headings and messages call the radio file; may be empty
    AskedInputs inputs;    ///< in force beside what the radio file sets; a check has none

    std::vector<std::string> modulations = {}; ///< to explain, all if empty; of WhyNot just one
    std::string power = {};                    ///< of WhyNot: the one that is wanted, in dBm
    std::string changes = "1";                 ///< of WhyNot: at most so many at once, 1 or 2
    std::vector<std::string> over = {}; ///< of Sweep one or two, of Picture at most one: "rsec" or
                                        ///< "cutback=0..6:0.5", see InputAxis
    std::string otherRadio = {};        ///< of Diff: the text of the radio file to compare with
    std::string otherName = {};         ///< what messages call that one
    bool isStrict = false;              ///< of Check: hints make the answer no as well
    std::string title = {};             ///< of Picture: instead of the radio's own; may be empty
    TextLook look = {};                 ///< of text for people

    /// The forms that a topic has.
    static std::vector<Form> formsOf(Topic topic);

    /// Reads what can be read without the radio.
    /// @throw QuestionError for what cannot be understood.
    void validate() const;
};

/// What came of a question.
struct Reply {
    Outcome outcome = Outcome::Done;
    std::string text; ///< in the form asked for, with its line end; empty: nothing to show

    /// What else the asker must know, one line each: why there are no powers, where the radio file
    /// is bad ...
    std::vector<std::string> messages;
};

/// Answers a question about a radio: the one entry for faces. Nothing but the arguments counts, and
/// nothing is left behind; but only one question may be asked at a time, because the node that is
/// built for it stands in the process's interface broker.
///
/// Every trouble is an outcome with a message, never an exception (but for want of memory).
///
///     Question question;
///     question.topic = Question::Topic::Explanation;
///     question.form = Question::Form::Json;
///     question.inputs.cutback = "1.5";
///     const Reply reply = answerTo(question, textOfRadioFile);
///
/// @param radioFile its text.
Reply answerTo(const Question& question, std::string_view radioFile);

/// The answer to a question of Topic::WhyNot in steps, for a face that lives on in between, where
/// other questions may be asked. What comes of it is what answerTo() gives.
class StepwiseAnswer {
public:
    StepwiseAnswer(Question question, std::string_view radioFile);
    ~StepwiseAnswer();
    StepwiseAnswer(const StepwiseAnswer&) = delete;
    StepwiseAnswer& operator=(const StepwiseAnswer&) = delete;

    /// Tries changes until the library has been asked so often, or somewhat more.
    /// @return whether the answer is whole.
    bool goOn(std::size_t questions);

    std::size_t steps() const; ///< that were made
    std::size_t all() const;   ///< steps, as far as it can be said

    /// Once it is whole.
    const Reply& reply() const { return m_reply; }

private:
    Question m_question;
    Reply m_reply;
    std::unique_ptr<WhyNotSearch> m_search; ///< nothing where there is nothing to search
};
