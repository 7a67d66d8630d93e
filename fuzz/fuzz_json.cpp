#include "DocumentPlaces.h"
#include "Find.h"
#include "FuzzTarget.h"
#include "JsonReader.h"
#include "RadioFileError.h"
#include "TextChecks.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// The bytes are a text for the reader of JSON. It has to accept what the JSON library accepts
/// within the reader's limits and nothing else, with the same values, each at its place.

namespace {

using nlohmann::json;

/// Low, so that a short text gets there.
constexpr std::size_t mostValues = 150;
constexpr std::size_t mostBytes = 1500;

/// What the JSON library makes of a text, and what of the reader's limits that goes beyond.
class Verdict {
public:
    explicit Verdict(const std::string& text) {
        constexpr bool throws = false;
        constexpr bool ignoreComments = true;
        const auto note = [this](int depth, json::parse_event_t event, json& parsed) {
            this->note(static_cast<std::size_t>(depth), event, parsed);
            return true;
        };
        m_document = json::parse(text, note, throws, ignoreComments);
        m_isTooLong = text.size() > mostBytes;
        // The library takes one for the end of the text.
        m_hasNul = text.find('\0') != std::string::npos;
    }

    bool isAccepted() const {
        return !m_isTooDeep && !m_isKeyTwice && m_values <= mostValues && !m_isTooLong &&
               !m_hasNul && !m_document.is_discarded();
    }

    /// Whether a text is refused for a reason that it gives. Of several it may name any.
    bool isRight(const RadioFileError& error) const {
        const std::string& problem = error.problem();
        if (problem.starts_with("syntax error: NUL")) {
            return m_hasNul;
        }
        if (problem.starts_with("syntax error") || problem.starts_with("number too large")) {
            return m_document.is_discarded() || m_hasNul;
        }
        return (problem == "key given twice" && m_isKeyTwice) ||
               (problem.starts_with("nested deeper") && m_isTooDeep) ||
               (problem.starts_with("more than ") && m_values > mostValues) ||
               (problem.starts_with("larger than ") && m_isTooLong);
    }

    const json& document() const { return m_document; }

private:
    void note(std::size_t depth, json::parse_event_t event, const json& parsed) {
        switch (event) {
        case json::parse_event_t::object_start:
        case json::parse_event_t::array_start:
            ++m_values;
            m_isTooDeep = m_isTooDeep || depth >= JsonReader::maxDepth;
            m_keys.resize(std::max(m_keys.size(), depth + 2));
            m_keys[depth + 1].clear();
            break;
        case json::parse_event_t::key:
            m_isKeyTwice =
                !m_keys.at(depth).insert(parsed.get<std::string>()).second || m_isKeyTwice;
            break;
        case json::parse_event_t::value:
            ++m_values;
            break;
        case json::parse_event_t::object_end:
        case json::parse_event_t::array_end:
            break;
        }
    }

    json m_document;
    bool m_isTooDeep = false;
    bool m_isKeyTwice = false;
    bool m_isTooLong = false;
    bool m_hasNul = false;
    std::size_t m_values = 0;
    std::vector<std::set<std::string>> m_keys; ///< of the open objects, by depth
};

/// Whether the reader's value is the library's. What is no 64-bit integer the reader keeps as it
/// was written.
bool isSame(const json& ours, const json& theirs) {
    if (ours.is_binary()) {
        const auto& bytes = ours.get_binary();
        const std::string written(bytes.begin(), bytes.end());
        const bool isFraction = written.find_first_of(".eE") != std::string::npos;
        return theirs.is_number_float() &&
               std::strtod(written.c_str(), nullptr) == theirs.get<double>() &&
               bytes.subtype() == (isFraction ? JsonReader::Fraction : JsonReader::LargeInteger);
    }
    if (ours.is_structured()) {
        return ours.type() == theirs.type() && ours.size() == theirs.size() &&
               std::ranges::equal(
                   ours.items(), theirs.items(), [](const auto& left, const auto& right) {
                       return left.key() == right.key() && isSame(left.value(), right.value());
                   });
    }
    return ours.type() == theirs.type() && ours == theirs;
}

/// Takes the first value of a text, whatever follows it.
class FirstValue : public nlohmann::detail::json_sax_dom_parser<json> {
public:
    explicit FirstValue(json& value)
        : nlohmann::detail::json_sax_dom_parser<json>(value, false) {}
};

json firstValueAt(const std::string& text, std::size_t offset) {
    json value;
    FirstValue builder(value);
    constexpr bool isWhole = false;
    constexpr bool ignoreComments = true;
    json::sax_parse(text.begin() + static_cast<std::ptrdiff_t>(offset), text.end(), &builder,
                    json::input_format_t::json, isWhole, ignoreComments);
    return value;
}

/// The line and column of a byte, as editors count them.
std::string lineAndColumn(std::string_view text, std::size_t offset) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    text = text.substr(0, offset);
    if (text.starts_with(mark)) {
        text.remove_prefix(mark.size());
    }
    const auto line = 1 + std::ranges::count(text, '\n');
    const std::string_view inLine = text.substr(text.rfind('\n') + 1); // of none, npos is -1
    const auto column = 1 + std::ranges::count_if(inLine, [](char byte) {
                            return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
                        });
    return std::to_string(line) + ":" + std::to_string(column);
}

