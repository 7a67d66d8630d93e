#pragma once

#include "FailingHeap.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <new>

// Trying something with each of its allocations failing in turn.

/// How something went while an allocation was to fail.
struct Course {
    bool isReached; ///< the allocation was asked for, and failed
    bool hasEnded;  ///< without a std::bad_alloc
};

/// Does something while an allocation fails. What it needs itself must be there before.
/// @param nth which one, counted from 1; 0: none.
template <class Action>
Course whileFailing(std::size_t nth, Action action) {
    FailingHeap::failAt(nth);
    Course course = {false, true};
    try {
        action();
    } catch (const std::bad_alloc&) {
        course.hasEnded = false;
    }
    course.isReached = FailingHeap::hasFailed();
    FailingHeap::failAt(0);
    EXPECT_TRUE(course.hasEnded || course.isReached) << "a std::bad_alloc out of nothing";
    return course;
}

/// Tries something once with each of its allocations failing.
/// @param attempt is told which allocation fails, has it fail, and says whether it came to that.
/// @param stride 1: each; 2: every second one; and so on.
/// @return how many failed.
template <class Attempt>
std::size_t withEachAllocationFailing(Attempt attempt, std::size_t stride = 1) {
    std::size_t failures = 0;
    while (attempt(1 + failures * stride)) {
        ++failures;
    }
    return failures;
}
