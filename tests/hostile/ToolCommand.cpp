#include "ToolCommand.h"

#include "Expectations.h"

#include <ostream>

namespace {

using Refusal = ToolCommand::Refusal;
using C = ToolCommand;

constexpr const char* pictureBefore = "the picture of before";

} // namespace

std::ostream& operator<<(std::ostream& stream, const ToolCommand& command) {
    return stream << command.name;
}

const std::vector<ToolCommand>& radioFileCommands() {
    static const std::vector<ToolCommand> commands{
        {"replay", {"replay", C::file}},
        {"table", {"table", C::file}},
        {"explain", {"explain", C::file}},
        {"whyNot", {"why-not", C::file, "16QAM", "30"}},
        {"sweep", {"sweep", C::file, "--over", "rsec=2"}},
        {"diffBefore", {"diff", C::file, C::radio}},
        {"diffAfter", {"diff", C::radio, C::file}},
        {"plot", {"plot", C::file}},
        {"plotToFile", {"plot", C::file, "-o", C::picture}},
        {"check", {"check", C::file}, Refusal::Finding},
        {"checkAsJson", {"check", C::file, "--format", "json"}, Refusal::JsonFinding},
        {"batch", {"batch", C::list, "--quiet"}, Refusal::LineOfOutput},
    };
    return commands;
}

const std::vector<ToolCommand>& otherFileCommands() {
    static const std::vector<ToolCommand> commands{
        {"batchList", {"batch", C::file, "--quiet"}},
        {"explainLog", {"explain", "--trace-log", C::file}},
    };
    return commands;
}

const std::vector<ToolCommand>& writingCommands() {
    static const std::vector<ToolCommand> commands{
        {"replay", {"replay", C::file}},
        {"replayWithTraces", {"replay", C::file, "--trace", "6"}},
        {"table", {"table", C::file}},
        {"tableAsJson", {"table", C::file, "--format", "json"}},
        {"tableAsCsv", {"table", C::file, "--format", "csv"}},
        {"explain", {"explain", C::file}},
        {"explainAsJson", {"explain", C::file, "--format", "json"}},
        {"explainLog", {"explain", "--trace-log", C::log}},
        {"explainLogAsJson", {"explain", "--trace-log", C::log, "--format", "json"}},
        {"whyNot", {"why-not", C::file, "16QAM", "30"}},
        {"whyNotAsJson", {"why-not", C::file, "16QAM", "30", "--format", "json"}},
        {"sweep", {"sweep", C::file, "--over", "rsec=2"}},
        {"sweepAsJson", {"sweep", C::file, "--over", "rsec=2", "--format", "json"}},
        {"sweepAsCsv", {"sweep", C::file, "--over", "rsec=2", "--format", "csv"}},
        {"diff", {"diff", C::file, C::radio}},
        {"diffAsJson", {"diff", C::file, C::radio, "--format", "json"}},
        {"diffAsCsv", {"diff", C::file, C::radio, "--format", "csv"}},
        {"plot", {"plot", C::file}},
        {"plotAsSvg", {"plot", C::file, "-o", "-"}},
        {"check", {"check", C::file}},
        {"checkAsJson", {"check", C::file, "--format", "json"}},
        {"batch", {"batch", C::list, "--quiet"}},
        {"batchAsCsv", {"batch", C::list, "--quiet", "--format", "csv"}},
        {"examples", {"examples"}},
        {"completion", {"completion", "bash"}},
        {"manual", {"manual"}},
        {"help", {"--help"}},
        {"helpOfACommand", {"table", "--help"}},
        {"version", {"--version"}},
    };
    return commands;
}

StagedCommand::StagedCommand(const ToolCommand& command)
    : m_command(command) {
    m_radio.add(radioStart).add(capabilityHandler).add("}");
    m_picture.add(pictureBefore);
    m_log.add("6 enter Control/OutputPowerCalculator:1 calculatePowerCapabilities:\n");
}

MeasuredTool StagedCommand::on(const std::string& path) {
    m_list.add(path + '\n');
    std::vector<std::string> arguments;
    for (const std::string& word : m_command.words) {
        if (word == C::file) {
            arguments.push_back(path);
        } else if (word == C::list) {
            arguments.push_back(m_list.path());
        } else if (word == C::radio) {
            arguments.push_back(m_radio.path());
        } else if (word == C::picture) {
            arguments.push_back(m_picture.path());
        } else if (word == C::log) {
            arguments.push_back(m_log.path());
        } else {
            arguments.push_back(word);
        }
    }
    return MeasuredTool(arguments);
}

bool StagedCommand::isUntouched() const {
    return m_radio.isUntouched() && m_list.isUntouched() && m_picture.isUntouched() &&
           m_log.isUntouched() && m_picture.begins(pictureBefore);
}
