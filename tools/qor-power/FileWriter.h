#pragma once

#include <string>
#include <string_view>

/// Writes a file in one go: first beside its place, then moved there, so that a failure leaves what
/// was there before, and no reader sees half of it. What is no plain file (a device, a pipe) is
/// written to directly.
/// @throw ToolError OtherTrouble if it cannot be written.
void writeFile(const std::string& path, std::string_view text);
