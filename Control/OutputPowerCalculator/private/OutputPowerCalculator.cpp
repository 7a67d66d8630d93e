#include "OutputPowerCalculator.h"

#include "BoardSupport.h"
#include "CalculationData.h"
#include "CalculatorKam.h"
#include "CalculatorKamV3.h"
#include "CalculatorVo4.h"
#include "CalculatorVo5.h"
#include "HardwareFamily.h"
#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "IFrameFormat.h"
#include "IHardwareConfigurationHandler.h"
#include "ISystemPowerController.h"
#include "InterfaceBroker.h"
#include "Power.h"
#include "ResultCode.h"
#include "Trace.h"
#include "private/ModulationOfCode.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <string>

// A query goes through many small steps, and calling them one by one costs about a quarter of it.
// The functions marked so take their steps in and stay whole themselves.
#define QOR_WHOLE_STEP __attribute__((flatten, noinline))
// What a step goes to when every step is traced, or one has failed, stays out of its way.
#define QOR_TRACED_STEP __attribute__((cold, noinline))
// A part of steps that are traced and of some that are not, and knows in each which it is in.
#define QOR_PART_OF_STEP inline __attribute__((always_inline))

// Traces of what is known to be traced, or known not to be.
#define TRACE_ENTER_IF(isTraced, ...)                                                              \
    do {                                                                                           \
        if (isTraced) {                                                                            \
            TRACE_ENTER(__VA_ARGS__);                                                              \
        }                                                                                          \
    } while (false)
#define TRACE_DETAIL_IF(isTraced, ...)                                                             \
    do {                                                                                           \
        if (isTraced) {                                                                            \
            TRACE_MSG(TraceLevel::Detail, __VA_ARGS__);                                            \
        }                                                                                          \
    } while (false)

namespace {

TraceSource s_trace("Control/OutputPowerCalculator/private/OutputPowerCalculator");

/// The frame-format id that goes with the configured frame format.
constexpr long configuredFrameFormat = 0;

/// A channel spacing by which a frame-format record says that it has none.
constexpr EChannelSpacingType noChannelSpacing{3000};

/// convertCodeToModulation() without a call.
Modulation modulationOf(const ModulationAndCoding& modulationAndCoding) {
    return static_cast<Modulation>(Codes::modulationOf(modulationAndCoding.code));
}

bool isUndefined(const ModulationAndCoding& modulationAndCoding) {
    return modulationAndCoding.code == ModulationAndCoding::UNDEFINED;
}

bool isKnown(EDpdVersion dpdVersion) {
    return dpdVersion >= EDpdVersion::Dpd1 && dpdVersion <= EDpdVersion::Dpd3;
}

/// Global reads the ETSI table, unlike in findPminPmax(): that is meant, because with the ANSI
/// table every radio on a Global frame format would transmit at other powers than its link is
/// planned with.
bool readsAnsiTable(EFrameFormatMarket market) {
    return market == EFrameFormatMarket::Ansi;
}

/// The traces of getMaxPowerArray().
/// @return whether there is a table for the DPD version.
bool checkMaxPowerArray(EDpdVersion dpdVersion, EFrameFormatMarket market) {
    constexpr const char* functionName = "getMaxPowerArray";
    TRACE_ENTER_OF(s_trace, functionName, "dpdVersion=", numberOf(dpdVersion), ", market=", market);
    if (!isKnown(dpdVersion)) {
        TRACE_MSG_OF(s_trace, functionName, TraceLevel::Error, "Unknown DPD version ",
                     numberOf(dpdVersion));
        return false;
    }
    return true;
}

/// Traces that a calculator does not apply to a modulation.
void traceIgnored(const char* function, Modulation modulation) {
    TRACE_MSG_OF(s_trace, function, TraceLevel::Result, "ignoring QAM", modulation,
                 " as it's not supported by combined HW capability");
}

/// Whether steps are traced. Asked once for a query, or for a modulation of it: a threshold that is
/// moved meanwhile counts from the next one on.
bool areStepsTraced() {
    return s_trace.isEnabled(TraceLevel::Result);
}

/// Takes a step out of the way of the same step without traces.
template <class Step>
QOR_TRACED_STEP int traced(const Step& step) {
    return step();
}

/// The channel that a service built with a number serves.
RadioChannel servedChannel(unsigned long radioChannel) {
    return radioChannel == 2 ? 2 : 1;
}

/// Name of a channel's service in the broker. It is built once and stays: a destructor, which
/// cannot report that the heap is used up, finds it ready, however late in the process it runs.
const std::string& serviceName(RadioChannel channel) {
    if (channel == 2) {
        static const auto* const second = new std::string(IOutputPowerCalculator::interfaceName(2));
        return *second;
    }
    static const auto* const first = new std::string(IOutputPowerCalculator::interfaceName(1));
    return *first;
}

/// Fetches a neighbour of initialize() from the broker.
/// @param[out] neighbour null if there is none of that name and type.
/// @param complaint what the trace says before the name if there is none.
template <class Interface>
bool connect(Interface*& neighbour, const std::string& name, const char* complaint) {
    neighbour = InterfaceBroker::getInstance().getInterface<Interface>(name);
    if (neighbour == nullptr) {
        TRACE_MSG_OF(s_trace, "initialize", TraceLevel::Error, complaint, name.c_str());
    }
    return neighbour != nullptr;
}

} // namespace

// The tables take the number as it was given, not the channel that is served: that is meant,
// because a node may publish the handler that has them under that number alone.
OutputPowerCalculator::OutputPowerCalculator(unsigned long radioChannel)
    : m_radioChannel(servedChannel(radioChannel))
    , m_txRfMaxPowerCapabilityDpd1Etsi(radioChannel, EDpdVersion::Dpd1, EFrameFormatMarket::Etsi)
    , m_txRfMaxPowerCapabilityDpd2Etsi(radioChannel, EDpdVersion::Dpd2, EFrameFormatMarket::Etsi)
    , m_txRfMaxPowerCapabilityDpd1Ansi(radioChannel, EDpdVersion::Dpd1, EFrameFormatMarket::Ansi)
    , m_txRfMaxPowerCapabilityDpd2Ansi(radioChannel, EDpdVersion::Dpd2, EFrameFormatMarket::Ansi) {
    // For the destructor.
    serviceName(m_radioChannel);
}

