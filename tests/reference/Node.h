#pragma once

#include "Capability.h"
#include "Families.h"
#include "Types.h"

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace reference {

// What outlives one radio file: things that happen once in a process.
struct ProcessState {
    bool vo5TablesBuilt = false;
};

// A neighbour's operation that returns a code and may or may not write its output.
template <typename Value>
struct Answer {
    std::uint32_t result = 0;
    std::optional<Value> written;
};

struct AcmRange {
    std::int32_t min = undefinedCode;
    std::int32_t max = undefinedCode;
};

struct FrameFormatRecord {
    std::int32_t id = 0;
    std::int32_t channelSpacing = 0;
};

// The radio node of a radio file, as the service sees it. The file is taken to be valid. A node may
// also answer from elsewhere than a file, differently from call to call.
class Node {
public:
    explicit Node(const nlohmann::json& radioFile);
    virtual ~Node() = default;

    void patch(const nlohmann::json& mergePatch);

    std::uint32_t channel() const;
    virtual bool has(const std::string& neighbour) const;

    // Capability handler
    virtual std::string productNumber() const;
    virtual Answer<std::int32_t> minOutputPower() const;
    virtual PmaxAnswer pmaxTable(std::int32_t pmaxTable) const;
    virtual bool isMaxAcmLimitedByHw() const;
    virtual std::int16_t performanceProfileIndex() const;
    virtual std::int32_t maxModulationLimitedByHw(const std::vector<std::int16_t>& profiles,
                                                  std::int16_t index) const;
    virtual std::int32_t maxModulationWithoutLimitation(std::int32_t market) const;

    // ACM handler
    virtual Answer<AcmRange> minMaxModulationAndCode() const;

    // Configured frame format
    virtual std::int32_t modulation() const;
    virtual std::int32_t maxAvailableModulation() const;
    virtual std::vector<std::int32_t> modulationAndCodes() const;
    virtual std::int32_t channelSpacing() const;
    virtual std::int32_t dpdVersion() const;
    virtual std::int32_t market() const;
    virtual std::vector<std::int16_t> performanceProfiles(bool carrierAggregation) const;

    // System power controller
    virtual std::int32_t referenceSec() const;
    virtual std::optional<std::int32_t> minOutputPowerOffset(std::uint32_t spacing) const;

    // Hardware configuration, by frame-format id
    virtual std::vector<FrameFormatRecord> frameFormatRecords() const;
    virtual std::int32_t dpdVersionOf(std::int32_t id) const;
    virtual Answer<std::int32_t> marketOf(std::int32_t id) const;
    virtual Answer<std::vector<std::int32_t>> modulationAndCodesOf(std::int32_t id) const;
    virtual Answer<std::int32_t> channelSpacingOf(std::int32_t id) const;
    virtual std::vector<std::int16_t> performanceProfilesOf(std::int32_t id,
                                                            bool carrierAggregation) const;

    // Board and stored variables
    virtual bool isCarrierAggregation() const;
    virtual StoredVariables variables() const;

private:
    nlohmann::json recordOf(std::int32_t id) const;

    nlohmann::json m_file;
};

using PowerMap = std::map<std::int32_t, std::int32_t>;

// The output power service, operation by operation. Everything is public: this is a restatement,
// and its tests look at every step.
struct Service {
    Service(std::uint32_t channelGiven, const Node& node, ProcessState& process);

    // Lifecycle and operating inputs
    std::uint32_t initialize();
    std::uint32_t setPowerCutback(std::uint32_t cutback);
    std::uint32_t setTemporaryPowerCutback(bool use, std::uint32_t cutback);
    std::uint32_t setTemperature(std::int32_t temperature);
    std::uint32_t setBoosterPresence(std::int32_t presence, std::int32_t gain,
                                     std::int32_t maxInputPower, std::int32_t maxModulation);
    void applyCutbackToMaxPower(std::int32_t& power);

    // Max power queries
    Family getCalculator();
    std::uint32_t getMaxPowerArray(std::int32_t dpdVersion, std::int32_t market, Capability& out);
    std::uint32_t getMaxPower(std::int32_t dpdVersion, std::int32_t market, std::int32_t modulation,
                              std::int32_t& maxPower);
    std::uint32_t getCsPowerCompensation(std::int32_t channelSpacing, std::int32_t& compensation);
    std::uint32_t getAdModMaxPower(std::int32_t dpdVersion, std::int32_t market, std::int32_t rsec,
                                   std::int32_t selectedMinMod, std::int32_t selectedMaxMod,
                                   std::int32_t availableMaxMod, std::int32_t actualMod,
                                   std::int32_t csPowerCompensation, std::int32_t& maxPower,
                                   bool useCutback);
    std::uint32_t getFixModMaxPower(std::int32_t dpdVersion, std::int32_t market,
                                    std::int32_t selectedMod, std::int32_t modulation,
                                    std::int32_t csPowerCompensation, std::int32_t& maxPower,
                                    bool useCutback);
    std::uint32_t getUnrestrictedPmax(std::int32_t& pmax);

    // Minimum output power
    std::int32_t getMinOutputPower(std::uint32_t channelSpacing);
    std::int32_t getMinOutputPowerUsingRfid(std::uint32_t rfid);
    std::uint32_t findPminPmax(std::int32_t& pmin, std::int32_t& pmax);

    // Power capabilities per modulation
    std::uint32_t getSelectedMinMaxAcm(std::int32_t& min, std::int32_t& max);
    bool getAdmodEnable(std::int32_t min, std::int32_t max);
    std::uint32_t calculatePowerCapabilities(std::int32_t modulation, std::int32_t& minPower,
                                             std::int32_t& maxPower);
    std::uint32_t calculateAdmodPowerCapabilities(std::int32_t actualModulation, std::int32_t rsec,
                                                  std::int32_t& minPower, std::int32_t& maxPower);
    std::int32_t limitMaxModDueToRadioCapability(std::int32_t useConfiguredFF, std::int32_t rfid,
                                                 std::int32_t modemMaxAvailableModulation);

    // Power of every modulation-and-code
    std::uint32_t getMinMaxOutputPowerVsModulationArray(std::int32_t frameFormatId,
                                                        std::int32_t minCode, std::int32_t maxCode,
                                                        std::int32_t referenceSec,
                                                        std::int32_t& minOutputPower,
                                                        PowerMap& powerMap);
    std::uint32_t getMaxOutputPowerArrayUsingConfigured(std::int32_t rsec, bool adModEnable,
                                                        std::int32_t selectedMinMod,
                                                        std::int32_t selectedMaxMod,
                                                        PowerMap& powerMap);
    std::uint32_t getMaxOutputPowerArrayUsingRfid(std::int32_t rfid, std::int32_t rsec,
                                                  bool adModEnable, std::int32_t selectedMinMod,
                                                  std::int32_t selectedMaxMod, PowerMap& powerMap);
    std::uint32_t populateModulationPowerMap(const std::vector<std::int32_t>& codes,
                                             std::int32_t rfid, std::int32_t rsec, bool adModEnable,
                                             std::int32_t selectedMinMod,
                                             std::int32_t selectedMaxMod,
                                             std::int32_t useConfiguredFF, std::int32_t dpdVersion,
                                             std::int32_t market, std::int32_t channelSpacing,
                                             PowerMap& powerMap);

    void enter(const std::string& function, const std::string& text);
    void message(int level, const std::string& function, const std::string& text);

    const Node& m_node;
    ProcessState& m_process;
    Trace m_trace;

    std::uint32_t m_radioChannel;
    std::optional<std::int32_t> m_minOutputPower; // the first integer of the table last handed out
    std::int32_t m_temperature = 0;
    bool m_useTemporaryPowerCutback = false;
    std::uint32_t m_temporaryPowerCutback = 0;
    std::uint32_t m_powerCutback = 0;
    Capability m_dpd1Etsi;
    Capability m_dpd2Etsi;
    Capability m_dpd1Ansi;
    Capability m_dpd2Ansi;
    Booster m_booster;
    bool m_registered = false;
};

// The lines that a replay of this radio file prints, without their line ends.
std::vector<std::string> replay(const nlohmann::json& radioFile, int traceLevel,
                                ProcessState& process);

} // namespace reference
