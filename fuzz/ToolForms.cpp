#include "ToolForms.h"

#include "AnalysisError.h"
#include "Comparison.h"
#include "ExplanationForms.h"
#include "Find.h"
#include "PowerPlot.h"
#include "PowerTableForms.h"
#include "PowerTableQuery.h"
#include "RadioFileCheck.h"
#include "TextChecks.h"
#include "analysis/ExplanationAudit.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace {

using nlohmann::json;

const TextLook plain;
const TextLook colored{true};

/// A text without the sequences that give it a style.
std::string withoutStyles(const std::string& text) {
    std::string rest;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t escape = std::min(text.find("\x1b[", start), text.size());
        rest.append(text, start, escape - start);
        const std::size_t end = text.find('m', escape);
        start = end == std::string::npos ? text.size() : end + 1;
    }
    return rest;
}

/// Requires what every form for people has, with and without colours.
/// @return how many lines it has.
std::size_t checkText(const std::string& text, const std::string& coloredText) {
    expect(!text.empty() && text.back() == '\n', "a text form does not end a line");
    std::size_t lines = 0;
    for (std::size_t start = 0; start < text.size(); ++lines) {
        const std::size_t end = text.find('\n', start);
        const std::string line = text.substr(start, end - start);
        expect(line.empty() || TextChecks::isOneLine(line), "a control character in a text form");
        start = end + 1;
    }
    expect(withoutStyles(coloredText) == text, "colours change more than the looks");
    return lines;
}

/// Whether every element is closed by its own end, in a document without comments.
bool isNested(const std::string& xml) {
    std::vector<std::string> open;
    for (std::size_t start = xml.find('<'); start != std::string::npos;
         start = xml.find('<', start + 1)) {
        const std::size_t end = xml.find('>', start);
        if (end == std::string::npos || xml.find('<', start + 1) < end) {
            return false;
        }
        const std::string tag = xml.substr(start + 1, end - start - 1);
        if (tag.front() == '/') {
            if (open.empty() || open.back() != tag.substr(1)) {
                return false;
            }
            open.pop_back();
        } else if (tag.front() != '?' && tag.back() != '/') {
            open.push_back(tag.substr(0, tag.find(' ')));
        }
    }
    return open.empty();
}

void checkPlot(const ExplainedTable& explained) {
    const PowerPlot plot = PowerPlot::of(RuledTable(explained));
    const std::string svg = svgForm(plot);
    std::string letters = svg;
    std::erase(letters, '\n');
    expect(TextChecks::isOneLine(letters), "a control character in the SVG");
    expect(isNested(svg), "the elements of the SVG are not nested");
    checkText(blockForm(plot, plain), blockForm(plot, colored));
}

void checkPlace(const RadioFileCheck::PlacedFinding& placed, std::string_view text) {
    const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    expect(placed.textPlace.line >= 1 && placed.textPlace.line <= lines,
           "check names a line that the text does not have");
    expect(placed.textPlace.column >= 1 && placed.textPlace.column <= text.size() + 1,
           "check names a column that the text does not have");
}

void checkFinding(const json& form, const json& document) {
    if (!form.at("pointer").is_string() || document.is_discarded()) {
        return;
    }
    const json::json_pointer pointer(form.at("pointer").get<std::string>());
    // Where something is missing, its place is a key that an object does not have.
    expect(document.contains(pointer) || document.contains(pointer.parent_pointer()),
           "check points at nothing in the document");
}

void explainFrameFormat(const RadioFile& file, const json& document, std::int32_t frameFormatId) {
    PowerTableQuery query;
    query.frameFormatId = frameFormatId;
    std::optional<PowerTable> table;
    std::optional<ExplainedTable> explained;
    try {
        table = query.run(file);
    } catch (const AnalysisError&) { // Comparison::tables() looks at when this happens
        table = std::nullopt;
    }
    try {
        explained = query.explain(file);
    } catch (const AnalysisError& error) {
        expect(TextChecks::isOneLine(error.what()),
               "the reason for no explanation is not one line");
    }
    expect(table.has_value() == explained.has_value(), "there is a table or an explanation alone");
    if (!explained) {
        return;
    }
    expect(jsonForm(*table) == jsonForm(explained->table), "explain shows another table");

    const std::string name = "frame format " + std::to_string(frameFormatId);
    ExplanationAudit audit;
    audit.audit(*explained, document, name);
    if (!audit.findings().empty()) {
        reportFind(audit.findings().front() + "\nradio file: " + document.dump());
    }

    explained->table.radioFile = "radio.json";
    checkText(textForm(*explained, plain), textForm(*explained, colored));
    const json form = json::parse(jsonForm(*explained));
    expect(form.at("rows").size() == explained->explanations.size(),
           "the JSON form has not every explanation");
    if (explained->table.failure.empty()) {
        checkPlot(*explained);
    }
}

} // namespace

void ToolForms::check(std::string_view text, bool isRadioFile) {
    const CheckedFile file{"radio.json", RadioFileCheck::run(text)};
    const std::vector<RadioFileCheck::PlacedFinding>& findings = file.check.findings;
    expect(file.check.isRadioFile == isRadioFile, "check and the reader are not of one mind");
    expect(isRadioFile || findings.size() == 1, "no radio file has one reason");
    for (const RadioFileCheck::PlacedFinding& placed : findings) {
        expect(TextChecks::isOneLine(placed.finding.message), "a finding is not one line");
        expect(placed.finding.remedy.empty() || TextChecks::isOneLine(placed.finding.remedy),
               "a remedy is not one line");
        checkPlace(placed, text);
    }

    const std::size_t lines = checkText(textForm(file, plain), textForm(file, colored));
    // Why something is no radio file is said once, as a message.
    expect(lines == (isRadioFile ? findings.size() : 0) + 1,
           "check has not one line for each finding");

    const json document = json::parse(text.begin(), text.end(), nullptr, false, true);
    const json form = json::parse(jsonForm({file})).at("files").at(0);
    expect(form.at("isRadioFile") == isRadioFile, "another verdict in the JSON form");
    expect(form.at("findings").size() == findings.size(), "the JSON form has not every finding");
    for (const json& finding : form.at("findings")) {
        checkFinding(finding, document);
    }
}

void ToolForms::explain(const RadioFile& file, const json& document) {
    for (const std::int32_t id : Comparison::frameFormatIds(document)) {
        explainFrameFormat(file, document, id);
    }
}
