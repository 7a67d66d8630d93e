#include "CheckForms.h"

#include "Counted.h"
#include "JsonPointer.h"
#include "OneLine.h"

#include <nlohmann/json.hpp>

namespace {

using OrderedJson = nlohmann::ordered_json;

constexpr Severity severities[] = {Severity::Error, Severity::Warning, Severity::Hint};

TextStyle styleOf(Severity severity) {
    switch (severity) {
    case Severity::Error:
        return TextStyle::Red;
    case Severity::Warning:
        return TextStyle::Magenta;
    case Severity::Hint:
        break;
    }
    return TextStyle::Cyan;
}

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
    line += " " + look.styled(textOf(finding.rule->severity), styleOf(finding.rule->severity));
    line += ": " + oneLine(finding.message);
    line += finding.remedy.empty() ? "" : "; " + oneLine(finding.remedy);
    line += std::string(" [") + finding.rule->code;
    line += placed.hasPointer ? " " + oneLine(pointerText(finding.place.path)) : "";
    return line + "]\n";
}

/// The pointer as programs resolve it: never shortened, and empty for the document as a whole.
std::string fullPointer(const FilePlace& place) {
    nlohmann::json::json_pointer pointer;
    for (const std::string& key : place.path) {
        pointer.push_back(key);
    }
    return pointer.to_string();
}

OrderedJson findingOf(const RadioFileCheck::PlacedFinding& placed) {
    const Finding& finding = placed.finding;
    OrderedJson object;
    object["code"] = finding.rule->code;
    object["severity"] = textOf(finding.rule->severity);
    object["title"] = finding.rule->title;
    object["line"] = placed.textPlace.line;
    object["column"] = placed.textPlace.column;
    object["pointer"] =
        placed.hasPointer ? OrderedJson(fullPointer(finding.place)) : OrderedJson(nullptr);
    object["message"] = finding.message;
    object["remedy"] = finding.remedy.empty() ? OrderedJson(nullptr) : OrderedJson(finding.remedy);
    return object;
}

OrderedJson fileOf(const CheckedFile& file) {
    OrderedJson object;
    object["file"] = file.name;
    object["isRadioFile"] = file.check.isRadioFile;
    for (const Severity severity : severities) {
        object[std::string(textOf(severity)) + "s"] = file.check.count(severity);
    }
    OrderedJson& findings = object["findings"] = OrderedJson::array();
    for (const RadioFileCheck::PlacedFinding& placed : file.check.findings) {
        findings.push_back(findingOf(placed));
    }
    return object;
}

} // namespace

std::string textForm(const CheckedFile& file, const TextLook& look) {
    std::string text;
    for (const RadioFileCheck::PlacedFinding& placed : file.check.findings) {
        text += lineOf(file.name, placed, look);
    }
    return text + file.name + ": " + summaryOf(file.check) + '\n';
}

std::string jsonForm(const std::vector<CheckedFile>& files) {
    OrderedJson object;
    OrderedJson& list = object["files"] = OrderedJson::array();
    for (const CheckedFile& file : files) {
        list.push_back(fileOf(file));
    }
    // A path on the command line need not be UTF-8.
    constexpr int indentation = 2;
    return object.dump(indentation, ' ', false, OrderedJson::error_handler_t::replace) + '\n';
}

std::string messageOf(const CheckedFile& file) {
    const RadioFileCheck::PlacedFinding& placed = file.check.findings.front();
    const Finding& finding = placed.finding;
    return (file.name.empty() ? "" : file.name + ": ") +
           oneLine(placed.hasPointer ? pointerText(finding.place.path)
                                     : placeText(placed.textPlace)) +
           ": " + oneLine(finding.message) +
           (finding.remedy.empty() ? "" : "; " + oneLine(finding.remedy));
}
