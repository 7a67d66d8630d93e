#include "BareNode.h"

#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "IFrameFormat.h"
#include "IHardwareConfigurationHandler.h"
#include "ISystemPowerController.h"
#include "InterfaceBroker.h"
#include "ResultCode.h"

#include <array>

namespace {

constexpr RadioChannel channel = 1;
constexpr long knownFrameFormat = 1;

constexpr int minOutputPower = -1000;
constexpr std::array<int, 28> pmaxTable = {
    2,   3000, 4,    2900, 16,   2800, 32,   2700, 64,   2600, 128,   2500, 256,   2400,
    512, 2300, 1024, 2200, 2048, 2100, 4096, 2000, 8192, 1900, 16384, 1800, 65536, 1700};
constexpr int pmaxCount = pmaxTable.size();
constexpr std::array<ModulationAndCoding, 12> codes = {
    {{31}, {41}, {51}, {61}, {71}, {81}, {91}, {101}, {111}, {121}, {131}, {141}}};

const char* s_productNumber = "";

unsigned handOutPmax(const int** table, const int** count) {
    *table = pmaxTable.data();
    *count = &pmaxCount;
    return ResultCode::Success;
}

class : public ICapabilityHandler {
public:
    std::string getTmuHwProductNumber() const override { return s_productNumber; }
    unsigned getMinOutputPower(const int** table) const override {
        *table = &minOutputPower;
        return ResultCode::Success;
    }
    unsigned getPmaxCapabilityDpd1Ansi(const int** table, const int** count) const override {
        return handOutPmax(table, count);
    }
    unsigned getPmaxCapabilityDpd2Ansi(const int** table, const int** count) const override {
        return handOutPmax(table, count);
    }
    unsigned getPmaxCapabilityDpd1Etsi(const int** table, const int** count) const override {
        return handOutPmax(table, count);
    }
    unsigned getPmaxCapabilityDpd2Etsi(const int** table, const int** count) const override {
        return handOutPmax(table, count);
    }
    bool isMaxAcmLimitedByHw() const override { return true; }
} s_capabilityHandler;

class : public IAcmHandler {
public:
    unsigned getMinMaxModulationAndCode(ModulationAndCoding& min,
                                        ModulationAndCoding& max) override {
        min = codes.front();
        max = codes.back();
        return ResultCode::Success;
    }
} s_acmHandler;

class : public IFrameFormat {
public:
    Modulation getModulation() const override { return Modulation::QAM64; }
    Modulation getMaxAvailableModulation() const override { return Modulation::QAM16384; }
    void
    getModulationAndCodeArray(std::vector<ModulationAndCoding>& modulationAndCodes) const override {
        modulationAndCodes.assign(codes.begin(), codes.end());
    }
    EChannelSpacingType getChannelSpacing() const override { return EChannelSpacingType::MHz28; }
    EDpdVersion getDpdVersion() const override { return EDpdVersion::Dpd2; }
    EFrameFormatMarket getTelecomMarket() const override { return EFrameFormatMarket::Etsi; }
    void getPerformanceProfiles(std::vector<short>& profiles) const override { profiles.clear(); }
    void getCarrierAggregationPerformanceProfiles(std::vector<short>& profiles) const override {
        profiles.clear();
    }
} s_frameFormat;

class : public ISystemPowerController {
public:
    EReferenceSEC getReferenceSec() const override { return EReferenceSEC::Class4L; }
    bool getMinOutputPowerOffset(EChannelSpacingType, long& offset) const override {
        offset = 100;
        return true;
    }
} s_systemPowerController;

unsigned answerFor(long frameFormatId) {
    return frameFormatId == knownFrameFormat ? ResultCode::Success : ResultCode::Failure;
}

class : public IHardwareConfigurationHandler {
public:
    void getFrameFormatRecords(bool, std::vector<FrameFormatRecord>& records) const override {
        records.assign(1, {knownFrameFormat, EChannelSpacingType::MHz28});
    }
    EDpdVersion getDpdVersion(RadioChannel, long) const override { return EDpdVersion::Dpd2; }
    unsigned getTelecomMarket(RadioChannel, long frameFormatId,
                              EFrameFormatMarket& market) const override {
        market = EFrameFormatMarket::Etsi;
        return answerFor(frameFormatId);
    }
    unsigned
    getModulationAndCodeArray(RadioChannel, long frameFormatId,
                              std::vector<ModulationAndCoding>& modulationAndCodes) const override {
        modulationAndCodes.assign(codes.begin(), codes.end());
        return answerFor(frameFormatId);
    }
    unsigned getChannelSpacing(RadioChannel, long frameFormatId,
                               EChannelSpacingType& channelSpacing) const override {
        channelSpacing = EChannelSpacingType::MHz28;
        return answerFor(frameFormatId);
    }
    void getPerformanceProfiles(RadioChannel, long, std::vector<short>& profiles) const override {
        profiles.clear();
    }
    void getCarrierAggregationPerformanceProfiles(RadioChannel, long,
                                                  std::vector<short>& profiles) const override {
        profiles.clear();
    }
} s_hardwareConfigurationHandler;

} // namespace

namespace BareNode {

void publish() {
    InterfaceBroker& broker = InterfaceBroker::getInstance();
    broker.registerInterface(ICapabilityHandler::interfaceName(channel), &s_capabilityHandler);
    broker.registerInterface(IAcmHandler::interfaceName(channel), &s_acmHandler);
    broker.registerInterface(IFrameFormat::interfaceName(channel), &s_frameFormat);
    broker.registerInterface(ISystemPowerController::interfaceName(channel),
                             &s_systemPowerController);
    broker.registerInterface(IHardwareConfigurationHandler::interfaceName(),
                             &s_hardwareConfigurationHandler);
}

void setProductNumber(const char* productNumber) {
    s_productNumber = productNumber;
}

} // namespace BareNode
