#include "SimulatedHardwareConfigurationHandler.h"

SimulatedHardwareConfigurationHandler::SimulatedHardwareConfigurationHandler(
    const HardwareConfigurationHandlerAnswers& answers)
    : CallRecorder("IHardwareConfigurationHandler")
    , m_answers(answers) {}

void SimulatedHardwareConfigurationHandler::setAnswers(
    const HardwareConfigurationHandlerAnswers& answers) {
    m_answers = answers;
}

void SimulatedHardwareConfigurationHandler::getFrameFormatRecords(
    bool flag, std::vector<FrameFormatRecord>& records) const {
    record("getFrameFormatRecords", flag);
    records.clear();
    for (const FrameFormat& frameFormat : m_answers.frameFormats) {
        const auto* const spacing = std::get_if<EChannelSpacingType>(&frameFormat.channelSpacing);
        records.push_back({frameFormat.id, spacing != nullptr ? *spacing : EChannelSpacingType{0}});
    }
}

EDpdVersion SimulatedHardwareConfigurationHandler::getDpdVersion(RadioChannel channel,
                                                                 long frameFormatId) const {
    record("getDpdVersion", channel, frameFormatId);
    const FrameFormat* const frameFormat = find(frameFormatId);
    return frameFormat != nullptr ? frameFormat->dpdVersion : EDpdVersion{0};
}

unsigned SimulatedHardwareConfigurationHandler::getTelecomMarket(RadioChannel channel,
                                                                 long frameFormatId,
                                                                 EFrameFormatMarket& market) const {
    record("getTelecomMarket", channel, frameFormatId);
    return answer(frameFormatId, &FrameFormat::market, market);
}

unsigned SimulatedHardwareConfigurationHandler::getModulationAndCodeArray(
    RadioChannel channel, long frameFormatId,
    std::vector<ModulationAndCoding>& modulationAndCodes) const {
    record("getModulationAndCodeArray", channel, frameFormatId);
    return answer(frameFormatId, &FrameFormat::modulationAndCodes, modulationAndCodes);
}

unsigned SimulatedHardwareConfigurationHandler::getChannelSpacing(
    RadioChannel channel, long frameFormatId, EChannelSpacingType& channelSpacing) const {
    record("getChannelSpacing", channel, frameFormatId);
    return answer(frameFormatId, &FrameFormat::channelSpacing, channelSpacing);
}

void SimulatedHardwareConfigurationHandler::getPerformanceProfiles(
    RadioChannel channel, long frameFormatId, std::vector<short>& performanceProfiles) const {
    record("getPerformanceProfiles", channel, frameFormatId);
    performanceProfiles.clear();
    if (const FrameFormat* const frameFormat = find(frameFormatId)) {
        performanceProfiles = frameFormat->performanceProfiles;
    }
}

void SimulatedHardwareConfigurationHandler::getCarrierAggregationPerformanceProfiles(
    RadioChannel channel, long frameFormatId, std::vector<short>& performanceProfiles) const {
    record("getCarrierAggregationPerformanceProfiles", channel, frameFormatId);
    performanceProfiles.clear();
    if (const FrameFormat* const frameFormat = find(frameFormatId)) {
        performanceProfiles = frameFormat->carrierAggregationPerformanceProfiles;
    }
}

const SimulatedHardwareConfigurationHandler::FrameFormat*
SimulatedHardwareConfigurationHandler::find(long frameFormatId) const {
    for (const FrameFormat& frameFormat : m_answers.frameFormats) {
        if (frameFormat.id == frameFormatId) {
            return &frameFormat;
        }
    }
    return nullptr;
}

template <class Value>
unsigned SimulatedHardwareConfigurationHandler::answer(long frameFormatId,
                                                       Answer<Value> FrameFormat::*field,
                                                       Value& output) const {
    if (const std::optional<unsigned> code = countCall()) {
        return *code;
    }
    const FrameFormat* const frameFormat = find(frameFormatId);
    if (frameFormat == nullptr) {
        return ResultCode::Failure;
    }
    const Answer<Value>& programmed = frameFormat->*field;
    if (const ResultOnly* const resultOnly = std::get_if<ResultOnly>(&programmed)) {
        return resultOnly->result;
    }
    output = std::get<Value>(programmed);
    return ResultCode::Success;
}
