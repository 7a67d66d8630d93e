#include "AnalysisError.h"
#include "Arguments.h"
#include "BatchForms.h"
#include "BatchProgress.h"
#include "BatchResult.h"
#include "Commands.h"
#include "CommonOptions.h"
#include "Input.h"
#include "LineReader.h"
#include "Messages.h"
#include "OneLine.h"
#include "PowerTableQuery.h"
#include "QueryOptions.h"
#include "RadioFileReader.h"
#include "RuleCounts.h"
#include "TextColumns.h"

#include <cstddef>
#include <exception>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

/// `qor-power batch`: the powers of any number of radio files, one line of input and one line of
/// output for each. A filter in constant memory: what is read is answered before more is read.
class BatchCommand {
public:
    struct Options {
        std::string file = "-";
        std::string format = "ndjson";
        bool withoutHeader = false;
        bool progress = false;
        bool quiet = false;
        QueryOptions query;
    };

    /// @throw QuestionError
    explicit BatchCommand(const Options& options);

    /// A bad line is answered in its place, and the next one follows.
    /// @return BadRadioFile if any line was bad.
    /// @throw AnalysisError if the list cannot be read or no more can be written.
    Outcome run(Output& output) const;

private:
    BatchResult answer(const LineReader::Line& line) const;
    void query(const std::string& text, BatchResult& result) const;
    std::string form(const BatchResult& result) const;

    std::string m_file;
    bool m_isCsv;
    bool m_withoutHeader;
    bool m_progress;
    bool m_quiet;
    PowerTableQuery m_query;
};

const std::vector<std::string> batchFormats{"ndjson", "csv"};

/// The totals of a batch.
struct Totals {
    std::uint64_t lines = 0;
    std::uint64_t bad = 0;
    RuleCounts rules;

    void add(const BatchResult& result) {
        ++lines;
        if (result.isBad()) {
            ++bad;
        } else if (result.powers) {
            rules.add(*result.powers);
        }
    }

    void tell() const {
        complain(counted(lines, "line") + ": " + counted(lines - bad, "node") + ", " +
                 std::to_string(bad) + " bad");
        std::vector<std::vector<std::string>> table{{"Limited by", "Nodes", "Codes", "In words"}};
        for (const RuleCounts::Count& count : rules.sortedByNodes()) {
            table.push_back({codeOf(count.rule), std::to_string(count.nodes),
                             std::to_string(count.codes), wordsFor(count.rule)});
        }
        if (table.size() == 1) {
            return;
        }
        std::istringstream text(
            alignedColumns({Align::Left, Align::Right, Align::Right, Align::Left}, table));
        for (std::string line; std::getline(text, line);) {
            complain(line);
        }
    }
};

/// Takes the node's id off the beginning of a line, if there is one in front of a tab.
std::string takeId(std::string& line) {
    // Inside a document a tab is nothing special.
    const std::size_t tab = line.starts_with('{') ? std::string::npos : line.find('\t');
    if (tab == std::string::npos) {
        return "";
    }
    std::string id = line.substr(0, tab);
    line.erase(0, tab + 1);
    return id;
}

BatchCommand::BatchCommand(const Options& options)
    : m_file(options.file)
    , m_isCsv(Arguments::word("--format", options.format, batchFormats) == "csv")
    , m_withoutHeader(options.withoutHeader)
    , m_progress(options.progress)
    , m_quiet(options.quiet)
    , m_query(options.query.query()) {
    if (m_progress && m_quiet) {
        throw QuestionError("--progress and --quiet exclude each other");
    }
}

Outcome BatchCommand::run(Output& output) const {
    LineReader lines(m_file, RadioFileReader::maxSize);
    // Where the results go to the same terminal they show by themselves how far it has come.
    const bool isSeen = Terminal(STDERR_FILENO).isTerminal() && !output.terminal().isTerminal();
    BatchProgress progress(m_progress || (isSeen && !m_quiet));
    Totals totals;
    if (m_isCsv && !m_withoutHeader) {
        output.write(batchCsvHeader());
    }
    while (true) {
        if (!lines.holdsLine()) {
            // Who sends one line and waits for its result gets it.
            output.flush();
        }
        const std::optional<LineReader::Line> line = lines.next();
        if (!line) {
            break;
        }
        const BatchResult result = answer(*line);
        output.write(form(result));
        totals.add(result);
        progress.show(totals.lines, totals.bad);
    }
    output.flush();
    progress.clear();
    if (!m_quiet) {
        totals.tell();
    }
    return totals.bad == 0 ? Outcome::Done : Outcome::BadRadioFile;
}

BatchResult BatchCommand::answer(const LineReader::Line& line) const {
    BatchResult result;
    std::string text = line.text;
    result.id = takeId(text);
    const bool isDocument = text.starts_with('{');
    if (!isDocument && !line.isTooLong) {
        result.radioFile = oneLine(text);
    }
    try {
        if (line.isTooLong) {
            result.error = "longer than " + std::to_string(RadioFileReader::maxSize) + " bytes";
        } else if (text.empty()) {
            result.error = "an empty line";
        } else if (isDocument) {
            query(text, result);
        } else if (text.find('\0') != std::string::npos) {
            result.error = "cannot be read: a path holds no NUL";
        } else {
            // Standard input is not for radio files here.
            query(readText(text == standardInput ? "./-" : text), result);
        }
    } catch (const RadioFileError& error) {
        result.error =
            oneLine(error.problem() + (error.remedy().empty() ? "" : "; " + error.remedy()));
        result.place = error.place();
    } catch (const std::exception& error) {
        result.error = oneLine(error.what());
    }
    return result;
}

void BatchCommand::query(const std::string& text, BatchResult& result) const {
    result.powers = m_query.explain(RadioFileReader::read(text));
    result.error = BatchResult::errorOf(*result.powers);
}

std::string BatchCommand::form(const BatchResult& result) const {
    return m_isCsv ? batchCsvLine(result) : batchJsonLine(result);
}

} // namespace

Command Commands::batch() {
    const auto options = std::make_shared<BatchCommand::Options>();
    Command command;
    command.name = "batch";
    command.summary = "Print the powers of many radio files, one line for each";
    command.examples = {
        {"qor-power batch nodes.txt > powers.ndjson", "the powers of many radios"},
        {"find nodes -name '*.json' | qor-power batch --format csv > powers.csv"},
        {"parallel --pipe -k -N 1000 qor-power batch --quiet < nodes.txt > powers.ndjson"},
    };
    command.about = {
        "Each line of input is the path of a radio file or, where it begins with {, a radio file "
        "itself. An id and a tab may stand in front of either; the id comes back with the answer. "
        "There is one line of output for each line of input, in the same order.",
        "A bad line is answered in its place, with the error; the others are not affected, and the "
        "exit status is 2. At the end standard error says how many nodes each rule limits."};
    command.options = options->query.describe();
    const std::vector<CommandOption> own{
        {"FILE", "", "List of radio files, one on a line; - or nothing for standard input",
         &options->file, false, CommandOption::Completion::Files},
        CommonOptions::format(options->format, batchFormats),
        {"--no-header", "", "Leave out the line of column names of csv", &options->withoutHeader},
        {"--progress", "",
         "Tell on standard error how far it has come, also where that is no terminal",
         &options->progress},
        {"--quiet", "", "Neither progress nor summary on standard error", &options->quiet},
    };
    command.options.insert(command.options.begin(), own.begin(), own.end());
    command.run = [options](Output& output) { return BatchCommand(*options).run(output); };
    return command;
}
