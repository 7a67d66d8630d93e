#include "AllocationCount.h"
#include "CStorageManager.h"
#include "DeskTrace.h"
#include "InterfaceBroker.h"
#include "Neighbours.h"
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

/// Channel spacing 28, and whether it can be read.
const std::int32_t s_calibration[] = {28, 150};
const std::uint32_t s_calibrationSize = 2;
bool s_isCalibrated = true;

// The simulated neighbours, whose own blocks do not count.

class QuietCapabilityHandler : public SimulatedCapabilityHandler {
public:
    std::string getTmuHwProductNumber() const override {
        const Elsewhere here;
        return SimulatedCapabilityHandler::getTmuHwProductNumber();
    }
};

class QuietFrameFormat : public SimulatedFrameFormat {
public:
    void getModulationAndCodeArray(std::vector<ModulationAndCoding>& codes) const override {
        const Elsewhere here;
        SimulatedFrameFormat::getModulationAndCodeArray(codes);
    }
    void getPerformanceProfiles(std::vector<short>& profiles) const override {
        const Elsewhere here;
        SimulatedFrameFormat::getPerformanceProfiles(profiles);
    }
    void getCarrierAggregationPerformanceProfiles(std::vector<short>& profiles) const override {
        getPerformanceProfiles(profiles);
    }
};

class QuietHardwareConfiguration : public SimulatedHardwareConfigurationHandler {
public:
    void getFrameFormatRecords(bool, std::vector<FrameFormatRecord>& records) const override {
        const Elsewhere here;
        records.assign(60, {7, EChannelSpacingType::MHz28});
    }
    unsigned getModulationAndCodeArray(RadioChannel channel, long id,
                                       std::vector<ModulationAndCoding>& codes) const override {
        const Elsewhere here;
        return SimulatedHardwareConfigurationHandler::getModulationAndCodeArray(channel, id, codes);
    }
    void getPerformanceProfiles(RadioChannel, long, std::vector<short>& profiles) const override {
        const Elsewhere here;
        profiles.assign(40, 1);
    }
};

constexpr ModulationAndCoding noCode = {ModulationAndCoding::UNDEFINED};

/// A service among plain neighbours, with every family's calculator created.
class Allocations : public ::testing::Test {
protected:
    Allocations() {
        s_isCalibrated = true;
        DeskTrace::getInstance().setLevel(0);
        DeskTrace::getInstance().clear();
        InterfaceBroker& broker = InterfaceBroker::getInstance();
        broker.registerInterface("ICapabilityHandler_1", &m_capabilityHandler);
        broker.registerInterface("IAcmHandler_1", &m_acmHandler);
        broker.registerInterface("IFrameFormat_1", &m_frameFormat);
        broker.registerInterface("ISystemPowerController_1", &m_systemPowerController);
        broker.registerInterface("IHardwareConfigurationHandler", &m_hardware);
        OutputPowerCalculator::createCalculators();
        apply();
        for (const ModulationAndCoding& code : answers.radio.frameFormat.modulationAndCodes) {
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

    struct Answers {
        Answers() {
            radio.frameFormat.performanceProfiles.assign(40, 1);
            byId.id = 7;
            byId.modulationAndCodes = radio.frameFormat.modulationAndCodes;
        }

        RadioAnswers radio;
        HardwareConfigurationHandlerAnswers::FrameFormat byId;
    };

    /// Answers as `answers` says by now, with the service started anew.
    void apply() {
        m_capabilityHandler.setAnswers(answers.radio.capabilityHandler);
        m_acmHandler.setAnswers(answers.radio.acmHandler);
        m_frameFormat.setAnswers(answers.radio.frameFormat);
        m_systemPowerController.setAnswers(answers.radio.systemPowerController);
        m_hardware.setAnswers({{answers.byId}});
        sut.initialize();
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

    Answers answers;
    OutputPowerCalculator sut{1};
    std::map<ModulationAndCoding, long> powerMap;

private:
    QuietCapabilityHandler m_capabilityHandler;
    SimulatedAcmHandler m_acmHandler;
    QuietFrameFormat m_frameFormat;
    SimulatedSystemPowerController m_systemPowerController;
    QuietHardwareConfiguration m_hardware;
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
        answers.radio.capabilityHandler.productNumber = GetParam().productNumber;
        apply();
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

// Before any other test has asked a family.
TEST_F(Allocations, areNotMadeByAFirstQueryOnceTheCalculatorsAreCreated) {
    for (const char* const productNumber : {"QZT 846 001", "QZT 846 003", "QZT35201/1", "X"}) {
        answers.radio.capabilityHandler.productNumber = productNumber;
        apply();
        SCOPED_TRACE(productNumber);
        expectThatNoQueryTakesABlock();
    }
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
    answers.radio.capabilityHandler.maxAcmLimitedByHw = true;
    apply();

    expectThatNoQueryTakesABlock();
}

TEST_P(AllocationsOfRadio, areNotMadeByAnyQueryThatFails) {
    const struct {
        const char* name;
        std::function<void(Answers&)> arrange;
    } failures[] = {
        {"unknown DPD version",
         [](Answers& to) {
             to.radio.frameFormat.dpdVersion = EDpdVersion{4};
             to.byId.dpdVersion = EDpdVersion{4};
         }},
        {"no Pmax at all",
         [](Answers& to) { to.radio.capabilityHandler.pmaxDpd1Etsi = std::vector<int>(); }},
        {"no calibration", [](Answers&) { s_isCalibrated = false; }},
        {"no selection", [](Answers& to) { to.radio.acmHandler.selection = ResultOnly{32769}; }},
        {"nothing to count from",
         [](Answers& to) {
             to.radio.acmHandler.selection = ResultOnly{32768};
             to.radio.frameFormat.modulation = Modulation::UNDEFINED;
         }},
        {"no codes", [](Answers& to) { to.radio.frameFormat.modulationAndCodes.clear(); }},
        {"the undefined code",
         [](Answers& to) { to.radio.frameFormat.modulationAndCodes.push_back(noCode); }},
        {"an unknown id", [](Answers& to) { to.byId.id = 8; }},
        {"no offset",
         [](Answers& to) { to.radio.systemPowerController.minOutputPowerOffsets.clear(); }}};
    for (const auto& failure : failures) {
        SCOPED_TRACE(failure.name);
        answers = {};
        answers.radio.capabilityHandler.productNumber = GetParam().productNumber;
        s_isCalibrated = true;
        failure.arrange(answers);
        apply();

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
    answers = {};
    apply();
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
