#include "PlotCommand.h"

#include "CommonOptions.h"
#include "FileWriter.h"
#include "Input.h"
#include "Messages.h"
#include "PlotForms.h"
#include "Sweep.h"
#include "ToolError.h"

#include <memory>

namespace {

/// What is drawn, and how well the queries went.
struct Drawn {
    PowerPlot plot;
    ExitStatus status = ExitStatus::Done;
};

Drawn drawnFrom(const RadioCase& radio) {
    const ExplainedTable powers = radio.explain();
    if (!powers.table.failure.empty()) {
        throw ToolError(ExitStatus::OtherTrouble,
                        radio.name + ": no powers: " + powers.table.failure);
    }
    return {PowerPlot::of(powers)};
}

/// Some of the values of a line, evenly spread, the first and the last among them.
std::vector<Inputs::Value> thinnedOut(const std::vector<Inputs::Value>& values,
                                      std::size_t wanted) {
    std::vector<Inputs::Value> chosen;
    chosen.reserve(wanted);
    for (std::size_t index = 0; index < wanted; ++index) {
        chosen.push_back(values[index * (values.size() - 1) / (wanted - 1)]);
    }
    return chosen;
}

/// @param mayThinOut whether some values may be left out to have few enough lines.
Drawn drawnFrom(const RadioCase& radio, const std::vector<Sweep::Line>& lines, bool mayThinOut) {
    const Sweep sweep = Sweep::run(radio, lines);
    Drawn drawn{PowerPlot::of(sweep), sweep.status()};
    const std::size_t count = drawn.plot.series.size();
    if (count > PowerPlot::maxSeries && mayThinOut) {
        constexpr std::size_t wanted = 6;
        return drawnFrom(radio, {{lines.front().axis, thinnedOut(lines.front().values, wanted)}},
                         false);
    }
    if (count > PowerPlot::maxSeries) {
        throw UsageError("--over " + lines.front().axis->name() + ": " + std::to_string(count) +
                         " lines; at most " + std::to_string(PowerPlot::maxSeries) +
                         " can be told apart, list fewer values");
    }
    sweep.complainOfTroubles();
    if (count == 0) {
        throw ToolError(drawn.status, radio.name + ": no powers to draw");
    }
    return drawn;
}

} // namespace

Command PlotCommand::describe() {
    const auto options = std::make_shared<Options>();
    Command command;
    command.name = "plot";
    command.summary = "Draw the powers over modulation, as SVG or in the terminal";
    command.examples = {
        {"qor-power plot radio.json", "powers as bars in the terminal"},
        {"qor-power plot radio.json -o radio.svg"},
        {"qor-power plot radio.json --over rsec=2,4L,6LB -o rsec.svg"},
        {"qor-power plot radio.json --over cutback=0..6:2"},
    };
    command.about = {
        "A picture shows the maximum power of each modulation as a step, the minimum power as a "
        "floor, and the rule that limits each power by colour, pattern and letter. With --over it "
        "has one line for each value of an input (see qor-power sweep), at most 8; values with the "
        "same powers share one. Of usual values that make more lines, 6 are drawn.",
        "Without -o the picture is made of block characters, as wide as the terminal. A file that "
        "is named with -o is replaced as a whole or, if something goes wrong, left as it was.",
    };
    command.options = options->query.describe();
    command.options.insert(
        command.options.begin(),
        {CommonOptions::radioFile(options->file),
         {"-o,--output", "FILE", "File for the picture as SVG; - for standard output",
          &options->output, false, CommandOption::Completion::Files},
         Sweep::option(options->over, false)});
    command.run = [options](Output& output) { return PlotCommand(*options).run(output); };
    return command;
}

PlotCommand::PlotCommand(const Options& options)
    : m_options(options)
    , m_query(options.query.query()) {
    if (options.over.size() > 1) {
        throw UsageError("--over is given twice; a picture has one");
    }
}

ExitStatus PlotCommand::run(Output& output) const {
    const RadioCase radio = loadRadioCase(m_options.file, m_query);
    Drawn drawn;
    if (m_options.over.empty()) {
        drawn = drawnFrom(radio);
    } else {
        const bool isUsual = m_options.over.front().find('=') == std::string::npos;
        drawn = drawnFrom(radio, Sweep::linesOf(m_options.over, m_options.query, radio), isUsual);
    }
    if (!m_options.output) {
        output.write(blockForm(drawn.plot, output.terminal()));
    } else if (*m_options.output == standardInput) {
        output.write(svgForm(drawn.plot));
    } else {
        writeFile(*m_options.output, svgForm(drawn.plot));
    }
    output.flush();
    return drawn.status;
}
