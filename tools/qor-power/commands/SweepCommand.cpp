#include "Commands.h"

#include "CommonOptions.h"
#include "RadioQuestion.h"

#include <memory>

Command Commands::sweep() {
    const auto options = std::make_shared<RadioQuestion>(Question::Topic::Sweep);
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
    command.options = options->withQuery({CommonOptions::radioFile(options->file),
                                          CommonOptions::over(options->question.over, true),
                                          options->describeFormat()});
    command.run = [options](Output& output) { return options->run(output); };
    return command;
}