OutputPowerCalculator::~OutputPowerCalculator() {
    InterfaceBroker::getInstance().unregisterInterface(serviceName(m_radioChannel), nullptr);
}

unsigned OutputPowerCalculator::initialize() {
    TRACE_ENTER("");

    // A table that cannot be fetched does not stop the service.
    m_txRfMaxPowerCapabilityDpd1Etsi.initialize();
    m_txRfMaxPowerCapabilityDpd2Etsi.initialize();
    m_txRfMaxPowerCapabilityDpd1Ansi.initialize();
    m_txRfMaxPowerCapabilityDpd2Ansi.initialize();

    if (!connect(m_capabilityHandler, ICapabilityHandler::interfaceName(m_radioChannel),
                 "Error getting interface to ")) {
        return ResultCode::Failure;
    }
    if (ResultCode::isFailure(m_capabilityHandler->getMinOutputPower(&m_minOutputPower))) {
        TRACE_MSG(TraceLevel::Error, "Failed to get Pmin from capability handler");
        return ResultCode::Failure;
    }
    // Without a blank before the name, unlike the other complaints.
    if (!connect(m_frameFormat, IFrameFormat::interfaceName(m_radioChannel),
                 "Failed to get interface")) {
        return ResultCode::Failure;
    }
    if (!connect(m_hardwareConfigurationHandler, IHardwareConfigurationHandler::interfaceName(),
                 "Could not get interface ")) {
        return ResultCode::Failure;
    }
    if (!connect(m_acmHandler, IAcmHandler::interfaceName(m_radioChannel),
                 "Could not get interface ")) {
        return ResultCode::Failure;
    }
    if (!connect(m_systemPowerController, ISystemPowerController::interfaceName(m_radioChannel),
                 "Could not get interface ")) {
        return ResultCode::Failure;
    }

    InterfaceBroker::getInstance().registerInterface(serviceName(m_radioChannel), this);
    return ResultCode::Success;
}

// Operating inputs

unsigned OutputPowerCalculator::setTemporaryPowerCutback(bool use, unsigned long cutback) {
    TRACE_ENTER("useTemporaryPowerCutback=", use, ", temporaryPowerCutback=", cutback);
    m_useTemporaryPowerCutback = use;
    m_temporaryPowerCutback = cutback;
    return ResultCode::Success;
}

unsigned OutputPowerCalculator::setPowerCutback(unsigned long cutback) {
    TRACE_ENTER(cutback);
    m_powerCutback = cutback;
    return ResultCode::Success;
}

unsigned OutputPowerCalculator::setTemperature(long temperature) {
    TRACE_ENTER(temperature);
    m_temperature = temperature;
    TRACE_MSG(TraceLevel::Result, "New temperature = ", m_temperature);
    return ResultCode::Success;
}

unsigned OutputPowerCalculator::setBoosterPresence(int presence, int gain, int maxInputPower,
                                                   Modulation maxModulation) {
    m_boosterPresence = presence;
    m_boosterGain = gain;
    m_boosterMaxInputPower = maxInputPower;
    m_boosterMaxModulation = maxModulation;
    TRACE_MSG(TraceLevel::Result, "New boosterPresence = ", m_boosterPresence);
    // Only this line asks for 1 or more; everywhere else any presence but 0 is a booster.
    if (m_boosterPresence >= 1) {
        TRACE_MSG(TraceLevel::Result, "New boosterGain = ", m_boosterGain,
                  ", new boosterMaxInputPower = ", m_boosterMaxInputPower,
                  ", new boosterMaxModulation = ", m_boosterMaxModulation);
    }
    return ResultCode::Success;
}

void OutputPowerCalculator::applyCutbackToMaxPower(long& power) const {
    TRACE_ENTER("");
    power = Power::cutBack(power, cutbackInForce());
}

// Selection of the hardware family

void OutputPowerCalculator::createCalculators() {
    CalculatorKam::getInstance();
    CalculatorKamV3::getInstance();
    CalculatorVo4::getInstance();
    CalculatorVo5::getInstance();
}

Calculator* OutputPowerCalculator::getCalculator(bool isTraced) const {
    const std::string productNumber = m_capabilityHandler->getTmuHwProductNumber();
    const HardwareFamily family = hardwareFamilyOf(productNumber);
    if (family == HardwareFamily::Outdoor1) {
        TRACE_DETAIL_IF(isTraced, (productNumber.empty() ? "Empty productNumber, using" : "Using"),
                        " KaM max power algorithm");
        return CalculatorKam::getInstance();
    }
    if (family == HardwareFamily::Outdoor3) {
        TRACE_DETAIL_IF(isTraced, "Using KaMV3 max power algorithm");
        return CalculatorKamV3::getInstance();
    }
    if (family == HardwareFamily::OlderRadioUnit) {
        TRACE_DETAIL_IF(isTraced, "Using legacy TMU max power algorithm");
        return CalculatorVo4::getInstance();
    }
    TRACE_DETAIL_IF(isTraced, "Using TMU max power algorithm");
    return CalculatorVo5::getInstance();
}

// Max power

const TxRfMaxPowerCapability& OutputPowerCalculator::tableOf(EDpdVersion dpdVersion,
                                                             bool isAnsi) const {
    if (dpdVersion == EDpdVersion::Dpd1) {
        return isAnsi ? m_txRfMaxPowerCapabilityDpd1Ansi : m_txRfMaxPowerCapabilityDpd1Etsi;
    }
    // DPD 3 has no tables of its own.
    return isAnsi ? m_txRfMaxPowerCapabilityDpd2Ansi : m_txRfMaxPowerCapabilityDpd2Etsi;
}

