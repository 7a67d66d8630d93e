#pragma once

#include "Script.h"
#include "reference/Node.h"

/// The radio node of the restatement, answering by a script.
class ScriptedNode : public reference::Node {
public:
    explicit ScriptedNode(Script& script, std::uint32_t channel = 1);

    bool has(const std::string& neighbour) const override;

    std::string productNumber() const override;
    reference::Answer<std::int32_t> minOutputPower() const override;
    reference::PmaxAnswer pmaxTable(std::int32_t pmaxTable) const override;
    bool isMaxAcmLimitedByHw() const override;
    std::int16_t performanceProfileIndex() const override;
    std::int32_t maxModulationLimitedByHw(const std::vector<std::int16_t>& profiles,
                                          std::int16_t index) const override;
    std::int32_t maxModulationWithoutLimitation(std::int32_t market) const override;

    reference::Answer<reference::AcmRange> minMaxModulationAndCode() const override;

    std::int32_t modulation() const override;
    std::int32_t maxAvailableModulation() const override;
    std::vector<std::int32_t> modulationAndCodes() const override;
    std::int32_t channelSpacing() const override;
    std::int32_t dpdVersion() const override;
    std::int32_t market() const override;
    std::vector<std::int16_t> performanceProfiles(bool carrierAggregation) const override;

    std::int32_t referenceSec() const override;
    std::optional<std::int32_t> minOutputPowerOffset(std::uint32_t spacing) const override;

    std::vector<reference::FrameFormatRecord> frameFormatRecords() const override;
    std::int32_t dpdVersionOf(std::int32_t id) const override;
    reference::Answer<std::int32_t> marketOf(std::int32_t id) const override;
    reference::Answer<std::vector<std::int32_t>>
    modulationAndCodesOf(std::int32_t id) const override;
    reference::Answer<std::int32_t> channelSpacingOf(std::int32_t id) const override;
    std::vector<std::int16_t> performanceProfilesOf(std::int32_t id,
                                                    bool carrierAggregation) const override;

    bool isCarrierAggregation() const override;
    reference::StoredVariables variables() const override;

    /// The stored variables of a channel, asked for one after the other.
    static reference::StoredVariables variablesOf(Script& script, std::uint32_t channel);

    bool hasCapabilityHandler = true;
    bool hasAcmHandler = true;
    bool hasFrameFormat = true;
    bool hasSystemPowerController = true;
    bool hasHardwareConfigurationHandler = true;

private:
    Script& m_script;
    std::uint32_t m_channel;
};
