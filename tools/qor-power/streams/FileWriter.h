#pragma once

#include <string>
#include <string_view>

/// What becomes of a file that is there already.
enum class IfThere {
    Replace,
    Refuse
};

/// @param error number of the system's.
/// @throw AnalysisError OtherTrouble that says why the file cannot be written.
[[noreturn]] void failToWrite(const std::string& path, int error);

/// Writes a file in one go: first beside its place, then moved there, so that a failure leaves what
/// was there before, and no reader sees half of it. What is no plain file (a device, a pipe) is
/// written to directly.
/// @throw AnalysisError OtherTrouble if it cannot be written.
void writeFile(const std::string& path, std::string_view text, IfThere ifThere = IfThere::Replace);
