#include "JsonReader.h"

#include "Printable.h"
#include "RadioFileError.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using nlohmann::json;

/// What the parser found wrong, without its own account of the place and of what it read last.
std::string problemOf(const std::string& message) {
    const std::string beforeProblem = "syntax error ";
    const std::size_t start = message.find(beforeProblem);
    const std::size_t end = message.find("; last read: '");
    return start == std::string::npos ? message : message.substr(start, end - start);
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

/// Builds the document from the parser's events and refuses what the parser lets through.
class DocumentBuilder : public nlohmann::json_sax<json> {
public:
    DocumentBuilder(std::string_view text, std::size_t maxValueCount)
        : m_text(text)
        , m_maxValueCount(maxValueCount) {}

    json takeDocument() { return std::move(m_document); }

    bool null() override {
        add(nullptr);
        return true;
    }

    bool boolean(bool value) override {
        add(value);
        return true;
    }

    bool number_integer(std::int64_t value) override {
        add(value);
        return true;
    }

    bool number_unsigned(std::uint64_t value) override {
        add(value);
        return true;
    }

    bool number_float(double, const std::string& asWritten) override {
        const bool isInteger = asWritten.find_first_of(".eE") == std::string::npos;
        add(json::binary({asWritten.begin(), asWritten.end()},
                         isInteger ? JsonReader::LargeInteger : JsonReader::Fraction));
        return true;
    }

    bool string(std::string& value) override {
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
            throw RadioFileError(pathOfNext(), "number too large: " + printable(lastToken));
        }
        const std::string problem = problemOf(error.what());
        const std::size_t start = position - std::min(position, lengthOf(problem, lastToken));
        const std::size_t index = std::min(start, m_text.size());
        throw RadioFileError(textPlaceOf(m_text, index), problem);
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
        if (m_open.size() == JsonReader::maxDepth) {
            throw RadioFileError(pathOfNext(), "nested deeper than " +
                                                   std::to_string(JsonReader::maxDepth) +
                                                   " levels");
        }
        countElement();
        m_open.push_back(&add(std::move(container)));
        m_path.emplace_back();
    }

    bool close() {
        m_open.pop_back();
        m_path.pop_back();
        return true;
    }

    std::string_view m_text;
    std::size_t m_maxValueCount;
    json m_document;
    std::size_t m_valueCount = 0;
    std::vector<json*> m_open;       ///< the containers that have not ended, outermost first
    std::vector<std::string> m_path; ///< for each of them the key of its current member
};

} // namespace

json JsonReader::read(std::string_view text, std::size_t maxSize, std::size_t maxValueCount) {
    if (text.size() > maxSize) {
        throw RadioFileError(std::vector<std::string>(),
                             "larger than " + std::to_string(maxSize) + " bytes");
    }
    // The parser takes a NUL for the end and would not look behind it.
    const std::size_t nul = text.find('\0');
    if (nul != std::string_view::npos) {
        throw RadioFileError(textPlaceOf(text, nul), "syntax error: NUL byte");
    }
    constexpr bool isWhole = true;
    constexpr bool ignoreComments = true;
    DocumentBuilder builder(text, maxValueCount);
    json::sax_parse(text.begin(), text.end(), &builder, json::input_format_t::json, isWhole,
                    ignoreComments);
    return builder.takeDocument();
}
