#include "Cases.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <iostream>
#include <memory>

// Times every case in each way of computing. The counts of qor-bench-count are what is gated:
// times depend on the machine and on what else it does.

namespace {

void registerWay(const std::shared_ptr<const Case>& measured, Way way) {
    benchmark::RegisterBenchmark((measured->name + "/" + nameOf(way)).c_str(),
                                 [measured, way](benchmark::State& state) {
                                     PreparedCase prepared(*measured);
                                     for (auto iteration : state) {
                                         static_cast<void>(iteration);
                                         prepared.askIn(way);
                                         benchmark::ClobberMemory();
                                     }
                                 });
}

} // namespace

int main(int argc, char** argv) {
    for (const Case& measured : allCases()) {
        if (measured.isMapFresh) {
            continue; // it would be fresh once only
        }
        const auto shared = std::make_shared<const Case>(measured);
        PreparedCase prepared(measured);
        for (const Way way : prepared.ways()) {
            registerWay(shared, way);
            prepared.askIn(way);
        }
        if (!prepared.isAgreed()) {
            std::cerr << measured.name << ": the ways disagree\n";
            return EXIT_FAILURE;
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
