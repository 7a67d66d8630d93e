#include "DocumentPlaces.h"

#include <algorithm>
#include <charconv>
#include <system_error>

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
