#pragma once

#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "IFrameFormat.h"
#include "IHardwareConfigurationHandler.h"
#include "ISystemPowerController.h"
#include "Script.h"

#include <memory>
#include <vector>

// The neighbours of the service, answering by a script. The simulated ones answer the same to every
// call and fail only where there is a result code; the script gives any one call of any kind
// another answer, a plain value included, and the restatement's node asks the same script.

class ScriptedCapabilityHandler : public ICapabilityHandler {
public:
    explicit ScriptedCapabilityHandler(Script& script)
        : m_script(script) {}

    std::string getTmuHwProductNumber() const override;
    unsigned getMinOutputPower(const int** table) const override;
    unsigned getPmaxCapabilityDpd1Ansi(const int** table, const int** count) const override;
    unsigned getPmaxCapabilityDpd2Ansi(const int** table, const int** count) const override;
    unsigned getPmaxCapabilityDpd1Etsi(const int** table, const int** count) const override;
    unsigned getPmaxCapabilityDpd2Etsi(const int** table, const int** count) const override;
    bool isMaxAcmLimitedByHw() const override;
    short getPerformanceProfileIndex() const override;
    Modulation getMaxModulationLimitedByHw(const std::vector<short>& performanceProfiles,
                                           short performanceProfileIndex) const override;
    Modulation getMaxModulationWithoutLimitation(const EFrameFormatMarket& market) const override;

    /// Gives back the tables that were handed out; no service may use them any more.
    void forgetTables() { m_kept.clear(); }

private:
    /// Keeps what is handed out by its address for as long as the handler lives.
    const std::vector<int>& kept(const std::vector<std::int32_t>& values) const;

    unsigned pmaxTable(Call call, const int** table, const int** count) const;

    Script& m_script;
    mutable std::vector<std::unique_ptr<const std::vector<int>>> m_kept;
};

class ScriptedAcmHandler : public IAcmHandler {
public:
    explicit ScriptedAcmHandler(Script& script)
        : m_script(script) {}

    unsigned getMinMaxModulationAndCode(ModulationAndCoding& min,
                                        ModulationAndCoding& max) override;

private:
    Script& m_script;
};

class ScriptedFrameFormat : public IFrameFormat {
public:
    explicit ScriptedFrameFormat(Script& script)
        : m_script(script) {}

    Modulation getModulation() const override;
    Modulation getMaxAvailableModulation() const override;
    void
    getModulationAndCodeArray(std::vector<ModulationAndCoding>& modulationAndCodes) const override;
    EChannelSpacingType getChannelSpacing() const override;
    EDpdVersion getDpdVersion() const override;
    EFrameFormatMarket getTelecomMarket() const override;
    void getPerformanceProfiles(std::vector<short>& performanceProfiles) const override;
    void getCarrierAggregationPerformanceProfiles(
        std::vector<short>& performanceProfiles) const override;

private:
    Script& m_script;
};

class ScriptedSystemPowerController : public ISystemPowerController {
public:
    explicit ScriptedSystemPowerController(Script& script)
        : m_script(script) {}

    EReferenceSEC getReferenceSec() const override;
    bool getMinOutputPowerOffset(EChannelSpacingType channelSpacing, long& offset) const override;

private:
    Script& m_script;
};

class ScriptedHardwareConfigurationHandler : public IHardwareConfigurationHandler {
public:
    /// @param channel the only one of which it may be asked.
    ScriptedHardwareConfigurationHandler(Script& script, RadioChannel channel)
        : m_script(script)
        , m_channel(channel) {}

    void getFrameFormatRecords(bool flag, std::vector<FrameFormatRecord>& records) const override;
    EDpdVersion getDpdVersion(RadioChannel channel, long frameFormatId) const override;
    unsigned getTelecomMarket(RadioChannel channel, long frameFormatId,
                              EFrameFormatMarket& market) const override;
    unsigned
    getModulationAndCodeArray(RadioChannel channel, long frameFormatId,
                              std::vector<ModulationAndCoding>& modulationAndCodes) const override;
    unsigned getChannelSpacing(RadioChannel channel, long frameFormatId,
                               EChannelSpacingType& channelSpacing) const override;
    void getPerformanceProfiles(RadioChannel channel, long frameFormatId,
                                std::vector<short>& performanceProfiles) const override;
    void getCarrierAggregationPerformanceProfiles(
        RadioChannel channel, long frameFormatId,
        std::vector<short>& performanceProfiles) const override;

private:
    /// Answers a query by radio channel and frame-format id.
    const ScriptedAnswer& askById(Call call, RadioChannel asked, long frameFormatId) const;

    Script& m_script;
    RadioChannel m_channel;
};

/// The four neighbours that each channel has its own of, in the broker for as long as it lives.
class ScriptedChannel {
public:
    ScriptedChannel(Script& script, RadioChannel channel);
    ~ScriptedChannel();
    ScriptedChannel(const ScriptedChannel&) = delete;
    ScriptedChannel& operator=(const ScriptedChannel&) = delete;

    ScriptedCapabilityHandler capabilityHandler;
    ScriptedAcmHandler acmHandler;
    ScriptedFrameFormat frameFormat;
    ScriptedSystemPowerController systemPowerController;

private:
    RadioChannel m_channel;
};

/// All five neighbours of a channel in the broker, and the board and the variable store behind
/// them, for as long as it lives. One at a time.
class ScriptedSurroundings : public ScriptedChannel {
public:
    explicit ScriptedSurroundings(Script& script, RadioChannel channel = 1);
    ~ScriptedSurroundings();
    ScriptedSurroundings(const ScriptedSurroundings&) = delete;
    ScriptedSurroundings& operator=(const ScriptedSurroundings&) = delete;

    ScriptedHardwareConfigurationHandler hardwareConfigurationHandler;
};
