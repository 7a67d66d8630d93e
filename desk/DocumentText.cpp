#include "DocumentText.h"

#include "DocumentPlaces.h"
#include "JsonReader.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>

namespace {

/// Finds ends in a text that is known to be JSON with comments.
class Scanner {
public:
    explicit Scanner(std::string_view text)
        : m_text(text) {}

    /// Behind blanks and comments.
    std::size_t behindBlank(std::size_t at) const {
        while (at < m_text.size()) {
            if (m_text.substr(at, 2) == "//") {
                at = std::min(m_text.find('\n', at), m_text.size());
            } else if (m_text.substr(at, 2) == "/*") {
                at = behind("*/", at + 2);
            } else if (std::string_view(" \t\r\n").find(m_text[at]) != std::string_view::npos) {
                ++at;
            } else {
                break;
            }
        }
        return at;
    }

    /// Of a member, where its value begins.
    std::size_t behindKey(std::size_t at) const {
        return behindBlank(behindBlank(behindString(at)) + 1);
    }

    std::size_t behindValue(std::size_t at) const {
        std::size_t depth = 0;
        do {
            at = behindBlank(at);
            if (at >= m_text.size()) {
                break;
            }
            const char first = m_text[at];
            if (first == '"') {
                at = behindString(at);
            } else if (first == '{' || first == '[') {
                ++depth;
                ++at;
            } else if (first == '}' || first == ']') {
                --depth;
                ++at;
            } else if (first == ',' || first == ':') {
                ++at;
            } else {
                at = std::min(m_text.find_first_of(" \t\r\n,:]}/", at), m_text.size());
            }
        } while (depth > 0);
        return at;
    }

private:
    std::size_t behind(std::string_view end, std::size_t at) const {
        const std::size_t found = m_text.find(end, at);
        return found == std::string_view::npos ? m_text.size() : found + end.size();
    }

    std::size_t behindString(std::size_t at) const {
        for (++at; at < m_text.size() && m_text[at] != '"'; ++at) {
            at += m_text[at] == '\\' ? 1U : 0U;
        }
        return std::min(at + 1, m_text.size());
    }

    std::string_view m_text;
};

std::string replaced(std::string_view text, std::size_t begin, std::size_t end,
                     const std::string& by) {
    return std::string(text.substr(0, begin)) + by + std::string(text.substr(end));
}

} // namespace

std::string DocumentText::withValue(std::string_view text, const std::vector<std::string>& path,
                                    const std::string& json) {
    DocumentPlaces places = JsonReader::placesIn(text);
    const Scanner scanner(text);
    const auto begin = [&](const DocumentPlaces::Value& value, bool isMember) {
        return isMember ? scanner.behindKey(value.offset) : scanner.behindBlank(value.offset);
    };
    const DocumentPlaces::Value* parent = &places.root();
    std::size_t at = begin(*parent, false);
    for (std::size_t depth = 0; depth < path.size(); ++depth) {
        const DocumentPlaces::Value* const child = parent->child(path[depth]);
        if (child != nullptr) {
            if (json == "null" && depth + 1 == path.size()) {
                const std::size_t first = scanner.behindBlank(child->offset);
                const std::size_t end = scanner.behindValue(begin(*child, !parent->isList));
                const std::size_t next = scanner.behindBlank(end);
                if (next < text.size() && text[next] == ',') {
                    return replaced(text, first, scanner.behindBlank(next + 1), "");
                }
                const bool isOnly = child == &parent->children.front();
                const auto* const before = isOnly ? child : child - 1;
                return replaced(
                    text, isOnly ? first : scanner.behindValue(begin(*before, !parent->isList)),
                    end, "");
            }
            at = begin(*child, !parent->isList);
            parent = child;
            continue;
        }
        const bool isObject = at < text.size() && text[at] == '{';
        if (depth + 1 < path.size() || json == "null" || (!isObject && !parent->isList)) {
            return std::string(text);
        }
        if (isObject) {
            const std::string member = nlohmann::json(path[depth]).dump() + ": " + json;
            return replaced(text, at + 1, at + 1, member + (parent->children.empty() ? "" : ", "));
        }
        if (path[depth] != "-" && path[depth] != std::to_string(parent->children.size())) {
            return std::string(text);
        }
        if (parent->children.empty()) {
            return replaced(text, at + 1, at + 1, json);
        }
        const std::size_t end = scanner.behindValue(begin(parent->children.back(), false));
        return replaced(text, end, end, ", " + json);
    }
    return replaced(text, at, scanner.behindValue(at), json);
}
