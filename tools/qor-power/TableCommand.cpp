#include "TableCommand.h"

#include "Arguments.h"
#include "Input.h"
#include "Messages.h"
#include "PowerTableForms.h"
#include "ToolError.h"

#include <cstdint>
#include <limits>

namespace {

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

TableCommand::TableCommand(const Options& options)
    : m_file(options.file)
    , m_format(Arguments::word("--format", options.format, {"text", "csv", "json"})) {
    if (options.frameFormat) {
        m_query.frameFormatId = static_cast<std::int32_t>(Arguments::integer(
            "--frame-format", *options.frameFormat, 0, std::numeric_limits<std::int32_t>::max()));
    }
    if (options.cutback) {
        m_query.inputs.permanentCutback = Arguments::cutback("--cutback", *options.cutback);
    }
    if (options.temporaryCutback) {
        m_query.inputs.temporaryCutback =
            Arguments::temporaryCutback("--temporary-cutback", *options.temporaryCutback);
    }
    if (options.booster) {
        m_query.inputs.booster = Arguments::booster("--booster", *options.booster);
    }
    if (options.rsec) {
        m_query.rsec = Arguments::rsec("--rsec", *options.rsec);
    }
}

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
