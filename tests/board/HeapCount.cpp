#include "HeapCount.h"

#include "Export.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <iterator>
#include <malloc.h>
#include <new>

extern "C" {
// The C library's own allocator under its other names.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

struct Request {
    void* caller;
    std::size_t bytes;
};

// All of it is zero before any code runs, as the first blocks are taken before main().
Request s_first[64];
std::size_t s_taken;
std::size_t s_heldBlocks;
std::size_t s_heldBytes;
std::size_t s_peakBytes;
std::size_t s_startBlocks;
std::size_t s_startBytes;

/// The bytes of a block with the allocator's header.
std::size_t bytesOf(void* block) {
    return malloc_usable_size(block) + sizeof(std::size_t);
}

void* counted(void* block, void* caller) {
    if (block == nullptr) {
        return nullptr;
    }
    const std::size_t bytes = bytesOf(block);
    if (s_taken < std::size(s_first)) {
        s_first[s_taken] = {caller, bytes};
    }
    ++s_taken;
    ++s_heldBlocks;
    s_heldBytes += bytes;
    s_peakBytes = std::max(s_peakBytes, s_heldBytes);
    return block;
}

void uncount(void* block) {
    if (block != nullptr) {
        --s_heldBlocks;
        s_heldBytes -= bytesOf(block);
    }
}

/// Whether an address lies in the C++ runtime or in the loader.
bool isRuntime(void* address) {
    Dl_info info{};
    if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) {
        return false;
    }
    return std::strstr(info.dli_fname, "/libstdc++.so") != nullptr ||
           std::strstr(info.dli_fname, "/ld-linux") != nullptr;
}

} // namespace

namespace HeapCount {

Use held() {
    return {s_heldBlocks, s_heldBytes};
}

Use peak() {
    return {s_taken - s_startBlocks, s_peakBytes - s_startBytes};
}

void restart() {
    s_startBlocks = s_taken;
    s_startBytes = s_heldBytes;
    s_peakBytes = s_heldBytes;
}

Use atLoad() {
    Use use;
    const std::size_t known = std::min(s_taken, std::size(s_first));
    for (std::size_t i = 0; i < known; ++i) {
        if (!isRuntime(s_first[i].caller)) {
            ++use.blocks;
            use.bytes += s_first[i].bytes;
        }
    }
    use.blocks += s_taken - known;
    return use;
}

} // namespace HeapCount

// Handed out, so that the shared libraries find these and not the C library's.
extern "C" {

QOR_EXPORT void* malloc(std::size_t size) noexcept {
    return counted(__libc_malloc(size), __builtin_return_address(0));
}

QOR_EXPORT void* calloc(std::size_t count, std::size_t size) noexcept {
    return counted(__libc_calloc(count, size), __builtin_return_address(0));
}

QOR_EXPORT void* realloc(void* block, std::size_t size) noexcept {
    uncount(block);
    return counted(__libc_realloc(block, size), __builtin_return_address(0));
}

QOR_EXPORT void* memalign(std::size_t alignment, std::size_t size) noexcept {
    return counted(__libc_memalign(alignment, size), __builtin_return_address(0));
}

QOR_EXPORT void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return counted(__libc_memalign(alignment, size), __builtin_return_address(0));
}

QOR_EXPORT int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    void* const taken = counted(__libc_memalign(alignment, size), __builtin_return_address(0));
    if (taken == nullptr) {
        return ENOMEM;
    }
    *block = taken;
    return 0;
}

QOR_EXPORT void free(void* block) noexcept {
    uncount(block);
    __libc_free(block);
}
}

// Of this program's own, so that what others ask of operator new before main() is not taken for a
// block of the C++ runtime.

void* operator new(std::size_t size) {
    void* const block = std::malloc(size);
    if (block == nullptr) {
        std::abort();
    }
    return block;
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
