#pragma once

#include <string>
#include <vector>

// The documented statuses.
inline constexpr int done = 0;
inline constexpr int answerIsNo = 1;
inline constexpr int badRadioFile = 2;
inline constexpr int serviceDidNotStart = 3;
inline constexpr int otherTrouble = 4;

/// The tool that tests run as a process. Which build it is of, the environment says: QOR_POWER_TOOL
/// is its path, QOR_POWER_EMULATOR, if set, the words of what runs it, with "|" between them.
namespace DrivenTool {

/// The command line of the tool with these arguments.
std::vector<std::string> commandLine(const std::vector<std::string>& arguments);

/// Whether the tool takes the time and the memory that it takes for users. Sanitizers and
/// emulators, where QOR_POWER_UNMEASURED is set, cost some of their own.
bool isMeasured();

} // namespace DrivenTool
