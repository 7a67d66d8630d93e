#include "Comparison.h"

#include "AnalysisError.h"
#include "Find.h"
#include "PowerTableForms.h"
#include "PowerTableQuery.h"
#include "TextChecks.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace {

using nlohmann::json;

constexpr unsigned firstFailure = 32768;

/// The same radio with the setters as its only requests, and the query that a power table stands
/// for.
json tableQuestion(const json& document, std::int32_t frameFormatId) {
    json question = document;
    json requests = json::array();
    if (document.contains("requests")) {
        for (const json& request : document.at("requests")) {
            if (request.at("call").get_ref<const std::string&>().rfind("set", 0) == 0) {
                requests.push_back(request);
            }
        }
    }
    requests.push_back(
        {{"call", "getMinMaxOutputPowerVsModulationArray"}, {"frameFormatId", frameFormatId}});
    question["requests"] = std::move(requests);
    return question;
}

/// The codes that are the rows of a table; none if the frame format does not give any.
json codesOf(const json& document, std::int32_t frameFormatId) {
    if (frameFormatId < 1) {
        return document.at("frameFormat").at("modulationAndCodes");
    }
    for (const json& record :
         document.at("hardwareConfigurationHandler").value("frameFormats", json::array())) {
        if (record.at("id") == frameFormatId) {
            const json& codes = record.at("modulationAndCodes");
            return codes.is_array() ? codes : json::array();
        }
    }
    return json::array();
}

std::size_t linesIn(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

void checkForms(const PowerTable& table) {
    const std::string text = textForm(table);
    expect(!text.empty() && text.back() == '\n', "the text form does not end a line");
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = text.find('\n', start);
        const std::string line = text.substr(start, end - start);
        expect(line.empty() || TextChecks::isOneLine(line), "a control character in the text form");
        start = end + 1;
    }

    const std::string csv = csvForm(table);
    expect(TextChecks::isUtf8(csv), "the CSV form is no UTF-8");
    expect(linesIn(csv) == table.rows.size() + 1, "the CSV form has not one line for each row");

    const json form = json::parse(jsonForm(table));
    expect(form.at("rows").size() == table.rows.size(), "the JSON form has not every row");
    expect(form.at("productNumber") == table.productNumber, "another product in the JSON form");
}

} // namespace

void Comparison::replay(const RadioFile& file, const json& document, int traceLevel) {
    const CompareReplays::Lines lines = m_replays.play(file, document, traceLevel);
    if (const std::string difference = lines.difference(); !difference.empty()) {
        reportFind(difference + "\nradio file: " + document.dump());
    }
    const auto result = json::parse(lines.reference.front()).at("result").get<std::uint32_t>();
    expect(lines.isStarted == (result < firstFailure), "whether the service started is told wrong");
}

std::set<std::int32_t> Comparison::frameFormatIds(const json& document) {
    constexpr std::size_t enough = 4;
    std::set<std::int32_t> ids{0, 1};
    if (document.contains("hardwareConfigurationHandler")) {
        for (const json& record :
             document.at("hardwareConfigurationHandler").value("frameFormats", json::array())) {
            if (ids.size() < enough) {
                ids.insert(record.at("id").get<std::int32_t>());
            }
        }
    }
    return ids;
}

void Comparison::tables(const RadioFile& file, const json& document) {
    for (const std::int32_t id : frameFormatIds(document)) {
        table(file, document, id);
    }
}

void Comparison::table(const RadioFile& file, const json& document, std::int32_t frameFormatId) {
    const json question = tableQuestion(document, frameFormatId);
    std::optional<PowerTable> table;
    try {
        PowerTableQuery query;
        query.frameFormatId = frameFormatId;
        table = query.run(file);
        table->radioFile = "radio.json";
    } catch (const AnalysisError& error) {
        expect(error.outcome() == Outcome::ServiceDidNotStart, "a table ends with another status");
        expect(TextChecks::isOneLine(error.what()), "the reason for no table is not one line");
    }

    const std::vector<std::string> answers = m_replays.playReference(question, 0);
    const bool starts = json::parse(answers.front()).at("result") < firstFailure;
    expect(starts == table.has_value(), "there is a table exactly if the service starts");
    if (!table) {
        return;
    }

    const json answer = json::parse(answers.back());
    const auto fail = [&](const std::string& what) {
        reportFind("table of frame format " + std::to_string(frameFormatId) + ": " + what +
                   "\ntable: " + jsonForm(*table) + "reference: " + answer.dump() +
                   "\nradio file: " + document.dump());
    };
    if (table->result != answer.at("result").get<unsigned>()) {
        fail("the result differs");
    }
    const bool failed = table->result >= firstFailure;
    if (failed == table->failure.empty()) {
        fail("a failure has a reason, and nothing else has one");
    }
    if (failed == table->minOutputPower.has_value() ||
        (!failed && *table->minOutputPower != answer.at("minOutputPower").get<long>())) {
        fail("the minimum power differs");
    }
    if (table->rows.size() != codesOf(document, frameFormatId).size()) {
        fail("the number of rows differs");
    }
    for (const PowerTable::Row& row : table->rows) {
        std::optional<long> expected;
        for (const json& entry : answer.at("powerMap")) {
            if (entry.at("code") == row.modulationAndCode.code) {
                expected = entry.at("maxPower").get<long>();
            }
        }
        if (row.maxPower != expected) {
            fail("the power of code " + std::to_string(row.modulationAndCode.code) + " differs");
        }
        if (row.maxPower.has_value() != row.reason.empty()) {
            fail("code " + std::to_string(row.modulationAndCode.code) +
                 " has to have either a power or a reason for none");
        }
    }
    checkForms(*table);
}
