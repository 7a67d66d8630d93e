#include "Arguments.h"
#include "BatchResult.h"
#include "Commands.h"
#include "CommonOptions.h"
#include "Input.h"
#include "LineReader.h"
#include "Messages.h"
#include "OneLine.h"
#include "PowerTableQuery.h"
#include "RadioFileReader.h"
#include "Terminal.h"
#include "TextColumns.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace {

struct BatchOptions {
    std::string file = "-";
    std::string format = "ndjson";
    bool withoutHeader = false;
    bool progress = false;
    bool quiet = false;
    QueryOptions query;
};

const std::vector<std::string> batchFormats{"ndjson", "csv"};

constexpr std::chrono::milliseconds onTerminal{200};
constexpr std::chrono::seconds elsewhere{5};

void writeToErrors(const std::string& text) {
    static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}

/// Tells on standard error how far a batch has come: on a terminal in one line that is written
/// over, elsewhere in a line every few seconds.
class BatchProgress {
public:
    explicit BatchProgress(bool isOn);
    ~BatchProgress();
    BatchProgress(const BatchProgress&) = delete;
    BatchProgress& operator=(const BatchProgress&) = delete;

    /// To be called after every line.
    void show(std::uint64_t lines, std::uint64_t bad) {
        const Clock::time_point now = Clock::now();
        if (!m_isOn || now < m_due) {
            return;
        }
        const std::chrono::duration<double> passed = now - m_start;
        const auto rate = static_cast<std::uint64_t>(static_cast<double>(lines) /
                                                     std::max(passed.count(), 0.001));
        const std::string text = counted(lines, "line") + ", " + std::to_string(bad) + " bad, " +
                                 std::to_string(rate) + " lines/s";
        if (!m_terminal.isTerminal()) {
            m_due = now + elsewhere;
            complain(text);
            return;
        }
        m_due = now + onTerminal;
        std::string line = text.substr(0, m_terminal.width() - 1);
        const std::size_t columns = line.size();
        line.resize(std::max(columns, m_shown), ' ');
        writeToErrors('\r' + line);
        m_shown = columns;
    }

    /// Takes the line away from the terminal.
    void clear() {
        if (m_shown > 0) {
            writeToErrors('\r' + std::string(m_shown, ' ') + '\r');
            m_shown = 0;
        }
    }

private:
    using Clock = std::chrono::steady_clock;

    bool m_isOn;
    Terminal m_terminal;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_due = m_start;
    std::size_t m_shown = 0; ///< columns that the line on the terminal takes
};

BatchProgress::BatchProgress(bool isOn)
    : m_isOn(isOn)
    , m_terminal(STDERR_FILENO) {}

BatchProgress::~BatchProgress() {
    clear();
}

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
        for (const RuleCounts::Count& count : rules.sortedBy(&RuleCounts::Count::nodes)) {
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

BatchResult answerTo(const LineReader::Line& line, const PowerTableQuery& query) {
    BatchResult result;
    const auto explain = [&](const std::string& radioFile) {
        result.powers = query.explain(RadioFileReader::read(radioFile));
        result.error = BatchResult::errorOf(*result.powers);
    };
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
            explain(text);
        } else if (text.find('\0') != std::string::npos) {
            result.error = "cannot be read: a path holds no NUL";
        } else {
            // Standard input is not for radio files here.
            explain(readText(text == standardInput ? "./-" : text));
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

/// The powers of any number of radio files, one line of input and one line of output for each. A
/// filter in constant memory: what is read is answered before more is read. A bad line is answered
/// in its place, and the next one follows.
/// @return BadRadioFile if any line was bad.
Outcome answerLines(const BatchOptions& options, Output& output) {
    const bool isCsv = Arguments::word("--format", options.format, batchFormats) == "csv";
    const PowerTableQuery query = options.query.query();
    if (options.progress && options.quiet) {
        throw QuestionError("--progress and --quiet exclude each other");
    }
    LineReader lines(options.file, RadioFileReader::maxSize);
    // Where the results go to the same terminal they show by themselves how far it has come.
    const bool isSeen = Terminal(STDERR_FILENO).isTerminal() && !output.terminal().isTerminal();
    BatchProgress progress(options.progress || (isSeen && !options.quiet));
    Totals totals;
    if (isCsv && !options.withoutHeader) {
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
        const BatchResult result = answerTo(*line, query);
        output.write(isCsv ? batchCsvLine(result) : batchJsonLine(result));
        totals.add(result);
        progress.show(totals.lines, totals.bad);
    }
    output.flush();
    progress.clear();
    if (!options.quiet) {
        totals.tell();
    }
    return totals.bad == 0 ? Outcome::Done : Outcome::BadRadioFile;
}

} // namespace

Command Commands::batch() {
    const auto options = std::make_shared<BatchOptions>();
    return {
        .name = "batch",
        .summary = "Print the powers of many radio files, one line for each",
        .examples =
            {
                {"qor-power batch nodes.txt > powers.ndjson", "the powers of many radios"},
                {"find nodes -name '*.json' | qor-power batch --format csv > powers.csv"},
                {"parallel --pipe -k -N 1000 qor-power batch --quiet < nodes.txt > powers.ndjson"},
            },
        .about =
            {"Each line of input is the path of a radio file or, where it begins with {, a radio "
             "file "
             "itself. An id and a tab may stand in front of either; the id comes back with the "
             "answer. "
             "There is one line of output for each line of input, in the same order.",
             "A bad line is answered in its place, with the error; the others are not affected, "
             "and the "
             "exit status is 2. At the end standard error says how many nodes each rule limits."},
        .options = options->query.behind({
            {"FILE", "", "List of radio files, one on a line; - or nothing for standard input",
             &options->file, false, CommandOption::Completion::Files},
            CommonOptions::format(options->format, batchFormats),
            {"--no-header", "", "Leave out the line of column names of csv",
             &options->withoutHeader},
            {"--progress", "",
             "Tell on standard error how far it has come, also where that is no terminal",
             &options->progress},
            {"--quiet", "", "Neither progress nor summary on standard error", &options->quiet},
        }),
        .run = [options](Output& output) { return answerLines(*options, output); },
    };
}
