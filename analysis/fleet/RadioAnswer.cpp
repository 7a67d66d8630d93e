#include "RadioAnswer.h"

#include "AnalysisError.h"
#include "JsonReader.h"
#include "OneLine.h"
#include "RadioFileError.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <limits>

namespace {

[[noreturn]] void failAsAnswer(const std::string& problem) {
    throw AnalysisError(Outcome::OtherTrouble, "no answer of batch: " + problem);
}

/// An object of the line, whose members it hands out or says what is wrong with them.
class AnswerObject {
public:
    explicit AnswerObject(const nlohmann::json& json)
        : m_json(json) {
        if (!json.is_object()) {
            failAsAnswer("no object");
        }
    }

    bool has(const char* key) const { return m_json.contains(key); }

    const nlohmann::json& at(const char* key) const {
        const auto found = m_json.find(key);
        if (found == m_json.end()) {
            failAsAnswer("there is no " + inQuotes(key) +
                         "; whole answers are wanted, without --select, --long and --format csv");
        }
        return *found;
    }

    AnswerObject object(const char* key) const { return AnswerObject(at(key)); }

    std::string text(const char* key) const {
        const nlohmann::json& value = at(key);
        if (!value.is_string() && !value.is_null()) {
            failAsAnswer(inQuotes(key) + " is no text");
        }
        return value.is_null() ? "" : value.get<std::string>();
    }

    /// A text that names one of few things, of which those are kept that have come.
    std::string shortText(const char* key) const {
        constexpr std::size_t longest = 1024;
        std::string value = text(key);
        if (value.size() > longest) {
            failAsAnswer(inQuotes(key) + " is longer than " + std::to_string(longest) + " bytes");
        }
        return value;
    }

    std::int64_t number(const char* key) const {
        const nlohmann::json& value = at(key);
        // What is not negative is kept without a sign, and may be beyond what has one.
        const bool isBeyond = value.is_number_unsigned() &&
                              value.get<std::uint64_t>() > std::numeric_limits<std::int32_t>::max();
        const auto number = value.is_number_integer() ? value.get<std::int64_t>() : -1;
        if (!value.is_number_integer() || isBeyond || number != static_cast<std::int32_t>(number)) {
            failAsAnswer(inQuotes(key) + " is no whole number of 32 bits");
        }
        return number;
    }

    std::optional<std::int64_t> numberOrNothing(const char* key) const {
        return at(key).is_null() ? std::nullopt : std::optional(number(key));
    }

private:
    const nlohmann::json& m_json;
};

} // namespace

RadioAnswer RadioAnswer::read(std::string_view line) {
    nlohmann::json json;
    try {
        json = JsonReader::read(line, maxSize);
    } catch (const RadioFileError& error) {
        failAsAnswer(oneLine(error.what()));
    }
    const AnswerObject document(json);
    RadioAnswer answer;
    answer.id = document.text("id");
    answer.radioFile = document.text("radioFile");
    answer.error = document.text("error");
    if (answer.error.empty() && !document.at("error").is_null()) {
        answer.error = "an error without words";
    }
    if (answer.isBad()) {
        return answer;
    }
    const AnswerObject frameFormat = document.object("frameFormat");
    answer.family = document.shortText("family");
    answer.productNumber = document.shortText("productNumber");
    answer.market = frameFormat.shortText("market");
    answer.channelSpacing = frameFormat.number("channelSpacingMHz");
    answer.dpdVersion = frameFormat.number("dpdVersion");
    answer.rsec = document.object("rsec").shortText("class");
    answer.cutback = document.object("cutback").number("inForceCentiDb");
    answer.minPower = document.numberOrNothing("minPowerCentiDbm");
    const nlohmann::json& rows = document.at("rows");
    if (!rows.is_array()) {
        failAsAnswer("\"rows\" is no list");
    }
    for (const nlohmann::json& element : rows) {
        const AnswerObject row(element);
        // Answers of earlier releases have neither headroom nor rule of a cutback.
        answer.rows.push_back(
            {row.number("code"), row.shortText("name"), row.shortText("modulation"),
             row.numberOrNothing("maxPowerCentiDbm"), row.shortText("rule"),
             row.has("headroomCentiDb") ? row.numberOrNothing("headroomCentiDb") : std::nullopt,
             row.has("cutbackRule") ? row.shortText("cutbackRule") : ""});
    }
    return answer;
}
