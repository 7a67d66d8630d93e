#include "Commands.h"

#include "CommonOptions.h"
#include "RadioQuestion.h"

#include <memory>

Command Commands::table() {
    const auto options = std::make_shared<RadioQuestion>(Question::Topic::Table);
    Command command;
    command.name = "table";
    command.summary = "Show the powers of every modulation-and-code of a frame format";
    command.examples = {
        {"qor-power table radio.json", "powers of the configured frame format"},
        {"qor-power table radio.json --cutback 3 --rsec 4L"},
        {"qor-power table radio.json --frame-format 7 --format csv"},
        {"qor-power table radio.json --booster 1,15,14,256QAM"},
        {"qor-power table - < radio.json"},
    };
    command.about = {"The cutbacks and the booster that the requests of the file set are in force "
                     "unless they are given here; the other requests are not played."};
    command.options =
        options->withQuery({CommonOptions::radioFile(options->file), options->describeFormat()});
    command.run = [options](Output& output) { return options->run(output); };
    return command;
}
