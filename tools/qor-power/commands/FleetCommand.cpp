#include "Arguments.h"
#include "Commands.h"
#include "CommonOptions.h"
#include "FleetAnalysis.h"
#include "LineReader.h"
#include "RadioQuestion.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace {

struct FleetOptions {
    std::string file = "-";
    std::string format = "text";
    std::optional<std::string> by;
    std::optional<std::string> table;
};

const std::vector<std::string> fleetForms{"text", "csv", "json", "svg"};

Question::Form fleetFormAsked(const std::string& format) {
    const std::string word = Arguments::word("--format", format, fleetForms);
    if (word == "csv") {
        return Question::Form::Csv;
    }
    if (word == "json") {
        return Question::Form::Json;
    }
    return word == "svg" ? Question::Form::Svg : Question::Form::Text;
}

Outcome overlook(const FleetOptions& options, Output& output) {
    FleetOverview overview({fleetFormAsked(options.format), options.by.value_or(""),
                            options.table.value_or(""), "--", output.terminal().look()});
    LineReader answers(options.file, RadioAnswer::maxSize);
    while (const auto line = answers.next()) {
        overview.add(line->text);
    }
    return print(overview.reply(), output);
}

} // namespace

Command Commands::fleet() {
    const auto options = std::make_shared<FleetOptions>();
    return {
        .name = "fleet",
        .summary = "Show what the answers of a batch say of the fleet as a whole",
        .examples =
            {
                {"qor-power fleet powers.ndjson", "a fleet's powers, limits and odd radios"},
                {"qor-power batch nodes.txt | qor-power fleet"},
                {"qor-power fleet powers.ndjson --by market"},
                {"qor-power fleet powers.ndjson --format csv --table rules"},
                {"qor-power fleet powers.ndjson --format svg > fleet.svg"},
            },
        .about =
            {"How the powers of each modulation are spread in each family, which rule limits how "
             "many "
             "radios and codes, and how far its next bound is, and which radios have powers unlike "
             "those of the same product number, market, channel spacing, DPD version and RSEC "
             "class: further from the middle half than one and a half times its width.",
             "Memory does not grow with the number of radios."},
        .options = {{"ANSWERS", "",
                     "What batch has printed, whole answers as ndjson; - or nothing for standard "
                     "input",
                     &options->file, false, CommandOption::Completion::Files},
                    CommonOptions::format(options->format, fleetForms),
                    {"--by", "KEY", "Group the radios by a key", &options->by, false,
                     CommandOption::Completion::Words, FleetReport::groupings()},
                    {"--table", "TABLE", "Table that csv prints; powers otherwise", &options->table,
                     false, CommandOption::Completion::Words, FleetOverview::tables()}},
        .run = [options](Output& output) { return overlook(*options, output); },
    };
}
