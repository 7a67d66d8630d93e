#include "RadioFileReader.h"
#include "Replay.h"

#include <benchmark/benchmark.h>

#include <string>

// Times the desk's part of `qor-power`: reading a radio file, and playing one with many requests.

namespace {

/// A radio file of a node of the newer radio-unit family, with a number of array queries.
std::string radioFileOf(long requestCount) {
    std::string text = R"({"channel": 1, "capabilityHandler": {"productNumber": "QZT 860 13",
"minOutputPower": 800, "pmaxDpd1Etsi": [["4QAM", 2600], ["16QAM", 2300], ["32QAM", 2300],
["64QAM", 1800], ["128QAM", 1800], ["256QAM", 1700], ["512QAM", 1600], ["1024QAM", 1450]]},
"acmHandler": {"min": "4QAM_STRONG", "max": "1024QAM"}, "frameFormat": {"modulation": "4QAM",
"maxAvailableModulation": "1024QAM", "modulationAndCodes": ["4QAM_STRONG", "4QAM", "16QAM",
"32QAM", "64QAM", "128QAM", "256QAM", "512QAM", "1024QAM"], "channelSpacing": 28,
"dpdVersion": 1, "market": "Etsi"}, "systemPowerController": {"referenceSec": "4L",
"minOutputPowerOffsets": [[28, 0]]}, "hardwareConfigurationHandler": {}, "requests": [)";
    for (long i = 0; i < requestCount; ++i) {
        text += i == 0 ? "" : ",";
        text += R"({"call": "getMinMaxOutputPowerVsModulationArray"})";
    }
    return text + "]}";
}

void readRadioFile(benchmark::State& state) {
    const std::string text = radioFileOf(state.range(0));
    for (auto iteration : state) {
        static_cast<void>(iteration);
        benchmark::DoNotOptimize(RadioFileReader::read(text));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

void replayRequests(benchmark::State& state, int traceLevel) {
    const RadioFile file = RadioFileReader::read(radioFileOf(state.range(0)));
    std::size_t size = 0;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        Replay(traceLevel).play(file, [&size](const std::string& line) { size += line.size(); });
    }
    benchmark::DoNotOptimize(size);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(readRadioFile)->Arg(1)->Arg(1000)->Arg(20000);
BENCHMARK_CAPTURE(replayRequests, untraced, 0)->Arg(1)->Arg(1000)->Arg(20000);
BENCHMARK_CAPTURE(replayRequests, traced, 6)->Arg(1)->Arg(1000);

BENCHMARK_MAIN();