int OutputPowerCalculator::getMaxPowerArray(EDpdVersion dpdVersion, EFrameFormatMarket market,
                                            TxRfMaxPowerCapability& out) const {
    if (!checkMaxPowerArray(dpdVersion, market)) {
        return ResultCode::Failure;
    }
    out = tableOf(dpdVersion, readsAnsiTable(market));
    return ResultCode::Success;
}

int OutputPowerCalculator::getMaxPower(EDpdVersion dpdVersion, EFrameFormatMarket market,
                                       Modulation modulation, long& maxPower) const {
    TRACE_ENTER("dpdVersion=", numberOf(dpdVersion), ", market=", market,
                ", modulationType=", modulation);
    if (!checkMaxPowerArray(dpdVersion, market)) {
        TRACE_MSG(TraceLevel::Warning, "Unable to get power for modulation ", modulation);
        return ResultCode::Failure;
    }
    return tableOf(dpdVersion, readsAnsiTable(market)).getPower(modulation, &maxPower);
}

int OutputPowerCalculator::getCsPowerCompensation(bool isTraced, EChannelSpacingType channelSpacing,
                                                  long& compensation) const {
    const Calculator* const calculator = getCalculator(isTraced);
    if (calculator == nullptr) {
        TRACE_MSG(TraceLevel::Warning, "Could not get calculator");
        return ResultCode::NoCalculator;
    }
    compensation = 0;
    if (ResultCode::isFailure(calculator->getCompensationForChannelSpacing(
            m_radioChannel, channelSpacing, compensation))) {
        TRACE_MSG(TraceLevel::Error, "Could not get power compensation for channel spacing ",
                  numberOf(channelSpacing), "MHz");
        return ResultCode::Failure;
    }
    return ResultCode::Success;
}

OutputPowerCalculator::PowerQuery OutputPowerCalculator::fixedQuery(EDpdVersion dpdVersion,
                                                                    EFrameFormatMarket market,
                                                                    Modulation selectedMod,
                                                                    long csPowerCompensation,
                                                                    bool useCutback) const {
    PowerQuery query = {dpdVersion,  market,      EReferenceSEC::UNDEFINED, selectedMod,
                        selectedMod, selectedMod, csPowerCompensation,      useCutback};
    prepare(query);
    return query;
}

void OutputPowerCalculator::prepare(PowerQuery& query) const {
    if (!isKnown(query.dpdVersion)) {
        return;
    }
    query.table = &tableOf(query.dpdVersion, readsAnsiTable(query.market));
    query.isSelectedMinKnown = query.table->find(query.selectedMinMod, query.pmaxSelectedMin);
    if (query.useCutback) {
        query.pmaxSelectedMin = Power::cutBack(query.pmaxSelectedMin, cutbackInForce());
    }
}

bool OutputPowerCalculator::knowsReference(PowerQuery& query, Modulation reference) {
    if (query.isReferenceKnown && query.referenceMod == reference) {
        return true;
    }
    query.referenceMod = reference;
    query.isReferenceKnown = query.table->findInTable(reference, query.pmaxReference);
    return query.isReferenceKnown;
}

QOR_PART_OF_STEP int OutputPowerCalculator::askCalculator(PowerQuery& query, Modulation actualMod,
                                                          long pmaxSelectedMin, long pmaxActual,
                                                          long csPowerCompensation, bool isTraced,
                                                          long& maxPower) const {
    constexpr const char* functionName = "getAdModMaxPower";
    Calculator* const calculator = getCalculator(isTraced);
    if (calculator == nullptr) {
        TRACE_MSG_OF(s_trace, functionName, TraceLevel::Warning, "Could not get calculator");
        return ResultCode::NoCalculator;
    }
    const Modulation refMaxMod =
        calculator->getMaxRefModulation(query.availableMaxMod, query.selectedMaxMod);
    // Never cut back: the reference offset is a difference of table values.
    if (isTraced || !knowsReference(query, refMaxMod)) {
        query.pmaxReference = 0;
        if (ResultCode::isFailure(
                getMaxPower(query.dpdVersion, query.market, refMaxMod, query.pmaxReference))) {
            // The power stands where a modulation is expected: log readers know the line as it is.
            TRACE_MSG_OF(s_trace, functionName, TraceLevel::Error,
                         "Could not get max output power for reference offset ",
                         query.pmaxReference, "QAM");
            return ResultCode::NoEntry;
        }
        // The DPD version is known by now, or the first look-up would have failed.
        checkMaxPowerArray(query.dpdVersion, query.market);
    }

    const int result = calculator->getMaxPower(
        {// The ANSI market knows one class only.
         query.market == EFrameFormatMarket::Ansi ? EReferenceSEC::Class2 : query.rsec,
         query.selectedMinMod, query.selectedMaxMod, actualMod, refMaxMod, pmaxSelectedMin, 0,
         pmaxActual, query.pmaxReference, csPowerCompensation, *query.table},
        maxPower, m_boosterPresence, m_boosterGain, m_boosterMaxInputPower, m_boosterMaxModulation);
    if (ResultCode::isFailure(result)) {
        TRACE_MSG_OF(s_trace, functionName, TraceLevel::Error, "Modulation not supported ",
                     actualMod, "QAM");
        return ResultCode::NoEntry;
    }
    return result == ResultCode::NotApplicable ? result : static_cast<int>(ResultCode::Success);
}

