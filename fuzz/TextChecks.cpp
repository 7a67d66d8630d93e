#include "TextChecks.h"

#include "Find.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <utf8cpp/utf8.h>

namespace {

using nlohmann::json;

/// Whether a message can say where a key stands without escaping or shortening it.
bool isShownAsItIs(const std::string& place) {
    return place.find("...") == std::string::npos && place.find('\\') == std::string::npos;
}

/// Whether a place names something in the document, or a key that one of its objects misses.
bool isIn(const json& document, const std::string& place) {
    const json::json_pointer pointer(place);
    if (document.contains(pointer)) {
        return true;
    }
    const json::json_pointer container = pointer.parent_pointer();
    return document.contains(container) && document.at(container).is_object();
}

bool isLineAndColumn(const std::string& place, std::string_view text) {
    const std::size_t colon = place.find(':');
    if (colon == std::string::npos || place.find_first_not_of("0123456789") != colon ||
        place.find_first_not_of("0123456789", colon + 1) != std::string::npos) {
        return false;
    }
    const unsigned long line = std::stoul(place.substr(0, colon));
    const unsigned long column = std::stoul(place.substr(colon + 1));
    for (unsigned long before = 1; before < line; ++before) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos) {
            return false;
        }
        text.remove_prefix(end + 1);
    }
    // One further is where the text or the line ends.
    return line >= 1 && column >= 1 && column <= std::min(text.find('\n'), text.size()) + 1;
}

} // namespace

bool TextChecks::isUtf8(std::string_view text) {
    return utf8::is_valid(text.begin(), text.end());
}

bool TextChecks::isOneLine(std::string_view text) {
    if (text.empty() || !isUtf8(text)) {
        return false;
    }
    for (auto at = text.begin(); at != text.end();) {
        const std::uint32_t code = utf8::unchecked::next(at);
        if (code < 0x20 || (code >= 0x7F && code < 0xA0)) {
            return false;
        }
    }
    return true;
}

void TextChecks::checkError(const RadioFileError& error, std::string_view text) {
    expect(isOneLine(error.what()), "the message is not one line");
    expect(!error.problem().empty(), "no problem is named");
    const std::string& place = error.place();
    if (place == "(document)" || isLineAndColumn(place, text)) {
        return;
    }
    expect(!place.empty() && place.front() == '/', "the place is in no known form");
    const json document = json::parse(text.begin(), text.end(), nullptr, false, true);
    if (!document.is_discarded() && isShownAsItIs(place)) {
        expect(isIn(document, place), "the place is not in the document");
    }
}
