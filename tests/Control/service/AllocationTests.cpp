#include "AllocationCount.h"
#include "CStorageManager.h"
#include "DeskTrace.h"
#include "IAcmHandler.h"
#include "ICapabilityHandler.h"
#include "IFrameFormat.h"
#include "IHardwareConfigurationHandler.h"
#include "ISystemPowerController.h"
#include "InterfaceBroker.h"
#include "OutputPowerCalculator.h"
#include "TraceCapture.h"

#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <new>
#include <ostream>
#include <string>
#include <vector>

using AllocationCount::Elsewhere;
using ::testing::IsEmpty;

namespace {

/// What the neighbours answer. A mock takes blocks of its own: these are plain.
struct Answers {
    std::string productNumber = "QZT 846 001";
    int minOutputPower = -1000;
    int pmax[10] = {4, 2800, 16, 2600, 64, 2400, 256, 2200, 1024, 2000};
    int pmaxCount = 10;
    bool maxAcmLimitedByHw = false;
    unsigned acmResult = 0;
    Modulation modulation = Modulation::QAM64;
    EDpdVersion dpdVersion = EDpdVersion::Dpd1;
    std::vector<ModulationAndCoding> codes = {{30}, {31}, {41}, {61}, {81}};
    bool hasOffset = true;
    unsigned byIdResult = 0;
};

Answers s_answers;

/// Channel spacing 28, and whether it can be read.
const std::int32_t s_calibration[] = {28, 150};
const std::uint32_t s_calibrationSize = 2;
bool s_isCalibrated = true;

unsigned pmaxTable(const int** table, const int** count) {
    *table = s_answers.pmax;
    *count = &s_answers.pmaxCount;
    return 0;
}

class PlainCapabilityHandler : public ICapabilityHandler {
public:
    std::string getTmuHwProductNumber() const override {
        const Elsewhere here;
        return s_answers.productNumber;
    }
    unsigned getMinOutputPower(const int** table) const override {
        *table = &s_answers.minOutputPower;
        return 0;
    }
    unsigned getPmaxCapabilityDpd1Ansi(const int** table, const int** count) const override {
        return pmaxTable(table, count);
    }
    unsigned getPmaxCapabilityDpd2Ansi(const int** table, const int** count) const override {
        return pmaxTable(table, count);
    }
    unsigned getPmaxCapabilityDpd1Etsi(const int** table, const int** count) const override {
        return pmaxTable(table, count);
    }
    unsigned getPmaxCapabilityDpd2Etsi(const int** table, const int** count) const override {
        return pmaxTable(table, count);
    }
    bool isMaxAcmLimitedByHw() const override { return s_answers.maxAcmLimitedByHw; }
};

class PlainAcmHandler : public IAcmHandler {
public:
    unsigned getMinMaxModulationAndCode(ModulationAndCoding& min,
                                        ModulationAndCoding& max) override {
        min = {30};
        max = {81};
        return s_answers.acmResult;
    }
};

class PlainFrameFormat : public IFrameFormat {
public:
    Modulation getModulation() const override { return s_answers.modulation; }
    Modulation getMaxAvailableModulation() const override { return Modulation::QAM256; }
    void getModulationAndCodeArray(std::vector<ModulationAndCoding>& codes) const override {
        const Elsewhere here;
        codes = s_answers.codes;
    }
    EChannelSpacingType getChannelSpacing() const override { return EChannelSpacingType::MHz28; }
    EDpdVersion getDpdVersion() const override { return s_answers.dpdVersion; }
    EFrameFormatMarket getTelecomMarket() const override { return EFrameFormatMarket::Etsi; }
    void getPerformanceProfiles(std::vector<short>& profiles) const override {
        const Elsewhere here;
        profiles.assign(40, 1);
    }
    void getCarrierAggregationPerformanceProfiles(std::vector<short>& profiles) const override {
        getPerformanceProfiles(profiles);
    }
};

class PlainSystemPowerController : public ISystemPowerController {
public:
    EReferenceSEC getReferenceSec() const override { return EReferenceSEC::Class4L; }
    bool getMinOutputPowerOffset(EChannelSpacingType, long& offset) const override {
        offset = 250;
        return s_answers.hasOffset;
    }
};

class PlainHardwareConfigurationHandler : public IHardwareConfigurationHandler {
public:
    void getFrameFormatRecords(bool, std::vector<FrameFormatRecord>& records) const override {
        const Elsewhere here;
        records.assign(60, {7, EChannelSpacingType::MHz28});
    }
    EDpdVersion getDpdVersion(RadioChannel, long) const override { return s_answers.dpdVersion; }
    unsigned getTelecomMarket(RadioChannel, long, EFrameFormatMarket& market) const override {
        market = EFrameFormatMarket::Etsi;
        return s_answers.byIdResult;
    }
    unsigned getModulationAndCodeArray(RadioChannel, long,
                                       std::vector<ModulationAndCoding>& codes) const override {
        const Elsewhere here;
        codes = s_answers.codes;
        return s_answers.byIdResult;
    }
    unsigned getChannelSpacing(RadioChannel, long, EChannelSpacingType& spacing) const override {
        spacing = EChannelSpacingType::MHz28;
        return s_answers.byIdResult;
    }
    void getPerformanceProfiles(RadioChannel, long, std::vector<short>& profiles) const override {
        const Elsewhere here;
        profiles.assign(40, 1);
    }
    void getCarrierAggregationPerformanceProfiles(RadioChannel channel, long id,
                                                  std::vector<short>& profiles) const override {
        getPerformanceProfiles(channel, id, profiles);
    }
};

constexpr ModulationAndCoding noCode = {ModulationAndCoding::UNDEFINED};
const char* const productNumbers[] = {"QZT 846 001", "QZT 846 003", "QZT35201/1", "X"};

/// A service among plain neighbours that has answered once for every family: their tables are
/// there.
class Allocations : public ::testing::Test {
protected:
    Allocations() {
        s_answers = {};
        s_isCalibrated = true;
        DeskTrace::getInstance().setLevel(0);
        DeskTrace::getInstance().clear();
        InterfaceBroker& broker = InterfaceBroker::getInstance();
        broker.registerInterface("ICapabilityHandler_1", &m_capabilityHandler);
        broker.registerInterface("IAcmHandler_1", &m_acmHandler);
        broker.registerInterface("IFrameFormat_1", &m_frameFormat);
        broker.registerInterface("ISystemPowerController_1", &m_systemPowerController);
        broker.registerInterface("IHardwareConfigurationHandler", &m_hardwareConfigurationHandler);
        sut.initialize();
        for (const char* const productNumber : productNumbers) {
            s_answers.productNumber = productNumber;
            sut.calculateAdmodPowerCapabilities(Modulation::QAM16, EReferenceSEC::Class2, m_min,
                                                m_max);
        }
        for (const ModulationAndCoding& code : s_answers.codes) {
            powerMap[code] = 0;
        }
    }

