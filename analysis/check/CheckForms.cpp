#include "CheckForms.h"

#include "Datum.h"
#include "JsonPointer.h"
#include "OneLine.h"

#include <nlohmann/json.hpp>

namespace {

constexpr Severity severities[] = {Severity::Error, Severity::Warning, Severity::Hint};

/// By Severity.
constexpr TextStyle styles[] = {TextStyle::Cyan, TextStyle::Magenta, TextStyle::Red};

std::string summaryOf(const RadioFileCheck& check) {
    if (!check.isRadioFile) {
        return "no radio file";
    }
    std::string summary;
    for (const Severity severity : severities) {
        if (const std::size_t count = check.count(severity); count > 0) {
            summary += (summary.empty() ? "" : ", ") + counted(count, textOf(severity));
        }
    }
    return summary.empty() ? "nothing found" : summary;
}

std::string lineOf(const std::string& file, const RadioFileCheck::PlacedFinding& placed,
                   const TextLook& look) {
    const Finding& finding = placed.finding;
    std::string line = look.styled(file + ":" + placeText(placed.textPlace) + ":", TextStyle::Bold);
    line += " " + look.styled(textOf(finding.rule->severity),
                              styles[static_cast<std::size_t>(finding.rule->severity)]);
    line += ": " + oneLine(finding.message);
    line += finding.remedy.empty() ? "" : "; " + oneLine(finding.remedy);
    line += std::string(" [") + finding.rule->code;
    line += placed.hasPointer ? " " + oneLine(pointerText(finding.place.path)) : "";
    return line + "]\n";
}

Datum datumOf(const RadioFileCheck::PlacedFinding& placed) {
    const Finding& finding = placed.finding;
    return Datum::Object{
        {"code", finding.rule->code},        {"severity", textOf(finding.rule->severity)},
        {"title", finding.rule->title},      {"line", placed.textPlace.line},
        {"column", placed.textPlace.column}, {"pointer", pointerOf(placed)},
        {"message", finding.message},        {"remedy", Datum::orNothing(finding.remedy)},
    };
}

Datum datumOf(const CheckedFile& file) {
    Datum::Object object{{"file", file.name}, {"isRadioFile", file.check.isRadioFile}};
    for (const Severity severity : severities) {
        object.emplace_back(std::string(textOf(severity)) + "s", file.check.count(severity));
    }
    Datum::List findings;
    for (const RadioFileCheck::PlacedFinding& placed : file.check.findings) {
        findings.push_back(datumOf(placed));
    }
    object.emplace_back("findings", std::move(findings));
    return object;
}

} // namespace

Datum pointerOf(const RadioFileCheck::PlacedFinding& placed) {
    nlohmann::json::json_pointer pointer;
    for (const std::string& key : placed.finding.place.path) {
        pointer.push_back(key);
    }
    return placed.hasPointer ? Datum(pointer.to_string()) : Datum();
}

std::string textForm(const CheckedFile& file, const TextLook& look) {
    std::string text;
    const std::string name = oneLine(file.name);
    // What is no radio file is a message, as with every question.
    for (const RadioFileCheck::PlacedFinding& placed : file.check.findings) {
        text += file.check.isRadioFile ? lineOf(name, placed, look) : "";
    }
    return text + name + ": " + summaryOf(file.check) + '\n';
}

std::string jsonForm(const std::vector<CheckedFile>& files) {
    Datum::List list;
    for (const CheckedFile& file : files) {
        list.push_back(datumOf(file));
    }
    return jsonDocument(answerOf("check", {{"files", std::move(list)}}));
}

std::string messageOf(const CheckedFile& file) {
    const RadioFileCheck::PlacedFinding& placed = file.check.findings.front();
    const Finding& finding = placed.finding;
    return (file.name.empty() ? "" : oneLine(file.name) + ": ") +
           oneLine(placed.hasPointer ? pointerText(finding.place.path)
                                     : placeText(placed.textPlace)) +
           ": " + oneLine(finding.message) +
           (finding.remedy.empty() ? "" : "; " + oneLine(finding.remedy));
}
