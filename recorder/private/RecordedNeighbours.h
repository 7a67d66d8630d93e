#pragma once

#include "Decorator.h"
#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "IFrameFormat.h"
#include "IHardwareConfigurationHandler.h"
#include "ISystemPowerController.h"
#include "KnownAnswer.h"

class RecordedCapabilityHandler final : public ICapabilityHandler, public Decorator {
public:
    explicit RecordedCapabilityHandler(ICapabilityHandler& real)
        : Decorator(real)
        , m_real(real) {}
    IInterface* face() override { return this; }

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

private:
    friend class Decorators<ICapabilityHandler, RecordedCapabilityHandler>;
    void forget() override;
    __attribute__((noinline)) void noteProductNumber(const std::string& number) const;
    __attribute__((noinline)) void noteVariables() const;
    __attribute__((noinline)) void noteCarrierAggregation() const;
    void notePmax(Question question, unsigned result, const int* const* table,
                  const int* const* count, const int* tableBefore, const int* countBefore) const;
    Modulation noteByKey(Question question, Question last, std::int32_t key, Modulation modulation,
                         KnownAnswer<2>& known) const;
    __attribute__((noinline)) Modulation noteNewByKey(Question question, Question last,
                                                      std::int32_t key, Modulation modulation,
                                                      KnownAnswer<2>& known) const;

    ICapabilityHandler& m_real;
    mutable KnownText m_productNumber;
    KnownWord m_maxAcmLimitedByHw;
    KnownWord m_carrierAggregation;
    KnownWord m_performanceProfileIndex;
    mutable KnownAnswer<2> m_limited;
    mutable KnownAnswer<2> m_withoutLimitation;
};

class RecordedAcmHandler final : public IAcmHandler, public Decorator {
public:
    explicit RecordedAcmHandler(IAcmHandler& real)
        : Decorator(real)
        , m_real(real) {}
    IInterface* face() override { return this; }

    unsigned getMinMaxModulationAndCode(ModulationAndCoding& min,
                                        ModulationAndCoding& max) override;

private:
    friend class Decorators<IAcmHandler, RecordedAcmHandler>;
    void forget() override { m_selection.forget(); }
    __attribute__((noinline)) unsigned noteSelection(unsigned result, std::int32_t shape,
                                                     std::int32_t first, std::int32_t second);

    IAcmHandler& m_real;
    KnownAnswer<3> m_selection;
};

class RecordedFrameFormat final : public IFrameFormat, public Decorator {
public:
    explicit RecordedFrameFormat(IFrameFormat& real)
        : Decorator(real)
        , m_real(real) {}
    IInterface* face() override { return this; }

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
    friend class Decorators<IFrameFormat, RecordedFrameFormat>;
    void forget() override;
    __attribute__((noinline)) EDpdVersion noteOutside(EDpdVersion dpdVersion) const;

    IFrameFormat& m_real;
    KnownWord m_modulation;
    KnownWord m_maxAvailableModulation;
    KnownWord m_channelSpacing;
    KnownWord m_dpdVersion;
    KnownWord m_market;
};

class RecordedSystemPowerController final : public ISystemPowerController, public Decorator {
public:
    explicit RecordedSystemPowerController(ISystemPowerController& real)
        : Decorator(real)
        , m_real(real) {}
    IInterface* face() override { return this; }

    EReferenceSEC getReferenceSec() const override;
    bool getMinOutputPowerOffset(EChannelSpacingType channelSpacing, long& offset) const override;

private:
    friend class Decorators<ISystemPowerController, RecordedSystemPowerController>;
    void forget() override;
    __attribute__((noinline)) bool noteOffset(std::int32_t channelSpacing, bool isKnown,
                                              std::int32_t offset) const;

    ISystemPowerController& m_real;
    KnownWord m_referenceSec;
    mutable KnownAnswer<3> m_offset;
};

/// One for the whole unit: what it is asked belongs to the channel whose request is under way.
class RecordedHardwareConfigurationHandler final : public IHardwareConfigurationHandler,
                                                   public Decorator {
public:
    explicit RecordedHardwareConfigurationHandler(IHardwareConfigurationHandler& real)
        : Decorator(real)
        , m_real(real) {}
    IInterface* face() override { return this; }

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
    friend class Decorators<IHardwareConfigurationHandler, RecordedHardwareConfigurationHandler>;

    IHardwareConfigurationHandler& m_real;
};
