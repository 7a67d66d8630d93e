#include "Field.h"

#include "Decibels.h"
#include "OneLine.h"

#include <cstddef>
#include <string_view>

namespace {

std::string quotedWhereNeeded(const std::string& field) {
    if (field.find_first_of(",\"") == std::string::npos) {
        return field;
    }
    std::string quoted = "\"";
    for (const char letter : field) {
        quoted.append(letter == '"' ? 2 : 1, letter);
    }
    return quoted + '"';
}

} // namespace

std::string FieldNames::inJson() const {
    if (unit == "dBm") {
        return key + "CentiDbm";
    }
    return key + (unit == "dB" ? "CentiDb" : unit);
}

std::string FieldNames::inCsv() const {
    std::string name;
    bool isBehindLower = false;
    for (const char letter : key) {
        const bool startsWord = isBehindLower && letter >= 'A' && letter <= 'Z';
        name += startsWord ? "_" : "";
        const char written = letter == '-' ? '_' : letter;
        name += startsWord ? static_cast<char>(letter - 'A' + 'a') : written;
        isBehindLower = letter >= 'a' && letter <= 'z';
    }
    return unit.empty() ? name : name + '_' + unit;
}

std::string FieldNames::inText(const std::string& heading) const {
    return unit.empty() ? heading : heading + '/' + unit;
}

std::string FieldNames::cell(const Datum& value) const {
    if (const auto* const number = std::get_if<std::int64_t>(&value.held())) {
        return unit.starts_with("dB") ? Decibels::format(*number) : std::to_string(*number);
    }
    const auto* const text = std::get_if<std::string>(&value.held());
    return text == nullptr ? "" : oneLine(*text);
}

std::string FieldNames::csvCell(const Datum& value) const {
    const std::string text = cell(value);
    const bool isFormula = !text.empty() && !Decibels::parse(text) &&
                           std::string_view("=+-@").find(text.front()) != std::string_view::npos;
    return isFormula ? '\'' + text : text;
}

std::string FieldNames::textCell(const Datum& value, const std::string& nothing) const {
    if (value.isNothing()) {
        return nothing;
    }
    const auto* const number = std::get_if<std::int64_t>(&value.held());
    return number != nullptr && unit == "dB" ? Decibels::formatSigned(*number) : cell(value);
}

std::string csvLine(const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t index = 0; index < cells.size(); ++index) {
        line += index == 0 ? "" : ",";
        line += quotedWhereNeeded(cells[index]);
    }
    return line + '\n';
}
