#include "SimulatedCapabilityHandler.h"

#include <tuple>

namespace {

/// The one modulation that holds for all, or the one listed for a key. A null key is listed
/// nowhere.
template <class Key>
Modulation modulationFor(const Key* key,
                         const std::variant<Modulation, std::map<Key, Modulation>>& answer) {
    if (const Modulation* const one = std::get_if<Modulation>(&answer)) {
        return *one;
    }
    const auto& byKey = std::get<std::map<Key, Modulation>>(answer);
    const auto found = key == nullptr ? byKey.end() : byKey.find(*key);
    return found == byKey.end() ? Modulation::UNDEFINED : found->second;
}

} // namespace

std::vector<int> pmaxTable(std::initializer_list<std::pair<Modulation, int>> rows) {
    std::vector<int> integers;
    for (const auto& [modulation, power] : rows) {
        integers.push_back(static_cast<int>(modulation));
        integers.push_back(power);
    }
    return integers;
}

SimulatedCapabilityHandler::SimulatedCapabilityHandler(const CapabilityHandlerAnswers& answers)
    : CallRecorder("ICapabilityHandler") {
    setAnswers(answers);
}

void SimulatedCapabilityHandler::setAnswers(const CapabilityHandlerAnswers& answers) {
    m_answers = answers;

    std::optional<CapabilityHandlerAnswers::Pmax> minOutputPower;
    if (answers.minOutputPower) {
        if (const int* const power = std::get_if<int>(&*answers.minOutputPower)) {
            minOutputPower = std::vector<int>{*power};
        } else {
            minOutputPower = std::get<ResultOnly>(*answers.minOutputPower);
        }
    }
    m_minOutputPower = prepare(minOutputPower);
    m_pmaxDpd1Ansi = prepare(answers.pmaxDpd1Ansi);
    m_pmaxDpd2Ansi = prepare(answers.pmaxDpd2Ansi);
    m_pmaxDpd1Etsi = prepare(answers.pmaxDpd1Etsi);
    m_pmaxDpd2Etsi = prepare(answers.pmaxDpd2Etsi);
}

std::string SimulatedCapabilityHandler::getTmuHwProductNumber() const {
    record("getTmuHwProductNumber");
    return m_answers.productNumber ? *m_answers.productNumber
                                   : ICapabilityHandler::getTmuHwProductNumber();
}

unsigned SimulatedCapabilityHandler::getMinOutputPower(const int** table) const {
    return handOut("getMinOutputPower", m_minOutputPower, table, nullptr,
                   [&] { return ICapabilityHandler::getMinOutputPower(table); });
}

unsigned SimulatedCapabilityHandler::getPmaxCapabilityDpd1Ansi(const int** table,
                                                               const int** count) const {
    return handOut("getPmaxCapabilityDpd1Ansi", m_pmaxDpd1Ansi, table, count,
                   [&] { return ICapabilityHandler::getPmaxCapabilityDpd1Ansi(table, count); });
}

unsigned SimulatedCapabilityHandler::getPmaxCapabilityDpd2Ansi(const int** table,
                                                               const int** count) const {
    return handOut("getPmaxCapabilityDpd2Ansi", m_pmaxDpd2Ansi, table, count,
                   [&] { return ICapabilityHandler::getPmaxCapabilityDpd2Ansi(table, count); });
}

unsigned SimulatedCapabilityHandler::getPmaxCapabilityDpd1Etsi(const int** table,
                                                               const int** count) const {
    return handOut("getPmaxCapabilityDpd1Etsi", m_pmaxDpd1Etsi, table, count,
                   [&] { return ICapabilityHandler::getPmaxCapabilityDpd1Etsi(table, count); });
}

unsigned SimulatedCapabilityHandler::getPmaxCapabilityDpd2Etsi(const int** table,
                                                               const int** count) const {
    return handOut("getPmaxCapabilityDpd2Etsi", m_pmaxDpd2Etsi, table, count,
                   [&] { return ICapabilityHandler::getPmaxCapabilityDpd2Etsi(table, count); });
}

bool SimulatedCapabilityHandler::isMaxAcmLimitedByHw() const {
    record("isMaxAcmLimitedByHw");
    return m_answers.maxAcmLimitedByHw ? *m_answers.maxAcmLimitedByHw
                                       : ICapabilityHandler::isMaxAcmLimitedByHw();
}

short SimulatedCapabilityHandler::getPerformanceProfileIndex() const {
    record("getPerformanceProfileIndex");
    return m_answers.performanceProfileIndex ? *m_answers.performanceProfileIndex
                                             : ICapabilityHandler::getPerformanceProfileIndex();
}

Modulation SimulatedCapabilityHandler::getMaxModulationLimitedByHw(
    const std::vector<short>& performanceProfiles, short performanceProfileIndex) const {
    record("getMaxModulationLimitedByHw", performanceProfiles, performanceProfileIndex);
    if (!m_answers.maxModulationLimitedByHw) {
        return ICapabilityHandler::getMaxModulationLimitedByHw(performanceProfiles,
                                                               performanceProfileIndex);
    }
    const auto index = static_cast<std::size_t>(performanceProfileIndex);
    const bool isInside = performanceProfileIndex >= 0 && index < performanceProfiles.size();
    return modulationFor(isInside ? &performanceProfiles[index] : nullptr,
                         *m_answers.maxModulationLimitedByHw);
}

Modulation SimulatedCapabilityHandler::getMaxModulationWithoutLimitation(
    const EFrameFormatMarket& market) const {
    record("getMaxModulationWithoutLimitation", market);
    return m_answers.maxModulationWithoutLimitation
               ? modulationFor(&market, *m_answers.maxModulationWithoutLimitation)
               : ICapabilityHandler::getMaxModulationWithoutLimitation(market);
}

bool SimulatedCapabilityHandler::Table::operator<(const Table& other) const {
    return std::tie(count, integers) < std::tie(other.count, other.integers);
}

const SimulatedCapabilityHandler::Table*
SimulatedCapabilityHandler::keep(std::vector<int> integers) {
    const auto count = static_cast<int>(integers.size());
    // A reader walks in rows and may look behind an odd last integer; and an empty table has an
    // address too.
    if (integers.empty() || count % 2 != 0) {
        integers.push_back(0);
    }
    return &*m_tables.insert({std::move(integers), count}).first;
}

SimulatedCapabilityHandler::PreparedTable
SimulatedCapabilityHandler::prepare(const std::optional<CapabilityHandlerAnswers::Pmax>& answer) {
    if (!answer) {
        return std::nullopt;
    }
    if (const ResultOnly* const resultOnly = std::get_if<ResultOnly>(&*answer)) {
        return *resultOnly;
    }
    return keep(std::get<std::vector<int>>(*answer));
}

/// @param count null if the operation hands out no count.
template <class DefaultBody>
unsigned SimulatedCapabilityHandler::handOut(const char* operation, const PreparedTable& prepared,
                                             const int** table, const int** count,
                                             DefaultBody defaultBody) const {
    record(operation);
    if (const std::optional<unsigned> code = countCall()) {
        return *code;
    }
    if (!prepared) {
        return defaultBody();
    }
    if (const ResultOnly* const resultOnly = std::get_if<ResultOnly>(&*prepared)) {
        return resultOnly->result;
    }
    const Table& kept = *std::get<const Table*>(*prepared);
    *table = kept.integers.data();
    if (count != nullptr) {
        *count = &kept.count;
    }
    return ResultCode::Success;
}
