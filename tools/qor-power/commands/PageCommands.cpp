#include "Commands.h"

#include "Arguments.h"
#include "CommonOptions.h"
#include "Datum.h"
#include "FileWriter.h"
#include "Input.h"
#include "InputAxis.h"
#include "InputFile.h"
#include "LineReader.h"
#include "ModulationChoice.h"
#include "OneLine.h"
#include "RadioFileReader.h"
#include "RadioLine.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace {

/// Where the page takes what it is to open with; the page as it is built has nothing there.
constexpr std::string_view reportBegin = R"(<script type="application/json" id="report">)";
constexpr std::string_view reportEnd = "</script>";

/// A page with its engine has less than half of this.
constexpr std::size_t maxPageSize = std::size_t{2} << 20;

/// A report that nobody can mail is none.
constexpr std::size_t maxReportSize = std::size_t{64} << 20;

struct ReportOptions {
    std::vector<std::string> files;
    std::optional<std::string> traceLog;
    std::optional<std::string> list;
    std::optional<std::string> code;
    std::optional<std::string> power;
    std::optional<std::string> over;
    std::string output;
    std::optional<std::string> page;
    bool force = false;
    QueryOptions query;
};

struct PageOptions {
    std::optional<std::string> output;
    std::optional<std::string> page;
    bool force = false;
};

/// The page beside the tool that runs, wherever its prefix was moved, or where it was installed to.
std::string installedPage() {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path tool = fs::read_symlink("/proc/self/exe", error);
    std::vector<fs::path> places;
    if (!error) {
        places.push_back(tool.parent_path().parent_path() / "share/qor-power/qor-power.html");
    }
    places.emplace_back(QOR_POWER_PAGE);
    for (const fs::path& place : places) {
        if (fs::is_regular_file(place, error)) {
            return place.string();
        }
    }
    throw AnalysisError(
        Outcome::OtherTrouble,
        "the page is not installed: install the package qor-power-page, or build it "
        "with make page and name it with --page");
}

std::string pagePath(const std::optional<std::string>& named) {
    return named ? *named : installedPage();
}

std::string textOf(const std::string& path, std::size_t limit) {
    LineReader lines(path, limit);
    std::string text;
    while (const auto line = lines.next()) {
        text += line->text + '\n';
        if (line->isTooLong || text.size() > limit) {
            throw AnalysisError(Outcome::OtherTrouble, inputName(path) + ": larger than " +
                                                           std::to_string(limit) + " bytes");
        }
    }
    return text;
}

/// The page in two halves, between which a report stands.
std::pair<std::string, std::string> pageHalves(const std::string& path) {
    const std::string page = textOf(path, maxPageSize);
    const std::string seam = std::string(reportBegin) + std::string(reportEnd);
    const std::size_t found = page.find(seam);
    if (found == std::string::npos) {
        throw AnalysisError(Outcome::OtherTrouble,
                            inputName(path) + ": is no page of qor-power without a report");
    }
    const std::size_t place = found + reportBegin.size();
    return {page.substr(0, place), page.substr(place)};
}

/// A value as a block of data in a page: nothing in it ends the block or begins a comment.
std::string blockOf(const Datum& value) {
    std::string block;
    for (const char byte : jsonLine(value)) {
        block += byte == '<' ? "\\u003c" : std::string(1, byte);
    }
    return block;
}

Datum fileOf(const std::string& path, const std::string& text) {
    return Datum::Object{{"name", std::filesystem::path(inputName(path)).filename().string()},
                         {"text", text}};
}

/// The radio files of a list as qor-power batch takes it.
Datum radiosOf(const std::string& list) {
    Datum::List radios;
    LineReader lines(list, RadioFileReader::maxSize);
    std::size_t number = 0;
    while (const auto line = lines.next()) {
        ++number;
        const RadioLine radio(*line);
        const std::string& name = radio.id().empty() ? radio.path() : radio.id();
        radios.emplace_back(
            Datum::Object{{"name", name.empty() ? "line " + std::to_string(number) : oneLine(name)},
                          {"path", oneLine(radio.path())},
                          {"text", radio.text()}});
    }
    return radios;
}

Datum changesOf(const AskedInputs& inputs) {
    Datum::List changes;
    const auto add = [&changes](const char* input, const std::optional<std::string>& value) {
        if (value) {
            changes.emplace_back(Datum::Object{{"input", input}, {"value", *value}});
        }
    };
    add("frame-format", inputs.frameFormat);
    add("request", inputs.request);
    add("cutback", inputs.cutback);
    add("temporary-cutback", inputs.temporaryCutback);
    add("booster", inputs.booster);
    add("rsec", inputs.rsec);
    add("min", inputs.min);
    add("max", inputs.max);
    for (const std::string& setting : inputs.set) {
        add("set", setting);
    }
    return changes;
}

/// Which panel shows what was asked for.
std::string tabOf(const ReportOptions& options) {
    if (options.power) {
        return "why-not";
    }
    return options.over ? "sweep" : "steps";
}

Datum reportOf(const ReportOptions& options) {
    Datum::Object report;
    if (options.traceLog) {
        report.emplace_back("log",
                            fileOf(*options.traceLog, textOf(*options.traceLog, maxReportSize)));
        return report;
    }
    if (options.list) {
        report.emplace_back("fleet", radiosOf(*options.list));
        return report;
    }
    Datum::List files;
    const bool isFleet = options.files.size() > 2;
    for (const std::string& file : options.files) {
        // Of a fleet, files in several folders may have one name.
        files.emplace_back(isFleet ? Datum::Object{{"name", inputName(file)},
                                                   {"path", inputName(file)},
                                                   {"text", readText(file)}}
                                   : fileOf(file, readText(file)));
    }
    report.emplace_back(isFleet ? "fleet" : "files", std::move(files));
    report.emplace_back("changes", changesOf(options.query));
    report.emplace_back("tab", tabOf(options));
    for (const auto& [key, value] :
         {std::pair("code", options.code), std::pair("over", options.over),
          std::pair("wanted", options.power)}) {
        if (value) {
            report.emplace_back(key, *value);
        }
    }
    return report;
}

