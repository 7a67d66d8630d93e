#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// A place in a text as editors count it: lines and columns from 1, a column being a character of
/// UTF-8. A byte order mark at the start takes no column.
struct TextPlace {
    std::size_t line = 1;
    std::size_t column = 1;
};

/// The place of the byte at an index.
TextPlace textPlaceOf(std::string_view text, std::size_t index);

/// "LINE:COLUMN".
std::string placeText(const TextPlace& place);

/// The index that a key of a path means in a list; the size for none.
std::size_t indexIn(const std::string& key, std::size_t size);

/// Where the values of a JSON document stand in its text. JsonReader fills it; of a text that it
/// refuses, with what stands before the break.
class DocumentPlaces {
public:
    struct Value {
        std::size_t offset = 0; ///< of the key, if it has one
        std::string key;        ///< in an object
        bool isList = false;
        std::vector<Value> children;

        const Value* child(const std::string& name) const;
    };

    /// @param text must outlive this object.
    explicit DocumentPlaces(std::string_view text)
        : m_text(text) {}

    /// The document as a whole; for the reader.
    Value& root() { return m_root; }

    /// The place of the value at a path of keys and indexes; of a member of an object, the place of
    /// its key. What the document does not hold is found where the innermost value stands that it
    /// does hold. Of two equal keys, which no good document has, the second is found.
    TextPlace find(const std::vector<std::string>& path) const;

private:
    std::string_view m_text;
    Value m_root;
};
