#include "BareNode.h"
#include "BarePlatform.h"
#include "HeapCount.h"
#include "OutputPowerCalculator.h"
#include "PaintedStack.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <new>
#include <sys/wait.h>
#include <unistd.h>

// Prints what the shared library takes from the heap and of the stack, one figure a line.
// Everything beside the library brings nothing of its own: platform, neighbours and this program.

namespace {

/// The library's room: a service built here takes from the heap only what it takes itself.
alignas(OutputPowerCalculator) unsigned char s_room[sizeof(OutputPowerCalculator)];

void print(const char* what, std::size_t figure) {
    std::printf("%s %zu\n", what, figure);
}

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "%s\n", what);
        std::exit(1);
    }
}

/// A counter that misses blocks would print the best of figures.
void requireThatHeapIsCounted() {
    HeapCount::restart();
    const HeapCount::Use before = HeapCount::held();
    void* volatile block = std::malloc(100);
    void* volatile other = ::operator new(50);
    require(HeapCount::held().blocks == before.blocks + 2 &&
                HeapCount::held().bytes >= before.bytes + 150 && HeapCount::peak().blocks == 2,
            "the heap is not counted");
    std::free(block);
    ::operator delete(other);
    require(HeapCount::held().blocks == before.blocks && HeapCount::held().bytes == before.bytes,
            "what is given back to the heap is not counted");
}

/// Writes to the far end of `size` bytes of stack.
__attribute__((noinline)) void useStack(std::size_t size) {
    auto* const room = static_cast<volatile unsigned char*>(__builtin_alloca(size));
    room[0] = 1;
}

void requireThatStackIsMeasured() {
    const std::size_t small = PaintedStack::depthOf([] { useStack(2000); });
    const std::size_t large = PaintedStack::depthOf([] { useStack(12000); });
    require(small >= 2000 && small < 3000 && large - small == 10000, "the stack is not measured");
}

struct Query {
    const char* name;
    std::function<int(OutputPowerCalculator&)> ask;
};

/// What a query needs at most.
struct Need {
    std::size_t stackQuiet = 0;
    std::size_t stackTraced = 0;
    std::size_t heapBlocks = 0;
};

long s_power;
long s_otherPower;
std::map<ModulationAndCoding, long> s_powerMap;

int askArray(OutputPowerCalculator& service, long frameFormatId) {
    constexpr ModulationAndCoding undefined = {ModulationAndCoding::UNDEFINED};
    return static_cast<int>(service.getMinMaxOutputPowerVsModulationArray(
        frameFormatId, undefined, undefined, EReferenceSEC::UNDEFINED, s_power, s_powerMap));
}

const Query queries[] = {
    {"getMinMaxOutputPowerVsModulationArray",
     [](OutputPowerCalculator& service) { return askArray(service, 0); }},
    {"getMinMaxOutputPowerVsModulationArray.byId",
     [](OutputPowerCalculator& service) { return askArray(service, 1); }},
    {"calculatePowerCapabilities",
     [](OutputPowerCalculator& service) {
         return service.calculatePowerCapabilities(Modulation::QAM64, s_otherPower, s_power);
     }},
    {"calculateAdmodPowerCapabilities",
     [](OutputPowerCalculator& service) {
         return service.calculateAdmodPowerCapabilities(Modulation::QAM64, EReferenceSEC::Class4L,
                                                        s_otherPower, s_power);
     }},
    {"findPminPmax",
     [](OutputPowerCalculator& service) { return service.findPminPmax(s_otherPower, s_power); }},
    {"getUnrestrictedPmax",
     [](OutputPowerCalculator& service) { return service.getUnrestrictedPmax(s_power); }},
    {"initialize",
     [](OutputPowerCalculator& service) { return static_cast<int>(service.initialize()); }},
};

/// The product numbers of the four families that product numbers lead to.
constexpr const char* productNumbers[] = {"QZT 846 001", "QZT 846 003", "QZT35201/1", "another"};

/// Stack that a query needs at a trace level.
std::size_t stackOf(const Query& query, OutputPowerCalculator& service, int traceLevel) {
    BarePlatform::setTraceLevel(traceLevel);
    int result = 0;
    const std::size_t depth = PaintedStack::depthOf([&] { result = query.ask(service); });
    BarePlatform::setTraceLevel(0);
    require(result == 0, query.name);
    return depth;
}

/// Measures a query in every family, without and with a booster: the first call as well, which
/// builds the family's tables.
Need measure(const Query& query, OutputPowerCalculator& service) {
    Need need;
    for (const char* const productNumber : productNumbers) {
        BareNode::setProductNumber(productNumber);
        for (const int boosterPresence : {0, 1}) {
            service.setBoosterPresence(boosterPresence, 3000, 2500, Modulation::QAM16384);
            need.stackQuiet = std::max(need.stackQuiet, stackOf(query, service, 0));
            const unsigned long records = BarePlatform::traceRecords();
            need.stackTraced = std::max(need.stackTraced, stackOf(query, service, 6));
            require(BarePlatform::traceRecords() > records, "a query with traces leaves none");

            HeapCount::restart();
            const HeapCount::Use before = HeapCount::held();
            require(query.ask(service) == 0, query.name);
            need.heapBlocks = std::max(need.heapBlocks, HeapCount::peak().blocks);
            require(HeapCount::held().blocks == before.blocks, "a query keeps heap");
        }
    }
    return need;
}

/// Measures and prints a query in a process of its own, in which no family has been asked before:
/// each query may be the one that builds the tables.
void measureApart(const Query& query, OutputPowerCalculator& service) {
    std::fflush(stdout);
    const pid_t child = fork();
    require(child >= 0, "no process for a query");
    if (child == 0) {
        const Need need = measure(query, service);
        std::printf("stack.quiet.%s %zu\nstack.traced.%s %zu\nquery.blocks.%s %zu\n", query.name,
                    need.stackQuiet, query.name, need.stackTraced, query.name, need.heapBlocks);
        std::fflush(stdout);
        _exit(0);
    }
    int status = 0;
    require(waitpid(child, &status, 0) == child && status == 0, query.name);
}

} // namespace

int main() {
    const HeapCount::Use load = HeapCount::atLoad();
    // The output's buffer must not come later, in the middle of a count.
    static char buffer[8192];
    std::setvbuf(stdout, buffer, _IOFBF, sizeof(buffer));
    // Binding a function at its first call takes stack that is not the library's.
    require(std::getenv("LD_BIND_NOW") != nullptr, "please set LD_BIND_NOW=1");
    requireThatHeapIsCounted();
    requireThatStackIsMeasured();
    print("load.blocks", load.blocks);
    print("load.bytes", load.bytes);

    BarePlatform::setTraceLevel(0);
    BareNode::publish();
    print("service.size", sizeof(OutputPowerCalculator));
    HeapCount::restart();
    const HeapCount::Use before = HeapCount::held();
    auto* const service = new (s_room) OutputPowerCalculator(1);
    require(service->initialize() == 0, "the service does not start");
    print("service.blocks", HeapCount::held().blocks - before.blocks);
    print("service.bytes", HeapCount::held().bytes - before.bytes);
    print("service.start.blocks", HeapCount::peak().blocks);
    print("service.start.bytes", HeapCount::peak().bytes);

    for (const Query& query : queries) {
        measureApart(query, *service);
    }

    service->~OutputPowerCalculator();
    return std::fflush(stdout) == 0 ? 0 : 1;
}
