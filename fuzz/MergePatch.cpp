#include "MergePatch.h"

using nlohmann::json;

json mergePatchBetween(const json& before, const json& after) {
    if (!after.is_object() || !before.is_object()) {
        return after;
    }
    json patch = json::object();
    for (const auto& [key, value] : before.items()) {
        if (!after.contains(key)) {
            patch[key] = nullptr;
        }
    }
    for (const auto& [key, value] : after.items()) {
        if (!before.contains(key)) {
            patch[key] = value;
        } else if (before.at(key) != value) {
            patch[key] = mergePatchBetween(before.at(key), value);
        }
    }
    return patch;
}