/// Requires that a value, or its key, begins where the reader says. Blanks and comments do not
/// count as a beginning.
void checkPlace(const DocumentPlaces::Value& place, const json& expected, const std::string& text) {
    expect(place.offset < text.size(), "a place behind the end of the text");
    const char first = text[place.offset];
    expect(std::string_view(" \t\r\n/").find(first) == std::string_view::npos,
           "a place at a blank or a comment");
    expect(firstValueAt(text, place.offset) == expected, "another value at its place");
}

/// Checks the places of a document, one after the other.
class PlacesCheck {
public:
    PlacesCheck(const DocumentPlaces& places, const std::string& text)
        : m_places(places)
        , m_text(text) {}

    void check(const DocumentPlaces::Value& root, const json& document) {
        checkPlace(root, document, m_text);
        checkFound(root);
        checkChildren(root, document);
    }

private:
    void checkFound(const DocumentPlaces::Value& place) {
        expect(placeText(m_places.find(m_path)) == lineAndColumn(m_text, place.offset),
               "a path is found at another line and column");
    }

    void checkChildren(const DocumentPlaces::Value& place, const json& value) {
        expect(place.children.size() == (value.is_structured() ? value.size() : 0),
               "another number of places than of values");
        std::size_t index = 0;
        for (const DocumentPlaces::Value& child : place.children) {
            m_path.push_back(value.is_object() ? child.key : std::to_string(index));
            expect(value.is_array() || value.contains(child.key),
                   "a place of a key that is not there");
            const json& inner = value.is_object() ? value.at(child.key) : value.at(index);
            checkPlace(child, value.is_object() ? json(child.key) : inner, m_text);
            checkFound(child);
            checkChildren(child, inner);
            m_path.pop_back();
            ++index;
        }
    }

    const DocumentPlaces& m_places;
    const std::string& m_text;
    std::vector<std::string> m_path;
};

/// Requires of a text that was refused that the keys read so far stand where they are said to, one
/// behind the other.
void checkKeys(const DocumentPlaces::Value& place, const std::string& text, std::size_t& behind) {
    for (const DocumentPlaces::Value& child : place.children) {
        expect(child.offset >= behind && child.offset < text.size(),
               "a place in front of the one before, or behind the end of the text");
        behind = child.offset + 1;
        if (!place.isList) {
            expect(firstValueAt(text, child.offset) == json(child.key), "another key at its place");
        }
        checkKeys(child, text, behind);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text(bytes, bytes + size);
    const Verdict right(text);
    DocumentPlaces places(text);
    std::optional<json> document;
    try {
        document = JsonReader::read(text, mostBytes, mostValues, &places);
    } catch (const RadioFileError& error) {
        TextChecks::checkError(error, text);
        expect(right.isRight(error), "refused for what the text does not have");
    }
    expect(document.has_value() == right.isAccepted(),
           document ? "accepted what the JSON library or a limit refuses"
                    : "refused what the JSON library accepts within the limits");
    if (!document) {
        std::size_t behind = 0;
        checkKeys(places.root(), text, behind);
    } else {
        expect(isSame(*document, right.document()), "another value than the JSON library's");
        if (text.size() < 300) {
            // Every value is parsed once more for each value around it.
            PlacesCheck(places, text).check(places.root(), right.document());
        }
    }
    return 0;
}
