#include "DiffCommand.h"

#include "Arguments.h"
#include "CommonOptions.h"
#include "Input.h"
#include "Messages.h"
#include "PowerDiff.h"
#include "ToolError.h"

#include <memory>
#include <vector>

namespace {

const std::vector<std::string> formats{"text", "csv", "json"};

/// A radio file as an argument of its own name.
CommandOption radioFile(const std::string& name, const std::string& words, std::string& file) {
    CommandOption argument = CommonOptions::radioFile(file);
    argument.name = name;
    argument.description = words;
    return argument;
}

/// Says why there are no powers, if there are none.
bool hasFailed(const PowerTable& table) {
    if (!table.failure.empty()) {
        complain(table.radioFile + ": no powers: " + table.failure);
    }
    return !table.failure.empty();
}

} // namespace

Command DiffCommand::describe() {
    const auto options = std::make_shared<Options>();
    Command command;
    command.name = "diff";
    command.summary = "Show what tells the powers of two radios apart";
    command.examples = {
        {"qor-power diff before.json after.json", "what tells the powers of two radios apart"},
        {"qor-power diff before.json after.json --frame-format 7"},
        {"qor-power diff before.json after.json --format json"},
        {"qor-power diff golden.json radio.json > /dev/null || echo changed"},
    };
    command.about = {
        "The powers of both radios stand side by side with the difference in dB and the rule that "
        "limits each, then the steps of the calculation that differ. The options hold for both "
        "radios.",
        "The exit status is 0 if both have the same codes with the same maximum powers and the "
        "same minimum power, and 1 if not, whatever else differs.",
    };
    command.options = options->query.describe();
    command.options.insert(command.options.begin(),
                           {radioFile("A", "Radio file; - for standard input", options->before),
                            radioFile("B", "Radio file that is compared with A", options->after),
                            CommonOptions::format(options->format, formats)});
    command.run = [options](Output& output) { return DiffCommand(*options).run(output); };
    return command;
}

DiffCommand::DiffCommand(const Options& options)
    : m_options(options)
    , m_query(options.query.query()) {
    Arguments::word("--format", options.format, formats);
    if (options.before == standardInput && options.after == standardInput) {
        throw UsageError("standard input (-) can be read only once");
    }
}

ExitStatus DiffCommand::run(Output& output) const {
    const RadioCase before = loadRadioCase(m_options.before, m_query);
    const RadioCase after = loadRadioCase(m_options.after, m_query);
    const PowerDiff diff = PowerDiff::between(before, after);
    if (m_options.format == "csv") {
        output.write(csvForm(diff));
    } else if (m_options.format == "json") {
        output.write(jsonForm(diff));
    } else {
        output.write(textForm(diff));
    }
    output.flush();
    const bool beforeFailed = hasFailed(diff.before);
    if (hasFailed(diff.after) || beforeFailed) {
        return ExitStatus::OtherTrouble;
    }
    return diff.isEqual() ? ExitStatus::Done : ExitStatus::AnswerIsNo;
}
