#pragma once

#include "Export.h"
#include "TraceHeader.h"

#include <cstdint>

/// @file
/// The platform's raw trace: printf-style records keyed by a result code instead of a level.
///
/// A record is one VT_beginImpl(), any number of VT_rawprintf() and one VT_endImpl(), all on one
/// thread. Nothing filters inside: the caller compares first,
/// `SPC_trace >= CPexTraceHandler_DmLevel2VtLevel(code)`.
extern "C" {

/// Threshold of the raw trace. It is set before threads run, or while none of them traces.
extern QOR_EXPORT int SPC_trace;

/// Trace level that belongs to a code. The desk maps codes of 32768 and more to 1, others to 5.
QOR_EXPORT int CPexTraceHandler_DmLevel2VtLevel(std::uint32_t code);

/// Opens a record.
QOR_EXPORT void VT_beginImpl(const int* trace, int level, const TraceHeader* header);

/// Adds formatted text to the open record.
QOR_EXPORT void VT_rawprintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Closes the record and hands it on.
QOR_EXPORT void VT_endImpl();
}
