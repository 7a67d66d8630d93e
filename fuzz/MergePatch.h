#pragma once

#include <nlohmann/json.hpp>

/// The JSON Merge Patch (RFC 7396) that turns one document into another. The new document holds no
/// null, which such a patch cannot say.
nlohmann::json mergePatchBetween(const nlohmann::json& before, const nlohmann::json& after);
