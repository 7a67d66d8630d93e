#pragma once

#include "PowerTable.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>

/// The order in which keys are added is the order in which they are printed.
using OrderedJson = nlohmann::ordered_json;

/// A whole table, with its rows.
OrderedJson jsonOf(const PowerTable& table);

/// A row of a table.
OrderedJson jsonOf(const PowerTable::Row& row);

/// A booster; null if there is none.
OrderedJson jsonOf(const std::optional<OperatingInputs::Booster>& booster);

template <class Value>
OrderedJson orNull(const std::optional<Value>& value) {
    return value ? OrderedJson(*value) : OrderedJson(nullptr);
}

/// A text; null if it is empty.
OrderedJson textOrNull(const std::string& text);

/// A document as it is printed, with a line end. Bytes that are no UTF-8, for example of a path on
/// the command line, are replaced.
std::string printed(const OrderedJson& document);
