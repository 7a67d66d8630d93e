#include "BarePlatform.h"
#include "CalculatorKam.h"
#include "CalculatorKamV2.h"
#include "CalculatorKamV3.h"
#include "CalculatorVo4.h"
#include "CalculatorVo5.h"
#include "HeapCount.h"

#include <cstdio>
#include <cstdlib>
#include <functional>

// Prints what each family takes from the heap when it is asked for a power for the first time, one
// figure a line. It reaches the hidden classes, and with them the family that no product number
// leads to, through the library's objects.

namespace {

constexpr int pmaxTable[] = {256, 2000, 64, 2100, 16, 2200};

/// Input that every family has a power for.
CalculationData data() {
    CalculationData data{};
    data.rsec = EReferenceSEC::Class2;
    data.selectedMinModulation = Modulation::QAM16;
    data.selectedMaxModulation = Modulation::QAM256;
    data.actualModulation = Modulation::QAM64;
    data.refMaxModulation = Modulation::QAM256;
    data.pmaxSelectedMinModulation = pmaxTable[5];
    data.pmaxActualModulation = pmaxTable[3];
    data.pmaxRefMaxModulation = pmaxTable[1];
    return data;
}

void measure(const char* family, const std::function<Calculator*()>& getInstance) {
    const CalculationData input = data();
    const HeapCount::Use before = HeapCount::held();
    HeapCount::restart();
    Calculator* const calculator = getInstance();
    const HeapCount::Use instance = HeapCount::held();
    long power = 0;
    if (calculator->getMaxPower(input, power, 1, 0, 3000, Modulation::QAM16384) != 0) {
        std::fprintf(stderr, "%s has no power\n", family);
        std::exit(1);
    }
    const HeapCount::Use after = HeapCount::held();
    const HeapCount::Use peak = HeapCount::peak();
    if (calculator->getMaxPower(input, power, 1, 0, 3000, Modulation::QAM16384) != 0 ||
        HeapCount::peak().blocks != peak.blocks) {
        std::fprintf(stderr, "%s takes heap again at its second use\n", family);
        std::exit(1);
    }
    std::printf("family.instance.bytes.%s %zu\nfamily.tables.blocks.%s %zu\n"
                "family.tables.bytes.%s %zu\nfamily.build.bytes.%s %zu\n",
                family, instance.bytes - before.bytes, family, after.blocks - instance.blocks,
                family, after.bytes - instance.bytes, family, peak.bytes);
}

} // namespace

int main() {
    static char buffer[8192];
    std::setvbuf(stdout, buffer, _IOFBF, sizeof(buffer));
    BarePlatform::setTraceLevel(0);

    measure("CalculatorKam", [] { return CalculatorKam::getInstance(); });
    measure("CalculatorKamV2", [] { return CalculatorKamV2::getInstance(); });
    measure("CalculatorKamV3", [] { return CalculatorKamV3::getInstance(); });
    measure("CalculatorVo4", [] { return CalculatorVo4::getInstance(); });
    measure("CalculatorVo5", [] { return CalculatorVo5::getInstance(); });
    return std::fflush(stdout) == 0 ? 0 : 1;
}
