#pragma once

#include "RawTrace.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// A platform that is not the desk's: it shows what the library asks of any platform, call by call.
namespace BoardPlatform {

/// What a trace object was built with.
struct TraceObject {
    std::string channelName;
    int level;
    int headerOption;
};

/// What the store answers for a variable. The size is the store's own idea, not that of the memory
/// behind the address.
struct Variable {
    std::uint32_t status;
    const void* address;               ///< null: the store writes no address
    std::optional<std::uint32_t> size; ///< none: the store writes no size
};

/// Every trace object of the program.
std::vector<TraceObject>& traceObjects();

/// Every call to the trace facility and the store since the last clear(), as text.
std::vector<std::string>& calls();

/// The variables by name. Any other name gives a failure.
std::map<std::string, Variable>& variables();

/// Trace levels of the raw trace: that of the codes of failures and that of all others.
extern int levelOfFailures;
extern int levelOfOthers;

} // namespace BoardPlatform
