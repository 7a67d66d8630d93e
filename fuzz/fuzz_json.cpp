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
        m_isWithinLimits = m_isWithinLimits && m_values <= mostValues && text.size() <= mostBytes &&
                           // The library takes one for the end of the text.
                           text.find('\0') == std::string::npos;
    }

    bool isAccepted() const { return m_isWithinLimits && !m_document.is_discarded(); }

    const json& document() const { return m_document; }

private:
    void note(std::size_t depth, json::parse_event_t event, const json& parsed) {
        switch (event) {
        case json::parse_event_t::object_start:
        case json::parse_event_t::array_start:
            ++m_values;
            m_isWithinLimits = m_isWithinLimits && depth < JsonReader::maxDepth;
            m_keys.resize(std::max(m_keys.size(), depth + 2));
            m_keys[depth + 1].clear();
            break;
        case json::parse_event_t::key:
            m_isWithinLimits =
                m_keys.at(depth).insert(parsed.get<std::string>()).second && m_isWithinLimits;
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
    bool m_isWithinLimits = true;
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

/// Requires that a value, or its key, begins where the reader says. Blanks and comments do not
/// count as a beginning.
void checkPlace(const DocumentPlaces::Value& place, const json& expected, const std::string& text) {
    expect(place.offset < text.size(), "a place behind the end of the text");
    const char first = text[place.offset];
    expect(std::string_view(" \t\r\n/").find(first) == std::string_view::npos,
           "a place at a blank or a comment");
    expect(firstValueAt(text, place.offset) == expected, "another value at its place");
}

void checkPlaces(const DocumentPlaces::Value& place, const json& value, const std::string& text) {
    expect(place.children.size() == (value.is_structured() ? value.size() : 0),
           "another number of places than of values");
    std::size_t index = 0;
    for (const DocumentPlaces::Value& child : place.children) {
        if (value.is_object()) {
            expect(value.contains(child.key), "a place of a key that is not there");
            checkPlace(child, child.key, text);
            checkPlaces(child, value.at(child.key), text);
        } else {
            checkPlace(child, value.at(index), text);
            checkPlaces(child, value.at(index), text);
        }
        ++index;
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
    }
    expect(document.has_value() == right.isAccepted(),
           document ? "accepted what the JSON library or a limit refuses"
                    : "refused what the JSON library accepts within the limits");
    if (document) {
        expect(isSame(*document, right.document()), "another value than the JSON library's");
        if (text.size() < 300) {
            // Every value is parsed once more for each value around it.
            checkPlace(places.root(), right.document(), text);
            checkPlaces(places.root(), right.document(), text);
        }
    }
    return 0;
}