void write(const std::string& path, const std::string& text, bool force, Output& output) {
    if (path == standardInput) {
        output.write(text);
        return;
    }
    FileWriter file(force ? IfThere::Replace : IfThere::Refuse);
    file.add(path, text);
    file.publish();
}

/// What is asked of a radio has to be what its page can open with, before it is mailed.
void expectQuestionOfOneRadio(const ReportOptions& options) {
    const bool isAsked = options.code || options.power || options.over;
    if ((isAsked || !options.query.isEmpty()) && options.files.size() != 1 &&
        (isAsked || options.files.size() != 2)) {
        throw QuestionError(
            "--code, --power and --over are for one radio file, and what changes inputs for one or "
            "two; a log, a list and a fleet are shown as they are");
    }
    if (options.power) {
        static_cast<void>(Arguments::power("--power", *options.power));
    }
    if (options.over) {
        static_cast<void>(
            InputAxis::named("--over", Arguments::splitAt('=', *options.over).front()));
    }
    if (options.code) {
        static_cast<void>(ModulationChoice({*options.code}));
    }
}

Outcome writeReport(const ReportOptions& options, Output& output) {
    static_cast<void>(options.query.query());
    const std::size_t sources =
        (options.files.empty() ? 0U : 1U) + (options.traceLog ? 1U : 0U) + (options.list ? 1U : 0U);
    if (sources != 1) {
        throw QuestionError("one of FILE, --trace-log and --list is wanted");
    }
    CommonOptions::expectOneStandardInput(options.files);
    expectQuestionOfOneRadio(options);
    const auto [before, behind] = pageHalves(pagePath(options.page));
    const std::string block = blockOf(reportOf(options));
    if (block.size() > maxReportSize) {
        throw AnalysisError(Outcome::OtherTrouble, "the report would have more than " +
                                                       std::to_string(maxReportSize) + " bytes");
    }
    write(options.output, before + block + behind, options.force, output);
    return Outcome::Done;
}

Outcome showPage(const PageOptions& options, Output& output) {
    const std::string path = pagePath(options.page);
    if (!options.output) {
        output.write(path + '\n');
        return Outcome::Done;
    }
    const auto [before, behind] = pageHalves(path);
    write(*options.output, before + behind, options.force, output);
    return Outcome::Done;
}

CommandOption pageOption(std::optional<std::string>& page) {
    return {"--page", "HTML", "The page to take instead of the installed one",
            &page,    false,  CommandOption::Completion::Files};
}

CommandOption forceOption(bool& force) {
    return {"--force", "", "Overwrite a file that is there already", &force};
}

} // namespace

Command Commands::report() {
    const auto options = std::make_shared<ReportOptions>();
    return {
        .name = "report",
        .summary = "Write radio files, with the page that explains them, as one HTML file",
        .examples =
            {
                {"qor-power report radio.json -o report.html",
                 "a radio to mail, live in a browser"},
                {"qor-power report radio.json --cutback 3 --code 64QAM -o report.html"},
                {"qor-power report before.json after.json -o report.html"},
                {"qor-power report --trace-log node.log -o report.html"},
                {"qor-power report --list nodes.txt -o fleet.html"},
            },
        .about = {"The report opens in any browser, without a network and without this tool: it is "
                  "the page of the package qor-power-page with the files inside. It computes what "
                  "it shows, so that whoever reads it can move the inputs. Two files are compared, "
                  "more are a fleet.",
                  "An existing file is left alone unless --force is given, and a report is written "
                  "as a whole or not at all."},
        .options = options->query.behind({
            {"FILE", "", "Radio files; - for standard input", &options->files, false,
             CommandOption::Completion::Files},
            {"-o,--output", "HTML", "File for the report; - for standard output", &options->output,
             true, CommandOption::Completion::Files},
            {"--trace-log", "LOG", "A log of traces in place of radio files", &options->traceLog,
             false, CommandOption::Completion::Files},
            {"--list", "LIST", "A list of radio files, as qor-power batch takes it", &options->list,
             false, CommandOption::Completion::Files},
            {"--code", "CODE", "The modulation-and-code to show first", &options->code},
            {"--over", "INPUT[=LIST]", "Open with the powers over an input", &options->over},
            {"--power", "DBM", "Open with what the code would need for this power",
             &options->power},
            forceOption(options->force),
            pageOption(options->page),
        }),
        .run = [options](Output& output) { return writeReport(*options, output); },
    };
}

Command Commands::page() {
    const auto options = std::make_shared<PageOptions>();
    return {
        .name = "page",
        .summary = "Say where the page for a browser is, or copy it",
        .examples =
            {
                {"xdg-open \"$(qor-power page)\"", "open the page in a browser"},
                {"qor-power page -o qor-power.html"},
            },
        .about =
            {"The page is one HTML file that needs neither server nor network; radio files, logs "
             "and lists are dropped on it. It comes with the package qor-power-page."},
        .options = {{"-o,--output", "HTML", "File for a copy; - for standard output",
                     &options->output, false, CommandOption::Completion::Files},
                    forceOption(options->force),
                    pageOption(options->page)},
        .run = [options](Output& output) { return showPage(*options, output); },
    };
}
