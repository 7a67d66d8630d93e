#pragma once

#include <cstddef>
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

/// Of how many like runs one is made: each where the tool is measured, one of eleven where a
/// process takes many times as long, unless the environment's QOR_LOOP_STRIDE says otherwise.
std::size_t stride();

/// Those of them that are run.
template <class Run>
std::vector<Run> chosen(const std::vector<Run>& runs) {
    std::vector<Run> found;
    for (std::size_t index = 0; index < runs.size(); index += stride()) {
        found.push_back(runs[index]);
    }
    return found;
}

} // namespace DrivenTool
