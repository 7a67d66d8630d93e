#pragma once

#include "DeskTrace.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Takes the library's trace texts apart.
namespace TraceText {

/// What follows a label in a text, up to the next comma or the end; nothing without the label.
std::optional<std::string> valueBehind(std::string_view text, std::string_view label);

/// What follows a beginning; nothing if the text begins otherwise.
std::optional<std::string> rest(std::string_view text, std::string_view beginning);

/// What stands between a label and the closing bracket at the end.
std::optional<std::string> inBrackets(std::string_view text, std::string_view label);

bool contains(std::string_view text, std::string_view part);

/// A whole text that is a decimal integer.
std::optional<std::int64_t> number(std::string_view text);

/// The number behind a label, up to the next comma, blank or bracket, or the end.
std::optional<std::int64_t> numberBehind(std::string_view text, std::string_view label);

/// The number behind a beginning.
std::optional<std::int64_t> numberAfter(std::string_view text, std::string_view beginning);

bool isEntryOf(const TraceRecord& record, std::string_view function);

/// The modulation that the Pmax table has no row for, if a record says so.
std::optional<std::string> missingRow(const TraceRecord& record);

} // namespace TraceText