QOR_PART_OF_STEP int OutputPowerCalculator::getAdModMaxPower(PowerQuery& query,
                                                             Modulation actualMod,
                                                             long& maxPower) const {
    // Either every step is traced, or why one failed.
    long pmaxActual = 0;
    if (areStepsTraced() || !query.isSelectedMinKnown ||
        !query.table->findInTable(actualMod, pmaxActual)) {
        return getAdModMaxPowerTraced(query, actualMod, maxPower);
    }
    long csPowerCompensation = query.csPowerCompensation;
    if (query.useCutback) {
        const unsigned long cutback = cutbackInForce();
        csPowerCompensation = Power::cutBack(csPowerCompensation, cutback);
        pmaxActual = Power::cutBack(pmaxActual, cutback);
    }
    return askCalculator(query, actualMod, query.pmaxSelectedMin, pmaxActual, csPowerCompensation,
                         false, maxPower);
}

QOR_TRACED_STEP int OutputPowerCalculator::getAdModMaxPowerTraced(PowerQuery query,
                                                                  Modulation actualMod,
                                                                  long& maxPower) const {
    constexpr const char* functionName = "getAdModMaxPower";
    TRACE_ENTER_OF(
        s_trace, functionName, "dpdVersion=", numberOf(query.dpdVersion), ", market=", query.market,
        ", convertRsecEnumToString(rsec)=", textOf(query.rsec),
        ", selectedMinMod=", query.selectedMinMod, ", selectedMaxMod=", query.selectedMaxMod,
        ", availableMaxMod=", query.availableMaxMod, ", actualMod=", actualMod,
        ", csPowerCompensation=", query.csPowerCompensation);

    long csPowerCompensation = query.csPowerCompensation;
    if (query.useCutback) {
        applyCutbackToMaxPower(csPowerCompensation);
    }
    // A Pmax is cut back even if its look-up failed, so that the trace of that comes first.
    long pmaxSelectedMin = 0;
    const int minResult =
        getMaxPower(query.dpdVersion, query.market, query.selectedMinMod, pmaxSelectedMin);
    if (query.useCutback) {
        applyCutbackToMaxPower(pmaxSelectedMin);
    }
    if (ResultCode::isFailure(minResult)) {
        TRACE_MSG_OF(s_trace, functionName, TraceLevel::Error,
                     "Could not get max ref output power for selected min ", query.selectedMinMod,
                     "QAM");
        return ResultCode::NoEntry;
    }
    long pmaxActual = 0;
    const int actualResult = getMaxPower(query.dpdVersion, query.market, actualMod, pmaxActual);
    if (query.useCutback) {
        applyCutbackToMaxPower(pmaxActual);
    }
    if (ResultCode::isFailure(actualResult)) {
        TRACE_MSG_OF(s_trace, functionName, TraceLevel::Error,
                     "Could not get max ref output power for actual ", actualMod, "QAM");
        return ResultCode::NoEntry;
    }
    return askCalculator(query, actualMod, pmaxSelectedMin, pmaxActual, csPowerCompensation, true,
                         maxPower);
}

QOR_WHOLE_STEP int OutputPowerCalculator::getBoostedPower(PowerQuery query, Modulation modulation,
                                                          bool isTraced, long& maxPower) const {
    query.rsec = m_systemPowerController->getReferenceSec();
    query.selectedMaxMod = query.selectedMinMod;
    query.availableMaxMod = limitMaxModDueToRadioCapability(
        isTraced, UseConfiguredFF::Configured, configuredFrameFormat,
        m_frameFormat->getMaxAvailableModulation());
    // A calculator that does not apply to a modulation (2) leaves its power at 0, which counts.
    const std::array<Modulation, 2> modulations = {query.selectedMinMod, modulation};
    std::array<long, 2> powers = {};
    std::array<int, 2> results = {};
    for (std::size_t i = 0; i < modulations.size(); ++i) {
        results[i] = getAdModMaxPower(query, modulations[i], powers[i]);
    }
    if (ResultCode::isFailure(results[0]) || ResultCode::isFailure(results[1])) {
        TRACE_MSG_OF(s_trace, "getFixModMaxPower", TraceLevel::Warning,
                     "Failed to get AdMod capabilities, error: ", results[0], ", ", results[1]);
        return ResultCode::Failure;
    }
    // The compensation is in already: the calculator has counted it.
    maxPower = std::min(powers[0], powers[1]);
    return ResultCode::Success;
}

QOR_PART_OF_STEP int OutputPowerCalculator::getFixModMaxPower(const PowerQuery& query,
                                                              Modulation modulation,
                                                              long& maxPower) const {
    long pmax = 0;
    if (areStepsTraced()) {
        return getFixModMaxPowerTraced(query, modulation, maxPower);
    }
    if (m_boosterPresence != 0) {
        return getBoostedPower(query, modulation, false, maxPower);
    }
    if (!query.isSelectedMinKnown || !query.table->findInTable(modulation, pmax)) {
        return getFixModMaxPowerTraced(query, modulation, maxPower);
    }
    if (query.useCutback) {
        pmax = Power::cutBack(pmax, cutbackInForce());
    }
    maxPower = Power::add(std::min(query.pmaxSelectedMin, pmax), query.csPowerCompensation);
    return ResultCode::Success;
}

