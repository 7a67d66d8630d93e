#include "Commands.h"

#include "FileWriter.h"
#include "FleetAnalysis.h"
#include "Input.h"
#include "LineReader.h"
#include "OneLine.h"
#include "RadioQuestion.h"
#include "TextForms.h"

#include <algorithm>
#include <cctype>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

// What --over takes.
constexpr const char* aboutInputs =
    "Inputs that can be varied: rsec, market, dpd, channel-spacing, cutback, temporary-cutback, "
    "booster, product, min and max (the selected range).";
constexpr const char* aboutLists =
    "A LIST holds values separated by commas, numbers also as ranges FIRST..LAST:STEP (the step is "
    "1 if it is left out). Boosters are separated by slashes. Without a LIST the usual values are "
    "taken: cutbacks of 0 to 10 dB, the spacings and codes that the radio names, one product "
    "number for each hardware family.";

struct DiffOptions {
    RadioQuestion radio{Question::Topic::Diff};
    std::string after;
    bool isFleet = false;
};

/// A radio file as an argument of its own name.
CommandOption radioFile(const std::string& name, const std::string& words, std::string& file) {
    CommandOption argument = CommonOptions::radioFile(file);
    argument.name = name;
    argument.description = words;
    return argument;
}

/// Two outputs of batch, line by line in turn.
Outcome compareFleets(const DiffOptions& options, Output& output) {
    if (!options.radio.query.isEmpty()) {
        throw QuestionError("--fleet compares answers as they are; options that change a radio are "
                            "batch's");
    }
    LineReader before(options.radio.file, RadioAnswer::maxSize);
    LineReader after(options.after, RadioAnswer::maxSize);
    FleetComparison comparison(options.radio.question.form, output.terminal().look(),
                               [&output](std::string_view piece) { output.write(piece); });
    bool isAtEnd = false;
    while (!isAtEnd) {
        isAtEnd = true;
        if (const auto line = before.next()) {
            comparison.add(FleetDiff::Side::Before, line->text);
            isAtEnd = false;
        }
        if (const auto line = after.next()) {
            comparison.add(FleetDiff::Side::After, line->text);
            isAtEnd = false;
        }
    }
    const Outcome outcome = comparison.finish();
    output.flush();
    return outcome;
}

Outcome compare(DiffOptions& options, Output& output) {
    Question& question = options.radio.question;
    options.radio.validate();
    CommonOptions::expectOneStandardInput({options.radio.file, options.after});
    if (options.isFleet) {
        return compareFleets(options, output);
    }
    const std::string before = readText(options.radio.file);
    question.radioName = givenName(options.radio.file);
    question.otherRadio = readText(options.after);
    question.otherName = givenName(options.after);
    return print(options.radio.answerFor(before, output), output);
}

struct PlotOptions {
    RadioQuestion radio{Question::Topic::Picture};
    std::optional<std::string> output;
};

/// What the name of a file promises and the tool does not draw.
void expectSvg(const std::string& path) {
    static const std::vector<std::string> others{"png",  "jpg",  "jpeg", "gif", "bmp", "tif",
                                                 "tiff", "webp", "pdf",  "eps", "ps"};
    std::string end = path.substr(path.rfind('.') + 1);
    std::ranges::transform(end, end.begin(), [](unsigned char letter) {
        return static_cast<char>(std::tolower(letter));
    });
    if (path.find('.') != std::string::npos && std::ranges::find(others, end) != others.end()) {
        const std::string stem = path.substr(0, path.rfind('.'));
        throw QuestionError("-o " + inQuotes(path) + ": pictures are SVG; name it " +
                            inQuotes(stem + ".svg") + ", which other programs turn into " + end +
                            ", for example rsvg-convert");
    }
}

Outcome draw(PlotOptions& options, Output& output) {
    options.radio.format = options.output ? "svg" : "text";
    expectSvg(options.output.value_or(""));
    if (!options.output || *options.output == standardInput) {
        return options.radio.run(output);
    }
    Reply reply = options.radio.answer(output);
    if (!reply.text.empty()) {
        writeFile(*options.output, reply.text);
        reply.text.clear();
    }
    return print(reply, output);
}

} // namespace

Command Commands::table() {
    const auto options = std::make_shared<RadioQuestion>(Question::Topic::Table);
    return {
        .name = "table",
        .summary = "Show the powers of every modulation-and-code of a frame format",
        .examples =
            {
                {"qor-power table radio.json", "powers of the configured frame format"},
                {"qor-power table radio.json --cutback 3 --rsec 4L"},
                {"qor-power table radio.json --frame-format 7 --format csv"},
                {"qor-power table radio.json --booster 1,15,14,256QAM"},
                {"qor-power table - < radio.json"},
            },
        .about = {"The cutbacks and the booster that the requests of the file set are in force "
                  "unless they are given here; the other requests are not played. With --request "
                  "the node is as it is at that request, patches included."},
        .options = options->query.behind(
            {CommonOptions::radioFile(options->file), options->describeFormat()}),
        .run = [options](Output& output) { return options->run(output); },
    };
}

