#pragma once

#include "DrivenTool.h"
#include "MeasuredTool.h"
#include "ToolCommand.h"

#include <cstddef>
#include <string>

inline constexpr std::size_t mebibyte = std::size_t{1} << 20;

/// A radio of the first outdoor family without its capability handler; further keys have to follow.
extern const char* const radioStart;

/// A capability handler for that radio, as its last key but without the end of the document.
extern const char* const capabilityHandler;

/// The run stayed within the memory and the time that any file may cost, and left nothing behind.
void expectWithinLimits(const ToolRun& run);

/// The same for a file that asks for much and may take its time.
void expectWithinMemory(const ToolRun& run);

/// The run ended with a status and one clear line that says what was wrong.
void expectComplaint(const ToolRun& run, int status, const std::string& problem);

/// The same, with nothing on standard output and within the limits.
void expectTrouble(const ToolRun& run, int status, const std::string& problem);

/// The reader of standard output has gone away, as `head` does: nothing is said of that.
void expectSilentEnd(const ToolRun& run, int status);

/// The command refused a bad radio file as it documents, and took no more than the limits.
void expectRefusal(const ToolCommand& command, const ToolRun& run, const std::string& problem);

/// The same for a radio file that cannot be read.
void expectUnreadable(const ToolCommand& command, const ToolRun& run, const std::string& problem);

/// The run answered a list of radio files with one line of JSON that says what is wrong.
void expectBadLine(const ToolRun& run, const std::string& problem);
