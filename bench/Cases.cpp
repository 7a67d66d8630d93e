#include "Cases.h"

#include "BenchPlatform.h"

namespace {

struct Family {
    const char* name;
    const char* productNumber;
};

constexpr Family families[] = {{"outdoor1", "QZT 846 57"},
                               {"outdoor3", "QZT 846 003"},
                               {"older-radio-unit", "QZT35203/1"},
                               {"newer-radio-unit", "QZT 860 13"}};

Case caseOf(const std::string& name, const Scenario& scenario, Query query) {
    return {name, scenario, query};
}

/// A query that the plain way and the limit do not know.
template <class Way>
void askOther(Way&, const Case&, QueryAnswer&) {}

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

unsigned askArray(OutputPowerCalculator& service, QueryAnswer& answer) {
    return service.getMinMaxOutputPowerVsModulationArray(
        0, {ModulationAndCoding::UNDEFINED}, {ModulationAndCoding::UNDEFINED},
        EReferenceSEC::UNDEFINED, answer.first, answer.powerMap);
}

template <class Way>
unsigned askArray(Way& way, QueryAnswer& answer) {
    return static_cast<unsigned>(
        way.getMinMaxOutputPowerVsModulationArray(answer.first, answer.powerMap));
}

} // namespace

template <class Way>
void ask(Way& way, const Case& measured, QueryAnswer& answer) {
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
        answer.result = static_cast<int>(askArray(way, answer));
        break;
    case Query::SetPowerCutback:
    case Query::SetTemporaryPowerCutback:
    case Query::SetTemperature:
    case Query::SetBoosterPresence:
    case Query::ConstructAndInitialize:
        askOther(way, measured, answer);
        break;
    }
}

template void ask(OutputPowerCalculator&, const Case&, QueryAnswer&);
template void ask(const PlainWay&, const Case&, QueryAnswer&);
template void ask(const Limit&, const Case&, QueryAnswer&);

std::vector<Case> allCases() {
    std::vector<Case> cases;
    for (const Family& family : families) {
        const std::string name = family.name;
        const Scenario bare = scenarioOf(name, family.productNumber);
        // The booster's path of the fixed-modulation query is the adaptive one, twice.
        const Scenario boosted = withBoosterAndCutback(bare);
        Scenario cutBack = bare;
        cutBack.cutback = 300;
        cases.push_back(caseOf(name + "/fixed", bare, Query::PowerCapabilities));
        cases.push_back(caseOf(name + "/fixed/cutback", cutBack, Query::PowerCapabilities));
        cases.push_back(caseOf(name + "/fixed/booster", boosted, Query::PowerCapabilities));
        cases.push_back(caseOf(name + "/adaptive", bare, Query::AdmodPowerCapabilities));
        cases.push_back(caseOf(name + "/adaptive/cutback", cutBack, Query::AdmodPowerCapabilities));
        cases.push_back(caseOf(name + "/adaptive/booster", boosted, Query::AdmodPowerCapabilities));
        cases.push_back(caseOf(name + "/pmin-pmax", bare, Query::FindPminPmax));
        cases.push_back(caseOf(name + "/unrestricted", bare, Query::UnrestrictedPmax));
        cases.push_back(caseOf(name + "/array", bare, Query::Array));
        cases.push_back(caseOf(name + "/array/booster", boosted, Query::Array));
        Case traced = caseOf(name + "/adaptive/traced", bare, Query::AdmodPowerCapabilities);
        traced.isTraced = true;
        cases.push_back(traced);
        traced = caseOf(name + "/array/traced", bare, Query::Array);
        traced.isTraced = true;
        cases.push_back(traced);
    }
    // The third outdoor family carries every modulation that the table has.
    for (const unsigned int count : {1U, 6U, 12U, 24U, 53U}) {
        cases.push_back(caseOf("array-of-" + std::to_string(count),
                               scenarioOf("array", "QZT 846 003", count), Query::Array));
    }
    for (const auto& [name, productNumber] :
         {std::pair("first", "QZT35201/1"), std::pair("last", "QZT35227/1"),
          std::pair("unknown", "QZT35209/1")}) {
        cases.push_back(caseOf(std::string("product/") + name, scenarioOf("product", productNumber),
                               Query::UnrestrictedPmax));
    }
    const Scenario any = scenarioOf("any", "");
    cases.push_back(caseOf("setPowerCutback", any, Query::SetPowerCutback));
    cases.push_back(caseOf("setTemporaryPowerCutback", any, Query::SetTemporaryPowerCutback));
    cases.push_back(caseOf("setTemperature", any, Query::SetTemperature));
    cases.push_back(caseOf("setBoosterPresence", any, Query::SetBoosterPresence));
    cases.push_back(caseOf("construct-and-initialize", any, Query::ConstructAndInitialize));
    return cases;
}

std::vector<Case> firstUseCases() {
    std::vector<Case> cases;
    for (const Family& family : families) {
        cases.push_back(caseOf(std::string("first-use/") + family.name,
                               scenarioOf(family.name, family.productNumber),
                               Query::AdmodPowerCapabilities));
    }
    return cases;
}

PreparedCase::PreparedCase(const Case& measured)
    : m_case(measured)
    , m_node(m_case.scenario)
    , m_service(1)
    , m_plainWay(m_node, m_case.scenario)
    , m_limit(m_case.scenario) {
    BenchPlatform::setTraceLevel(0);
    m_service.initialize();
    m_service.setPowerCutback(m_case.scenario.cutback);
    m_service.setBoosterPresence(m_case.scenario.boosterPresence, m_case.scenario.boosterGain,
                                 m_case.scenario.boosterMaxInputPower,
                                 m_case.scenario.boosterMaxModulation);
    BenchPlatform::setTraceLevel(m_case.isTraced ? 6 : 0);
}

PreparedCase::~PreparedCase() {
    BenchPlatform::setTraceLevel(0);
}

bool PreparedCase::isAgreed() const {
    const auto agrees = [this](const QueryAnswer& other) {
        return m_libraryAnswer.result == other.result && m_libraryAnswer.first == other.first &&
               m_libraryAnswer.second == other.second && m_libraryAnswer.powerMap == other.powerMap;
    };
    return !m_case.hasYardsticks() || (agrees(m_plainAnswer) && agrees(m_limitAnswer));
}
