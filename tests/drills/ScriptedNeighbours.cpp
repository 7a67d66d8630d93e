#include "ScriptedNeighbours.h"

#include "BoardSupport.h"
#include "CStorageManager.h"
#include "InterfaceBroker.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

/// Whom the board and the variable store answer by.
Script* s_script = nullptr;

/// What the store calls the compensation array of the only channel of which it may be asked.
std::string s_storedArray;

void fill(std::vector<short>& profiles, const ScriptedAnswer& answer) {
    profiles.clear();
    for (const std::int32_t value : answer.values) {
        profiles.push_back(static_cast<short>(value));
    }
}

void fill(std::vector<ModulationAndCoding>& codes, const ScriptedAnswer& answer) {
    codes.clear();
    for (const std::int32_t value : answer.values) {
        codes.push_back({value});
    }
}

template <class Enumeration>
unsigned writeNumber(Enumeration& output, const ScriptedAnswer& answer) {
    if (answer.isWritten) {
        output = static_cast<Enumeration>(answer.value());
    }
    return answer.result;
}

} // namespace

// Capability handler

std::string ScriptedCapabilityHandler::getTmuHwProductNumber() const {
    return m_script.ask(Call::ProductNumber).text;
}

unsigned ScriptedCapabilityHandler::getMinOutputPower(const int** table) const {
    const ScriptedAnswer& answer = m_script.ask(Call::MinOutputPower);
    if (answer.isWritten) {
        *table = kept(answer.values).data();
    }
    return answer.result;
}

unsigned ScriptedCapabilityHandler::getPmaxCapabilityDpd1Ansi(const int** table,
                                                              const int** count) const {
    return pmaxTable(Call::PmaxDpd1Ansi, table, count);
}

unsigned ScriptedCapabilityHandler::getPmaxCapabilityDpd2Ansi(const int** table,
                                                              const int** count) const {
    return pmaxTable(Call::PmaxDpd2Ansi, table, count);
}

unsigned ScriptedCapabilityHandler::getPmaxCapabilityDpd1Etsi(const int** table,
                                                              const int** count) const {
    return pmaxTable(Call::PmaxDpd1Etsi, table, count);
}

unsigned ScriptedCapabilityHandler::getPmaxCapabilityDpd2Etsi(const int** table,
                                                              const int** count) const {
    return pmaxTable(Call::PmaxDpd2Etsi, table, count);
}

bool ScriptedCapabilityHandler::isMaxAcmLimitedByHw() const {
    return m_script.ask(Call::IsMaxAcmLimited).value() != 0;
}

short ScriptedCapabilityHandler::getPerformanceProfileIndex() const {
    return static_cast<short>(m_script.ask(Call::ProfileIndex).value());
}

Modulation ScriptedCapabilityHandler::getMaxModulationLimitedByHw(
    const std::vector<short>& performanceProfiles, short performanceProfileIndex) const {
    std::vector<std::int32_t> arguments(performanceProfiles.begin(), performanceProfiles.end());
    arguments.push_back(performanceProfileIndex);
    return static_cast<Modulation>(
        m_script.ask(Call::MaxModulationLimited, std::move(arguments)).value());
}

Modulation ScriptedCapabilityHandler::getMaxModulationWithoutLimitation(
    const EFrameFormatMarket& market) const {
    return static_cast<Modulation>(
        m_script.ask(Call::MaxModulationUnlimited, {static_cast<std::int32_t>(market)}).value());
}

const std::vector<int>&
ScriptedCapabilityHandler::kept(const std::vector<std::int32_t>& values) const {
    m_kept.push_back(std::make_unique<const std::vector<int>>(values));
    return *m_kept.back();
}

unsigned ScriptedCapabilityHandler::pmaxTable(Call call, const int** table,
                                              const int** count) const {
    const ScriptedAnswer& answer = m_script.ask(call);
    if (answer.isWritten) {
        const std::vector<int>& values = kept(answer.values);
        *count = values.data();
        *table = values.data() + 1;
    }
    return answer.result;
}

