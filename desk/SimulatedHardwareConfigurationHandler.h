#pragma once

#include "Answer.h"
#include "CallRecorder.h"
#include "FailureDrill.h"
#include "IHardwareConfigurationHandler.h"

#include <vector>

/// What a SimulatedHardwareConfigurationHandler answers.
struct HardwareConfigurationHandlerAnswers {
    /// A frame format of the hardware configuration.
    struct FrameFormat {
        long id = 0; ///< by which it is asked for
        Answer<EChannelSpacingType> channelSpacing = EChannelSpacingType::MHz28; ///< in whole MHz
        EDpdVersion dpdVersion = EDpdVersion::Dpd1;                   ///< of the transmitter
        Answer<EFrameFormatMarket> market = EFrameFormatMarket::Etsi; ///< of getTelecomMarket()
        /// In any order.
        Answer<std::vector<ModulationAndCoding>> modulationAndCodes =
            std::vector<ModulationAndCoding>();
        std::vector<short> performanceProfiles;                   ///< of one carrier
        std::vector<short> carrierAggregationPerformanceProfiles; ///< with carrier aggregation
    };

    /// Of two frame formats with one id the first answers; the list of records shows both.
    std::vector<FrameFormat> frameFormats;
};

/// A hardware configuration handler with programmable answers, the same for every radio channel.
///
/// For an id that no frame format has, a query returns 32768 and writes nothing, the DPD version is
/// 0 and the profiles are empty. A frame format whose channel spacing is a result code alone has
/// spacing 0 in the list of records.
///
/// Any number of threads may ask; setAnswers() must not run beside them. The operations that can
/// fail (FailureDrill) are getTelecomMarket(), getModulationAndCodeArray() and getChannelSpacing().
class SimulatedHardwareConfigurationHandler : public IHardwareConfigurationHandler,
                                              public CallRecorder,
                                              public FailureDrill {
public:
    /// Programs the first answers.
    explicit SimulatedHardwareConfigurationHandler(
        const HardwareConfigurationHandlerAnswers& answers = {});

    /// Programs further answers.
    void setAnswers(const HardwareConfigurationHandlerAnswers& answers);

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
    using FrameFormat = HardwareConfigurationHandlerAnswers::FrameFormat;

    const FrameFormat* find(long frameFormatId) const;

    template <class Value>
    unsigned answer(long frameFormatId, Answer<Value> FrameFormat::*field, Value& output) const;

    HardwareConfigurationHandlerAnswers m_answers;
};
