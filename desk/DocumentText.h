#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Changes single values in the text of a JSON document and leaves everything else as its author
/// wrote it, blanks and comments included.
namespace DocumentText {

/// The text with another value at a path of keys and indexes. A key that its object lacks is added
/// at the object's beginning; one index behind the end of a list, or "-", adds an element. Where
/// the object or the list itself is missing, nothing changes.
/// @param text of a document that can be read; of another one the text itself comes back.
/// @param json the value, as JSON; null takes away what stands there.
std::string withValue(std::string_view text, const std::vector<std::string>& path,
                      const std::string& json);

} // namespace DocumentText
