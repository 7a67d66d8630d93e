#include "Cases.h"

#include "BenchPlatform.h"
#include "CalculatorKamV2.h"
#include "InterfaceBroker.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t recorderSize = 8192;

struct Family {
    const char* name;
    const char* productNumber;
    unsigned int firstCode; ///< of those that the family has powers for
};

constexpr Family families[] = {{"outdoor1", "QZT 846 57", 0},
                               {"outdoor3", "QZT 846 003", 0},
                               {"older-radio-unit", "QZT35203/1", 6},
                               {"newer-radio-unit", "QZT 860 13", 6}};

Case caseOf(const std::string& name, const Scenario& scenario, Query query) {
    return {name, scenario, query};
}

/// A query that the plain way and the limit do not know.
/// A query that only the library knows.
template <class Computing>
void askOther(Computing&, const Case&, QueryAnswer&) {}

void askOther(OutputPowerCalculator& service, const Case& measured, QueryAnswer& answer) {
    switch (measured.query) {
    case Query::SetPowerCutback:
        service.setPowerCutback(measured.scenario.cutback);
        break;
    case Query::SetTemporaryPowerCutback:
        service.setTemporaryPowerCutback(false, 0);
        break;
    case Query::SetTemperature:
        service.setTemperature(25);
        break;
    case Query::SetBoosterPresence:
        service.setBoosterPresence(0, 0, 0, Modulation::CW);
        break;
    case Query::SecondOutdoorFamily: {
        CalculationData data{};
        data.rsec = measured.scenario.referenceSec;
        data.selectedMinModulation = Modulation::QAM4;
        data.selectedMaxModulation = Modulation::QAM4096;
        data.actualModulation = measured.modulation;
        data.refMaxModulation = Modulation::QAM4096;
        data.pmaxSelectedMinModulation = 2500;
        data.pmaxActualModulation = 2200;
        data.pmaxRefMaxModulation = 1600;
        answer.result = CalculatorKamV2::getInstance()->getMaxPower(data, answer.first, 0, 0, 0,
                                                                    Modulation::CW);
        break;
    }
    case Query::ConstructAndInitialize: {
        OutputPowerCalculator other(2);
        answer.result = static_cast<int>(other.initialize());
        break;
    }
    case Query::PowerCapabilities:
    case Query::AdmodPowerCapabilities:
    case Query::FindPminPmax:
    case Query::UnrestrictedPmax:
    case Query::Array:
        break;
    }
}

unsigned askArray(IOutputPowerCalculator& service, const Case& measured, QueryAnswer& answer) {
    return service.getMinMaxOutputPowerVsModulationArray(
        measured.frameFormatId, {ModulationAndCoding::UNDEFINED}, {ModulationAndCoding::UNDEFINED},
        EReferenceSEC::UNDEFINED, answer.first, answer.powerMap);
}

int askArray(const PlainWay& way, const Case&, QueryAnswer& answer) {
    return way.getMinMaxOutputPowerVsModulationArray(answer.first, answer.powerMap);
}

template <class Answers>
int askArray(const LimitBy<Answers>& way, const Case& measured, QueryAnswer& answer) {
    return way.getMinMaxOutputPowerVsModulationArray(measured.frameFormatId, answer.first,
                                                     answer.powerMap);
}

/// Adds what a node asks while a flight recorder is attached and nothing changes.
void addRecorded(std::vector<Case>& cases) {
    const auto add = [&cases](const char* name, const Scenario& scenario, Query query) -> Case& {
        cases.push_back(caseOf(std::string("recorded/") + name, scenario, query));
        cases.back().isRecorded = true;
        return cases.back();
    };
    const Scenario outdoor = scenarioOf("outdoor1", "QZT 846 57", 39);
    const Scenario radioUnit = scenarioOf("newer-radio-unit", "QZT 860 13", 36, 6);
    Scenario limited = radioUnit;
    limited.isLimitedByProfile = true;
    limited.radioMaximum = Modulation::QAM1024;
    add("outdoor1/fixed", outdoor, Query::PowerCapabilities);
    add("outdoor1/fixed/in-turn", outdoor, Query::PowerCapabilities).isInTurn = true;
    add("outdoor1/adaptive", outdoor, Query::AdmodPowerCapabilities);
    add("outdoor1/unrestricted", outdoor, Query::UnrestrictedPmax);
    add("outdoor1/pmin-pmax", outdoor, Query::FindPminPmax);
    add("outdoor1/array-of-39", outdoor, Query::Array);
    add("outdoor1/array/by-id", outdoor, Query::Array).frameFormatId = 1;
    add("newer-radio-unit/fixed", radioUnit, Query::PowerCapabilities);
    add("newer-radio-unit/adaptive", radioUnit, Query::AdmodPowerCapabilities);
    add("newer-radio-unit/unrestricted", radioUnit, Query::UnrestrictedPmax);
    add("newer-radio-unit/array-of-36", radioUnit, Query::Array);
    add("limited/adaptive", limited, Query::AdmodPowerCapabilities);
}

} // namespace

