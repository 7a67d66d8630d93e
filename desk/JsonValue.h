#pragma once

#include "RadioFileError.h"
#include "TextForms.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A patch, and where it stands: its keys are the places to show for what is wrong in the document
/// that it makes.
struct PatchPlace {
    const nlohmann::json* patch;
    std::vector<std::string> path;
};

/// A value of a document that is being read, and the way to it from the document's root. Every
/// operation that finds something wrong throws a RadioFileError which says where.
///
/// A value refers to the one that holds it, which must outlive it.
class JsonValue {
public:
    /// A document as a whole.
    /// @param patch the patch that made the document, null for none.
    explicit JsonValue(const nlohmann::json& document, const PatchPlace* patch = nullptr);

    /// A value that has been taken out of its container, as if it still stood there.
    JsonValue(const nlohmann::json& value, const JsonValue& container, std::string_view key);

    const nlohmann::json& json() const { return *m_value; }

    [[noreturn]] void fail(const std::string& problem,
                           const std::string& remedy = std::string()) const;

    /// Fails with "expected WHAT, found THIS".
    [[noreturn]] void failType(std::string_view expected) const;

    std::vector<std::string> path() const;

    bool isObject() const;
    bool isList() const;
    bool isString() const;

    /// Makes sure that this is an object, that it holds the required keys, and no others than those
    /// and the optional ones.
    void expectKeys(const std::vector<std::string_view>& required,
                    const std::vector<std::string_view>& optional = {}) const;

    void expectObject() const;
    void expectList(std::string_view what = "a list") const;

    bool has(std::string_view key) const;

    /// A member of an object; fails if it is missing.
    JsonValue member(std::string_view key) const&;
    JsonValue member(std::string_view key) const&& = delete;

    std::size_t size() const;

    JsonValue element(std::size_t index) const&;
    JsonValue element(std::size_t index) const&& = delete;

    /// An integer between two limits.
    /// @param what what is expected, in words.
    std::int64_t integer(std::int64_t lowest, std::int64_t highest,
                         std::string_view what = "an integer") const;

    /// An integer that fits a type of at most 32 bits.
    template <class Integer>
    Integer integer(std::string_view what = "an integer") const {
        return static_cast<Integer>(integer(std::numeric_limits<Integer>::min(),
                                            std::numeric_limits<Integer>::max(), what));
    }

    bool flag() const;
    const std::string& string() const;

    /// A value of an enumeration: its text, or its number, which is taken as it stands.
    /// @param orElse what else could stand here, in words.
    template <class Enumeration>
    Enumeration enumeration(const TextForms<Enumeration>& forms,
                            const std::string& orElse = std::string()) const {
        if (!isString()) {
            return Enumeration{
                integer<std::int32_t>("a text or an integer (" + forms.noun() + ")" + orElse)};
        }
        if (const std::optional<Enumeration> found = forms.find(string())) {
            return *found;
        }
        failWord(forms.noun(), string(), forms.texts());
    }

    /// Fails with "unknown NOUN "WORD"" and the nearest known word.
    [[noreturn]] void failWord(const std::string& noun, std::string_view word,
                               const std::vector<std::string>& known) const;

private:
    const nlohmann::json* m_value;
    const JsonValue* m_container = nullptr;
    const PatchPlace* m_patch = nullptr;
    std::string_view m_key;  ///< in an object
    std::size_t m_index = 0; ///< in a list
};
