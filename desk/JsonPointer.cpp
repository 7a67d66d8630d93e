#include "JsonPointer.h"

#include "Printable.h"

#include <charconv>
#include <nlohmann/json.hpp>
#include <system_error>

namespace {

const nlohmann::json* elementOf(const nlohmann::json& list, const std::string& key) {
    std::size_t index = 0;
    const char* const end = key.data() + key.size();
    const std::from_chars_result parsed = std::from_chars(key.data(), end, index);
    const bool isIndex = parsed.ec == std::errc() && parsed.ptr == end;
    return isIndex && index < list.size() ? &list[index] : nullptr;
}

} // namespace

std::string pointerText(const std::vector<std::string>& path) {
    if (path.empty()) {
        return "(document)";
    }
    std::string text;
    for (const std::string& key : path) {
        text += '/';
        for (const char letter : printable(key)) {
            if (letter == '~') {
                text += "~0";
            } else if (letter == '/') {
                text += "~1";
            } else {
                text += letter;
            }
        }
    }
    return text;
}

const nlohmann::json* valueAt(const nlohmann::json& document,
                              const std::vector<std::string>& path) {
    const nlohmann::json* value = &document;
    for (const std::string& key : path) {
        if (value->is_array()) {
            value = elementOf(*value, key);
        } else {
            const auto member = value->find(key); // in what is no object nothing is found
            value = member == value->end() ? nullptr : &*member;
        }
        if (value == nullptr) {
            return nullptr;
        }
    }
    return value;
}
