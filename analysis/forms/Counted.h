#pragma once

#include <cstdint>
#include <string>

/// A number of things: "1 line", "2 lines".
inline std::string counted(std::uint64_t count, const std::string& noun) {
    return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}
