#include "JsonReader.h"

#include "Printable.h"
#include "RadioFileError.h"
#include "Utf8.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

namespace {

using nlohmann::json;

/// What the parser found wrong, without its own account of the place and of what it read last.
std::string problemOf(const std::string& message) {
    const std::string beforeProblem = "syntax error ";
    const std::size_t start = message.find(beforeProblem);
    const std::size_t end = message.find("; last read: '");
    if (start == std::string::npos) {
        // Newer releases of the package have words of their own for a text without anything in it.
        return "syntax error while parsing value - unexpected end of input; expected '[', '{', or "
               "a "
               "literal";
    }
    return message.substr(start, end - start);
}

/// How many bytes before the parser's position the problem begins. A token that is sound but does
/// not belong where it stands is shown from its start; what breaks a token, where it breaks.
std::size_t lengthOf(const std::string& problem, const std::string& lastToken) {
    const auto isAbout = [&problem](const char* token) {
        return problem.find(std::string(" - unexpected ") + token + " literal") !=
               std::string::npos;
    };
    // Of the other tokens the parser does not say where the last one began.
    if (isAbout("string") || isAbout("number")) {
        return lastToken.size();
    }
    if (isAbout("false")) {
        return 5;
    }
    return isAbout("true") || isAbout("null") ? 4 : 1;
}

/// What to do about the usual slips; empty for any other.
/// @param index of the byte at which the text is wrong.
std::string remedyFor(const std::string& problem, std::string_view text, std::size_t index) {
    const auto begins = [text](std::size_t place, std::string_view what) {
        return place < text.size() && text.substr(place).starts_with(what);
    };
    // The parser stops within a character, or behind its first byte.
    std::size_t place = std::min(index, text.size());
    while (place > 0 && place < text.size() && !Utf8::beginsCharacter(text[place])) {
        --place;
    }
    for (const std::string_view quote : {"\u201C", "\u201D", "\u201E", "\u201F", "\u2018", "\u2019",
                                         "\u201A", "\u00AB", "\u00BB", "'"}) {
        if (begins(place, quote)) {
            return "texts stand in straight double quotes, \"like this\"";
        }
    }
    if (begins(place, "#")) {
        return "comments begin with // or stand between /* and */";
    }
    const std::size_t comment = text.rfind("/*", place);
    if (comment != std::string_view::npos &&
        problem.find("missing closing '*/'") != std::string::npos) {
        return "the comment that begins in " + placeText(textPlaceOf(text, comment)) +
               " does not end: close it with */";
    }
    if (begins(place, "}") || begins(place, "]")) {
        const std::size_t last = place == 0 ? place : text.find_last_not_of(" \t\r\n", place - 1);
        if (last != std::string_view::npos && text[last] == ',') {
            return "take the comma before it away";
        }
    }
    return {};
}

/// The text as the parser reads it; says how far the parser has come.
class CountingIterator {
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountingIterator(const char* at, std::size_t& count)
        : m_at(at)
        , m_count(&count) {}

    reference operator*() const { return *m_at; }

    CountingIterator& operator++() {
        ++m_at;
        ++*m_count;
        return *this;
    }

    friend bool operator==(const CountingIterator& left, const CountingIterator& right) {
        return left.m_at == right.m_at;
    }

private:
    const char* m_at;
    std::size_t* m_count;
};

/// Where the token begins that the parser has just read.
class TokenStart {
public:
    /// @param end behind the token; of a number perhaps one byte further, which ended it.
    TokenStart(std::string_view text, std::size_t end)
        : m_text(text)
        , m_end(end) {}

    std::size_t ofBracket() const { return m_end - 1; }

    std::size_t ofWord() const {
        constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzE0123456789+-.";
        const std::size_t last = m_text.find_last_of(letters, m_end - 1);
        return m_text.find_last_not_of(letters, last) + 1; // in front of the text is npos
    }

    /// A backslash stands in front of every quotation mark inside a string, and never in front of
    /// one that begins it.
    std::size_t ofString() const {
        std::size_t start = m_end - 1;
        do {
            start = m_text.rfind('"', start - 1);
        } while (start > 0 && m_text[start - 1] == '\\');
        return start;
    }

private:
    std::string_view m_text;
    std::size_t m_end;
};

/// Builds the document from the parser's events and refuses what the parser lets through.
class DocumentBuilder : public nlohmann::json_sax<json> {
public:
    /// @param places may be null.
    DocumentBuilder(std::string_view text, std::size_t maxValueCount, DocumentPlaces* places)
        : m_text(text)
        , m_maxValueCount(maxValueCount)
        , m_places(places) {}

    void read() {
        constexpr bool isWhole = true;
        constexpr bool ignoreComments = true;
        const char* const begin = m_text.data();
        json::sax_parse(CountingIterator(begin, m_readCount),
                        CountingIterator(begin + m_text.size(), m_readCount), this,
                        json::input_format_t::json, isWhole, ignoreComments);
    }

    json takeDocument() { return std::move(m_document); }

    bool null() override { return addWord(nullptr); }

    bool boolean(bool value) override { return addWord(value); }

    bool number_integer(std::int64_t value) override { return addWord(value); }

    bool number_unsigned(std::uint64_t value) override { return addWord(value); }

    bool number_float(double, const std::string& asWritten) override {
        const bool isInteger = asWritten.find_first_of(".eE") == std::string::npos;
        return addWord(json::binary({asWritten.begin(), asWritten.end()},
                                    isInteger ? JsonReader::LargeInteger : JsonReader::Fraction));
    }

