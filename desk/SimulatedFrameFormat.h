#pragma once

#include "CallRecorder.h"
#include "IFrameFormat.h"

#include <vector>

/// What a SimulatedFrameFormat answers.
struct FrameFormatAnswers {
    Modulation modulation = Modulation::UNDEFINED;
    Modulation maxAvailableModulation = Modulation::UNDEFINED;
    std::vector<ModulationAndCoding> modulationAndCodes;
    EChannelSpacingType channelSpacing = EChannelSpacingType::MHz28;
    EDpdVersion dpdVersion = EDpdVersion::Dpd1;
    EFrameFormatMarket market = EFrameFormatMarket::Etsi;
    std::vector<short> performanceProfiles;
    std::vector<short> carrierAggregationPerformanceProfiles;
};

/// A frame format with programmable answers. Any number of threads may ask; setAnswers() must not
/// run beside them. None of its operations can fail.
class SimulatedFrameFormat : public IFrameFormat, public CallRecorder {
public:
    explicit SimulatedFrameFormat(const FrameFormatAnswers& answers = {});

    void setAnswers(const FrameFormatAnswers& answers);

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
    FrameFormatAnswers m_answers;
};
