#include "Operations.h"

#include "InterfaceBroker.h"

#include <cstdint>
#include <map>

namespace {

constexpr std::int32_t preset = 123456;

/// An operation that has two powers as outputs, or one.
template <class Library, class Reference>
Operation powerOperation(const std::string& name, Library library, Reference reference) {
    return {name,
            [library](LibrarySide& side, Outcome& outcome) {
                long first = preset;
                long second = preset + 1;
                outcome.result = static_cast<std::uint32_t>(library(*side.service, first, second));
                outcome.outputs = {first, second};
            },
            [reference](ReferenceSide& side, Outcome& outcome) {
                std::int32_t first = preset;
                std::int32_t second = preset + 1;
                outcome.result = reference(*side.service, first, second);
                outcome.outputs = {first, second};
            }};
}

} // namespace

Operation arrayOperation(const std::string& name, std::int32_t id, std::int32_t minCode,
                         std::int32_t maxCode) {
    // An entry of the caller's own, and one that the operation may overwrite.
    const std::map<std::int32_t, long> before = {{11, preset}, {61, preset + 1}};
    return {name,
            [=](LibrarySide& side, Outcome& outcome) {
                std::map<ModulationAndCoding, long> powerMap;
                for (const auto& [code, power] : before) {
                    powerMap[{code}] = power;
                }
                long minimum = preset;
                outcome.result = side.service->getMinMaxOutputPowerVsModulationArray(
                    id, {minCode}, {maxCode}, EReferenceSEC::UNDEFINED, minimum, powerMap);
                outcome.outputs = {minimum};
                for (const auto& [code, power] : powerMap) {
                    outcome.powerMap[code.code] = power;
                }
            },
            [=](ReferenceSide& side, Outcome& outcome) {
                reference::PowerMap powerMap;
                for (const auto& [code, power] : before) {
                    powerMap[code] = static_cast<std::int32_t>(power);
                }
                std::int32_t minimum = preset;
                outcome.result = side.service->getMinMaxOutputPowerVsModulationArray(
                    id, minCode, maxCode, reference::undefinedRsec, minimum, powerMap);
                outcome.outputs = {minimum};
                outcome.powerMap.insert(powerMap.begin(), powerMap.end());
            }};
}

Operation startOperation() {
    return {"initialize",
            [](LibrarySide& side, Outcome& outcome) {
                side.build();
                outcome.result = side.service->initialize();
                outcome.outputs = {
                    InterfaceBroker::getInstance().getInterface<IOutputPowerCalculator>(
                        IOutputPowerCalculator::interfaceName(side.channel)) == side.service.get()};
            },
            [](ReferenceSide& side, Outcome& outcome) {
                side.build();
                outcome.result = side.service->initialize();
                outcome.outputs = {side.service->m_registered};
            }};
}

std::vector<Operation> queries() {
    return {
        powerOperation(
            "calculatePowerCapabilities",
            [](OutputPowerCalculator& sut, long& minPower, long& maxPower) {
                return sut.calculatePowerCapabilities(Modulation::QAM64, minPower, maxPower);
            },
            [](reference::Service& sut, std::int32_t& minPower, std::int32_t& maxPower) {
                return sut.calculatePowerCapabilities(64, minPower, maxPower);
            }),
        powerOperation(
            "calculateAdmodPowerCapabilities",
            [](OutputPowerCalculator& sut, long& minPower, long& maxPower) {
                return sut.calculateAdmodPowerCapabilities(
                    Modulation::QAM64, EReferenceSEC::Class4L, minPower, maxPower);
            },
            [](reference::Service& sut, std::int32_t& minPower, std::int32_t& maxPower) {
                return sut.calculateAdmodPowerCapabilities(64, 1, minPower, maxPower);
            }),
        powerOperation(
            "findPminPmax",
            [](OutputPowerCalculator& sut, long& pmin, long& pmax) {
                return sut.findPminPmax(pmin, pmax);
            },
            [](reference::Service& sut, std::int32_t& pmin, std::int32_t& pmax) {
                return sut.findPminPmax(pmin, pmax);
            }),
        powerOperation(
            "getUnrestrictedPmax",
            [](OutputPowerCalculator& sut, long& pmax, long&) {
                return sut.getUnrestrictedPmax(pmax);
            },
            [](reference::Service& sut, std::int32_t& pmax, std::int32_t&) {
                return sut.getUnrestrictedPmax(pmax);
            }),
        arrayOperation("getMinMaxOutputPowerVsModulationArray", 0),
        arrayOperation("getMinMaxOutputPowerVsModulationArray by id", frameFormatId),
    };
}

std::vector<Operation> inputs() {
    return {
        powerOperation(
            "setTemporaryPowerCutback",
            [](OutputPowerCalculator& sut, long&, long&) {
                return sut.setTemporaryPowerCutback(true, 200);
            },
            [](reference::Service& sut, std::int32_t&, std::int32_t&) {
                return sut.setTemporaryPowerCutback(true, 200);
            }),
        powerOperation(
            "setPowerCutback",
            [](OutputPowerCalculator& sut, long&, long&) { return sut.setPowerCutback(300); },
            [](reference::Service& sut, std::int32_t&, std::int32_t&) {
                return sut.setPowerCutback(300);
            }),
        powerOperation(
            "setTemperature",
            [](OutputPowerCalculator& sut, long&, long&) { return sut.setTemperature(-40); },
            [](reference::Service& sut, std::int32_t&, std::int32_t&) {
                return sut.setTemperature(-40);
            }),
        powerOperation(
            "setBoosterPresence",
            [](OutputPowerCalculator& sut, long&, long&) {
                return sut.setBoosterPresence(7, 3000, 900, Modulation::QAM512);
            },
            [](reference::Service& sut, std::int32_t&, std::int32_t&) {
                return sut.setBoosterPresence(7, 3000, 900, 512);
            }),
        powerOperation(
            "applyCutbackToMaxPower",
            [](OutputPowerCalculator& sut, long& power, long&) {
                sut.applyCutbackToMaxPower(power);
                return 0;
            },
            [](reference::Service& sut, std::int32_t& power, std::int32_t&) {
                sut.applyCutbackToMaxPower(power);
                return 0U;
            }),
    };
}
