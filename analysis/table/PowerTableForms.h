#pragma once

#include "PowerTable.h"

#include <string>
#include <utility>
#include <vector>

/// Labels and values, one line each.
using Heading = std::vector<std::pair<std::string, std::string>>;

/// What the powers of a table hold for.
Heading headingOf(const PowerTable& table);

/// A heading with its values below each other.
std::string textOf(const Heading& heading);

/// What the reader of a row must not miss: why there is no power, or what is odd about it.
std::string remarkOf(const PowerTable::Row& row);

/// A table for people: the heading, a blank line, aligned columns.
std::string textForm(const PowerTable& table);

/// A table for spreadsheets: one line of column names, then one line for each row. Fields are
/// quoted as RFC 4180 says; lines end as everywhere on the system, with a line feed.
std::string csvForm(const PowerTable& table);

/// A table for programs: one JSON object and a line end. Keys stay as they are; new ones may come.
std::string jsonForm(const PowerTable& table);
