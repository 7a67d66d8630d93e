#include "DeskTrace.h"
#include "InterfaceBroker.h"
#include "OddAnswers.h"
#include "OutputPowerCalculator.h"
#include "ScriptedNeighbours.h"
#include "ScriptedNode.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <tuple>
#include <vector>

// Every call that an operation makes to what surrounds it gets every odd answer, one at a time.
// What comes of it has to be what the plain restatement of the rules says: result, outputs, trace,
// and what the surroundings were asked with.

namespace {

constexpr std::int32_t preset = 123456;
constexpr long frameFormatId = 7;

/// One trace record, from either side.
struct Record {
    int kind;
    int level;
    unsigned code;
    std::string file;
    std::string function;
    std::string text;

    friend bool operator==(const Record&, const Record&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const Record& record) {
        return stream << record.kind << ' ' << record.level << ' ' << record.code << ' '
                      << record.file << ' ' << record.function << ": " << record.text;
    }
};

/// What an operation leaves behind.
struct Outcome {
    std::uint32_t result = 0;
    std::vector<long> outputs;
    std::map<std::int32_t, long> powerMap;
    std::vector<Record> trace;
    Script::Arguments arguments;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

/// The library's service in the scripted surroundings.
class LibrarySide {
public:
    explicit LibrarySide(const UsualAnswers& usual)
        : script(usual)
        , surroundings(script) {
        build();
    }

    void build() { service = std::make_unique<OutputPowerCalculator>(1); }

    std::vector<Record> takeTrace() {
        std::vector<Record> records;
        for (TraceRecord& record : DeskTrace::getInstance().take()) {
            records.push_back({static_cast<int>(record.kind), record.level, record.code,
                               std::move(record.file), std::move(record.function),
                               std::move(record.text)});
        }
        return records;
    }

    Script script;
    ScriptedSurroundings surroundings;
    std::unique_ptr<OutputPowerCalculator> service;
};

/// What happens once in a process has happened on both sides.
reference::ProcessState s_process;

/// The restatement's service in the same surroundings.
class ReferenceSide {
public:
    explicit ReferenceSide(const UsualAnswers& usual)
        : script(usual)
        , node(script) {
        build();
    }

    void build() { service.emplace(1U, node, s_process); }

    std::vector<Record> takeTrace() {
        std::vector<Record> records;
        for (reference::TraceRecord& record : service->m_trace) {
            records.push_back({static_cast<int>(record.kind), record.level, record.code,
                               std::move(record.file), std::move(record.function),
                               std::move(record.text)});
        }
        service->m_trace.clear();
        return records;
    }

