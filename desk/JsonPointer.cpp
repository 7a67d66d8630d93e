#include "JsonPointer.h"

#include "DocumentPlaces.h"
#include "Printable.h"

#include <nlohmann/json.hpp>

std::string pointerText(const std::vector<std::string>& path) {
    if (path.empty()) {
        return "(document)";
    }
    std::string text;
    for (const std::string& key : path) {
        const std::string shown = printable(key);
        const bool isEscaped =
            shown.find('~') != std::string::npos || shown.find('/') != std::string::npos;
        if (!isEscaped) {
            text.append(1, '/').append(shown);
        } else {
            text += (nlohmann::json::json_pointer() / shown).to_string();
        }
    }
    return text;
}

const nlohmann::json* valueAt(const nlohmann::json& document,
                              const std::vector<std::string>& path) {
    const nlohmann::json* value = &document;
    for (const std::string& key : path) {
        if (value->is_array()) {
            const std::size_t index = indexIn(key, value->size());
            value = index == value->size() ? nullptr : &(*value)[index];
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
