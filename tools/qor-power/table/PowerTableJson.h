#pragma once

#include "PowerTable.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

/// The order in which keys are added is the order in which they are printed.
using Json = nlohmann::ordered_json;

/// A whole table, with its rows.
Json jsonOf(const PowerTable& table);

/// A row of a table.
Json jsonOf(const PowerTable::Row& row);

/// A booster; null if there is none.
Json jsonOf(const std::optional<OperatingInputs::Booster>& booster);

template <class Value>
Json orNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json(nullptr);
}

/// A text; null if it is empty.
Json textOrNull(const std::string& text);

/// A document as it is printed, with a line end. Bytes that are no UTF-8, for example of a path on
/// the command line, are replaced.
std::string printed(const Json& document);
