#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A change of a document before it is read as a radio file: the value at a JSON Pointer.
class DocumentEdit {
public:
    /// "POINTER=VALUE". VALUE is what would stand in the document, as JSON; a word that is no JSON
    /// is a text, and null takes away what stands there. The key "-" of a list means behind its
    /// end.
    /// @return nothing for what is not of this form.
    static std::optional<DocumentEdit> read(const std::string& text);

    /// @throw RadioFileError for a place that the document does not have, with the nearest one that
    /// it has, and for a broken JSON value. A new key of an object is a place; which keys are known
    /// says the reader. A stored variable can be added only where a service reads it.
    void applyTo(nlohmann::json& document) const;

    /// Likewise in the text, which stays otherwise as it is: see DocumentText.
    std::string madeIn(std::string_view text) const;

private:
    nlohmann::json value() const;
    [[noreturn]] void failAt(const nlohmann::json& parent, std::size_t depth) const;

    std::vector<std::string> m_path;
    std::string m_value;
};