Command Commands::whyNot() {
    const auto options = std::make_shared<RadioQuestion>(Question::Topic::WhyNot);
    options->question.modulations.resize(1);
    return {
        .name = "why-not",
        .summary = "Find the smallest single changes that would allow a power",
        .examples =
            {
                {"qor-power why-not radio.json 64QAM 20", "what would let 64QAM have 20 dBm"},
                {"qor-power why-not radio.json 16QAM_STRONG 22.5 --cutback 3"},
                {"qor-power why-not radio.json 64QAM 20 --changes 2"},
                {"qor-power why-not radio.json 64QAM 20 --format json"},
                {"qor-power why-not radio.json 4096QAM -- -3"},
            },
        .about = {"Each input is changed alone, with --changes 2 also two together where that does "
                  "not do, and every change is tried: the library answers the changed radio. A "
                  "setting is smaller than a calibration, and that than another piece of "
                  "hardware. Of a number the smallest change is searched, to a hundredth of a dB. "
                  "What was not tried is said."},
        .options = options->query.behind(
            {CommonOptions::radioFile(options->file),
             {"MODULATION", "", "Modulation (all its codes) or code, as text or number",
              &options->question.modulations.front(), true, CommandOption::Completion::Words,
              modulationTextForms().texts()},
             {"DBM", "", "Power that is wanted, in dBm", &options->question.power, true},
             {"--changes",
              "COUNT",
              "1 (the default), or 2: pairs of changes where no single one does",
              &options->question.changes,
              false,
              CommandOption::Completion::Words,
              {"1", "2"}},
             options->describeFormat()}),
        .run = [options](Output& output) { return options->run(output); },
    };
}

Command Commands::sweep() {
    const auto options = std::make_shared<RadioQuestion>(Question::Topic::Sweep);
    return {
        .name = "sweep",
        .summary = "Show the powers over one or two inputs, side by side",
        .examples =
            {
                {"qor-power sweep radio.json --over rsec",
                 "powers in every RSEC class, side by side"},
                {"qor-power sweep radio.json --over cutback=0..6:0.5"},
                {"qor-power sweep radio.json --over dpd=1,2 --over market"},
                {"qor-power sweep radio.json --over booster=none/1,15,14,256QAM"},
                {"qor-power sweep radio.json --over product --format csv"},
            },
        .about =
            {
                aboutInputs,
                "Every power comes from a node and a service of its own with the changed input; "
                "everything else is as in qor-power table.",
                aboutLists,
            },
        .options = options->query.behind({CommonOptions::radioFile(options->file),
                                          CommonOptions::over(options->question.over, true),
                                          options->describeFormat()}),
        .run = [options](Output& output) { return options->run(output); },
    };
}

Command Commands::diff() {
    const auto options = std::make_shared<DiffOptions>();
    return {
        .name = "diff",
        .summary = "Show what tells the powers of two radios apart",
        .examples =
            {
                {"qor-power diff before.json after.json",
                 "what tells the powers of two radios apart"},
                {"qor-power diff before.json after.json --frame-format 7"},
                {"qor-power diff before.json after.json --format json"},
                {"qor-power diff golden.json radio.json > /dev/null || echo changed"},
                {"qor-power diff --fleet before.ndjson after.ndjson"},
            },
        .about =
            {
                "The powers of both radios stand side by side with the difference in dB and the "
                "rule that "
                "limits each, then the steps of the calculation that differ. The options hold for "
                "both "
                "radios.",
                "The exit status is 0 if both have the same codes with the same maximum powers and "
                "the "
                "same minimum power, and 1 if not, whatever else differs.",
                "With --fleet A and B are what batch has printed before and after an edit of the "
                "radios or a release of the tool: it shows which radios' powers changed, by how "
                "much and with which rule. The status is 1 if any did, and if a radio is missing, "
                "fails or is doubled in one of them.",
            },
        .options = options->radio.query.behind(
            {radioFile("A", "Radio file; - for standard input", options->radio.file),
             radioFile("B", "Radio file that is compared with A", options->after),
             {"--fleet", "", "A and B are answers of batch, whole ones as ndjson",
              &options->isFleet},
             options->radio.describeFormat()}),
        .run = [options](Output& output) { return compare(*options, output); },
    };
}

Command Commands::plot() {
    const auto options = std::make_shared<PlotOptions>();
    return {
        .name = "plot",
        .summary = "Draw the powers over modulation, as SVG or in the terminal",
        .examples =
            {
                {"qor-power plot radio.json", "powers as bars in the terminal"},
                {"qor-power plot radio.json -o radio.svg"},
                {"qor-power plot radio.json --over rsec=2,4L,6LB -o rsec.svg"},
                {"qor-power plot radio.json --over cutback=0..6:2"},
            },
        .about =
            {
                "A picture shows the maximum power of each modulation as a step, the minimum power "
                "as a "
                "floor, and the rule that limits each power by colour, pattern and letter. With "
                "--over it "
                "has one line for each value of an input, at most 8; values with the "
                "same powers share one. Of usual values that make more lines, 6 are drawn.",
                aboutInputs,
                aboutLists,
                "Without -o the picture is made of block characters, as wide as the terminal. A "
                "file that "
                "is named with -o is replaced as a whole or, if something goes wrong, left as it "
                "was.",
            },
        .options = options->radio.query.behind(
            {CommonOptions::radioFile(options->radio.file),
             {"-o,--output", "FILE", "File for the picture as SVG; - for standard output",
              &options->output, false, CommandOption::Completion::Files},
             {"--title", "TEXT", "Title of the picture; otherwise it names the radio",
              &options->radio.question.title},
             CommonOptions::over(options->radio.question.over, false)}),
        .run = [options](Output& output) { return draw(*options, output); },
    };
}
