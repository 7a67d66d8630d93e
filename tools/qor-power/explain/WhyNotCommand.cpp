#include "WhyNotCommand.h"

#include "Arguments.h"
#include "CommonOptions.h"
#include "TextForms.h"
#include "WhyNotForms.h"

#include <memory>

namespace {

const std::vector<std::string> formats{"text", "json"};

} // namespace

Command WhyNotCommand::describe() {
    const auto options = std::make_shared<Options>();
    Command command;
    command.name = "why-not";
    command.summary = "Find the smallest single changes that would allow a power";
    command.examples = {
        {"qor-power why-not radio.json 64QAM 20", "what would let 64QAM have 20 dBm"},
        {"qor-power why-not radio.json 16QAM_STRONG 22.5 --cutback 3"},
        {"qor-power why-not radio.json 64QAM 20 --format json"},
        {"qor-power why-not radio.json 4096QAM -- -3"},
    };
    command.about = {
        "Each input is changed alone, and every change is tried: the library answers the changed "
        "radio. Tried are cutback, selected minimum and maximum, the rows of the Pmax table that "
        "the power depends on, RSEC, DPD version, market, channel spacing and what belongs to a "
        "booster. Of a number the smallest change is searched, to a hundredth of a dB."};
    command.options = {CommonOptions::radioFile(options->file),
                       {"MODULATION", "", "Modulation (all its codes) or code, as text or number",
                        &options->modulation, true, CommandOption::Completion::Words,
                        modulationTextForms().texts()},
                       {"DBM", "", "Power that is wanted, in dBm", &options->power, true},
                       CommonOptions::format(options->format, formats)};
    const std::vector<CommandOption> query = options->query.describe();
    command.options.insert(command.options.end(), query.begin(), query.end());
    command.run = [options](Output& output) { return WhyNotCommand(*options).run(output); };
    return command;
}

WhyNotCommand::WhyNotCommand(const Options& options)
    : m_options(options)
    , m_query(options.query.query())
    , m_wanted(Arguments::power("DBM", options.power)) {
    Arguments::word("--format", options.format, formats);
}

ExitStatus WhyNotCommand::run(Output& output) const {
    const ModulationChoice choice({m_options.modulation});
    const RadioCase radio = loadRadioCase(m_options.file, m_query);
    const WhyNot whyNot = WhyNot::ask(radio, choice, m_wanted);
    output.write(m_options.format == "json" ? jsonForm(whyNot, m_options.modulation)
                                            : textForm(whyNot, m_options.modulation));
    output.flush();
    return whyNot.isAllowed() || !whyNot.changes.empty() ? ExitStatus::Done
                                                         : ExitStatus::AnswerIsNo;
}