    ~Allocations() override {
        InterfaceBroker& broker = InterfaceBroker::getInstance();
        for (const char* const name :
             {"ICapabilityHandler_1", "IAcmHandler_1", "IFrameFormat_1", "ISystemPowerController_1",
              "IHardwareConfigurationHandler"}) {
            broker.unregisterInterface(name, nullptr);
        }
    }

    struct Query {
        const char* name;
        std::function<void()> ask;
    };

    unsigned askForArray(long frameFormatId) {
        return sut.getMinMaxOutputPowerVsModulationArray(frameFormatId, noCode, noCode,
                                                         EReferenceSEC::UNDEFINED, m_min, powerMap);
    }

    /// Every query of the service.
    std::vector<Query> queries() {
        return {{"array of the configured frame format", [this] { askForArray(0); }},
                {"array by id", [this] { askForArray(7); }},
                {"array of equal ends",
                 [this] {
                     sut.getMinMaxOutputPowerVsModulationArray(0, {31}, {31}, EReferenceSEC::Class2,
                                                               m_min, powerMap);
                 }},
                {"power capabilities",
                 [this] { sut.calculatePowerCapabilities(Modulation::QAM16, m_min, m_max); }},
                {"power capabilities without a Pmax",
                 [this] { sut.calculatePowerCapabilities(Modulation::QAM32, m_min, m_max); }},
                {"power capabilities of adaptive modulation",
                 [this] {
                     sut.calculateAdmodPowerCapabilities(Modulation::QAM64, EReferenceSEC::Class6B,
                                                         m_min, m_max);
                 }},
                {"power capabilities of adaptive modulation without a Pmax",
                 [this] {
                     sut.calculateAdmodPowerCapabilities(Modulation::QAM32, EReferenceSEC::Class6B,
                                                         m_min, m_max);
                 }},
                {"power capabilities at an RSEC without offsets",
                 [this] {
                     sut.calculateAdmodPowerCapabilities(Modulation::QAM64, EReferenceSEC{999},
                                                         m_min, m_max);
                 }},
                {"Pmin and Pmax", [this] { sut.findPminPmax(m_min, m_max); }},
                {"unrestricted Pmax", [this] { sut.getUnrestrictedPmax(m_max); }},
                {"cutback", [this] { sut.applyCutbackToMaxPower(m_max); }}};
    }

    /// Blocks that the service takes during a query.
    static std::size_t taken(const std::function<void()>& ask) {
        const std::size_t before = AllocationCount::taken();
        ask();
        return AllocationCount::taken() - before;
    }

    void expectThatNoQueryTakesABlock() {
        for (const Query& query : queries()) {
            EXPECT_EQ(taken(query.ask), 0U) << query.name;
        }
    }

    OutputPowerCalculator sut{1};
    std::map<ModulationAndCoding, long> powerMap;

private:
    PlainCapabilityHandler m_capabilityHandler;
    PlainAcmHandler m_acmHandler;
    PlainFrameFormat m_frameFormat;
    PlainSystemPowerController m_systemPowerController;
    PlainHardwareConfigurationHandler m_hardwareConfigurationHandler;
    long m_min = 0;
    long m_max = 0;
};

struct RadioCase {
    const char* productNumber;
    int boosterPresence;