template <class Computing>
void ask(Computing& way, const Case& measured, QueryAnswer& answer) {
    switch (measured.query) {
    case Query::PowerCapabilities:
        answer.result =
            way.calculatePowerCapabilities(measured.modulation, answer.first, answer.second);
        break;
    case Query::AdmodPowerCapabilities:
        answer.result = way.calculateAdmodPowerCapabilities(
            measured.modulation, measured.scenario.referenceSec, answer.first, answer.second);
        break;
    case Query::FindPminPmax:
        answer.result = way.findPminPmax(answer.first, answer.second);
        break;
    case Query::UnrestrictedPmax:
        answer.result = way.getUnrestrictedPmax(answer.first);
        break;
    case Query::Array:
        answer.result = static_cast<int>(askArray(way, measured, answer));
        break;
    case Query::SetPowerCutback:
    case Query::SetTemporaryPowerCutback:
    case Query::SetTemperature:
    case Query::SetBoosterPresence:
    case Query::SecondOutdoorFamily:
    case Query::ConstructAndInitialize:
        askOther(way, measured, answer);
        break;
    }
}

template void ask(IOutputPowerCalculator&, const Case&, QueryAnswer&);
template void ask(OutputPowerCalculator&, const Case&, QueryAnswer&);
template void ask(const PlainWay&, const Case&, QueryAnswer&);
template void ask(const FairLimit&, const Case&, QueryAnswer&);
template void ask(const BareLimit&, const Case&, QueryAnswer&);

