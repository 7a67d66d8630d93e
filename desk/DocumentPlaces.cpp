#include "DocumentPlaces.h"

#include "Utf8.h"

#include <algorithm>
#include <charconv>
#include <system_error>

TextPlace textPlaceOf(std::string_view text, std::size_t index) {
    const std::size_t start = utf8::starts_with_bom(text.begin(), text.end()) ? 3 : 0;
    TextPlace place;
    for (const char byte : text.substr(start, index > start ? index - start : 0)) {
        if (byte == '\n') {
            ++place.line;
            place.column = 1;
        } else if (Utf8::beginsCharacter(byte)) {
            ++place.column;
        }
    }
    return place;
}

std::string placeText(const TextPlace& place) {
    return std::to_string(place.line) + ":" + std::to_string(place.column);
}

std::size_t indexIn(const std::string& key, std::size_t size) {
    std::size_t index = 0;
    const char* const end = key.data() + key.size();
    const std::from_chars_result parsed = std::from_chars(key.data(), end, index);
    return parsed.ec == std::errc() && parsed.ptr == end ? std::min(index, size) : size;
}

const DocumentPlaces::Value* DocumentPlaces::Value::child(const std::string& name) const {
    if (isList) {
        const std::size_t index = indexIn(name, children.size());
        return index == children.size() ? nullptr : &children[index];
    }
    const auto found = std::find_if(children.rbegin(), children.rend(),
                                    [&name](const Value& value) { return value.key == name; });
    return found == children.rend() ? nullptr : &*found;
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
