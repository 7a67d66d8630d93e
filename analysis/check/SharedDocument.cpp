#include "SharedDocument.h"

#include "JsonPointer.h"

#include <algorithm>
#include <utility>

using nlohmann::json;

SharedDocument::SharedDocument(json document) {
    for (auto& [key, value] : document.get_ref<json::object_t&>()) {
        m_members[key] = std::make_shared<const json>(std::move(value));
    }
}

SharedDocument SharedDocument::patched(const json& patch) const {
    SharedDocument result = *this;
    for (const auto& [key, change] : patch.items()) {
        if (change.is_null()) {
            result.m_members.erase(key);
            continue;
        }
        const auto before = m_members.find(key);
        json member = before == m_members.end() ? json() : *before->second;
        member.merge_patch(change);
        result.m_members[key] = std::make_shared<const json>(std::move(member));
    }
    return result;
}

const json* SharedDocument::at(const std::vector<std::string>& path) const {
    const auto member = path.empty() ? m_members.end() : m_members.find(path.front());
    return member == m_members.end() ? nullptr
                                     : valueAt(*member->second, {path.begin() + 1, path.end()});
}

bool SharedDocument::operator==(const SharedDocument& other) const {
    return std::equal(m_members.begin(), m_members.end(), other.m_members.begin(),
                      other.m_members.end(), [](const auto& left, const auto& right) {
                          return left.first == right.first &&
                                 (left.second == right.second || *left.second == *right.second);
                      });
}
