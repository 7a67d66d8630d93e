#include "CheckSummary.h"

#include "CheckForms.h"
#include "Field.h"
#include "OneLine.h"

#include <algorithm>
#include <cstddef>
#include <tuple>
#include <utility>

namespace {

using Count = CheckSummary::Count;

std::string placesText(const Count& count) {
    std::string text;
    for (const CheckSummary::Place& place : count.first) {
        text += (text.empty() ? "" : ", ") + oneLine(place.file) + ':' +
                placeText(place.finding.textPlace);
    }
    return text + (count.files > count.first.size() ? ", ..." : "");
}

Datum placesOf(const Count& count) {
    Datum::List places;
    for (const CheckSummary::Place& place : count.first) {
        places.emplace_back(Datum::Object{{"file", place.file},
                                          {"line", place.finding.textPlace.line},
                                          {"column", place.finding.textPlace.column},
                                          {"pointer", pointerOf(place.finding)}});
    }
    return places;
}

Fields<Count> countFields() {
    using enum Shown;
    return {
        {{"code"}, [](const Count& count) { return count.rule->code; }, InJson, "Code"},
        {{"severity"},
         [](const Count& count) { return textOf(count.rule->severity); },
         InJson,
         "Severity"},
        {{"findings"}, &Count::findings, InJson, "Findings"},
        {{"files"}, &Count::files, InJson, "Files"},
        {{"title"}, [](const Count& count) { return count.rule->title; }, InJson, "In words"},
        {{"places"}, placesText, Nowhere, "First places"},
        {{"first"}, placesOf},
    };
}

} // namespace

void CheckSummary::add(const CheckedFile& file) {
    ++m_files;
    m_clean += file.check.findings.empty() ? 1U : 0U;
    std::map<std::string, bool> isSeen;
    for (const RadioFileCheck::PlacedFinding& placed : file.check.findings) {
        const CheckRule* const rule = placed.finding.rule;
        Count& count = m_counts.try_emplace(rule->code, Count{rule, 0, 0, {}}).first->second;
        ++count.findings;
        if (!std::exchange(isSeen[rule->code], true)) {
            ++count.files;
            if (count.first.size() < firstPlaces) {
                count.first.push_back({file.name, placed});
            }
        }
    }
}

std::vector<CheckSummary::Count> CheckSummary::counts() const {
    std::vector<Count> counts;
    counts.reserve(m_counts.size());
    for (const auto& [code, count] : m_counts) {
        counts.push_back(count);
    }
    std::ranges::stable_sort(counts, [](const Count& left, const Count& right) {
        return std::tie(left.rule->severity, left.files) >
               std::tie(right.rule->severity, right.files);
    });
    return counts;
}

std::string textForm(const CheckSummary& summary, const TextLook& look) {
    const std::vector<Count> counts = summary.counts();
    const std::string columns =
        counts.empty() ? "" : textColumns(countFields(), counts, "", nullptr, {look.width}) + '\n';
    return columns + counted(summary.files(), "file") + ", in " + std::to_string(summary.clean()) +
           " nothing found\n";
}

std::string jsonForm(const CheckSummary& summary) {
    return jsonDocument(answerOf(
        "check",
        {{"summary", Datum::Object{{"files", summary.files()},
                                   {"clean", summary.clean()},
                                   {"findings", listOf(countFields(), summary.counts())}}}}));
}
