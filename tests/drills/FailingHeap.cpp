#include "FailingHeap.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t s_failAt;
std::size_t s_failFrom;
std::size_t s_taken;
std::size_t s_live;
bool s_hasFailed;

} // namespace

namespace FailingHeap {

void failAt(std::size_t nth) {
    s_failAt = nth;
    s_taken = 0;
    s_hasFailed = false;
}

void failFrom(std::size_t bytes) {
    s_failFrom = bytes;
    s_hasFailed = false;
}

bool hasFailed() {
    return s_hasFailed;
}

std::size_t taken() {
    return s_taken;
}

std::size_t live() {
    return s_live;
}

} // namespace FailingHeap

// The other forms of operator new and delete lead to these, but for the one that does not throw: a
// sanitizer brings its own.

void* operator new(std::size_t size) {
    ++s_taken;
    if (s_taken == s_failAt || (s_failFrom != 0 && size >= s_failFrom)) {
        s_hasFailed = true;
        throw std::bad_alloc();
    }
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    ++s_live;
    return block;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* block) noexcept {
    if (block != nullptr) {
        --s_live;
    }
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}
