#pragma once

/// A platform that takes nothing from the heap and keeps no text, so that what a program with it
/// uses is the library's.
///
/// It implements what platform/ declares: a broker for a handful of names, traces that are built
/// and dropped, one channel's compensation, a board without carrier aggregation.
namespace BarePlatform {

/// Sets the threshold of every trace there is. Level 0 switches all off, 6 all on.
void setTraceLevel(int level);

/// Trace records that reached the platform since the program started.
unsigned long traceRecords();

} // namespace BarePlatform
