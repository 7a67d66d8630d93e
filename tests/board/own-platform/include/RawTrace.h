#pragma once

#include "TraceRecords.h"

#include <stdint.h>

extern "C" {

extern int SPC_trace;
int CPexTraceHandler_DmLevel2VtLevel(uint32_t code);
void VT_beginImpl(const int* trace, int level, const TraceHeader* header);
void VT_rawprintf(const char* format, ...);
void VT_endImpl(void);
}
