#pragma once

#include "BenchNode.h"
#include "IOutputPowerCalculator.h"

/// Decorators of a node that hand every call through and do nothing else: what stands before the
/// neighbours at all cannot cost less.
class ForwardingNode {
public:
    explicit ForwardingNode(BenchNode& node)
        : m_capabilityHandler(node.capabilityHandler())
        , m_acmHandler(node.acmHandler())
        , m_frameFormat(node.frameFormat())
        , m_systemPowerController(node.systemPowerController())
        , m_hardwareConfigurationHandler(node.hardwareConfigurationHandler()) {}

    /// Takes the place of the node's neighbours.
    void publish() {
        publishNeighbours(m_capabilityHandler, m_acmHandler, m_frameFormat, m_systemPowerController,
                          m_hardwareConfigurationHandler);
    }

private:
    class CapabilityHandler : public ICapabilityHandler {
    public:
        explicit CapabilityHandler(const ICapabilityHandler& real)
            : m_real(real) {}
        std::string getTmuHwProductNumber() const override {
            return m_real.getTmuHwProductNumber();
        }
        unsigned getMinOutputPower(const int** table) const override {
            return m_real.getMinOutputPower(table);
        }
        unsigned getPmaxCapabilityDpd1Ansi(const int** table, const int** count) const override {
            return m_real.getPmaxCapabilityDpd1Ansi(table, count);
        }
        unsigned getPmaxCapabilityDpd2Ansi(const int** table, const int** count) const override {
            return m_real.getPmaxCapabilityDpd2Ansi(table, count);
        }
        unsigned getPmaxCapabilityDpd1Etsi(const int** table, const int** count) const override {
            return m_real.getPmaxCapabilityDpd1Etsi(table, count);
        }
        unsigned getPmaxCapabilityDpd2Etsi(const int** table, const int** count) const override {
            return m_real.getPmaxCapabilityDpd2Etsi(table, count);
        }
        bool isMaxAcmLimitedByHw() const override { return m_real.isMaxAcmLimitedByHw(); }
        short getPerformanceProfileIndex() const override {
            return m_real.getPerformanceProfileIndex();
        }
        Modulation getMaxModulationLimitedByHw(const std::vector<short>& performanceProfiles,
                                               short index) const override {
            return m_real.getMaxModulationLimitedByHw(performanceProfiles, index);
        }
        Modulation
        getMaxModulationWithoutLimitation(const EFrameFormatMarket& market) const override {
            return m_real.getMaxModulationWithoutLimitation(market);
        }

    private:
        const ICapabilityHandler& m_real;
    };

    class AcmHandler : public IAcmHandler {
    public:
        explicit AcmHandler(IAcmHandler& real)
            : m_real(real) {}
        unsigned getMinMaxModulationAndCode(ModulationAndCoding& min,
                                            ModulationAndCoding& max) override {
            return m_real.getMinMaxModulationAndCode(min, max);
        }

    private:
        IAcmHandler& m_real;
    };

    class FrameFormat : public IFrameFormat {
    public:
        explicit FrameFormat(const IFrameFormat& real)
            : m_real(real) {}
        Modulation getModulation() const override { return m_real.getModulation(); }
        Modulation getMaxAvailableModulation() const override {
            return m_real.getMaxAvailableModulation();
        }
        void getModulationAndCodeArray(std::vector<ModulationAndCoding>& codes) const override {
            m_real.getModulationAndCodeArray(codes);
        }
        EChannelSpacingType getChannelSpacing() const override {
            return m_real.getChannelSpacing();
        }
        EDpdVersion getDpdVersion() const override { return m_real.getDpdVersion(); }
        EFrameFormatMarket getTelecomMarket() const override { return m_real.getTelecomMarket(); }
        void getPerformanceProfiles(std::vector<short>& profiles) const override {
            m_real.getPerformanceProfiles(profiles);
        }
        void getCarrierAggregationPerformanceProfiles(std::vector<short>& profiles) const override {
            m_real.getCarrierAggregationPerformanceProfiles(profiles);
        }

    private:
        const IFrameFormat& m_real;
    };