    bool string(std::string& value) override {
        placeValue(&TokenStart::ofString);
        add(std::move(value));
        return true;
    }

    bool binary(json::binary_t&) override { return false; } // no text holds one

    bool start_object(std::size_t) override {
        open(json::object());
        return true;
    }

    bool key(std::string& key) override {
        m_path.back() = key;
        if (m_places != nullptr) {
            DocumentPlaces::Value& member = m_openPlaces.back()->children.emplace_back();
            member.offset = tokenStart().ofString();
            member.key = key;
        }
        if (m_open.back()->contains(key)) {
            throw RadioFileError(m_path, "key given twice");
        }
        return true;
    }

    bool end_object() override { return close(); }

    bool start_array(std::size_t) override {
        open(json::array());
        return true;
    }

    bool end_array() override { return close(); }

    bool parse_error(std::size_t position, const std::string& lastToken,
                     const nlohmann::detail::exception& error) override {
        if (dynamic_cast<const nlohmann::detail::out_of_range*>(&error) != nullptr) {
            placeValue(&TokenStart::ofWord);
            throw RadioFileError(pathOfNext(), "number too large: " + printable(lastToken));
        }
        const std::string problem = problemOf(error.what());
        const std::size_t start = position - std::min(position, lengthOf(problem, lastToken));
        const std::size_t index = std::min(start, m_text.size());
        throw RadioFileError(textPlaceOf(m_text, index), problem,
                             remedyFor(problem, m_text, index));
    }

private:
    /// Path of the value that comes next.
    const std::vector<std::string>& pathOfNext() {
        countElement();
        return m_path;
    }

    /// In a list, takes the number of the element that comes next for the path. It is asked for
    /// only where a path can be needed: most elements never are part of one.
    void countElement() {
        if (!m_open.empty() && m_open.back()->is_array()) {
            m_path.back() = std::to_string(m_open.back()->size());
        }
    }

    TokenStart tokenStart() const { return {m_text, m_readCount}; }

    /// Notes where the value that comes next begins; a member of an object stands at its key.
    void placeValue(std::size_t (TokenStart::*start)() const) {
        if (m_places == nullptr) {
            return;
        }
        if (m_openPlaces.empty()) {
            m_places->root().offset = (tokenStart().*start)();
        } else if (m_openPlaces.back()->isList) {
            m_openPlaces.back()->children.emplace_back().offset = (tokenStart().*start)();
        }
    }

    bool addWord(json value) {
        placeValue(&TokenStart::ofWord);
        add(std::move(value));
        return true;
    }

    json& add(json value) {
        if (m_valueCount == m_maxValueCount) {
            throw RadioFileError(pathOfNext(),
                                 "more than " + std::to_string(m_maxValueCount) + " values");
        }
        ++m_valueCount;
        if (m_open.empty()) {
            return m_document = std::move(value);
        }
        json& container = *m_open.back();
        if (container.is_array()) {
            return container.emplace_back(std::move(value));
        }
        return container[m_path.back()] = std::move(value);
    }

    void open(json container) {
        placeValue(&TokenStart::ofBracket);
        if (m_open.size() == JsonReader::maxDepth) {
            throw RadioFileError(pathOfNext(), "nested deeper than " +
                                                   std::to_string(JsonReader::maxDepth) +
                                                   " levels");
        }
        countElement();
        const bool isList = container.is_array();
        m_open.push_back(&add(std::move(container)));
        m_path.emplace_back();
        if (m_places != nullptr) {
            m_openPlaces.push_back(m_openPlaces.empty() ? &m_places->root()
                                                        : &m_openPlaces.back()->children.back());
            m_openPlaces.back()->isList = isList;
        }
    }

    bool close() {
        m_open.pop_back();
        m_path.pop_back();
        if (m_places != nullptr) {
            m_openPlaces.pop_back();
        }
        return true;
    }

    std::string_view m_text;
    std::size_t m_maxValueCount;
    DocumentPlaces* m_places;
    std::size_t m_readCount = 0; ///< bytes that the parser has read
    json m_document;
    std::size_t m_valueCount = 0;
    std::vector<json*> m_open;       ///< the containers that have not ended, outermost first
    std::vector<std::string> m_path; ///< for each of them the key of its current member
    std::vector<DocumentPlaces::Value*> m_openPlaces; ///< likewise; empty if nobody asks for places
};

} // namespace

json JsonReader::read(std::string_view text, std::size_t maxSize, std::size_t maxValueCount,
                      DocumentPlaces* places) {
    if (text.size() > maxSize) {
        throw RadioFileError(std::vector<std::string>(),
                             "larger than " + std::to_string(maxSize) + " bytes");
    }
    // The parser takes a NUL for the end and would not look behind it.
    const std::size_t nul = text.find('\0');
    if (nul != std::string_view::npos) {
        const bool isUtf16 = text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
        throw RadioFileError(textPlaceOf(text, nul), "syntax error: NUL byte",
                             isUtf16 ? "the text is UTF-16: save it as UTF-8" : "");
    }
    DocumentBuilder builder(text, maxValueCount, places);
    builder.read();
    return builder.takeDocument();
}

DocumentPlaces JsonReader::placesIn(std::string_view text) {
    DocumentPlaces places(text);
    try {
        read(text, text.size(), maxValues, &places);
    } catch (const RadioFileError&) {
        return places; // what stands in front of what is wrong has been found
    }
    return places;
}