    Script script;
    ScriptedNode node;
    std::optional<reference::Service> service;
};

static_assert(
    static_cast<int>(TraceRecord::Kind::Enter) == static_cast<int>(reference::TraceKind::enter) &&
    static_cast<int>(TraceRecord::Kind::Message) == static_cast<int>(reference::TraceKind::msg) &&
    static_cast<int>(TraceRecord::Kind::Raw) == static_cast<int>(reference::TraceKind::raw));

/// An operation as both sides do it: fills in the result and the outputs.
struct Operation {
    std::string name;
    std::function<void(LibrarySide&, Outcome&)> onLibrary;
    std::function<void(ReferenceSide&, Outcome&)> onReference;
};

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

Operation arrayOperation(const std::string& name, std::int32_t id) {
    // An entry of the caller's own, and one that the operation may overwrite.
    const std::map<std::int32_t, long> before = {{11, preset}, {61, preset + 1}};
    return {name,
            [id, before](LibrarySide& side, Outcome& outcome) {
                constexpr ModulationAndCoding undefined = {ModulationAndCoding::UNDEFINED};
                std::map<ModulationAndCoding, long> powerMap;
                for (const auto& [code, power] : before) {
                    powerMap[{code}] = power;
                }
                long minimum = preset;
                outcome.result = side.service->getMinMaxOutputPowerVsModulationArray(
                    id, undefined, undefined, EReferenceSEC::UNDEFINED, minimum, powerMap);
                outcome.outputs = {minimum};
                for (const auto& [code, power] : powerMap) {
                    outcome.powerMap[code.code] = power;
                }
            },
            [id, before](ReferenceSide& side, Outcome& outcome) {
                reference::PowerMap powerMap;
                for (const auto& [code, power] : before) {
                    powerMap[code] = static_cast<std::int32_t>(power);
                }
                std::int32_t minimum = preset;
                outcome.result = side.service->getMinMaxOutputPowerVsModulationArray(
                    id, reference::undefinedCode, reference::undefinedCode,
                    reference::undefinedRsec, minimum, powerMap);
                outcome.outputs = {minimum};
                outcome.powerMap.insert(powerMap.begin(), powerMap.end());
            }};
}

/// Builds the service anew and starts it.
Operation startOperation() {
    return {"initialize",
            [](LibrarySide& side, Outcome& outcome) {
                side.build();
                outcome.result = side.service->initialize();
                outcome.outputs = {
                    InterfaceBroker::getInstance().getInterface<IOutputPowerCalculator>(
                        "IOutputPowerCalculator_1") == side.service.get()};
            },
            [](ReferenceSide& side, Outcome& outcome) {
                side.build();
                outcome.result = side.service->initialize();
                outcome.outputs = {side.service->m_registered};
            }};
}

/// The queries: what they are asked for is in every table.
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

/// The operations that ask nobody.
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

struct Family {
    const char* name;
    const char* productNumber;
};

constexpr Family families[] = {{"FirstOutdoor", "QZT 846 001"},
                               {"ThirdOutdoor", "QZT 846 003"},
                               {"OlderRadioUnit", "QZT35205/1HP"},
                               {"NewerRadioUnit", "QZT99999/9"}};

enum class Limit {
    None,
    ByProfile,
    ByCarrierAggregationProfile
};

/// Where the drill takes place.
using Scene = std::tuple<Family, bool /* booster */, bool /* adaptive */, Limit>;

std::string sceneName(const ::testing::TestParamInfo<Scene>& info) {
    const auto& [family, hasBooster, isAdaptive, limit] = info.param;
    return std::string(family.name) + (hasBooster ? "WithBooster" : "") +
           (isAdaptive ? "Adaptive" : "Fixed") +
           (limit == Limit::None        ? ""
            : limit == Limit::ByProfile ? "Limited"
                                        : "LimitedUnderCarrierAggregation");
}

UsualAnswers usualAnswers(const Scene& scene) {
    const auto& [family, hasBooster, isAdaptive, limit] = scene;
    UsualAnswers usual;
    const auto set = [&usual](Call call, std::vector<std::int32_t> values) {
        usual[static_cast<std::size_t>(call)].values = std::move(values);
    };
    usual[static_cast<std::size_t>(Call::ProductNumber)].text = family.productNumber;
    set(Call::MinOutputPower, {-1000});
    // Each table has powers of its own. 65536QAM is in none.
    set(Call::PmaxDpd1Etsi,
        {24,  2,    2950, 4,    2900, 16,   2800, 32,   2750, 64,   2700,  128, 2650,
         256, 2600, 512,  2500, 1024, 2400, 2048, 2300, 4096, 2200, 16384, 2000});
    set(Call::PmaxDpd2Etsi,
        {24,  2,    2951, 4,    2901, 16,   2801, 32,   2751, 64,   2701,  128, 2651,
         256, 2601, 512,  2501, 1024, 2401, 2048, 2301, 4096, 2201, 16384, 2001});
    set(Call::PmaxDpd1Ansi,
        {24,  2,    2962, 4,    2912, 16,   2812, 32,   2762, 64,   2712,  128, 2662,
         256, 2612, 512,  2512, 1024, 2412, 2048, 2312, 4096, 2212, 16384, 2012});
    set(Call::PmaxDpd2Ansi,
        {24,  2,    2973, 4,    2923, 16,   2823, 32,   2773, 64,   2723,  128, 2673,
         256, 2623, 512,  2523, 1024, 2423, 2048, 2323, 4096, 2223, 16384, 2023});
    set(Call::IsMaxAcmLimited, {limit != Limit::None});
    set(Call::IsCarrierAggregation, {limit == Limit::ByCarrierAggregationProfile});
    set(Call::ProfileIndex, {1});
    set(Call::MaxModulationLimited, {512});
    set(Call::MaxModulationUnlimited, {1024});
    set(Call::AcmRange,
        isAdaptive ? std::vector<std::int32_t>{31, 81} : std::vector<std::int32_t>{61, 61});
    set(Call::Modulation, {16});
    set(Call::MaxAvailableModulation, {2048});
    set(Call::Codes, {31, 32, 61, 101});
    set(Call::ChannelSpacing, {28});
    set(Call::DpdVersion, {2});
    set(Call::Market, {0});
    set(Call::Profiles, {1, 2, 3});
    set(Call::CarrierAggregationProfiles, {4, 5});
    set(Call::ReferenceSec, {3});
    set(Call::Offset, {250});
    set(Call::Records, {5, 14, 7, 56});
    set(Call::DpdVersionById, {1});
    set(Call::MarketById, {1});
    set(Call::CodesById, {30, 31, 61});
    set(Call::ChannelSpacingById, {56});
    set(Call::ProfilesById, {11, 12});
    set(Call::CarrierAggregationProfilesById, {13});
    set(Call::CompensationArray, {28, 150, 56, -200});
    set(Call::CompensationArraySize, {4});
    return usual;
}

class NeighbourDrill : public ::testing::TestWithParam<Scene> {
protected:
    NeighbourDrill()
        : m_usual(usualAnswers(GetParam())) {
        DeskTrace::getInstance().setLevel(6);
        m_library.emplace(m_usual);
        m_reference.emplace(m_usual);
        start();
    }

    ~NeighbourDrill() override {
        m_library.reset();
        DeskTrace::getInstance().setLevel(0);
        DeskTrace::getInstance().clear();
    }