std::vector<Case> allCases() {
    std::vector<Case> cases;
    const auto add = [&cases](const std::string& name, const Scenario& scenario,
                              Query query) -> Case& {
        cases.push_back(caseOf(name, scenario, query));
        return cases.back();
    };
    for (const Family& family : families) {
        const std::string name = family.name;
        // The radio units have no power for the half-rate codes and for those of BPSK; 36 codes
        // lead from there to 4096QAM.
        const bool isRadioUnit = family.firstCode > 0;
        const Scenario bare =
            scenarioOf(name, family.productNumber, isRadioUnit ? 36 : 39, family.firstCode);
        // The booster's path of the fixed-modulation query is the adaptive one, twice.
        const Scenario boosted = withBoosterAndCutback(bare);
        add(name + "/fixed", bare, Query::PowerCapabilities);
        add(name + "/fixed/booster", boosted, Query::PowerCapabilities);
        add(name + "/adaptive", bare, Query::AdmodPowerCapabilities);
        add(name + "/adaptive/booster", boosted, Query::AdmodPowerCapabilities);
        add(name + "/pmin-pmax", bare, Query::FindPminPmax);
        add(name + "/unrestricted", bare, Query::UnrestrictedPmax);
        for (const unsigned int count : {36U, 39U, 42U}) {
            if (isRadioUnit && count > 36) {
                break;
            }
            add(name + "/array-of-" + std::to_string(count),
                scenarioOf(name, family.productNumber, count, family.firstCode), Query::Array);
        }
        add(name + "/array/booster", boosted, Query::Array);
        add(name + "/array/by-id", bare, Query::Array).frameFormatId = 1;
        add(name + "/array/fresh-map", bare, Query::Array).isMapFresh = true;
        Scenario fixed = bare;
        fixed.selectedMax = fixed.selectedMin;
        add(name + "/array/fixed", fixed, Query::Array);
        // What a node writes at the threshold of its trace objects. The radio units have no power
        // for the half-rate codes and for those of BPSK.
        if (family.firstCode > 0) {
            add(name + "/array/half-rate", scenarioOf(name, family.productNumber), Query::Array)
                .isTroubled = true;
        }
        for (const unsigned int count : {1U, 3U}) {
            add(name + "/array/failing-" + std::to_string(count), withoutPmaxOf64Qam(bare, count),
                Query::Array)
                .isTroubled = true;
        }
        add(name + "/adaptive/traced", bare, Query::AdmodPowerCapabilities).traceLevel = 6;
        add(name + "/array/traced", bare, Query::Array).traceLevel = 6;
        if (isRadioUnit) {
            add(name + "/booster/traced", boosted, Query::AdmodPowerCapabilities).traceLevel = 6;
        }
    }
    add("outdoor2/calculator", scenarioOf("outdoor2", ""), Query::SecondOutdoorFamily);

    // What does not depend on the family is asked of the third outdoor family, which carries every
    // modulation that the table has.
    const Scenario outdoor3 = scenarioOf("outdoor3", "QZT 846 003");
    for (const unsigned int count : {1U, 6U, 12U, 24U, 53U}) {
        add("array-of-" + std::to_string(count), scenarioOf("array", "QZT 846 003", count),
            Query::Array);
    }
    add("array-of-1/traced", scenarioOf("array", "QZT 846 003", 1), Query::Array).traceLevel = 6;
    add("fixed/traced", outdoor3, Query::PowerCapabilities).traceLevel = 6;
    // 4096QAM is selected at most; the codes behind it are left out.
    add("above-selection/array", scenarioOf("newer-radio-unit", "QZT 860 13", 42, 6), Query::Array);
    add("quiet/adaptive", outdoor3, Query::AdmodPowerCapabilities).traceLevel = 0;
    add("level-5/adaptive", outdoor3, Query::AdmodPowerCapabilities).traceLevel = 5;
    Scenario cutBack = outdoor3;
    cutBack.cutback = 300;
    add("cutback/fixed", cutBack, Query::PowerCapabilities);
    add("cutback/adaptive", cutBack, Query::AdmodPowerCapabilities);
    Scenario unselected = outdoor3;
    unselected.selectedMin = unselected.selectedMax = {ModulationAndCoding::UNDEFINED};
    add("no-selection/adaptive", unselected, Query::AdmodPowerCapabilities);
    Scenario withoutOffset = outdoor3;
    withoutOffset.hasMinOutputPowerOffset = false;
    add("no-offset/adaptive", withoutOffset, Query::AdmodPowerCapabilities).isTroubled = true;
    add("no-offset/array", withoutOffset, Query::Array).isTroubled = true;
    Scenario limited = outdoor3;
    limited.isLimitedByProfile = true;
    limited.radioMaximum = Modulation::QAM1024;
    add("limited/adaptive", limited, Query::AdmodPowerCapabilities);
    add("limited/array", limited, Query::Array);
    add("limited/array/by-id", limited, Query::Array).frameFormatId = 1;
    limited.isCarrierAggregation = true;
    add("carrier-aggregation/adaptive", limited, Query::AdmodPowerCapabilities);
    add("carrier-aggregation/array/by-id", limited, Query::Array).frameFormatId = 1;
    for (const auto& [name, productNumber] :
         {std::pair("first", "QZT35201/1"), std::pair("last", "QZT35227/1"),
          std::pair("unknown", "QZT35209/1")}) {
        add(std::string("product/") + name, scenarioOf("product", productNumber),
            Query::UnrestrictedPmax);
    }
    addRecorded(cases);
    const Scenario any = scenarioOf("any", "");
    add("setPowerCutback", any, Query::SetPowerCutback);
    add("setTemporaryPowerCutback", any, Query::SetTemporaryPowerCutback);
    add("setTemperature", any, Query::SetTemperature);
    add("setBoosterPresence", any, Query::SetBoosterPresence);
    add("construct-and-initialize", any, Query::ConstructAndInitialize);
    return cases;
}

std::vector<Case> firstUseCases() {
    std::vector<Case> cases;
    for (const Family& family : families) {
        cases.push_back(caseOf(std::string("first-use/") + family.name,
                               scenarioOf(family.name, family.productNumber),
                               Query::AdmodPowerCapabilities));
    }
    cases.push_back(
        caseOf("first-use/outdoor2", scenarioOf("outdoor2", ""), Query::SecondOutdoorFamily));
    return cases;
}

