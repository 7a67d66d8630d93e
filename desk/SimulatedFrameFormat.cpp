#include "SimulatedFrameFormat.h"

SimulatedFrameFormat::SimulatedFrameFormat(const FrameFormatAnswers& answers)
    : CallRecorder("IFrameFormat")
    , m_answers(answers) {}

void SimulatedFrameFormat::setAnswers(const FrameFormatAnswers& answers) {
    m_answers = answers;
}

Modulation SimulatedFrameFormat::getModulation() const {
    record("getModulation");
    return m_answers.modulation;
}

Modulation SimulatedFrameFormat::getMaxAvailableModulation() const {
    record("getMaxAvailableModulation");
    return m_answers.maxAvailableModulation;
}

void SimulatedFrameFormat::getModulationAndCodeArray(
    std::vector<ModulationAndCoding>& modulationAndCodes) const {
    record("getModulationAndCodeArray");
    modulationAndCodes = m_answers.modulationAndCodes;
}

EChannelSpacingType SimulatedFrameFormat::getChannelSpacing() const {
    record("getChannelSpacing");
    return m_answers.channelSpacing;
}

EDpdVersion SimulatedFrameFormat::getDpdVersion() const {
    record("getDpdVersion");
    return m_answers.dpdVersion;
}

EFrameFormatMarket SimulatedFrameFormat::getTelecomMarket() const {
    record("getTelecomMarket");
    return m_answers.market;
}

void SimulatedFrameFormat::getPerformanceProfiles(std::vector<short>& performanceProfiles) const {
    record("getPerformanceProfiles");
    performanceProfiles = m_answers.performanceProfiles;
}

void SimulatedFrameFormat::getCarrierAggregationPerformanceProfiles(
    std::vector<short>& performanceProfiles) const {
    record("getCarrierAggregationPerformanceProfiles");
    performanceProfiles = m_answers.carrierAggregationPerformanceProfiles;
}