QOR_TRACED_STEP int OutputPowerCalculator::getFixModMaxPowerTraced(PowerQuery query,
                                                                   Modulation modulation,
                                                                   long& maxPower) const {
    constexpr const char* functionName = "getFixModMaxPower";
    TRACE_ENTER_OF(s_trace, functionName, "dpdVersion=", numberOf(query.dpdVersion),
                   ", market=", query.market, ", selectedMod=", query.selectedMinMod,
                   ", modulation=", modulation, ", csPowerCompensation=", query.csPowerCompensation,
                   ", useCutback=", query.useCutback);

    if (m_boosterPresence != 0) {
        return getBoostedPower(query, modulation, true, maxPower);
    }

    // A look-up that failed counts as a Pmax of 0, and the operation succeeds all the same: that is
    // meant, because a failure would drop the code from the map of an array query.
    long selectedPmax = 0;
    const int selectedResult =
        getMaxPower(query.dpdVersion, query.market, query.selectedMinMod, selectedPmax);
    if (query.useCutback) {
        applyCutbackToMaxPower(selectedPmax);
    }
    if (ResultCode::isFailure(selectedResult)) {
        TRACE_MSG_OF(s_trace, functionName, TraceLevel::Warning,
                     "Failed to calculate power capabilities for modulation ", query.selectedMinMod,
                     "QAM");
    }
    long pmax = 0;
    const int result = getMaxPower(query.dpdVersion, query.market, modulation, pmax);
    if (query.useCutback) {
        applyCutbackToMaxPower(pmax);
    }
    if (ResultCode::isFailure(result)) {
        TRACE_MSG_OF(s_trace, functionName, TraceLevel::Warning,
                     "Failed to calculate power capabilities for modulation ", modulation);
    }
    maxPower = Power::add(std::min(selectedPmax, pmax), query.csPowerCompensation);
    return ResultCode::Success;
}

QOR_PART_OF_STEP int OutputPowerCalculator::answerUnrestrictedPmax(bool isTraced,
                                                                   long& pmax) const {
    constexpr const char* functionName = "getUnrestrictedPmax";
    if (isTraced) {
        TRACE_ENTER_OF(s_trace, functionName, "");
    }
    const Modulation modulation = m_frameFormat->getModulation();
    long compensation = 0;
    if (ResultCode::isFailure(
            getCsPowerCompensation(isTraced, m_frameFormat->getChannelSpacing(), compensation))) {
        return ResultCode::Failure;
    }
    const EDpdVersion dpdVersion = m_frameFormat->getDpdVersion();
    const EFrameFormatMarket market = m_frameFormat->getTelecomMarket();
    // A const one makes the compiler write a slower query.
    // NOLINTNEXTLINE(misc-const-correctness)
    PowerQuery query = fixedQuery(dpdVersion, market, modulation, compensation, false);
    if (ResultCode::isFailure(getFixModMaxPower(query, modulation, pmax))) {
        // Only traced, and a success all the same: that is meant, because callers take a failure
        // for a calibration that cannot be read.
        TRACE_MSG_OF(s_trace, functionName, TraceLevel::Warning,
                     "Failed to calculate power capabilities for modulation ", modulation);
    }
    return ResultCode::Success;
}

QOR_WHOLE_STEP int OutputPowerCalculator::getUnrestrictedPmax(long& pmax) const {
    return areStepsTraced() ? traced([&] { return answerUnrestrictedPmax(true, pmax); })
                            : answerUnrestrictedPmax(false, pmax);
}

// Power capabilities per modulation

int OutputPowerCalculator::getSelectedMinMaxAcm(ModulationAndCoding& min,
                                                ModulationAndCoding& max) const {
    min = max = {ModulationAndCoding::UNDEFINED};
    if (ResultCode::isFailure(m_acmHandler->getMinMaxModulationAndCode(min, max))) {
        TRACE_MSG(TraceLevel::Warning, "failed to get min and max modulation from ACM handler");
        min = max = {ModulationAndCoding::UNDEFINED};
    }
    return ResultCode::Success;
}

bool OutputPowerCalculator::getAdmodEnable(ModulationAndCoding min, ModulationAndCoding max) const {
    ModulationAndCoding selectedMin{};
    ModulationAndCoding selectedMax{};
    getSelectedMinMaxAcm(selectedMin, selectedMax);
    TRACE_ENTER("minModulationAndCode=", textOf(selectedMin),
                ", maxModulationAndCode=", textOf(selectedMax));
    return (isUndefined(min) ? selectedMin : min) != (isUndefined(max) ? selectedMax : max);
}

Modulation
OutputPowerCalculator::getSelectedMinModulation(const ModulationAndCoding& selectedMin) const {
    const Modulation modulation = modulationOf(selectedMin);
    return modulation == Modulation::UNDEFINED ? m_frameFormat->getModulation() : modulation;
}

QOR_PART_OF_STEP int OutputPowerCalculator::answerPowerCapabilities(bool isTraced,
                                                                    Modulation modulation,
                                                                    long& minPower,
                                                                    long& maxPower) const {
    constexpr const char* functionName = "calculatePowerCapabilities";
    if (isTraced) {
        TRACE_ENTER_OF(s_trace, functionName, modulation);
    }
    // Written before anything can fail.
    minPower = getMinOutputPower(
        isTraced, static_cast<unsigned int>(numberOf(m_frameFormat->getChannelSpacing())));

    ModulationAndCoding selectedMin{};
    ModulationAndCoding selectedMax{};
    getSelectedMinMaxAcm(selectedMin, selectedMax);
    const Modulation selectedMod = getSelectedMinModulation(selectedMin);
    if (selectedMod == Modulation::UNDEFINED) {
        TRACE_MSG_OF(s_trace, functionName, TraceLevel::Error, "Failed to get AdMod capabilities");
        return ResultCode::Failure;
    }
    long compensation = 0;
    if (ResultCode::isFailure(
            getCsPowerCompensation(isTraced, m_frameFormat->getChannelSpacing(), compensation))) {
        return ResultCode::Failure;
    }
    const EDpdVersion dpdVersion = m_frameFormat->getDpdVersion();
    const EFrameFormatMarket market = m_frameFormat->getTelecomMarket();
    // A const one makes the compiler write a slower query.
    // NOLINTNEXTLINE(misc-const-correctness)
    PowerQuery query = fixedQuery(dpdVersion, market, selectedMod, compensation, true);
    return getFixModMaxPower(query, modulation, maxPower);
}

