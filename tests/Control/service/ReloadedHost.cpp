// What a host loads and unloads: it brings the library with it, and a radio to ask about.

#include "Neighbourhood.h"
#include "OutputPowerCalculator.h"

namespace {

Neighbourhood& neighbourhood() {
    // Ends when the module is unloaded, as the service below does.
    static Neighbourhood neighbours;
    return neighbours;
}

} // namespace

/// The power of a radio at 64QAM, from a service that ends when the module is unloaded.
extern "C" __attribute__((visibility("default"))) long powerAt64Qam();

long powerAt64Qam() {
    neighbourhood();
    static OutputPowerCalculator service(1);
    long minPower = 0;
    long maxPower = 0;
    if (service.initialize() != 0 ||
        service.calculateAdmodPowerCapabilities(Modulation::QAM64, EReferenceSEC::Class4L, minPower,
                                                maxPower) != 0) {
        return -1;
    }
    return maxPower;
}
