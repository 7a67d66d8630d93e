#pragma once

#include "RadioFile.h"

#include <nlohmann/json.hpp>
#include <string_view>

/// What the tool's commands make of the text of a radio file, held against what they promise.
/// Whatever does not keep it is a find.
namespace ToolForms {

/// `check`: its verdict on the form is the reader's, its findings have places in the text, and its
/// report can be written in every form.
/// @param isRadioFile whether the reader accepted the text.
void check(std::string_view text, bool isRadioFile);

/// `explain` and `plot`, for the frame formats that Comparison::tables() asks for: every
/// explanation adds up to the power that the table shows, and both can be written in every form.
/// @param document what the file was read from.
void explain(const RadioFile& file, const nlohmann::json& document);

} // namespace ToolForms
