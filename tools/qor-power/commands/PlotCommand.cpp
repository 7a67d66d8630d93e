#include "Commands.h"

#include "CommonOptions.h"
#include "FileWriter.h"
#include "Input.h"
#include "RadioQuestion.h"

#include <memory>
#include <optional>
#include <string>

namespace {

struct PlotOptions {
    RadioQuestion radio{Question::Topic::Picture};
    std::optional<std::string> output;
};

Outcome draw(PlotOptions& options, Output& output) {
    options.radio.format = options.output ? "svg" : "text";
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

Command Commands::plot() {
    const auto options = std::make_shared<PlotOptions>();
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
    command.options = options->radio.withQuery(
        {CommonOptions::radioFile(options->radio.file),
         {"-o,--output", "FILE", "File for the picture as SVG; - for standard output",
          &options->output, false, CommandOption::Completion::Files},
         CommonOptions::over(options->radio.question.over, false)});
    command.run = [options](Output& output) { return draw(*options, output); };
    return command;
}
