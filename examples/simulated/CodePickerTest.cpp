// Tests of CodePicker against simulated neighbours. Any test framework does; this example needs
// none.

#include "CodePicker.h"
#include "DeskVariableStore.h"
#include "Neighbourhood.h"
#include "OutputPowerCalculator.h"

#include <iostream>
#include <string>
#include <vector>

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
    std::cout << (holds ? "ok      " : "FAILED  ") << what << '\n';
    failures += holds ? 0 : 1;
}

// Powers of this radio at RSEC class 4L: 19, 19, 18 and 17 dBm for 4QAM, 16QAM, 64QAM and 256QAM.
// Its family allows 2, 2 and 1 dB more than at 256QAM.
void picksTheHighestCodeThatReachesThePower() {
    Neighbourhood neighbours;
    OutputPowerCalculator service(1);
    service.initialize();
    const CodePicker sut(service);

    expect(sut.highestCodeWith(1700) == ModulationAndCoding{81}, "17 dBm: 256QAM");
    expect(sut.highestCodeWith(1800) == ModulationAndCoding{61}, "18 dBm: 64QAM");
    expect(sut.highestCodeWith(1801) == ModulationAndCoding{41}, "18.01 dBm: 16QAM");
    expect(!sut.highestCodeWith(1901), "19.01 dBm: no code");
}

void followsALimitOfTheRadio() {
    Neighbourhood neighbours;
    OutputPowerCalculator service(1);
    service.initialize();
    const CodePicker sut(service);

    CapabilityHandlerAnswers limited = Neighbourhood::radio();
    limited.maxModulationWithoutLimitation = Modulation::QAM16;
    neighbours.capabilityHandler.setAnswers(limited);

    expect(sut.highestCodeWith(1700) == ModulationAndCoding{41}, "limited radio: 16QAM");
}

void knowsNoCodeWithoutCalibration() {
    Neighbourhood neighbours;
    OutputPowerCalculator service(1);
    service.initialize();
    const CodePicker sut(service);

    DeskVariableStore::getInstance().clear();

    expect(!sut.highestCodeWith(1700), "no calibration: no code");
}

void theRangeQueryMakesFourCalls() {
    Neighbourhood neighbours;
    OutputPowerCalculator service(1);
    service.initialize();
    CallLog log;
    neighbours.recordTo(&log);

    long pmin = 0;
    long pmax = 0;
    service.findPminPmax(pmin, pmax);

    expect(pmin == 850 && pmax == 2600, "range: 8.5 to 26 dBm");
    const std::vector<std::string> calls = {
        "IFrameFormat::getDpdVersion()", "IFrameFormat::getTelecomMarket()",
        "IFrameFormat::getChannelSpacing()", "ISystemPowerController::getMinOutputPowerOffset(28)"};
    expect(log.texts() == calls, "range: four calls, in order");
}

void theStartNeedsTheMinimumPowerAlone() {
    Neighbourhood neighbours;

    // Each call of the start that can fail fails in turn: the four Pmax tables, the minimum power,
    // and one more than there are.
    std::vector<unsigned> results;
    for (unsigned call = 1; call <= 6; ++call) {
        neighbours.capabilityHandler.failAt(call);
        OutputPowerCalculator service(1);
        results.push_back(service.initialize());
        neighbours.capabilityHandler.failAt(0);
    }

    expect(results == std::vector<unsigned>{0, 0, 0, 0, 32768, 0}, "start: the fifth call counts");
}

void aRefusedTableLeavesNoCode() {
    Neighbourhood neighbours;
    CapabilityHandlerAnswers refusing = Neighbourhood::radio();
    refusing.pmaxDpd1Etsi = ResultOnly{32768};
    neighbours.capabilityHandler.setAnswers(refusing);
    OutputPowerCalculator service(1);
    service.initialize();
    const CodePicker sut(service);

    expect(!sut.highestCodeWith(0), "refused table: no code");
}

} // namespace

int main() {
    picksTheHighestCodeThatReachesThePower();
    followsALimitOfTheRadio();
    knowsNoCodeWithoutCalibration();
    theRangeQueryMakesFourCalls();
    theStartNeedsTheMinimumPowerAlone();
    aRefusedTableLeavesNoCode();
    return failures == 0 ? 0 : 1;
}
