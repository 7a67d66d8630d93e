#include "TableCommand.h"

#include "Arguments.h"
#include "CommonOptions.h"
#include "Input.h"
#include "Messages.h"
#include "PowerTableForms.h"
#include "ToolError.h"

#include <memory>
#include <string>
#include <vector>

namespace {

const std::vector<std::string> formats{"text", "csv", "json"};

PowerTable load(const std::string& file, const PowerTableQuery& query) {
    const RadioFile radioFile = loadRadioFile(file);
    try {
        PowerTable table = query.run(radioFile);
        table.radioFile = inputName(file);
        return table;
    } catch (const ToolError& error) {
        throw ToolError(error.status(), inputName(file) + ": " + error.what());
    }
}

} // namespace

Command TableCommand::describe() {
    const auto options = std::make_shared<Options>();
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
    command.options = options->query.describe();
    command.options.insert(
        command.options.begin(),
        {CommonOptions::radioFile(options->file), CommonOptions::format(options->format, formats)});
    command.run = [options](Output& output) { return TableCommand(*options).run(output); };
    return command;
}

TableCommand::TableCommand(const Options& options)
    : m_file(options.file)
    , m_format(Arguments::word("--format", options.format, formats))
    , m_query(options.query.query()) {}

ExitStatus TableCommand::run(Output& output) const {
    const PowerTable table = load(m_file, m_query);
    if (m_format == "csv") {
        output.write(csvForm(table));
    } else if (m_format == "json") {
        output.write(jsonForm(table));
    } else {
        output.write(textForm(table));
    }
    output.flush();
    if (table.failure.empty()) {
        return ExitStatus::Done;
    }
    complain(inputName(m_file) + ": no powers: " + table.failure);
    return ExitStatus::OtherTrouble;
}
