#pragma once

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <string>

/// The JSON document of a file, which may have comments.
inline nlohmann::json documentAt(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return nlohmann::json::parse(file, nullptr, true, true);
}

/// Sets the value at a pointer; null takes the key of an object away.
inline void change(nlohmann::json& document, const std::string& pointer,
                   const nlohmann::json& value) {
    const nlohmann::json::json_pointer place(pointer);
    if (value.is_null() && document.at(place.parent_pointer()).is_object()) {
        document[place.parent_pointer()].erase(place.back());
    } else {
        document[place] = value;
    }
}

/// A document with the value at each of some pointers changed.
inline nlohmann::json changed(nlohmann::json document, const nlohmann::json& changes) {
    for (const auto& [pointer, value] : changes.items()) {
        change(document, pointer, value);
    }
    return document;
}
