#include "Cases.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <iostream>
#include <memory>

// Times every case in the three ways of computing. The counts of qor-bench-count are what is gated:
// times depend on the machine and on what else it does.

namespace {

using Ask = void (PreparedCase::*)();

void registerWay(const std::shared_ptr<const Case>& measured, const char* way, Ask ask) {
    benchmark::RegisterBenchmark((measured->name + "/" + way).c_str(),
                                 [measured, ask](benchmark::State& state) {
                                     PreparedCase prepared(*measured);
                                     for (auto iteration : state) {
                                         static_cast<void>(iteration);
                                         (prepared.*ask)();
                                         benchmark::ClobberMemory();
                                     }
                                 });
}

} // namespace

int main(int argc, char** argv) {
    for (const Case& measured : allCases()) {
        const auto shared = std::make_shared<const Case>(measured);
        registerWay(shared, "library", &PreparedCase::askLibrary);
        if (!measured.hasYardsticks()) {
            continue;
        }
        registerWay(shared, "plain", &PreparedCase::askPlainWay);
        registerWay(shared, "limit", &PreparedCase::askLimit);
        PreparedCase prepared(measured);
        prepared.askLibrary();
        prepared.askPlainWay();
        prepared.askLimit();
        if (!prepared.isAgreed()) {
            std::cerr << measured.name << ": the three ways disagree\n";
            return EXIT_FAILURE;
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