QOR_WHOLE_STEP int OutputPowerCalculator::calculatePowerCapabilities(Modulation modulation,
                                                                     long& minPower,
                                                                     long& maxPower) const {
    return areStepsTraced() ? traced([&] {
        return answerPowerCapabilities(true, modulation, minPower, maxPower);
    })
                            : answerPowerCapabilities(false, modulation, minPower, maxPower);
}

QOR_PART_OF_STEP int
OutputPowerCalculator::answerAdmodPowerCapabilities(bool isTraced, Modulation actualModulation,
                                                    EReferenceSEC rsec, long& minPower,
                                                    long& maxPower) const {
    constexpr const char* functionName = "calculateAdmodPowerCapabilities";
    if (isTraced) {
        TRACE_ENTER_OF(s_trace, functionName, "actualModulation=", actualModulation,
                       ", convertRsecEnumToString(rsec)=", textOf(rsec));
    }
    ModulationAndCoding selectedMin{};
    ModulationAndCoding selectedMax{};
    getSelectedMinMaxAcm(selectedMin, selectedMax);
    const Modulation selectedMinMod = getSelectedMinModulation(selectedMin);
    if (selectedMinMod == Modulation::UNDEFINED) {
        TRACE_MSG_OF(s_trace, functionName, TraceLevel::Error, "Failed to get AdMod capabilities");
        return ResultCode::Failure;
    }
    const Modulation limitedMaxMod = limitMaxModDueToRadioCapability(
        isTraced, UseConfiguredFF::Configured, configuredFrameFormat,
        m_frameFormat->getMaxAvailableModulation());
    // Without a selection the limited maximum counts as selected; the array query takes the
    // unlimited one there. Both are meant: the offsets of newer radio units count from the
    // selected maximum, so that one rule for both would move every power of a link without a
    // selection.
    Modulation selectedMaxMod = modulationOf(selectedMax);
    if (selectedMaxMod == Modulation::UNDEFINED) {
        selectedMaxMod = limitedMaxMod;
    }
    long compensation = 0;
    if (ResultCode::isFailure(
            getCsPowerCompensation(isTraced, m_frameFormat->getChannelSpacing(), compensation))) {
        return ResultCode::Failure;
    }
    const EDpdVersion dpdVersion = m_frameFormat->getDpdVersion();
    const EFrameFormatMarket market = m_frameFormat->getTelecomMarket();
    PowerQuery query = {dpdVersion,     market,        rsec,         selectedMinMod,
                        selectedMaxMod, limitedMaxMod, compensation, true};
    prepare(query);
    const int result = getAdModMaxPower(query, actualModulation, maxPower);
    if (ResultCode::isFailure(result)) {
        TRACE_MSG_OF(s_trace, functionName, TraceLevel::Error, "Failed to get AdMod capabilities");
        return result;
    }
    if (result == ResultCode::NotApplicable) {
        traceIgnored(functionName, actualModulation);
        return result;
    }
    minPower = getMinOutputPower(
        isTraced, static_cast<unsigned int>(numberOf(m_frameFormat->getChannelSpacing())));
    return ResultCode::Success;
}

QOR_WHOLE_STEP int OutputPowerCalculator::calculateAdmodPowerCapabilities(
    Modulation actualModulation, EReferenceSEC rsec, long& minPower, long& maxPower) {
    return areStepsTraced() ? traced([&] {
        return answerAdmodPowerCapabilities(true, actualModulation, rsec, minPower, maxPower);
    })
                            : answerAdmodPowerCapabilities(false, actualModulation, rsec, minPower,
                                                           maxPower);
}

Modulation OutputPowerCalculator::limitMaxModDueToRadioCapability(
    bool isTraced, UseConfiguredFF useConfiguredFF, long rfid,
    const Modulation& modemMaxAvailableModulation) const {
    TRACE_ENTER_IF(isTraced, rfid);
    EFrameFormatMarket market = EFrameFormatMarket::Etsi;
    if (useConfiguredFF == UseConfiguredFF::Configured) {
        market = m_frameFormat->getTelecomMarket();
    } else if (useConfiguredFF == UseConfiguredFF::ById) {
        m_hardwareConfigurationHandler->getTelecomMarket(m_radioChannel, rfid, market);
    }

    const bool isLimited = m_capabilityHandler->isMaxAcmLimitedByHw();
    TRACE_DETAIL_IF(isTraced, " usePerformaceProfiles: ", (isLimited ? "Yes" : "No"));
    Modulation radioMaxAvailableModulation;
    if (isLimited) {
        const bool isConfigured = useConfiguredFF == UseConfiguredFF::Configured;
        std::vector<short> profiles;
        if (os::bsp::rl::isFftypeCarrierAggregation()) {
            if (isConfigured) {
                m_frameFormat->getCarrierAggregationPerformanceProfiles(profiles);
            } else {
                m_hardwareConfigurationHandler->getCarrierAggregationPerformanceProfiles(
                    m_radioChannel, rfid, profiles);
            }
        } else if (isConfigured) {
            m_frameFormat->getPerformanceProfiles(profiles);
        } else {
            m_hardwareConfigurationHandler->getPerformanceProfiles(m_radioChannel, rfid, profiles);
        }
        const short profileIndex = m_capabilityHandler->getPerformanceProfileIndex();
        radioMaxAvailableModulation =
            m_capabilityHandler->getMaxModulationLimitedByHw(profiles, profileIndex);
    } else {
        radioMaxAvailableModulation =
            m_capabilityHandler->getMaxModulationWithoutLimitation(market);
    }
    if (radioMaxAvailableModulation == Modulation::UNDEFINED) {
        radioMaxAvailableModulation = modemMaxAvailableModulation;
    }
    TRACE_DETAIL_IF(isTraced, " modemMaxAvailableModulation: ", modemMaxAvailableModulation,
                    " radioMaxAvailableModulation: ", radioMaxAvailableModulation);
    return std::min(radioMaxAvailableModulation, modemMaxAvailableModulation);
}

// Output power versus modulation