    /// Both services fresh and started, with the scene's operating inputs.
    void start() {
        m_library->script.restart();
        m_reference->script.restart();
        m_library->build();
        m_reference->build();
        ASSERT_EQ(m_library->service->initialize(), 0U);
        ASSERT_EQ(m_reference->service->initialize(), 0U);
        m_library->service->setPowerCutback(100);
        m_reference->service->setPowerCutback(100);
        if (std::get<1>(GetParam())) {
            m_library->service->setBoosterPresence(1, 2500, 700, Modulation::QAM1024);
            m_reference->service->setBoosterPresence(1, 2500, 700, 1024);
        }
        ASSERT_EQ(m_library->takeTrace(), m_reference->takeTrace());
    }

    Outcome ofLibrary(const Operation& operation) {
        Outcome outcome;
        operation.onLibrary(*m_library, outcome);
        outcome.trace = m_library->takeTrace();
        outcome.arguments = m_library->script.arguments();
        return outcome;
    }

    Outcome ofReference(const Operation& operation) {
        Outcome outcome;
        operation.onReference(*m_reference, outcome);
        outcome.trace = m_reference->takeTrace();
        outcome.arguments = m_reference->script.arguments();
        return outcome;
    }

    /// Does an operation on both sides, whose scripts have been restarted.
    /// @return whether the outcomes are equal; if not, a failure has been reported.
    bool isEqualOnBothSides(const Operation& operation, const std::string& when) {
        ++m_cases;
        const Outcome library = ofLibrary(operation);
        const Outcome reference = ofReference(operation);
        if (library == reference) {
            return true;
        }
        EXPECT_EQ(library.result, reference.result);
        EXPECT_EQ(library.outputs, reference.outputs);
        EXPECT_EQ(library.powerMap, reference.powerMap);
        EXPECT_EQ(library.trace, reference.trace);
        EXPECT_EQ(library.arguments, reference.arguments);
        ADD_FAILURE() << operation.name << " differs " << when;
        return false;
    }

    bool isEqualWithUsualAnswers(const Operation& operation, const std::string& when) {
        m_library->script.restart();
        m_reference->script.restart();
        return isEqualOnBothSides(operation, when);
    }

    /// Gives each of the calls of a kind that the operation makes each odd answer. Ends at the first
    /// failure.
    void drill(const Operation& operation, Call call, std::size_t times) {
        for (const ScriptedAnswer& odd :
             oddAnswers(call, m_usual[static_cast<std::size_t>(call)])) {
            for (std::size_t nth = 1; nth <= times; ++nth) {
                m_library->script.restart(call, nth, odd);
                m_reference->script.restart(call, nth, odd);
                const std::string when = "when call " + std::to_string(nth) + " of " +
                                         nameOf(call) + " answers " + textOf(odd);
                ASSERT_TRUE(isEqualOnBothSides(operation, when));
                ASSERT_GE(m_library->script.timesOf(call), nth) << "the call was not made";
            }
        }
    }

    void drill(const Operation& operation) {
        ASSERT_TRUE(isEqualWithUsualAnswers(operation, "with usual answers"));
        const Script usual = m_library->script;
        for (std::size_t index = 0; index < callCount; ++index) {
            const auto call = static_cast<Call>(index);
            ASSERT_NO_FATAL_FAILURE(drill(operation, call, usual.timesOf(call)));
        }
        // Nothing of all that may stay.
        ASSERT_TRUE(isEqualWithUsualAnswers(operation, "with usual answers afterwards"));
    }

    void countCases() {
        RecordProperty("cases", static_cast<int>(m_cases));
        std::cout << "[ CASES    ] " << m_cases << '\n';
    }

    std::size_t m_cases = 0;
    UsualAnswers m_usual;
    std::optional<LibrarySide> m_library;
    std::optional<ReferenceSide> m_reference;
};

} // namespace

TEST_P(NeighbourDrill, everyQueryIsAsTheRulesSayWhateverACallAnswers) {
    for (const Operation& query : queries()) {
        ASSERT_NO_FATAL_FAILURE(drill(query));
    }
    countCases();
}

TEST_P(NeighbourDrill, theStartIsAsTheRulesSayWhateverACallAnswers) {
    drill(startOperation());
    countCases();
}

TEST_P(NeighbourDrill, anInputAsksNobody) {
    for (const Operation& input : inputs()) {
        ASSERT_TRUE(isEqualWithUsualAnswers(input, "with usual answers"));
        for (std::size_t call = 0; call < callCount; ++call) {
            EXPECT_EQ(m_library->script.timesOf(static_cast<Call>(call)), 0U) << input.name;
        }
    }
    // What they set is in force.
    for (const Operation& query : queries()) {
        ASSERT_TRUE(isEqualWithUsualAnswers(query, "after every input"));
    }
}

INSTANTIATE_TEST_SUITE_P(EveryFamily, NeighbourDrill,
                         ::testing::Combine(::testing::ValuesIn(families), ::testing::Bool(),
                                            ::testing::Bool(),
                                            ::testing::Values(Limit::None, Limit::ByProfile,
                                                              Limit::ByCarrierAggregationProfile)),
                         sceneName);
