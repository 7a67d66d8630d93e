#pragma once

#include <variant>

/// Answer of an operation that returns a code and writes nothing, also when the code is a success.
struct ResultOnly {
    unsigned result; ///< the code
};

/// Programmed answer of an operation that can fail: what it writes (it then returns 0), or a result
/// code alone.
template <class Value>
using Answer = std::variant<Value, ResultOnly>;