QOR_WHOLE_STEP unsigned OutputPowerCalculator::getMinMaxOutputPowerVsModulationArray(
    long frameFormatId, ModulationAndCoding minModulationAndCodeIn,
    ModulationAndCoding maxModulationAndCodeIn, EReferenceSEC referenceSec, long& minOutputPower,
    std::map<ModulationAndCoding, long>& powerMap) const {
    TRACE_ENTER("frameformat_id=", frameFormatId,
                ", minModulationAndCodeIn=", textOf(minModulationAndCodeIn),
                ", maxModulationAndCodeIn=", textOf(maxModulationAndCodeIn),
                ", referenceSec=", numberOf(referenceSec));
    if (referenceSec == EReferenceSEC::UNDEFINED) {
        referenceSec = m_systemPowerController->getReferenceSec();
    }
    ModulationAndCoding selectedMin{};
    ModulationAndCoding selectedMax{};
    getSelectedMinMaxAcm(selectedMin, selectedMax);
    const Modulation minModulation =
        modulationOf(isUndefined(minModulationAndCodeIn) ? selectedMin : minModulationAndCodeIn);
    const Modulation maxModulation =
        modulationOf(isUndefined(maxModulationAndCodeIn) ? selectedMax : maxModulationAndCodeIn);
    const bool adModEnable = getAdmodEnable(minModulationAndCodeIn, maxModulationAndCodeIn);

    const bool isConfigured = frameFormatId < 1;
    const unsigned result =
        isConfigured ? getMaxOutputPowerArrayUsingConfigured(referenceSec, adModEnable,
                                                             minModulation, maxModulation, powerMap)
                     : getMaxOutputPowerArrayUsingRfid(frameFormatId, referenceSec, adModEnable,
                                                       minModulation, maxModulation, powerMap);
    if (ResultCode::isFailure(result)) {
        return result;
    }
    minOutputPower =
        isConfigured ? getMinOutputPower(true, static_cast<unsigned int>(
                                                   numberOf(m_frameFormat->getChannelSpacing())))
                     : getMinOutputPowerUsingRfid(static_cast<unsigned int>(frameFormatId));
    TRACE_MSG(TraceLevel::Result, "minOutputPower = ", minOutputPower);
    return result;
}

unsigned OutputPowerCalculator::getMaxOutputPowerArrayUsingConfigured(
    EReferenceSEC rsec, bool adModEnable, Modulation selectedMinMod, Modulation selectedMaxMod,
    std::map<ModulationAndCoding, long>& powerMap) const {
    TRACE_ENTER("rsec=", numberOf(rsec), ", adModEnable=", adModEnable,
                ", selectedMinMod=", selectedMinMod, ", selectedMaxMod=", selectedMaxMod);
    std::vector<ModulationAndCoding> modulationAndCodeArray;
    m_frameFormat->getModulationAndCodeArray(modulationAndCodeArray);
    const EDpdVersion dpdVersion = m_frameFormat->getDpdVersion();
    const EFrameFormatMarket market = m_frameFormat->getTelecomMarket();
    const EChannelSpacingType channelSpacing = m_frameFormat->getChannelSpacing();
    return populateModulationPowerMap(
        modulationAndCodeArray, configuredFrameFormat, rsec, adModEnable, selectedMinMod,
        selectedMaxMod, UseConfiguredFF::Configured, dpdVersion, market, channelSpacing, powerMap);
}

unsigned OutputPowerCalculator::getMaxOutputPowerArrayUsingRfid(
    long rfid, EReferenceSEC rsec, bool adModEnable, Modulation selectedMinMod,
    Modulation selectedMaxMod, std::map<ModulationAndCoding, long>& powerMap) const {
    TRACE_ENTER("rfid=", rfid, ", rsec=", numberOf(rsec), ", adModEnable=", adModEnable,
                ", selectedMinMod=", selectedMinMod, ", selectedMaxMod=", selectedMaxMod);
    const IHardwareConfigurationHandler& handler = *m_hardwareConfigurationHandler;
    const EDpdVersion dpdVersion = handler.getDpdVersion(m_radioChannel, rfid);

    // None of these failures stops the query: it goes on with what it has.
    EFrameFormatMarket market = EFrameFormatMarket::Etsi;
    if (ResultCode::isFailure(handler.getTelecomMarket(m_radioChannel, rfid, market))) {
        TRACE_MSG(TraceLevel::Error, "Failed to get telecom market, wrong channel or FFID?");
    }
    std::vector<ModulationAndCoding> modulationAndCodeArray;
    if (ResultCode::isFailure(
            handler.getModulationAndCodeArray(m_radioChannel, rfid, modulationAndCodeArray))) {
        TRACE_MSG(TraceLevel::Error,
                  "Failed to get modulation and code array, wrong channel or FFID?");
    }
    EChannelSpacingType channelSpacing{};
    if (ResultCode::isFailure(handler.getChannelSpacing(m_radioChannel, rfid, channelSpacing))) {
        TRACE_MSG(TraceLevel::Error, "Failed to get channel spacing, wrong channel or FFID?");
    }
    return populateModulationPowerMap(modulationAndCodeArray, rfid, rsec, adModEnable,
                                      selectedMinMod, selectedMaxMod, UseConfiguredFF::ById,
                                      dpdVersion, market, channelSpacing, powerMap);
}

