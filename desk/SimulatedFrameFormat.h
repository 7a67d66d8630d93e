#pragma once

#include "CallRecorder.h"
#include "IFrameFormat.h"

#include <vector>

/// What a SimulatedFrameFormat answers.
struct FrameFormatAnswers {
    Modulation modulation = Modulation::UNDEFINED;                   ///< of getModulation()
    Modulation maxAvailableModulation = Modulation::UNDEFINED;       ///< of the modem
    std::vector<ModulationAndCoding> modulationAndCodes;             ///< in any order
    EChannelSpacingType channelSpacing = EChannelSpacingType::MHz28; ///< in whole MHz
    EDpdVersion dpdVersion = EDpdVersion::Dpd1;                      ///< of the transmitter
    EFrameFormatMarket market = EFrameFormatMarket::Etsi;            ///< of getTelecomMarket()
    std::vector<short> performanceProfiles;                          ///< of one carrier
    std::vector<short> carrierAggregationPerformanceProfiles;        ///< with carrier aggregation
};

/// A frame format with programmable answers. Any number of threads may ask; setAnswers() must not
/// run beside them. None of its operations can fail.
class SimulatedFrameFormat : public IFrameFormat, public CallRecorder {
public:
    /// Programs the first answers.
    explicit SimulatedFrameFormat(const FrameFormatAnswers& answers = {});

    /// Programs further answers.
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
