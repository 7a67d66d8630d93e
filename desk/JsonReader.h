#pragma once

#include "DocumentPlaces.h"

#include <cstddef>
#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string_view>

/// Turns text into a JSON document, more strictly than the JSON library does by itself.
///
/// Comments and a byte order mark are allowed. A syntax error, a NUL byte, anything behind the
/// document, a key given twice in one object, nesting beyond a depth, more values than a number of
/// them and a text beyond a size are refused.
class JsonReader {
public:
    static constexpr std::size_t maxDepth = 64;

    /// A value can take forty times the memory of its text, so the size alone bounds little.
    static constexpr std::size_t maxValues = 150000;

    /// @param maxSize in bytes.
    /// @param places if not null, receives the places of the text's values. Of a text that is
    ///        refused, it holds what has been read and what is wrong.
    /// @throw RadioFileError
    static nlohmann::json read(std::string_view text, std::size_t maxSize,
                               std::size_t maxValueCount = maxValues,
                               DocumentPlaces* places = nullptr);

    /// The places alone, of whatever can be read of a text.
    static DocumentPlaces placesIn(std::string_view text);

    /// A number that is no 64-bit integer is kept as it was written: as a binary value of this
    /// subtype if it is an integer, else of the other.
    enum NumberText : std::uint8_t {
        LargeInteger = 1,
        Fraction = 2
    };
};
