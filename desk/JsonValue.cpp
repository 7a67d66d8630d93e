#include "JsonValue.h"

#include "JsonPointer.h"
#include "JsonReader.h"
#include "Printable.h"
#include "Suggestion.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;

const json absent;

std::string numberAsWritten(const json& number) {
    const json::binary_t& bytes = number.get_binary();
    return printable(std::string(bytes.begin(), bytes.end()));
}

/// A value in a few words.
std::string described(const json& value) {
    if (value.is_structured()) {
        return value.is_object() ? "an object" : "a list";
    }
    if (value.is_string()) {
        return "\"" + printable(value.get_ref<const std::string&>()) + "\"";
    }
    return value.is_binary() ? numberAsWritten(value) : value.dump();
}

bool isLargeInteger(const json& value) {
    return value.is_binary() && value.get_binary().subtype() == JsonReader::LargeInteger;
}

} // namespace

JsonValue::JsonValue(const nlohmann::json& document, const PatchPlace* patch)
    : m_value(&document)
    , m_patch(patch) {}

JsonValue::JsonValue(const nlohmann::json& value, const JsonValue& container, std::string_view key)
    : m_value(&value)
    , m_container(&container)
    , m_patch(container.m_patch)
    , m_key(key) {}

void JsonValue::fail(const std::string& problem, const std::string& remedy) const {
    const std::vector<std::string> here = path();
    if (m_patch == nullptr) {
        throw RadioFileError(here, problem, remedy);
    }
    std::vector<std::string> place = m_patch->path;
    if (valueAt(*m_patch->patch, here) != nullptr) {
        place.insert(place.end(), here.begin(), here.end());
        throw RadioFileError(place, problem, remedy);
    }
    throw RadioFileError(place, "in the patched file, " + pointerText(here) + ": " + problem,
                         remedy);
}

void JsonValue::failType(std::string_view expected) const {
    fail("expected " + std::string(expected) + ", found " + described(*m_value));
}

std::vector<std::string> JsonValue::path() const {
    std::vector<std::string> keys;
    for (const JsonValue* value = this; value->m_container != nullptr; value = value->m_container) {
        keys.push_back(value->m_container->isList() ? std::to_string(value->m_index)
                                                    : std::string(value->m_key));
    }
    std::ranges::reverse(keys);
    return keys;
}

bool JsonValue::isObject() const {
    return m_value->is_object();
}

bool JsonValue::isList() const {
    return m_value->is_array();
}

bool JsonValue::isString() const {
    return m_value->is_string();
}

void JsonValue::expectKeys(const std::vector<std::string_view>& required,
                           const std::vector<std::string_view>& optional) const {
    expectObject();
    const auto isIn = [](const std::vector<std::string_view>& keys, std::string_view key) {
        return std::ranges::find(keys, key) != keys.end();
    };
    // Not by items(), which makes texts of its own for every step.
    for (const auto& [key, value] : m_value->get_ref<const json::object_t&>()) {
        if (!isIn(required, key) && !isIn(optional, key)) {
            std::vector<std::string> known(required.begin(), required.end());
            known.insert(known.end(), optional.begin(), optional.end());
            JsonValue(value, *this, key).fail("unknown key", Suggestion::remedy(key, known));
        }
    }
    for (const std::string_view key : required) {
        if (!has(key)) {
            JsonValue(absent, *this, key).fail("required key is missing");
        }
    }
}

void JsonValue::expectObject() const {
    if (!isObject()) {
        failType("an object");
    }
}

void JsonValue::expectList(std::string_view what) const {
    if (!isList()) {
        failType(what);
    }
}

bool JsonValue::has(std::string_view key) const {
    return m_value->contains(key);
}

JsonValue JsonValue::member(std::string_view key) const& {
    return {(*m_value)[key], *this, key};
}

std::size_t JsonValue::size() const {
    return m_value->size();
}

JsonValue JsonValue::element(std::size_t index) const& {
    JsonValue value((*m_value)[index], *this, std::string_view());
    value.m_index = index;
    return value;
}

std::int64_t JsonValue::integer(std::int64_t lowest, std::int64_t highest,
                                std::string_view what) const {
    if (!m_value->is_number_integer() && !isLargeInteger(*m_value)) {
        failType(what);
    }
    // Of the integers only an unsigned one can lie above the signed 64 bits.
    const bool fits64Bits =
        m_value->is_number_integer() &&
        (!m_value->is_number_unsigned() ||
         m_value->get<std::uint64_t>() <= std::uint64_t{std::numeric_limits<std::int64_t>::max()});
    const std::int64_t value = fits64Bits ? m_value->get<std::int64_t>() : 0;
    if (!fits64Bits || value < lowest || value > highest) {
        fail(described(*m_value) + " is out of range",
             "expected " + std::to_string(lowest) + " to " + std::to_string(highest));
    }
    return value;
}

bool JsonValue::flag() const {
    if (!m_value->is_boolean()) {
        failType("true or false");
    }
    return m_value->get<bool>();
}

const std::string& JsonValue::string() const {
    if (!isString()) {
        failType("a string");
    }
    return m_value->get_ref<const std::string&>();
}

void JsonValue::failWord(const std::string& noun, std::string_view word,
                         const std::vector<std::string>& known) const {
    fail("unknown " + noun + " \"" + printable(word) + "\"", Suggestion::remedy(word, known));
}
