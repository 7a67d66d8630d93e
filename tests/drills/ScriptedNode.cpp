#include "ScriptedNode.h"

#include <array>
#include <memory>

namespace {

reference::Answer<std::int32_t> numberIn(const ScriptedAnswer& answer) {
    return {answer.result, answer.isWritten ? std::optional(answer.value()) : std::nullopt};
}

std::vector<std::int16_t> profilesIn(const ScriptedAnswer& answer) {
    std::vector<std::int16_t> profiles;
    for (const std::int32_t value : answer.values) {
        profiles.push_back(static_cast<std::int16_t>(value));
    }
    return profiles;
}

} // namespace

ScriptedNode::ScriptedNode(Script& script, std::uint32_t channel)
    : Node(nlohmann::json::object())
    , m_script(script)
    , m_channel(channel) {}

bool ScriptedNode::has(const std::string& neighbour) const {
    return neighbour == "capabilityHandler"       ? hasCapabilityHandler
           : neighbour == "acmHandler"            ? hasAcmHandler
           : neighbour == "frameFormat"           ? hasFrameFormat
           : neighbour == "systemPowerController" ? hasSystemPowerController
                                                  : hasHardwareConfigurationHandler;
}

std::string ScriptedNode::productNumber() const {
    return m_script.ask(Call::ProductNumber).text;
}

reference::Answer<std::int32_t> ScriptedNode::minOutputPower() const {
    return numberIn(m_script.ask(Call::MinOutputPower));
}

reference::PmaxAnswer ScriptedNode::pmaxTable(std::int32_t pmaxTable) const {
    // In the order of the tables' numbers.
    constexpr std::array calls = {Call::PmaxDpd1Ansi, Call::PmaxDpd2Ansi, Call::PmaxDpd1Etsi,
                                  Call::PmaxDpd2Etsi};
    const ScriptedAnswer& answer = m_script.ask(calls.at(static_cast<std::size_t>(pmaxTable)));
    if (!answer.isWritten) {
        return {answer.result, std::nullopt};
    }
    reference::PmaxStorage storage;
    storage.count = answer.value();
    storage.integers.assign(answer.values.begin() + 1, answer.values.end());
    return {answer.result, std::make_shared<const reference::PmaxStorage>(std::move(storage))};
}

bool ScriptedNode::isMaxAcmLimitedByHw() const {
    return m_script.ask(Call::IsMaxAcmLimited).value() != 0;
}

std::int16_t ScriptedNode::performanceProfileIndex() const {
    return static_cast<std::int16_t>(m_script.ask(Call::ProfileIndex).value());
}

std::int32_t ScriptedNode::maxModulationLimitedByHw(const std::vector<std::int16_t>& profiles,
                                                    std::int16_t index) const {
    std::vector<std::int32_t> arguments(profiles.begin(), profiles.end());
    arguments.push_back(index);
    return m_script.ask(Call::MaxModulationLimited, std::move(arguments)).value();
}

std::int32_t ScriptedNode::maxModulationWithoutLimitation(std::int32_t market) const {
    return m_script.ask(Call::MaxModulationUnlimited, {market}).value();
}

reference::Answer<reference::AcmRange> ScriptedNode::minMaxModulationAndCode() const {
    const ScriptedAnswer& answer = m_script.ask(Call::AcmRange);
    if (!answer.isWritten) {
        return {answer.result, std::nullopt};
    }
    return {answer.result, reference::AcmRange{answer.values.at(0), answer.values.at(1)}};
}

std::int32_t ScriptedNode::modulation() const {
    return m_script.ask(Call::Modulation).value();
}

std::int32_t ScriptedNode::maxAvailableModulation() const {
    return m_script.ask(Call::MaxAvailableModulation).value();
}

std::vector<std::int32_t> ScriptedNode::modulationAndCodes() const {
    return m_script.ask(Call::Codes).values;
}

std::int32_t ScriptedNode::channelSpacing() const {
    return m_script.ask(Call::ChannelSpacing).value();
}

std::int32_t ScriptedNode::dpdVersion() const {
    return m_script.ask(Call::DpdVersion).value();
}

std::int32_t ScriptedNode::market() const {
    return m_script.ask(Call::Market).value();
}

std::vector<std::int16_t> ScriptedNode::performanceProfiles(bool carrierAggregation) const {
    return profilesIn(
        m_script.ask(carrierAggregation ? Call::CarrierAggregationProfiles : Call::Profiles));
}

std::int32_t ScriptedNode::referenceSec() const {
    return m_script.ask(Call::ReferenceSec).value();
}

std::optional<std::int32_t> ScriptedNode::minOutputPowerOffset(std::uint32_t spacing) const {
    const ScriptedAnswer& answer = m_script.ask(Call::Offset, {static_cast<std::int32_t>(spacing)});
    return answer.isWritten ? std::optional(answer.value()) : std::nullopt;
}

std::vector<reference::FrameFormatRecord> ScriptedNode::frameFormatRecords() const {
    const std::vector<std::int32_t>& values = m_script.ask(Call::Records).values;
    std::vector<reference::FrameFormatRecord> records;
    for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
        records.push_back({values[i], values[i + 1]});
    }
    return records;
}

std::int32_t ScriptedNode::dpdVersionOf(std::int32_t id) const {
    return m_script.ask(Call::DpdVersionById, {id}).value();
}

reference::Answer<std::int32_t> ScriptedNode::marketOf(std::int32_t id) const {
    return numberIn(m_script.ask(Call::MarketById, {id}));
}

reference::Answer<std::vector<std::int32_t>>
ScriptedNode::modulationAndCodesOf(std::int32_t id) const {
    const ScriptedAnswer& answer = m_script.ask(Call::CodesById, {id});
    return {answer.result, answer.isWritten ? std::optional(answer.values) : std::nullopt};
}

reference::Answer<std::int32_t> ScriptedNode::channelSpacingOf(std::int32_t id) const {
    return numberIn(m_script.ask(Call::ChannelSpacingById, {id}));
}

std::vector<std::int16_t> ScriptedNode::performanceProfilesOf(std::int32_t id,
                                                              bool carrierAggregation) const {
    return profilesIn(m_script.ask(
        carrierAggregation ? Call::CarrierAggregationProfilesById : Call::ProfilesById, {id}));
}

bool ScriptedNode::isCarrierAggregation() const {
    return m_script.ask(Call::IsCarrierAggregation).value() != 0;
}

reference::StoredVariables ScriptedNode::variables() const {
    return variablesOf(m_script, m_channel);
}

reference::StoredVariables ScriptedNode::variablesOf(Script& script, std::uint32_t channel) {
    const std::string name = "channel." + std::to_string(channel) + ".tx.rf.pmax.cs.comp.v2.array";
    const ScriptedAnswer& array = script.ask(Call::CompensationArray);
    if (reference::failed(array.result)) {
        return {};
    }
    // Content without an address is no content.
    const auto contentOf = [](const ScriptedAnswer& answer) {
        return answer.isWritten ? answer.values : std::vector<std::int32_t>{};
    };
    reference::StoredVariables variables = {{name, contentOf(array)}};
    const ScriptedAnswer& size = script.ask(Call::CompensationArraySize);
    if (!reference::failed(size.result)) {
        variables[name + "size"] = contentOf(size);
    }
    return variables;
}
