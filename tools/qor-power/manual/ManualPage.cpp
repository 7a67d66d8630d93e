#include "ManualPage.h"

#include "CommonOptions.h"
#include "ExitStatus.h"
#include "TextColumns.h"

#include <cstddef>
#include <sstream>
#include <string_view>

namespace {

/// Text as the formatter has to get it: a hyphen that can be copied as one, a backslash that begins
/// no request.
std::string escaped(std::string_view text) {
    std::string safe;
    for (const char letter : text) {
        if (letter == '-') {
            safe += "\\-";
        } else if (letter == '\\') {
            safe += "\\e";
        } else {
            safe += letter;
        }
    }
    return safe;
}

/// A line of text as it stands. One that begins like a request of the formatter is none.
std::string line(std::string_view text) {
    const bool looksLikeRequest = text.starts_with('.') || text.starts_with('\'');
    return (looksLikeRequest ? "\\&" : "") + escaped(text) + '\n';
}

/// Running text, which the formatter fills into lines of its own.
std::string running(std::string_view text) {
    constexpr std::size_t width = 72;
    std::istringstream lines(wrapped(text, width));
    std::string result;
    for (std::string one; std::getline(lines, one);) {
        result += line(one);
    }
    return result;
}

std::string sentence(const std::string& text) {
    return running(text.ends_with('.') ? text : text + '.');
}

std::string bold(std::string_view text) {
    return "\\fB" + escaped(text) + "\\fR";
}

std::string italic(std::string_view text) {
    return "\\fI" + escaped(text) + "\\fR";
}

std::string section(std::string_view name) {
    return ".SH " + std::string(name) + '\n';
}

/// An entry of a list: what it is about, and behind it the text.
std::string entry(const std::string& tag, const std::string& text) {
    return ".TP\n" + tag + '\n' + text;
}

std::string argumentInSynopsis(const CommandOption& argument) {
    const std::string name = italic(argument.name) + (argument.isRepeatable() ? " ..." : "");
    return argument.isRequired ? name : '[' + name + ']';
}

std::string synopsis(const std::vector<Command>& commands) {
    std::string text = section("SYNOPSIS");
    for (const Command& command : commands) {
        text += bold("qor-power " + command.name) + " [" + italic("OPTION") + " ...]";
        for (const CommandOption& argument : command.arguments()) {
            text += ' ' + argumentInSynopsis(argument);
        }
        text += "\n.br\n";
    }
    return text + bold("qor-power --help") + " | " + bold("--version") + '\n';
}

std::string optionTag(const CommandOption& option) {
    if (option.isArgument()) {
        return italic(option.name) + (option.isRepeatable() ? " ..." : "");
    }
    std::string tag;
    for (const std::string& name : option.names()) {
        tag += (tag.empty() ? "" : ", ") + bold(name);
    }
    return option.isFlag() ? tag : tag + ' ' + italic(option.valueName);
}

std::string optionEntry(const CommandOption& option) {
    return entry(optionTag(option), sentence(option.description));
}

std::string description(const Command& command) {
    std::string text = ".SS " + escaped(command.name) + '\n' + sentence(command.summary);
    for (const std::string& paragraph : command.about) {
        text += ".PP\n" + running(paragraph);
    }
    for (const CommandOption& option : command.options) {
        text += optionEntry(option);
    }
    return text;
}

std::string exitStatusSection() {
    std::string text = section("EXIT STATUS");
    for (const ExitStatusMeaning& row : exitStatusTable) {
        text += entry(bold(std::to_string(exitStatusOf(row.outcome))), sentence(row.meaning));
    }
    return text;
}

std::string examplesSection(const std::vector<Command>& commands) {
    std::string text = section("EXAMPLES") + ".nf\n";
    for (const Command& command : commands) {
        for (const Command::Example& example : command.examples) {
            text += line(example.commandLine);
        }
    }
    return text + ".fi\n";
}

std::string filesSection() {
    const std::string documents = "/usr/share/doc/qor-power/";
    return section("FILES") +
           entry(italic(documents + "examples/radios"), running("Example radio files.")) +
           entry(italic(documents + "radio-file.md"), running("What a radio file may hold.")) +
           entry(italic(documents + "qor-power.md"),
                 running("What all commands have in common; a page for each lies in commands/."));
}

} // namespace

std::string manualPage(const std::vector<Command>& commands) {
    std::string page = ".TH QOR-POWER 1 \"" QOR_POWER_DATE "\" \"qor-power " QOR_POWER_VERSION
                       "\" \"User Commands\"\n";
    page += section("NAME") + running("qor-power - transmit output power of a microwave radio");
    page += synopsis(commands);
    page += section("DESCRIPTION");
    page +=
        running("A radio file describes a radio: its maximum powers, its frame formats, what the "
                "operator selected, its calibration.");
    page += bold("qor-power") + '\n';
    page += running("runs the output power calculator on it.");
    page += ".PP\n" + running("Data goes to standard output, everything else to standard error.");
    page += section("COMMANDS");
    for (const Command& command : commands) {
        page += description(command);
    }
    page += section("OPTIONS");
    page += optionEntry(CommonOptions::help());
    page += optionEntry(CommonOptions::version());
    page += optionEntry(CommonOptions::color(nullptr));
    page += exitStatusSection();
    page += section("ENVIRONMENT");
    page +=
        entry(bold("NO_COLOR"), running("If it is set and not empty, nothing is coloured unless "
                                        "--color says so."));
    page += examplesSection(commands);
    page += filesSection();
    return page;
}
