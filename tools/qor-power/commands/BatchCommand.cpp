#include "Arguments.h"
#include "BatchResult.h"
#include "Commands.h"
#include "CommonOptions.h"
#include "Input.h"
#include "Interrupts.h"
#include "LineReader.h"
#include "Messages.h"
#include "OneLine.h"
#include "OrderedWorkers.h"
#include "RadioFileReader.h"
#include "RadioLine.h"
#include "ResumedFile.h"
#include "Terminal.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <unistd.h>

namespace {

struct BatchOptions {
    std::string file = "-";
    std::string format = "ndjson";
    bool withoutHeader = false;
    bool byCode = false;
    bool errorsOnly = false;
    std::optional<std::string> select;
    std::optional<std::string> jobs;
    std::optional<std::string> resume;
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

    /// To be called again and again.
    /// @param share of the input that is read, from 0 to 1, if that is known.
    void show(std::uint64_t lines, std::uint64_t bad, std::optional<double> share) {
        const Clock::time_point now = Clock::now();
        if (!m_isOn || now < m_due) {
            return;
        }
        const std::chrono::duration<double> passed = now - m_start;
        const auto rate = static_cast<std::uint64_t>(static_cast<double>(lines) /
                                                     std::max(passed.count(), 0.001));
        std::string text = counted(lines, "line") + ", " + std::to_string(bad) + " bad, " +
                           std::to_string(rate) + " lines/s";
        if (share && *share > 0) {
            text += ", " + std::to_string(static_cast<int>(*share * 100)) + " %, " +
                    std::to_string(static_cast<long>(passed.count() * (1 / *share - 1))) +
                    " s to go";
        }
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

BatchResult answerTo(const LineReader::Line& line, const AskedInputs& inputs) {
    const RadioLine radio(line);
    return BatchResult::of(
        radio.id(), radio.path(), [&radio] { return radio.text(); }, inputs);
}

/// Some lines of a list on their way to a process, and their answers on the way back.
class Lot {
public:
    void add(const LineReader::Line& line) {
        m_text += line.isTooLong ? '+' : '=';
        m_text += std::to_string(line.text.size()) + ':' + line.text;
        ++m_count;
    }

    bool isEmpty() const { return m_count == 0; }

    /// So many that handing them over costs little beside answering them.
    bool isFull() const { return m_count == 64 || m_text.size() > std::size_t{256} << 10; }

    std::string take() {
        m_count = 0;
        return std::exchange(m_text, "");
    }

    static std::vector<LineReader::Line> linesOf(const std::string& text) {
        std::vector<LineReader::Line> lines;
        for (std::size_t at = 0; at < text.size();) {
            const bool isTooLong = text[at] == '+';
            const std::size_t colon = text.find(':', at);
            const std::size_t size = std::stoul(text.substr(at + 1, colon - at - 1));
            lines.push_back({text.substr(colon + 1, size), isTooLong});
            at = colon + 1 + size;
        }
        return lines;
    }

    /// The totals, a line end, and what is printed.
    static std::string answersTo(const std::string& text, const AskedInputs& inputs,
                                 const BatchForm& form) {
        BatchTotals totals;
        std::string answers;
        for (const LineReader::Line& line : linesOf(text)) {
            const BatchResult result = answerTo(line, inputs);
            totals.add(result);
            answers += form.linesOf(result);
        }
        return totals.packed() + '\n' + answers;
    }

private:
    std::string m_text;
    std::size_t m_count = 0;
};

/// Leaves out the lines that are answered already.
/// @param header that the answers begin with; may be empty.
/// @return how many lines.
/// @throw AnalysisError OtherTrouble for answers of another list or form.
std::uint64_t skipAnswered(LineReader& lines, ResumedFile& answers, const BatchForm& form,
                           const std::string& header) {
    std::uint64_t answered = answers.lines();
    if (answered > 0 && !header.empty()) {
        if (answers.first() != header) {
            answers.fail("its first line is not that of these columns");
        }
        --answered;
    }
    std::optional<LineReader::Line> line;
    for (std::uint64_t count = 0; count < answered; ++count) {
        line = lines.next();
        if (!line) {
            answers.fail("it holds more answers than the list has lines");
        }
    }
    if (line) {
        if (!answers.last().starts_with(form.beginning())) {
            answers.fail("its lines do not begin with " + form.beginning() +
                         " as those of this version do");
        }
        const RadioLine radio(*line);
        BatchResult names;
        names.id = radio.id();
        names.radioFile = radio.path();
        if (!form.haveSameNames(answers.last(), form.linesOf(names))) {
            answers.fail("its line " + std::to_string(answers.lines()) + " does not answer line " +
                         std::to_string(answered) + " of the list");
        }
    } else if (answers.lines() == 0) {
        const std::string beginning = header.empty() ? form.beginning() : header;
        const std::size_t common = std::min(beginning.size(), answers.rest().size());
        if (answers.rest().compare(0, common, beginning, 0, common) != 0) {
            answers.fail("it holds something else than answers");
        }
    }
    answers.cutRest();
    return answered;
}

BatchForm formOf(const BatchOptions& options) {
    if (options.resume && (options.errorsOnly || options.byCode || options.select)) {
        throw QuestionError("--resume counts a line of output for each line of input: it goes "
                            "without --errors-only, --long and --select");
    }
    BatchForm::Choice choice;
    choice.isCsv = Arguments::word("--format", options.format, batchFormats) == "csv";
    choice.isByCode = options.byCode;
    choice.hasErrorsOnly = options.errorsOnly;
    if (options.select) {
        choice.columns = Arguments::splitAt(',', *options.select);
        choice.columnsOption = "--select";
    }
    return BatchForm(std::move(choice));
}

/// The powers of any number of radio files, one line of input and one line of output for each. A
/// filter in constant memory: what is read is answered before much more is read. A bad line is
/// answered in its place, and the next one follows.
/// @return BadRadioFile if any line was bad.
Outcome answerLines(const BatchOptions& options, Output& standardOutput) {
    static_cast<void>(options.query.query());
    const BatchForm form = formOf(options);
    if (options.progress && options.quiet) {
        throw QuestionError("--progress and --quiet exclude each other");
    }
    const auto processes =
        options.jobs ? static_cast<std::size_t>(Arguments::integer("--jobs", *options.jobs, 1, 256))
                     : OrderedWorkers::processors();
    std::optional<ResumedFile> answers;
    std::optional<Output> file;
    if (options.resume) {
        answers.emplace(*options.resume);
        file.emplace(answers->stream());
    }
    Output& output = file ? *file : standardOutput;
    LineReader lines(options.file, RadioFileReader::maxSize,
                     answers ? answers->descriptor() : STDOUT_FILENO);
    const std::string header = options.withoutHeader ? "" : form.header();
    const std::uint64_t skipped = answers ? skipAnswered(lines, *answers, form, header) : 0;
    // Where the results go to the same terminal they show by themselves how far it has come.
    const bool isSeen = Terminal(STDERR_FILENO).isTerminal() && !output.terminal().isTerminal();
    BatchProgress progress(options.progress || (isSeen && !options.quiet));
    if (!answers || answers->lines() == 0) {
        output.write(header);
    }
    output.flush();

    OrderedWorkers workers(processes, [&options, &form](const std::string& lot) {
        return Lot::answersTo(lot, options.query, form);
    });
    const InterruptsRemembered interrupts;
    BatchTotals totals;
    Lot lot;
    bool isAtEnd = false;
    while ((!isAtEnd || !workers.isIdle()) && !InterruptsRemembered::isInterrupted()) {
        while (!isAtEnd && !lot.isFull() && workers.hasRoom() && lines.isReady()) {
            if (const std::optional<LineReader::Line> line = lines.next()) {
                lot.add(*line);
            } else {
                isAtEnd = true;
            }
        }
        if (!lot.isEmpty()) {
            workers.give(lot.take());
        }
        while (const std::optional<std::string> result = workers.take()) {
            const std::size_t end = result->find('\n');
            totals.add(BatchTotals::unpacked(result->substr(0, end)));
            output.write(std::string_view(*result).substr(end + 1));
            // Who sends one line and waits for its result gets it.
            output.flush();
            progress.show(totals.lines, totals.bad, lines.share());
        }
        const bool takesMore = !isAtEnd && workers.hasRoom();
        if (!takesMore || !lines.isReady()) {
            const InterruptsHeld held;
            if (!InterruptsRemembered::isInterrupted()) {
                workers.wait(takesMore ? lines.descriptor() : -1, held.before());
            }
        }
    }
    progress.clear();
    if (InterruptsRemembered::isInterrupted()) {
        complain("interrupted behind " + counted(skipped + totals.lines, "line") +
                 " of the list; --resume goes on in a file that holds their answers");
        InterruptsRemembered::obey();
    }
    if (!options.quiet) {
        if (skipped > 0) {
            complain(counted(skipped, "line") + " answered before");
        }
        const std::size_t width = Terminal(STDERR_FILENO).width();
        const std::size_t prefix = std::string_view("qor-power: ").size();
        for (const std::string& line : totals.inWords(width - std::min(width, prefix))) {
            complain(line);
        }
    }
    if (!options.quiet && totals.bad == totals.lines) {
        complainOfRadioAsList(options.file);
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
            {"--long", "", "A line for each code of each radio, as data frames want it",
             &options->byCode},
            {"--errors-only", "", "Print the bad lines alone", &options->errorsOnly},
            {"--select", "COLUMNS", "Only these keys or columns, with commas between",
             &options->select},
            {"--jobs", "N",
             "Answer in so many processes; as many as there are processors otherwise",
             &options->jobs},
            {"--resume", "FILE",
             "Go on behind the last whole line of FILE, the output of a run that was interrupted, "
             "and add to it",
             &options->resume, false, CommandOption::Completion::Files},
            {"--progress", "",
             "Tell on standard error how far it has come, also where that is no terminal",
             &options->progress},
            {"--quiet", "", "Neither progress nor summary on standard error", &options->quiet},
        }),
        .run = [options](Output& output) { return answerLines(*options, output); },
    };
}