// ACM handler

unsigned ScriptedAcmHandler::getMinMaxModulationAndCode(ModulationAndCoding& min,
                                                        ModulationAndCoding& max) {
    const ScriptedAnswer& answer = m_script.ask(Call::AcmRange);
    if (answer.isWritten) {
        min.code = answer.values.at(0);
        max.code = answer.values.at(1);
    }
    return answer.result;
}

// Frame format

Modulation ScriptedFrameFormat::getModulation() const {
    return static_cast<Modulation>(m_script.ask(Call::Modulation).value());
}

Modulation ScriptedFrameFormat::getMaxAvailableModulation() const {
    return static_cast<Modulation>(m_script.ask(Call::MaxAvailableModulation).value());
}

void ScriptedFrameFormat::getModulationAndCodeArray(
    std::vector<ModulationAndCoding>& modulationAndCodes) const {
    fill(modulationAndCodes, m_script.ask(Call::Codes));
}

EChannelSpacingType ScriptedFrameFormat::getChannelSpacing() const {
    return static_cast<EChannelSpacingType>(m_script.ask(Call::ChannelSpacing).value());
}

EDpdVersion ScriptedFrameFormat::getDpdVersion() const {
    return static_cast<EDpdVersion>(m_script.ask(Call::DpdVersion).value());
}

EFrameFormatMarket ScriptedFrameFormat::getTelecomMarket() const {
    return static_cast<EFrameFormatMarket>(m_script.ask(Call::Market).value());
}

void ScriptedFrameFormat::getPerformanceProfiles(std::vector<short>& performanceProfiles) const {
    fill(performanceProfiles, m_script.ask(Call::Profiles));
}

void ScriptedFrameFormat::getCarrierAggregationPerformanceProfiles(
    std::vector<short>& performanceProfiles) const {
    fill(performanceProfiles, m_script.ask(Call::CarrierAggregationProfiles));
}

// System power controller

EReferenceSEC ScriptedSystemPowerController::getReferenceSec() const {
    return static_cast<EReferenceSEC>(m_script.ask(Call::ReferenceSec).value());
}

bool ScriptedSystemPowerController::getMinOutputPowerOffset(EChannelSpacingType channelSpacing,
                                                            long& offset) const {
    const ScriptedAnswer& answer =
        m_script.ask(Call::Offset, {static_cast<std::int32_t>(channelSpacing)});
    // A caller that reads the output of an answer without an offset would be seen.
    offset = answer.value();
    return answer.isWritten;
}

// Hardware configuration handler

void ScriptedHardwareConfigurationHandler::getFrameFormatRecords(
    bool flag, std::vector<FrameFormatRecord>& records) const {
    EXPECT_FALSE(flag);
    const std::vector<std::int32_t>& values = m_script.ask(Call::Records).values;
    records.clear();
    for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
        records.push_back({values[i], static_cast<EChannelSpacingType>(values[i + 1])});
    }
}

EDpdVersion ScriptedHardwareConfigurationHandler::getDpdVersion(RadioChannel asked,
                                                                long frameFormatId) const {
    return static_cast<EDpdVersion>(askById(Call::DpdVersionById, asked, frameFormatId).value());
}

unsigned ScriptedHardwareConfigurationHandler::getTelecomMarket(RadioChannel asked,
                                                                long frameFormatId,
                                                                EFrameFormatMarket& market) const {
    return writeNumber(market, askById(Call::MarketById, asked, frameFormatId));
}

unsigned ScriptedHardwareConfigurationHandler::getModulationAndCodeArray(
    RadioChannel asked, long frameFormatId,
    std::vector<ModulationAndCoding>& modulationAndCodes) const {
    const ScriptedAnswer& answer = askById(Call::CodesById, asked, frameFormatId);
    if (answer.isWritten) {
        fill(modulationAndCodes, answer);
    }
    return answer.result;
}

