#include "Cases.h"
#include "CountedRegion.h"

#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>

// Asks every case once after it has been asked before, under callgrind, which counts the
// instructions between start and end and writes them under the case's name. Prints the heap
// allocations of each.

namespace {

long allocationCount = 0;

template <class Ask>
void count(const std::string& name, const Ask& ask) {
    const long before = allocationCount;
    CountedRegion::begin(name.c_str());
    ask();
    CountedRegion::end(name.c_str());
    const long allocations = allocationCount - before;
    std::printf("%s %ld\n", name.c_str(), allocations);
}

} // namespace

void* operator new(std::size_t size) {
    ++allocationCount;
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

int main() {
    for (const Case& measured : firstUseCases()) {
        PreparedCase prepared(measured);
        count(measured.name + " library", [&] { prepared.askIn(Way::Library); });
    }
    for (const Case& measured : allCases()) {
        PreparedCase prepared(measured);
        for (const Way way : prepared.ways()) {
            prepared.warmUp(way);
            count(measured.name + " " + nameOf(way), [&] { prepared.askIn(way); });
        }
        if (!prepared.isAgreed()) {
            std::fprintf(stderr, "%s: the ways disagree\n", measured.name.c_str());
            return 1;
        }
    }
    return 0;
}
