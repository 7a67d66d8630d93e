#pragma once

#include "Arguments.h"
#include "Inputs.h"

#include <optional>
#include <string>
#include <string_view>

/// Inputs changed in a radio file rather than in the question.
namespace InputEdits {

/// What AskedInputs::set takes to make the radio that Inputs::varied() makes, of an input that a
/// question has no member for: market, DPD version, channel spacing and product number.
/// @param radio as it is asked for, at a request too.
/// @return nothing for other inputs, and where the radio has no place for the value.
std::optional<std::string> settingOf(const RadioCase& radio, const Inputs::Value& value);

/// The text of a radio file with the inputs in it, otherwise as its author wrote it. Cutbacks and
/// booster change in the last request that sets them or, without one, in a new request at the end.
/// Frame format and request are left to whoever asks.
/// @throw QuestionError and RadioFileError as AskedInputs::radio().
std::string withInputs(std::string_view text, const AskedInputs& inputs);

} // namespace InputEdits
