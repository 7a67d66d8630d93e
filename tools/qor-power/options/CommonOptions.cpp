#include "CommonOptions.h"

#include "Arguments.h"
#include "Input.h"
#include "InputAxis.h"
#include "TextForms.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace {

const std::vector<std::string> colorWords{"auto", "always", "never"};

} // namespace

CommandOption CommonOptions::radioFile(std::string& file) {
    return {"FILE", "",   "Radio file; - for standard input",
            &file,  true, CommandOption::Completion::Files};
}

CommandOption CommonOptions::radioFiles(std::vector<std::string>& files) {
    return {"FILE", "",   "Radio files; - for standard input",
            &files, true, CommandOption::Completion::Files};
}

CommandOption CommonOptions::format(std::string& format, const std::vector<std::string>& formats) {
    std::string description = formats.front() + " (the default)";
    for (std::size_t index = 1; index < formats.size(); ++index) {
        description += (index + 1 == formats.size() ? " or " : ", ") + formats[index];
    }
    return {"--format", "FORMAT", description, &format, false, CommandOption::Completion::Words,
            formats};
}

CommandOption CommonOptions::over(std::vector<std::string>& overs, bool isRequired) {
    std::vector<std::string> names;
    for (const InputAxis& axis : InputAxis::all()) {
        names.push_back(axis.name());
    }
    return {"--over", "INPUT[=LIST]", "Input to vary and the values it takes; once or twice",
            &overs,   isRequired,     CommandOption::Completion::Words,
            names};
}

CommandOption CommonOptions::help() {
    return {"-h,--help", "", "Print this help message and exit", static_cast<bool*>(nullptr)};
}

CommandOption CommonOptions::version() {
    return {"--version", "", "Print the version and exit", static_cast<bool*>(nullptr)};
}

std::vector<CommandOption> CommonOptions::allOf(const Command& command) {
    std::vector<CommandOption> found{help()};
    std::ranges::copy_if(command.options, std::back_inserter(found),
                         [](const CommandOption& option) { return !option.isArgument(); });
    found.push_back(color(nullptr));
    return found;
}

CommandOption CommonOptions::color(std::string* when) {
    return {"--color",
            "WHEN",
            "Colours in text for people: auto (the default), which is on a terminal unless "
            "NO_COLOR is set, always or never",
            when,
            false,
            CommandOption::Completion::Words,
            colorWords};
}

ColorChoice CommonOptions::colorChoice(const std::string& when) {
    const std::string word = Arguments::word("--color", when, colorWords);
    if (word == "always") {
        return ColorChoice::Always;
    }
    return word == "never" ? ColorChoice::Never : ColorChoice::Auto;
}

void CommonOptions::expectOneStandardInput(const std::vector<std::string>& files) {
    if (std::ranges::count(files, standardInput) > 1) {
        throw QuestionError("standard input (-) can be read only once");
    }
}

std::vector<CommandOption> QueryOptions::behind(std::vector<CommandOption> own) {
    const std::vector<CommandOption> described{
        {"--frame-format", "ID",
         "Frame format of the hardware configuration; 0, the default, is the configured one",
         &frameFormat},
        {"--cutback", "DB", "Permanent power cutback in dB, for example 1.5", &cutback},
        {"--temporary-cutback", "DB",
         "Temporary power cutback in dB, in force instead of the permanent one; none lifts it",
         &temporaryCutback},
        {"--booster", "BOOSTER",
         "PRESENCE,GAIN,MAXINPUT,MAXMODULATION: a number, gain in dB, highest input power in dBm, "
         "highest modulation; none removes it",
         &booster},
        {"--rsec", "CLASS",
         "Reference spectral efficiency class, for example 4L; otherwise that of the system power "
         "controller",
         &rsec, false, CommandOption::Completion::Words, referenceSecTextForms().texts()},
        {"--min", "CODE", "Lower end of the selected range, in place of the ACM handler's", &min,
         false, CommandOption::Completion::Words, modulationAndCodeTextForms().texts()},
        {"--max", "CODE", "Upper end of the selected range", &max, false,
         CommandOption::Completion::Words, modulationAndCodeTextForms().texts()},
        {"--request", "N",
         "Ask in place of this request of the radio file, counted from 0: with its arguments, and "
         "the node as the requests before it have left it, patches included",
         &request},
        {"--set", "POINTER=VALUE",
         "Change the radio file first: the value at a JSON Pointer, as JSON or a text; null takes "
         "away; repeatable",
         &set},
    };
    own.insert(own.end(), described.begin(), described.end());
    return own;
}

LogSource LogSourceOptions::source() const {
    LogSource source;
    if (channel) {
        source.channel = Arguments::integer("--channel", *channel, 1, 2);
    }
    source.process = process.value_or("");
    return source;
}

CommandOption LogSourceOptions::channelOption(const std::string& what) {
    return {"--channel", "NUMBER",
            "Of a log only " + what + " of a service that started on this radio channel, 1 or 2",
            &channel};
}

CommandOption LogSourceOptions::processOption(const std::string& what) {
    return {"--process", "PATTERN",
            "Of a log only " + what +
                " of a process whose words before the traces hold this; * is anything",
            &process};
}