PreparedCase::PreparedCase(const Case& measured)
    : m_case(measured)
    , m_node(m_case.scenario)
    , m_service(1)
    , m_plainWay(m_node, m_case.scenario)
    , m_fairLimit(m_node, m_case.scenario)
    , m_bareLimit(m_node, m_case.scenario) {
    BenchPlatform::setTraceLevel(0);
    start(m_service);
    if (m_case.isRecorded) {
        m_forwarding.emplace(m_node);
        m_forwarding->publish();
        m_forwardedService.emplace(1);
        start(*m_forwardedService);
        m_forwarded.emplace(*m_forwardedService);
        m_node.publish();
        m_recorder.emplace(1, recorderSize);
        m_recorder->attach();
        m_recordedService.emplace(1);
        start(*m_recordedService);
        m_recorder->attach();
        m_recorded = InterfaceBroker::getInstance().getInterface<IOutputPowerCalculator>(
            IOutputPowerCalculator::interfaceName(1));
    }
    BenchPlatform::setTraceLevel(m_case.traceLevel);
}

void PreparedCase::start(OutputPowerCalculator& service) const {
    service.initialize();
    service.setPowerCutback(m_case.scenario.cutback);
    service.setBoosterPresence(m_case.scenario.boosterPresence, m_case.scenario.boosterGain,
                               m_case.scenario.boosterMaxInputPower,
                               m_case.scenario.boosterMaxModulation);
}

PreparedCase::~PreparedCase() {
    BenchPlatform::setTraceLevel(0);
}

std::vector<Way> PreparedCase::ways() const {
    if (m_case.isRecorded) {
        return {Way::Library, Way::Fair, Way::Bare};
    }
    std::vector<Way> ways = {Way::Library};
    if (m_case.hasPlainWay()) {
        ways.push_back(Way::Plain);
    }
    if (m_case.hasLimits()) {
        ways.insert(ways.end(), {Way::Fair, Way::Bare});
    }
    return ways;
}

void PreparedCase::askIn(Way way) {
    QueryAnswer& answer = m_answers[static_cast<std::size_t>(way)];
    if (m_case.isRecorded) {
        IOutputPowerCalculator* asked = &m_service;
        if (way != Way::Fair) {
            asked = way == Way::Library ? m_recorded : &*m_forwarded;
        }
        ask(*asked, m_case, answer);
        return;
    }
    switch (way) {
    case Way::Library:
        ask(m_service, m_case, answer);
        break;
    case Way::Plain:
        ask(std::as_const(m_plainWay), m_case, answer);
        break;
    case Way::Fair:
        ask(std::as_const(m_fairLimit), m_case, answer);
        break;
    case Way::Bare:
        ask(std::as_const(m_bareLimit), m_case, answer);
        break;
    }
}

void PreparedCase::warmUp(Way way) {
    // A recorder in the field is full: each request makes the oldest one part of the state.
    const std::size_t times = m_case.isRecorded ? recorderSize / 16 : 1;
    const Modulation asked = m_case.modulation;
    for (std::size_t left = times; left > 0; --left) {
        // A turn of three, which no ring of a power of two repeats: the oldest request is another.
        m_case.modulation = m_case.isInTurn && left % 3 != 0 ? Modulation::QAM16 : asked;
        askIn(way);
    }
    m_case.modulation = asked;
    if (m_case.isMapFresh) {
        m_answers[static_cast<std::size_t>(way)].powerMap.clear();
    }
}

bool PreparedCase::isAgreed() const {
    const std::vector<Way> ways = this->ways();
    const QueryAnswer& library = m_answers.front();
    return std::all_of(ways.begin(), ways.end(), [&](Way way) {
        const QueryAnswer& other = m_answers[static_cast<std::size_t>(way)];
        return library.result == other.result && library.first == other.first &&
               library.second == other.second && library.powerMap == other.powerMap;
    });
}

const char* nameOf(Way way) {
    switch (way) {
    case Way::Library:
        return "library";
    case Way::Plain:
        return "plain";
    case Way::Fair:
        return "fair";
    case Way::Bare:
        break;
    }
    return "bare";
}
