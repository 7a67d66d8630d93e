#pragma once

#include <cstddef>

/// The heap of the whole program, which fails on demand: it stands in front of operator new. One
/// thread at a time.
namespace FailingHeap {

/// Makes one allocation fail with std::bad_alloc, and all others succeed.
/// @param nth which one, counted from now: 1 is the next. 0 calls an outstanding failure off.
void failAt(std::size_t nth);

/// Makes every allocation of at least so many bytes fail; 0 calls that off.
void failFrom(std::size_t bytes);

/// Whether the failure asked for last has come.
bool hasFailed();

/// Allocations since the last failAt().
std::size_t taken();

/// Blocks that are taken and not given back.
std::size_t live();

} // namespace FailingHeap
