#pragma once

#include "BatchResult.h"

#include <string>

/// A result as one JSON object on one line.
std::string batchJsonLine(const BatchResult& result);

/// The names of the columns of batchCsvLine(), as a line.
std::string batchCsvHeader();

/// A result as one line of comma-separated values: a column for each modulation-and-code.
std::string batchCsvLine(const BatchResult& result);
