#include "Export.h"

#include <cstddef>
#include <string>

namespace {

/// Not known to the compiler, which would put the text into the file.
volatile std::size_t s_length = 100;

} // namespace

/// Taken from the heap when this library is loaded.
QOR_EXPORT extern const std::string greedyText;
const std::string greedyText(s_length, 'x');
