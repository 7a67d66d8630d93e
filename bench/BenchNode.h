#pragma once

#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "IFrameFormat.h"
#include "IHardwareConfigurationHandler.h"
#include "ISystemPowerController.h"
#include "Scenario.h"

/// Puts neighbours into the broker, as those of the one channel that is measured.
void publishNeighbours(ICapabilityHandler& capabilityHandler, IAcmHandler& acmHandler,
                       IFrameFormat& frameFormat, ISystemPowerController& systemPowerController,
                       IHardwareConfigurationHandler& hardwareConfigurationHandler);

/// Neighbours that answer from a scenario with as little work as can be, so that what is counted is
/// the calculator's; each of the simulated ones looks at every call whether to record it or to
/// fail, and copies what it answers. Published while the object lives.
class BenchNode {
public:
    explicit BenchNode(const Scenario& scenario);
    ~BenchNode();

    /// Puts the neighbours in the broker.
    void publish();

    BenchNode(const BenchNode&) = delete;
    BenchNode& operator=(const BenchNode&) = delete;

    ICapabilityHandler& capabilityHandler() { return m_capabilityHandler; }
    IAcmHandler& acmHandler() { return m_acmHandler; }
    IFrameFormat& frameFormat() { return m_frameFormat; }
    ISystemPowerController& systemPowerController() { return m_systemPowerController; }
    IHardwareConfigurationHandler& hardwareConfigurationHandler() {
        return m_hardwareConfigurationHandler;
    }

private:
    class CapabilityHandler : public ICapabilityHandler {
    public:
        explicit CapabilityHandler(const Scenario& scenario)
            : m_scenario(scenario) {}
        std::string getTmuHwProductNumber() const override { return m_scenario.productNumber; }
        unsigned getMinOutputPower(const int** table) const override {
            *table = &m_scenario.minOutputPower;
            return 0;
        }
        unsigned getPmaxCapabilityDpd1Ansi(const int** table, const int** count) const override {
            return handOut(table, count);
        }
        unsigned getPmaxCapabilityDpd2Ansi(const int** table, const int** count) const override {
            return handOut(table, count);
        }
        unsigned getPmaxCapabilityDpd1Etsi(const int** table, const int** count) const override {
            return handOut(table, count);
        }
        unsigned getPmaxCapabilityDpd2Etsi(const int** table, const int** count) const override {
            return handOut(table, count);
        }

        bool isMaxAcmLimitedByHw() const override { return m_scenario.isLimitedByProfile; }
        short getPerformanceProfileIndex() const override { return 1; }
        Modulation getMaxModulationLimitedByHw(const std::vector<short>&, short) const override {
            return m_scenario.radioMaximum;
        }
        Modulation getMaxModulationWithoutLimitation(const EFrameFormatMarket&) const override {
            return m_scenario.radioMaximum;
        }

    private:
        unsigned handOut(const int** table, const int** count) const {
            *table = m_scenario.pmaxTable.data();
            *count = &m_scenario.pmaxCount;
            return 0;
        }
        const Scenario& m_scenario;
    };

    class AcmHandler : public IAcmHandler {
    public:
        explicit AcmHandler(const Scenario& scenario)
            : m_scenario(scenario) {}
        unsigned getMinMaxModulationAndCode(ModulationAndCoding& min,
                                            ModulationAndCoding& max) override {
            min = m_scenario.selectedMin;
            max = m_scenario.selectedMax;
            return 0;
        }

    private:
        const Scenario& m_scenario;
    };

    class FrameFormat : public IFrameFormat {
    public:
        explicit FrameFormat(const Scenario& scenario)
            : m_scenario(scenario) {}
        Modulation getModulation() const override { return m_scenario.modulation; }
        Modulation getMaxAvailableModulation() const override {
            return m_scenario.maxAvailableModulation;
        }
        void getModulationAndCodeArray(std::vector<ModulationAndCoding>& codes) const override {
            codes = m_scenario.modulationAndCodes;
        }
        EChannelSpacingType getChannelSpacing() const override { return m_scenario.channelSpacing; }
        EDpdVersion getDpdVersion() const override { return m_scenario.dpdVersion; }
        EFrameFormatMarket getTelecomMarket() const override { return m_scenario.market; }
        void getPerformanceProfiles(std::vector<short>& profiles) const override {
            profiles.assign({1, 2});
        }
        void getCarrierAggregationPerformanceProfiles(std::vector<short>& profiles) const override {
            profiles.assign({1, 2});
        }

    private:
        const Scenario& m_scenario;
    };

    class SystemPowerController : public ISystemPowerController {
    public:
        explicit SystemPowerController(const Scenario& scenario)
            : m_scenario(scenario) {}
        EReferenceSEC getReferenceSec() const override { return m_scenario.referenceSec; }
        bool getMinOutputPowerOffset(EChannelSpacingType, long& offset) const override {
            offset = m_scenario.minOutputPowerOffset;
            return m_scenario.hasMinOutputPowerOffset;
        }

    private:
        const Scenario& m_scenario;
    };

    class HardwareConfigurationHandler : public IHardwareConfigurationHandler {
    public:
        explicit HardwareConfigurationHandler(const Scenario& scenario)
            : m_scenario(scenario) {}
        void getFrameFormatRecords(bool, std::vector<FrameFormatRecord>& records) const override {
            records.assign(1, {1, m_scenario.channelSpacing});
        }
        EDpdVersion getDpdVersion(RadioChannel, long) const override {
            return m_scenario.dpdVersion;
        }
        unsigned getTelecomMarket(RadioChannel, long, EFrameFormatMarket& market) const override {
            market = m_scenario.market;
            return 0;
        }
        unsigned getModulationAndCodeArray(RadioChannel, long,
                                           std::vector<ModulationAndCoding>& codes) const override {
            codes = m_scenario.modulationAndCodes;
            return 0;
        }
        unsigned getChannelSpacing(RadioChannel, long,
                                   EChannelSpacingType& channelSpacing) const override {
            channelSpacing = m_scenario.channelSpacing;
            return 0;
        }
        void getPerformanceProfiles(RadioChannel, long,
                                    std::vector<short>& profiles) const override {
            profiles.assign({1, 2});
        }
        void getCarrierAggregationPerformanceProfiles(RadioChannel, long,
                                                      std::vector<short>& profiles) const override {
            profiles.assign({1, 2});
        }

    private:
        const Scenario& m_scenario;
    };

    CapabilityHandler m_capabilityHandler;
    AcmHandler m_acmHandler;
    FrameFormat m_frameFormat;
    SystemPowerController m_systemPowerController;
    HardwareConfigurationHandler m_hardwareConfigurationHandler;
};
