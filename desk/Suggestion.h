#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Helps whoever mistyped a word.
namespace Suggestion {

/// How many letters must be inserted, dropped, replaced or swapped with their neighbour to make one
/// word of the other; upper and lower case are alike.
std::size_t lettersApart(std::string_view left, std::string_view right);

/// The known word that a mistyped one most likely stands for: equal but for upper and lower case,
/// or the fewest letters away (inserted, dropped, replaced or swapped; at most a third of the
/// longer word, and never all of it), or one of which it is the beginning. Of equally near words
/// the first.
std::optional<std::string> nearest(std::string_view word, const std::vector<std::string>& known);

/// Says what to do about an unknown word: `did you mean "min"?`, or when nothing is near
/// `known: "min", "max"`.
std::string remedy(std::string_view word, const std::vector<std::string>& known);

} // namespace Suggestion
