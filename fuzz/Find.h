#pragma once

#include <string>

/// Ends the process as a crash does, which the fuzzer keeps the input of.
/// @param what is wrong, and what there was to expect.
[[noreturn]] void reportFind(const std::string& what);

/// Reports a find unless a condition holds.
inline void expect(bool condition, const char* what) {
    if (!condition) {
        reportFind(what);
    }
}
