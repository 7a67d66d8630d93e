#pragma once

#include "PowerTable.h"

#include <string>

/// A table for people: the heading, a blank line, aligned columns.
std::string textForm(const PowerTable& table);

/// A table for spreadsheets: one line of column names, then one line for each row. Fields are
/// quoted as RFC 4180 says; lines end as everywhere on the system, with a line feed.
std::string csvForm(const PowerTable& table);

/// A table for programs: one JSON object and a line end. Keys stay as they are; new ones may come.
std::string jsonForm(const PowerTable& table);
