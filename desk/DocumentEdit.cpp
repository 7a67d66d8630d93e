#include "DocumentEdit.h"

#include "DocumentText.h"
#include "JsonPointer.h"
#include "JsonReader.h"
#include "Node.h"
#include "RadioFileError.h"
#include "Suggestion.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>

namespace {

using nlohmann::json;

/// The keys of "/a/b", in which "~1" is "/" and "~0" is "~".
std::vector<std::string> keysOf(std::string_view pointer) {
    std::vector<std::string> keys;
    for (std::size_t index = 0; index < pointer.size(); ++index) {
        if (pointer[index] == '/') {
            keys.emplace_back();
        } else if (pointer[index] == '~' && index + 1 < pointer.size() &&
                   (pointer[index + 1] == '0' || pointer[index + 1] == '1')) {
            keys.back() += pointer[++index] == '0' ? '~' : '/';
        } else {
            keys.back() += pointer[index];
        }
    }
    return keys;
}

/// Whether a service of the document's channel reads the stored variable.
bool isReadByService(const json& document, const std::string& variable) {
    const json channel = document.value("channel", json());
    const std::string read = Node::calibrationOf(
        channel.is_number_unsigned() ? static_cast<std::uint32_t>(channel.get<std::uint64_t>())
                                     : 1);
    return variable == read || variable == read + "size";
}

std::vector<std::string> childrenOf(const json& value) {
    std::vector<std::string> keys;
    if (value.is_object()) {
        for (const auto& [key, child] : value.items()) {
            keys.push_back(key);
        }
    }
    return keys;
}

} // namespace

std::optional<DocumentEdit> DocumentEdit::read(const std::string& text) {
    const std::size_t sign = text.find('=');
    if (!text.starts_with('/') || sign == std::string::npos) {
        return std::nullopt;
    }
    DocumentEdit edit;
    edit.m_path = keysOf(std::string_view(text).substr(0, sign));
    edit.m_value = text.substr(sign + 1);
    return edit;
}

json DocumentEdit::value() const {
    try {
        return JsonReader::read(m_value, m_value.size());
    } catch (const RadioFileError& error) {
        if (!m_value.empty() &&
            std::string_view("{[\"").find(m_value.front()) != std::string::npos) {
            throw RadioFileError(m_path, error.place() + " of the value: " + error.problem(),
                                 error.remedy());
        }
        return m_value;
    }
}

/// @param depth of the first key that the document does not have.
void DocumentEdit::failAt(const json& parent, std::size_t depth) const {
    const std::vector<std::string> known(m_path.begin(),
                                         m_path.begin() + static_cast<std::ptrdiff_t>(depth));
    std::string remedy;
    if (parent.is_array()) {
        remedy = pointerText(known) + " has " + std::to_string(parent.size()) +
                 " elements, counted from 0; - is behind them";
    } else if (const auto near = Suggestion::nearest(m_path[depth], childrenOf(parent))) {
        std::vector<std::string> path = known;
        path.push_back(*near);
        std::vector<std::string> whole = path;
        whole.insert(whole.end(), m_path.begin() + static_cast<std::ptrdiff_t>(depth) + 1,
                     m_path.end());
        remedy = "did you mean " +
                 pointerText(valueAt(parent, {whole.begin() + static_cast<std::ptrdiff_t>(depth),
                                              whole.end()}) != nullptr
                                 ? whole
                                 : path) +
                 '?';
    } else {
        for (const std::string& key : childrenOf(parent)) {
            std::vector<std::string> path = known;
            path.push_back(key);
            remedy += (remedy.empty() ? "known: " : ", ") + pointerText(path);
        }
    }
    throw RadioFileError(m_path, "the radio file does not have this place", remedy);
}

std::string DocumentEdit::madeIn(std::string_view text) const {
    return DocumentText::withValue(text, m_path, value().dump());
}

void DocumentEdit::applyTo(json& document) const {
    json* parent = &document;
    for (std::size_t depth = 0; depth + 1 < m_path.size(); ++depth) {
        const json* const child = valueAt(*parent, {m_path[depth]});
        if (child == nullptr) {
            failAt(*parent, depth);
        }
        parent =
            const_cast<json*>(child); // NOLINT(cppcoreguidelines-pro-type-const-cast): of *parent
    }
    const std::string& key = m_path.back();
    const std::size_t depth = m_path.size() - 1;
    json value = this->value();
    if (parent->is_array()) {
        const std::size_t index = indexIn(key, parent->size());
        if (key == "-" && !value.is_null()) {
            parent->push_back(std::move(value));
        } else if (index == parent->size()) {
            failAt(*parent, depth);
        } else if (value.is_null()) {
            parent->erase(index);
        } else {
            (*parent)[index] = std::move(value);
        }
        return;
    }
    const bool isVariable = m_path.front() == "variables" && depth == 1;
    const bool mayBeNew = !value.is_null() && (!isVariable || isReadByService(document, key));
    if (!parent->is_object() || (!parent->contains(key) && !mayBeNew)) {
        failAt(*parent, depth);
    }
    if (value.is_null()) {
        parent->erase(key);
    } else {
        (*parent)[key] = std::move(value);
    }
}