unsigned
ScriptedHardwareConfigurationHandler::getChannelSpacing(RadioChannel asked, long frameFormatId,
                                                        EChannelSpacingType& channelSpacing) const {
    return writeNumber(channelSpacing, askById(Call::ChannelSpacingById, asked, frameFormatId));
}

void ScriptedHardwareConfigurationHandler::getPerformanceProfiles(
    RadioChannel asked, long frameFormatId, std::vector<short>& performanceProfiles) const {
    fill(performanceProfiles, askById(Call::ProfilesById, asked, frameFormatId));
}

void ScriptedHardwareConfigurationHandler::getCarrierAggregationPerformanceProfiles(
    RadioChannel asked, long frameFormatId, std::vector<short>& performanceProfiles) const {
    fill(performanceProfiles, askById(Call::CarrierAggregationProfilesById, asked, frameFormatId));
}

const ScriptedAnswer& ScriptedHardwareConfigurationHandler::askById(Call call, RadioChannel asked,
                                                                    long frameFormatId) const {
    EXPECT_EQ(asked, m_channel);
    return m_script.ask(call, {static_cast<std::int32_t>(frameFormatId)});
}

// All of them

ScriptedChannel::ScriptedChannel(Script& script, RadioChannel channel)
    : capabilityHandler(script)
    , acmHandler(script)
    , frameFormat(script)
    , systemPowerController(script)
    , m_channel(channel) {
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.registerInterface(ICapabilityHandler::interfaceName(channel), &capabilityHandler);
    broker.registerInterface(IAcmHandler::interfaceName(channel), &acmHandler);
    broker.registerInterface(IFrameFormat::interfaceName(channel), &frameFormat);
    broker.registerInterface(ISystemPowerController::interfaceName(channel),
                             &systemPowerController);
}

ScriptedChannel::~ScriptedChannel() {
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.unregisterInterface(ICapabilityHandler::interfaceName(m_channel), nullptr);
    broker.unregisterInterface(IAcmHandler::interfaceName(m_channel), nullptr);
    broker.unregisterInterface(IFrameFormat::interfaceName(m_channel), nullptr);
    broker.unregisterInterface(ISystemPowerController::interfaceName(m_channel), nullptr);
}

ScriptedSurroundings::ScriptedSurroundings(Script& script, RadioChannel channel)
    : ScriptedChannel(script, channel)
    , hardwareConfigurationHandler(script, channel) {
    s_script = &script;
    s_storedArray = "channel." + std::to_string(channel) + ".tx.rf.pmax.cs.comp.v2.array";
    InterfaceBroker::getInstance().registerInterface(IHardwareConfigurationHandler::interfaceName(),
                                                     &hardwareConfigurationHandler);
}

ScriptedSurroundings::~ScriptedSurroundings() {
    InterfaceBroker::getInstance().unregisterInterface(
        IHardwareConfigurationHandler::interfaceName(), nullptr);
    s_script = nullptr;
}

// In a program these stand before the desk platform's own.

bool os::bsp::rl::isFftypeCarrierAggregation() {
    return s_script->ask(Call::IsCarrierAggregation).value() != 0;
}

std::uint32_t CStorageManager_GetVariableContentAddressByName(const char* name,
                                                              const void** address,
                                                              std::uint32_t* size) {
    const std::string asked = name;
    EXPECT_TRUE(asked == s_storedArray || asked == s_storedArray + "size") << asked;
    const ScriptedAnswer& answer = s_script->ask(
        asked == s_storedArray ? Call::CompensationArray : Call::CompensationArraySize);
    if (answer.isWritten) {
        *address = answer.values.data();
        if (size != nullptr) {
            *size = static_cast<std::uint32_t>(answer.values.size());
        }
    }
    return answer.result;
}
