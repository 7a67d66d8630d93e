#include "AllocationCount.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t s_taken;
int s_elsewhere;

} // namespace

namespace AllocationCount {

std::size_t taken() {
    return s_taken;
}

Elsewhere::Elsewhere() {
    ++s_elsewhere;
}

Elsewhere::~Elsewhere() {
    --s_elsewhere;
}

} // namespace AllocationCount

// The other forms of operator new lead to this one.
void* operator new(std::size_t size) {
    if (s_elsewhere == 0) {
        ++s_taken;
    }
    void* const block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
