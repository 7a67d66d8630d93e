#pragma once

#include "Arguments.h"
#include "Explanation.h"
#include "Field.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// What became of one line of a batch.
struct BatchResult {
    /// Why a line is bad, as far as it can be counted.
    enum class Trouble {
        None,
        Line,          ///< it names no radio file and holds none
        Unreadable,    ///< its file cannot be read
        BadRadioFile,  ///< what it names or holds is no radio file
        NotStarted,    ///< the service did not start
        NoPowers,      ///< the query failed as a whole
        Contradiction, ///< the explanation does not add up to the library's answer
        Other
    };

    std::string id;                       ///< that the line gives; may be empty
    std::string radioFile;                ///< path as given; empty: the line was a radio file
    std::optional<ExplainedTable> powers; ///< nothing if there are not even rows
    std::string error;                    ///< why the line is bad, on one line; empty if it is not
    std::string place = {};               ///< of the error in the radio file; may be empty
    Trouble trouble = Trouble::None;      ///< kind of the error

    /// Asks a radio, and says what came of it, whatever that is.
    /// @param path of its file as given; empty: its text stands in the line.
    /// @param text of its radio file; may throw AnalysisError where there is none to be had.
    static BatchResult of(std::string id, std::string path,
                          const std::function<std::string()>& text, const AskedInputs& inputs);

    bool isBad() const { return trouble != Trouble::None; }

    /// Takes powers, and looks for what is wrong with them.
    void setPowers(ExplainedTable explained);

    /// @param why on one line.
    void fail(Trouble kind, std::string why, std::string where = {});
};

/// In which form the results of a batch are printed.
class BatchForm {
public:
    struct Choice {
        bool isCsv = false;                    ///< else JSON objects, one on a line
        bool isByCode = false;                 ///< a line for each code; else one for each radio
        bool hasErrorsOnly = false;            ///< nothing is printed of what is not bad
        std::vector<std::string> columns = {}; ///< that are wanted, in their order; empty: all
        std::string columnsOption = {};        ///< what messages call the wish
    };

    /// @throw QuestionError for a column that there is not.
    explicit BatchForm(Choice choice);

    /// What stands before all results; may be empty.
    std::string header() const;

    /// What the line of every radio begins with; may be empty.
    std::string beginning() const;

    /// One result: any number of lines.
    std::string linesOf(const BatchResult& result) const;

    /// Whether two lines of radios begin with the same id and radio file.
    bool haveSameNames(const std::string& left, const std::string& right) const;

private:
    /// A code of a radio, or a radio without any.
    struct CodeOfRadio;

    static Fields<CodeOfRadio> codeOfRadioFields();

    Choice m_choice;
    Fields<BatchResult> m_radioFields; ///< of CSV
    Fields<CodeOfRadio> m_codeFields;
};

/// How often each rule decides, over any number of nodes.
class RuleCounts {
public:
    struct Count {
        Rule rule;
        std::uint64_t nodes = 0; ///< with at least one such code
        std::uint64_t codes = 0; ///< whose power it decides or denies; of a cutback, lowers
    };

    /// Counts a node.
    void add(const ExplainedTable& powers);

    /// Counts what another has counted.
    void add(const RuleCounts& others);
    void add(const Count& other);

    /// The rules that decided at all, the one with most nodes or codes first; of equals the one
    /// that comes first in the enumeration.
    std::vector<Count> sortedBy(std::uint64_t Count::*number) const;

private:
    std::map<Rule, Count> m_counts;
};

/// The totals of a batch.
struct BatchTotals {
    std::uint64_t lines = 0;
    std::uint64_t bad = 0;
    std::map<BatchResult::Trouble, std::uint64_t> troubles;
    RuleCounts rules;

    void add(const BatchResult& result);
    void add(const BatchTotals& others);

    /// For people: a sentence, then the troubles and the rules as columns, on lines.
    /// @param width that the columns may take; 0: any.
    std::vector<std::string> inWords(std::size_t width = 0) const;

    /// As a text without line ends, and from it: totals travel between processes.
    std::string packed() const;
    static BatchTotals unpacked(const std::string& text);
};
