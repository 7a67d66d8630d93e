#include "SweepCommand.h"

#include "Arguments.h"
#include "CommonOptions.h"
#include "Sweep.h"
#include "SweepForms.h"
#include "ToolError.h"

#include <memory>

namespace {

const std::vector<std::string> formats{"text", "csv", "json"};

} // namespace

Command SweepCommand::describe() {
    const auto options = std::make_shared<Options>();
    Command command;
    command.name = "sweep";
    command.summary = "Show the powers over one or two inputs, side by side";
    command.examples = {
        {"qor-power sweep radio.json --over rsec", "powers in every RSEC class, side by side"},
        {"qor-power sweep radio.json --over cutback=0..6:0.5"},
        {"qor-power sweep radio.json --over dpd=1,2 --over market"},
        {"qor-power sweep radio.json --over booster=none/1,15,14,256QAM"},
        {"qor-power sweep radio.json --over product --format csv"},
    };
    command.about = {
        "Inputs that can be varied: rsec, market, dpd, channel-spacing, cutback, "
        "temporary-cutback, booster, product, min and max (the selected range). Every power comes "
        "from a node and a service of its own with the changed input; everything else is as "
        "in qor-power table.",
        "A LIST holds values separated by commas, numbers also as ranges FIRST..LAST:STEP (the "
        "step is 1 if it is left out). Boosters are separated by slashes. Without a LIST the usual "
        "values are taken: cutbacks of 0 to 10 dB, the spacings and codes that the radio names, "
        "one product number for each hardware family.",
    };
    command.options = options->query.describe();
    command.options.insert(command.options.begin(),
                           {CommonOptions::radioFile(options->file),
                            Sweep::option(options->over, true),
                            CommonOptions::format(options->format, formats)});
    command.run = [options](Output& output) { return SweepCommand(*options).run(output); };
    return command;
}

SweepCommand::SweepCommand(const Options& options)
    : m_options(options)
    , m_query(options.query.query()) {
    Arguments::word("--format", options.format, formats);
}

ExitStatus SweepCommand::run(Output& output) const {
    const RadioCase radio = loadRadioCase(m_options.file, m_query);
    const Sweep sweep = Sweep::run(radio, Sweep::linesOf(m_options.over, m_options.query, radio));
    if (m_options.format == "csv") {
        output.write(csvForm(sweep));
    } else if (m_options.format == "json") {
        output.write(jsonForm(sweep));
    } else {
        output.write(textForm(sweep));
    }
    output.flush();
    sweep.complainOfTroubles();
    return sweep.status();
}
