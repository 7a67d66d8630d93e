#include "DocumentPlaces.h"

#include "JsonReader.h"

#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <system_error>

namespace {

bool isBlank(char letter) {
    return letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n';
}

} // namespace

/// Walks through the text once. What is not as it should be ends the walk: `false` all the way up.
class DocumentPlaces::Scanner {
public:
    explicit Scanner(std::string_view text)
        : m_text(text) {}

    bool scanValue(Value& value, std::size_t depth = 0);

private:
    bool scanObject(Value& object, std::size_t depth);
    bool scanList(Value& list, std::size_t depth);
    std::optional<std::string> scanString();
    void scanWord();

    void skipBlanks();
    void skipTo(std::string_view end);

    bool skipIf(char letter) {
        if (m_at < m_text.size() && m_text[m_at] == letter) {
            ++m_at;
            return true;
        }
        return false;
    }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_valueCount = 0;
};

bool DocumentPlaces::Scanner::scanValue(Value& value, std::size_t depth) {
    skipBlanks();
    value.offset = m_at;
    if (m_at == m_text.size() || depth > JsonReader::maxDepth ||
        ++m_valueCount > JsonReader::maxValues) {
        return false;
    }
    switch (m_text[m_at]) {
    case '{':
        return scanObject(value, depth);
    case '[':
        return scanList(value, depth);
    case '"':
        return scanString().has_value();
    default:
        scanWord();
        return true;
    }
}

bool DocumentPlaces::Scanner::scanObject(Value& object, std::size_t depth) {
    std::set<std::string> keys;
    ++m_at;
    skipBlanks();
    while (!skipIf('}')) {
        Value& member = object.children.emplace_back();
        member.offset = m_at;
        const std::optional<std::string> key = scanString();
        if (!key) {
            object.children.pop_back();
            return false;
        }
        member.key = *key;
        skipBlanks();
        if (!keys.insert(*key).second || !skipIf(':')) {
            return false;
        }
        const std::size_t offset = member.offset;
        const bool isWhole = scanValue(member, depth + 1);
        member.offset = offset;
        if (!isWhole) {
            return false;
        }
        skipBlanks();
        if (skipIf(',')) {
            skipBlanks();
        } else if (m_at == m_text.size() || m_text[m_at] != '}') {
            return false;
        }
    }
    return true;
}

bool DocumentPlaces::Scanner::scanList(Value& list, std::size_t depth) {
    list.isList = true;
    ++m_at;
    skipBlanks();
    while (!skipIf(']')) {
        if (!scanValue(list.children.emplace_back(), depth + 1)) {
            return false;
        }
        skipBlanks();
        if (skipIf(',')) {
            skipBlanks();
        } else if (m_at == m_text.size() || m_text[m_at] != ']') {
            return false;
        }
    }
    return true;
}

/// A string without its quotation marks; nothing if none stands here.
std::optional<std::string> DocumentPlaces::Scanner::scanString() {
    const std::size_t start = m_at;
    if (!skipIf('"')) {
        return std::nullopt;
    }
    bool isEscaped = false;
    while (m_at < m_text.size() && m_text[m_at] != '"') {
        isEscaped = isEscaped || m_text[m_at] == '\\';
        m_at += m_text[m_at] == '\\' ? 2U : 1U;
    }
    if (m_at >= m_text.size()) {
        m_at = m_text.size();
        return std::nullopt;
    }
    ++m_at;
    const std::string_view token = m_text.substr(start, m_at - start);
    if (!isEscaped) {
        return std::string(token.substr(1, token.size() - 2));
    }
    const auto text = nlohmann::json::parse(token.begin(), token.end(), nullptr, false);
    return text.is_string() ? std::optional(text.get<std::string>()) : std::nullopt;
}

/// A number, true, false, null or something that only looks like one.
void DocumentPlaces::Scanner::scanWord() {
    const std::size_t end = m_text.find_first_of(",]}/ \t\r\n", m_at);
    m_at = end == std::string_view::npos ? m_text.size() : end;
}

void DocumentPlaces::Scanner::skipBlanks() {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (m_at == 0 && m_text.substr(0, byteOrderMark.size()) == byteOrderMark) {
        m_at = byteOrderMark.size();
    }
    while (m_at < m_text.size()) {
        const std::string_view rest = m_text.substr(m_at);
        if (rest.substr(0, 2) == "//") {
            skipTo("\n");
        } else if (rest.substr(0, 2) == "/*") {
            m_at += 2; // "/*/" does not end the comment that it begins
            skipTo("*/");
        } else if (isBlank(rest.front())) {
            ++m_at;
        } else {
            return;
        }
    }
}

void DocumentPlaces::Scanner::skipTo(std::string_view end) {
    const std::size_t place = m_text.find(end, m_at);
    m_at = place == std::string_view::npos ? m_text.size() : place + end.size();
}

const DocumentPlaces::Value* DocumentPlaces::Value::child(const std::string& name) const {
    if (isList) {
        std::size_t index = 0;
        const char* const end = name.data() + name.size();
        const std::from_chars_result parsed = std::from_chars(name.data(), end, index);
        return parsed.ec == std::errc() && parsed.ptr == end && index < children.size()
                   ? &children[index]
                   : nullptr;
    }
    const auto found = std::find_if(children.rbegin(), children.rend(),
                                    [&name](const Value& value) { return value.key == name; });
    return found == children.rend() ? nullptr : &*found;
}

DocumentPlaces::DocumentPlaces(std::string_view text)
    : m_text(text) {
    Scanner(text).scanValue(m_root);
}

TextPlace DocumentPlaces::find(const std::vector<std::string>& path) const {
    const Value* value = &m_root;
    for (const std::string& key : path) {
        const Value* const child = value->child(key);
        if (child == nullptr) {
            break;
        }
        value = child;
    }
    return textPlaceOf(m_text, value->offset);
}
