#include "BareNode.h"
#include "BarePlatform.h"
#include "HeapCount.h"
#include "InterfaceBroker.h"
#include "OutputPowerCalculator.h"
#include "PaintedStack.h"
#include "RadioFileRecorder.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <new>
#include <ostream>
#include <streambuf>

// Prints what the flight recorder takes from the heap and of the stack, one figure a line.

namespace {

/// Rooms for the objects: what is counted is what they take beside themselves.
alignas(OutputPowerCalculator) unsigned char s_plainRoom[sizeof(OutputPowerCalculator)];
alignas(OutputPowerCalculator) unsigned char s_serviceRoom[sizeof(OutputPowerCalculator)];
alignas(RadioFileRecorder) unsigned char s_recorderRoom[sizeof(RadioFileRecorder)];

std::map<ModulationAndCoding, long> s_powerMap;

void print(const char* what, std::size_t figure) {
    std::printf("recorder.%s %zu\n", what, figure);
}

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "%s\n", what);
        std::exit(1);
    }
}

/// Takes a file and forgets it.
class Sink : public std::streambuf {
public:
    std::size_t length = 0;

protected:
    int_type overflow(int_type character) override {
        ++length;
        return traits_type::not_eof(character);
    }
    std::streamsize xsputn(const char*, std::streamsize count) override {
        length += static_cast<std::size_t>(count);
        return count;
    }
};

OutputPowerCalculator* startedService(unsigned char* room) {
    auto* const service = new (room) OutputPowerCalculator(1);
    require(service->initialize() == 0, "the service does not start");
    return service;
}

bool askArray(IOutputPowerCalculator& service) {
    constexpr ModulationAndCoding undefined = {ModulationAndCoding::UNDEFINED};
    long power = 0;
    return service.getMinMaxOutputPowerVsModulationArray(
               0, undefined, undefined, EReferenceSEC::UNDEFINED, power, s_powerMap) == 0;
}

std::size_t stackOfArray(IOutputPowerCalculator& service) {
    bool isAnswered = false;
    const std::size_t depth = PaintedStack::depthOf([&] { isAnswered = askArray(service); });
    require(isAnswered, "an array is not answered");
    return depth;
}

} // namespace

int main() {
    static char buffer[4096];
    std::setvbuf(stdout, buffer, _IOFBF, sizeof(buffer));
    require(std::getenv("LD_BIND_NOW") != nullptr, "please set LD_BIND_NOW=1");
    BarePlatform::setTraceLevel(0);
    BareNode::publish();
    OutputPowerCalculator& plain = *startedService(s_plainRoom);
    stackOfArray(plain);
    const std::size_t plainStack = stackOfArray(plain);

    const std::size_t start = HeapCount::held().bytes;
    auto* const recorder = new (s_recorderRoom) RadioFileRecorder(1);
    require(recorder->attach(), "the recorder is not attached");
    OutputPowerCalculator& real = *startedService(s_serviceRoom);
    require(recorder->attach(), "the recorder is not attached to the service");
    auto* const service = InterfaceBroker::getInstance().getInterface<IOutputPowerCalculator>(
        IOutputPowerCalculator::interfaceName(1));
    require(service != nullptr && service != &real, "the service is not decorated");

    stackOfArray(*service);
    HeapCount::restart();
    require(askArray(real), "an array is not answered");
    const std::size_t blocks = HeapCount::peak().blocks;
    HeapCount::restart();
    require(askArray(*service), "an array is not answered");
    print("query.blocks", HeapCount::peak().blocks - blocks);
    print("array.stack", stackOfArray(*service) - plainStack);

    const std::size_t beforeTrigger = HeapCount::held().bytes;
    require(recorder->writeWhen(RecordingTriggers::failure()), "no trigger is set");
    print("trigger.bytes", HeapCount::held().bytes - beforeTrigger);
    require(recorder->writeWhen({}), "the trigger stays");

    Sink sink;
    std::ostream stream(&sink);
    const std::size_t beforeFile = HeapCount::held().bytes;
    HeapCount::restart();
    require(recorder->write(stream) && sink.length > 1000, "no file is written");
    print("file.bytes", HeapCount::peak().bytes);
    require(HeapCount::held().bytes == beforeFile, "a file keeps heap");

    const std::size_t withRecorder = HeapCount::held().bytes;
    recorder->~RadioFileRecorder();
    print("bytes", withRecorder - HeapCount::held().bytes);
    real.~OutputPowerCalculator();
    print("decorators.bytes", HeapCount::held().bytes - start);
    plain.~OutputPowerCalculator();
    return std::fflush(stdout) == 0 ? 0 : 1;
}