    class SystemPowerController : public ISystemPowerController {
    public:
        explicit SystemPowerController(const ISystemPowerController& real)
            : m_real(real) {}
        EReferenceSEC getReferenceSec() const override { return m_real.getReferenceSec(); }
        bool getMinOutputPowerOffset(EChannelSpacingType channelSpacing,
                                     long& offset) const override {
            return m_real.getMinOutputPowerOffset(channelSpacing, offset);
        }

    private:
        const ISystemPowerController& m_real;
    };

    class HardwareConfigurationHandler : public IHardwareConfigurationHandler {
    public:
        explicit HardwareConfigurationHandler(const IHardwareConfigurationHandler& real)
            : m_real(real) {}
        void getFrameFormatRecords(bool flag,
                                   std::vector<FrameFormatRecord>& records) const override {
            m_real.getFrameFormatRecords(flag, records);
        }
        EDpdVersion getDpdVersion(RadioChannel channel, long id) const override {
            return m_real.getDpdVersion(channel, id);
        }
        unsigned getTelecomMarket(RadioChannel channel, long id,
                                  EFrameFormatMarket& market) const override {
            return m_real.getTelecomMarket(channel, id, market);
        }
        unsigned getModulationAndCodeArray(RadioChannel channel, long id,
                                           std::vector<ModulationAndCoding>& codes) const override {
            return m_real.getModulationAndCodeArray(channel, id, codes);
        }
        unsigned getChannelSpacing(RadioChannel channel, long id,
                                   EChannelSpacingType& channelSpacing) const override {
            return m_real.getChannelSpacing(channel, id, channelSpacing);
        }
        void getPerformanceProfiles(RadioChannel channel, long id,
                                    std::vector<short>& profiles) const override {
            m_real.getPerformanceProfiles(channel, id, profiles);
        }
        void getCarrierAggregationPerformanceProfiles(RadioChannel channel, long id,
                                                      std::vector<short>& profiles) const override {
            m_real.getCarrierAggregationPerformanceProfiles(channel, id, profiles);
        }

    private:
        const IHardwareConfigurationHandler& m_real;
    };

    CapabilityHandler m_capabilityHandler;
    AcmHandler m_acmHandler;
    FrameFormat m_frameFormat;
    SystemPowerController m_systemPowerController;
    HardwareConfigurationHandler m_hardwareConfigurationHandler;
};

/// Likewise before a service.
class ForwardingService final : public IOutputPowerCalculator {
public:
    explicit ForwardingService(IOutputPowerCalculator& real)
        : m_real(real) {}
    unsigned getMinMaxOutputPowerVsModulationArray(
        long frameFormatId, ModulationAndCoding min, ModulationAndCoding max,
        EReferenceSEC referenceSec, long& minOutputPower,
        std::map<ModulationAndCoding, long>& powerMap) const override {
        return m_real.getMinMaxOutputPowerVsModulationArray(frameFormatId, min, max, referenceSec,
                                                            minOutputPower, powerMap);
    }
    unsigned setTemporaryPowerCutback(bool use, unsigned long cutback) override {
        return m_real.setTemporaryPowerCutback(use, cutback);
    }
    unsigned setPowerCutback(unsigned long cutback) override {
        return m_real.setPowerCutback(cutback);
    }
    int calculatePowerCapabilities(Modulation modulation, long& minPower,
                                   long& maxPower) const override {
        return m_real.calculatePowerCapabilities(modulation, minPower, maxPower);
    }
    int calculateAdmodPowerCapabilities(Modulation modulation, EReferenceSEC rsec, long& minPower,
                                        long& maxPower) override {
        return m_real.calculateAdmodPowerCapabilities(modulation, rsec, minPower, maxPower);
    }
    int findPminPmax(long& pmin, long& pmax) const override {
        return m_real.findPminPmax(pmin, pmax);
    }
    int getUnrestrictedPmax(long& pmax) const override { return m_real.getUnrestrictedPmax(pmax); }
    unsigned setTemperature(long temperature) override {
        return m_real.setTemperature(temperature);
    }
    unsigned setBoosterPresence(int presence, int gain, int maxInputPower,
                                Modulation maxModulation) override {
        return m_real.setBoosterPresence(presence, gain, maxInputPower, maxModulation);
    }

private:
    IOutputPowerCalculator& m_real;
};