QOR_WHOLE_STEP unsigned OutputPowerCalculator::populateModulationPowerMap(
    const std::vector<ModulationAndCoding>& modulationAndCodeArray, long rfid, EReferenceSEC rsec,
    bool adModEnable, Modulation selectedMinMod, Modulation selectedMaxMod,
    UseConfiguredFF useConfiguredFF, EDpdVersion dpdVersion, EFrameFormatMarket market,
    EChannelSpacingType channelSpacing, std::map<ModulationAndCoding, long>& powerMap) const {
    TRACE_ENTER("rsec=", numberOf(rsec), ", adModEnable=", adModEnable,
                ", selectedMinMod=", selectedMinMod, ", selectedMaxMod=", selectedMaxMod);
    TRACE_MSG(TraceLevel::Detail, "modulationAndCodeArraySize = ", modulationAndCodeArray.size());
    if (modulationAndCodeArray.empty()) {
        TRACE_MSG(TraceLevel::Error,
                  "Failed to calculate power capabilities, modulationAndCodeArray is empty");
        return ResultCode::MapFailure;
    }

    const auto [lowestCode, highestCode] =
        std::minmax_element(modulationAndCodeArray.begin(), modulationAndCodeArray.end());
    const Modulation availableMaxMod = modulationOf(*highestCode);
    // The undefined code is the highest of all: an array that holds it anywhere fails here,
    // although the walk could leave it out. That is meant, because the highest modulation, from
    // which offsets count, is not known of a frame format that is described in part.
    if (availableMaxMod == Modulation::UNDEFINED) {
        TRACE_MSG(TraceLevel::Error,
                  "Failed to calculate power capabilities for undefined max modulation");
        return ResultCode::MapFailure;
    }
    if (selectedMinMod == Modulation::UNDEFINED) {
        selectedMinMod = modulationOf(*lowestCode);
    }
    const Modulation limitedMaxMod =
        limitMaxModDueToRadioCapability(true, useConfiguredFF, rfid, availableMaxMod);
    // The available maximum, not the limited one: that is meant, because the offsets of newer
    // radio units count from it, and a limit must not move the powers of the modulations below.
    if (selectedMaxMod == Modulation::UNDEFINED) {
        selectedMaxMod = availableMaxMod;
    }
    long compensation = 0;
    if (ResultCode::isFailure(getCsPowerCompensation(true, channelSpacing, compensation))) {
        return ResultCode::Failure;
    }

    PowerQuery query = {dpdVersion,     market,        rsec,         selectedMinMod,
                        selectedMaxMod, limitedMaxMod, compensation, true};
    prepare(query);
    // Consecutive codes of one modulation share one computation, and one power goes through the
    // whole walk: a calculator that adds to what it finds adds to the code before.
    Modulation lastStored = Modulation::UNDEFINED;
    long power = 0;
    // Codes usually ascend, and callers keep their map: each then stands right behind the one
    // before.
    auto place = powerMap.begin();
    for (const ModulationAndCoding& code : modulationAndCodeArray) {
        const Modulation modulation = modulationOf(code);
        // A number between the codes has the undefined modulation, which is above every limit.
        if (limitedMaxMod < modulation) {
            continue;
        }
        if (modulation != lastStored) {
            const int result = adModEnable ? getAdModMaxPower(query, modulation, power)
                                           : getFixModMaxPower(query, modulation, power);
            if (ResultCode::isFailure(result)) {
                TRACE_MSG(TraceLevel::Warning,
                          "Failed to calculate power capabilities for modType ", modulation);
                continue;
            }
            if (result == ResultCode::NotApplicable) {
                traceIgnored(__func__, modulation);
                continue;
            }
            lastStored = modulation;
        }
        if (place != powerMap.end() && place->first == code) {
            place->second = power;
            ++place;
        } else {
            place = std::next(powerMap.insert_or_assign(place, code, power));
        }
    }
    return ResultCode::Success;
}

// Minimum output power

long OutputPowerCalculator::getMinOutputPower(bool isTraced, unsigned int channelSpacing) const {
    TRACE_ENTER_IF(isTraced, channelSpacing);
    // A capability handler that keeps the default hands out no table.
    const long minOutputPower = m_minOutputPower == nullptr ? 0 : *m_minOutputPower;
    long offset = 0;
    if (m_systemPowerController->getMinOutputPowerOffset(
            static_cast<EChannelSpacingType>(channelSpacing), offset)) {
        return Power::add(minOutputPower, offset);
    }
    TRACE_MSG(TraceLevel::Warning, " no match for channel spacing : ", channelSpacing);
    return minOutputPower;
}

long OutputPowerCalculator::getMinOutputPowerUsingRfid(unsigned int rfid) const {
    TRACE_ENTER("rfid=", rfid);
    std::vector<FrameFormatRecord> records;
    m_hardwareConfigurationHandler->getFrameFormatRecords(false, records);
    const auto record =
        std::find_if(records.begin(), records.end(), [rfid](const FrameFormatRecord& candidate) {
            return static_cast<unsigned int>(candidate.id) == rfid;
        });
    const bool hasSpacing = record != records.end() && record->channelSpacing != noChannelSpacing;
    return getMinOutputPower(
        true, hasSpacing ? static_cast<unsigned int>(numberOf(record->channelSpacing)) : 0);
}

QOR_WHOLE_STEP int OutputPowerCalculator::findPminPmax(long& pmin, long& pmax) const {
    TRACE_ENTER("");
    const EDpdVersion dpdVersion = m_frameFormat->getDpdVersion();
    if (!isKnown(dpdVersion)) {
        TRACE_MSG(TraceLevel::Error, "Unknown DPD version ",
                  numberOf(m_frameFormat->getDpdVersion()));
        return ResultCode::Failure;
    }
    // Global reads the ANSI table here and the ETSI table everywhere else: that is meant, because
    // with one rule for both the range or the powers of every Global link would change.
    const bool isAnsi = m_frameFormat->getTelecomMarket() != EFrameFormatMarket::Etsi;
    if (ResultCode::isFailure(tableOf(dpdVersion, isAnsi).getMaxPower(&pmax))) {
        TRACE_MSG(TraceLevel::Error, "Failed to getMaxPower");
        return ResultCode::Failure;
    }
    pmin = getMinOutputPower(
        true, static_cast<unsigned int>(numberOf(m_frameFormat->getChannelSpacing())));
    return ResultCode::Success;
}
