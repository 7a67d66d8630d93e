#include "Export.h"

#include <string>

/// Taken from the heap when this library is loaded.
QOR_EXPORT extern const std::string greedyText;
const std::string greedyText(100, 'x');