    friend std::ostream& operator<<(std::ostream& stream, const RadioCase& radio) {
        return stream << radio.productNumber << " with booster " << radio.boosterPresence;
    }
};

class AllocationsOfRadio : public Allocations, public ::testing::WithParamInterface<RadioCase> {
protected:
    AllocationsOfRadio() {
        s_answers.productNumber = GetParam().productNumber;
        sut.setBoosterPresence(GetParam().boosterPresence, 900, 2000, Modulation::QAM64);
    }
};

} // namespace

/// The platform's store in this program: the desk's takes blocks for its names.
std::uint32_t CStorageManager_GetVariableContentAddressByName(const char* name,
                                                              const void** address,
                                                              std::uint32_t* size) {
    const Elsewhere here;
    if (!s_isCalibrated) {
        return 32768;
    }
    const bool isSize = std::string(name).ends_with("size");
    *address = isSize ? static_cast<const void*>(&s_calibrationSize) : s_calibration;
    if (size != nullptr) {
        *size = isSize ? 1 : 2;
    }
    return 0;
}

TEST_F(Allocations, areCountedUnlessElsewhere) {
    const auto ask = [] { ::operator delete(::operator new(100)); };
    const auto askElsewhere = [] {
        const Elsewhere here;
        ::operator delete(::operator new(100));
    };

    EXPECT_EQ(taken(ask), 1U);
    EXPECT_EQ(taken(askElsewhere), 0U);
}

TEST_F(Allocations, areMadeByTheTextsOfTraces) {
    for (const Query& query : queries()) {
        const TraceCapture trace(6);

        EXPECT_GT(taken(query.ask), 0U) << query.name;
    }
}

TEST_P(AllocationsOfRadio, areNotMadeByAnyQueryWithoutTracing) {
    expectThatNoQueryTakesABlock();

    EXPECT_THAT(DeskTrace::getInstance().records(), IsEmpty());
}

TEST_P(AllocationsOfRadio, areNotMadeByAnyQueryOfARadioLimitedByItsHardware) {
    s_answers.maxAcmLimitedByHw = true;

    expectThatNoQueryTakesABlock();
}

TEST_P(AllocationsOfRadio, areNotMadeByAnyQueryThatFails) {
    const struct {
        const char* name;
        std::function<void()> arrange;
    } failures[] = {{"unknown DPD version", [] { s_answers.dpdVersion = EDpdVersion{4}; }},
                    {"no Pmax at all", [] { s_answers.pmaxCount = 0; }},
                    {"no calibration", [] { s_isCalibrated = false; }},
                    {"no selection", [] { s_answers.acmResult = 32769; }},
                    {"nothing to count from",
                     [] {
                         s_answers.acmResult = 32768;
                         s_answers.modulation = Modulation::UNDEFINED;
                     }},
                    {"no codes", [] { s_answers.codes.clear(); }},
                    {"the undefined code", [] { s_answers.codes.push_back(noCode); }},
                    {"an unknown id", [] { s_answers.byIdResult = 32768; }},
                    {"no offset", [] { s_answers.hasOffset = false; }}};
    for (const auto& failure : failures) {
        SCOPED_TRACE(failure.name);
        s_answers = {};
        s_answers.productNumber = GetParam().productNumber;
        s_isCalibrated = true;
        failure.arrange();

        expectThatNoQueryTakesABlock();
    }
    EXPECT_THAT(DeskTrace::getInstance().records(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, AllocationsOfRadio,
                         ::testing::Values(RadioCase{"QZT 846 001", 0}, RadioCase{"QZT 846 001", 1},
                                           RadioCase{"QZT 846 003", 0}, RadioCase{"QZT 846 003", 1},
                                           RadioCase{"QZT35201/1", 0}, RadioCase{"QZT35201/1", 7},
                                           RadioCase{"X", 0}, RadioCase{"X", 1}, RadioCase{"", 0},
                                           RadioCase{"an unknown number of more than 15 characters",
                                                     0}));

TEST_F(Allocations, areNotMadeForTracesAboveTheLevel) {
    s_answers.productNumber = "QZT 846 001";
    for (const int level : {1, 2, 3, 4}) {
        const TraceCapture trace(level);

        EXPECT_EQ(taken([this] { askForArray(0); }), 0U) << level;
        EXPECT_EQ(taken([this] { askForArray(7); }), 0U) << level;
        EXPECT_THAT(DeskTrace::getInstance().records(), IsEmpty());
    }
}

TEST_F(Allocations, areMadeForNewEntriesOfAMapAlone) {
    powerMap.clear();
    powerMap[{41}] = 0;

    EXPECT_EQ(taken([this] { askForArray(0); }), 4U);
    EXPECT_EQ(taken([this] { askForArray(0); }), 0U);
    EXPECT_EQ(powerMap.size(), 5U);
}

TEST_F(Allocations, areNotMadeBySetters) {
    EXPECT_EQ(taken([this] {
                  sut.setPowerCutback(300);
                  sut.setTemporaryPowerCutback(true, 200);
                  sut.setTemperature(-40);
                  sut.setBoosterPresence(1, 900, 1000, Modulation::QAM256);
              }),
              0U);
}
