#include "Commands.h"

#include "CommonOptions.h"
#include "RadioQuestion.h"
#include "TextForms.h"

#include <memory>

Command Commands::whyNot() {
    const auto options = std::make_shared<RadioQuestion>(Question::Topic::WhyNot);
    options->question.modulations.resize(1);
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
    command.options = options->withQuery(
        {CommonOptions::radioFile(options->file),
         {"MODULATION", "", "Modulation (all its codes) or code, as text or number",
          &options->question.modulations.front(), true, CommandOption::Completion::Words,
          modulationTextForms().texts()},
         {"DBM", "", "Power that is wanted, in dBm", &options->question.power, true},
         options->describeFormat()});
    command.run = [options](Output& output) { return options->run(output); };
    return command;
}
