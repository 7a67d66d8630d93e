#include "TraceText.h"

#include <charconv>
#include <cstddef>
#include <system_error>

namespace TraceText {

std::optional<std::string> valueBehind(std::string_view text, std::string_view label) {
    const std::size_t place = text.find(label);
    if (place == std::string_view::npos) {
        return std::nullopt;
    }
    text.remove_prefix(place + label.size());
    return std::string(text.substr(0, text.find(',')));
}

std::optional<std::string> rest(std::string_view text, std::string_view beginning) {
    if (!text.starts_with(beginning)) {
        return std::nullopt;
    }
    return std::string(text.substr(beginning.size()));
}

std::optional<std::string> inBrackets(std::string_view text, std::string_view label) {
    const std::size_t place = text.find(label);
    if (place == std::string_view::npos || !text.ends_with(')')) {
        return std::nullopt;
    }
    text.remove_prefix(place + label.size());
    text.remove_suffix(1);
    return std::string(text);
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::optional<std::int64_t> number(std::string_view text) {
    std::int64_t value = 0;
    const char* const begin = text.data();
    const char* const end = begin + text.size();
    const std::from_chars_result parsed = std::from_chars(begin, end, value);
    if (parsed.ec != std::errc() || parsed.ptr != end) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::int64_t> numberBehind(std::string_view text, std::string_view label) {
    const std::size_t place = text.find(label);
    if (place == std::string_view::npos) {
        return std::nullopt;
    }
    text.remove_prefix(place + label.size());
    return number(text.substr(0, text.find_first_of(", )")));
}

std::optional<std::int64_t> numberAfter(std::string_view text, std::string_view beginning) {
    if (!text.starts_with(beginning)) {
        return std::nullopt;
    }
    return numberBehind(text, beginning);
}

bool isEntryOf(const TraceRecord& record, std::string_view function) {
    return record.kind == TraceRecord::Kind::Enter && record.function == function;
}

std::optional<std::string> missingRow(const TraceRecord& record) {
    // A raw trace, whose code follows the text.
    const std::optional<std::string> modulation =
        rest(record.text, "getPower, unknown modulation type: ");
    if (record.kind != TraceRecord::Kind::Raw || !modulation) {
        return std::nullopt;
    }
    return modulation->substr(0, modulation->find(' '));
}

} // namespace TraceText
