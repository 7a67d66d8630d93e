#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

/// The JSON Pointer of a value as an error message shows it: "/requests/0/cutback". "~" and "/"
/// inside a key are escaped as "~0" and "~1"; the document as a whole, which has no key, is
/// "(document)".
std::string pointerText(const std::vector<std::string>& path);

/// The value at a path of keys and indexes; null if the document holds none.
const nlohmann::json* valueAt(const nlohmann::json& document, const std::vector<std::string>& path);
