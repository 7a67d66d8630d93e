#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <memory>
#include <string>
#include <vector>

/// The document of a radio file. States of one radio share the members that no patch has changed.
class SharedDocument {
public:
    /// @param document an object.
    explicit SharedDocument(nlohmann::json document);

    /// The document with a patch, an object too, merged into it.
    SharedDocument patched(const nlohmann::json& patch) const;

    /// The value at a path of one or more keys and indexes; null if there is none.
    const nlohmann::json* at(const std::vector<std::string>& path) const;

    bool operator==(const SharedDocument& other) const;

private:
    std::map<std::string, std::shared_ptr<const nlohmann::json>> m_members;
};
