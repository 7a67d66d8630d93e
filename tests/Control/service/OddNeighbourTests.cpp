#include "DeskVariableStore.h"
#include "InterfaceBroker.h"
#include "ServiceTest.h"

#include <algorithm>
#include <map>
#include <utility>

// Answers that the simulated neighbours never give: something written by an operation that fails,
// nothing written by one that succeeds, a table or a number that changes between two calls, records
// that disagree with the queries. And arguments that no public operation passes on.

namespace {

using traced::enter;
using traced::msg;

/// Registers a neighbour in place of the simulated one before the service starts.
class OddNeighbour : public ServiceTest {
protected:
    void start(const std::string& name, IInterface& neighbour) {
        InterfaceBroker::getInstance().registerInterface(name, &neighbour);
        ASSERT_EQ(sut.initialize(), 0U);
    }

    void start(IHardwareConfigurationHandler& handler) {
        start(IHardwareConfigurationHandler::interfaceName(), handler);
    }

    void start(ISystemPowerController& controller) {
        start("ISystemPowerController_1", controller);
    }

    std::map<int, long> powersById7() {
        std::map<ModulationAndCoding, long> powerMap;
        EXPECT_EQ(sut.getMinMaxOutputPowerVsModulationArray(7, noCode, noCode, rsec2,
                                                            minOutputPower, powerMap),
                  0U);
        std::map<int, long> powers;
        for (const auto& [code, power] : powerMap) {
            powers[code.code] = power;
        }
        return powers;
    }

    long minOutputPower = untouched;
};

using Powers = std::map<int, long>;

/// Frame format 7 as the simulated handler knows it.
class OddHardware : public SimulatedHardwareConfigurationHandler {
public:
    OddHardware() {
        setAnswers({{{7,
                      EChannelSpacingType::MHz56,
                      EDpdVersion::Dpd2,
                      EFrameFormatMarket::Etsi,
                      std::vector<ModulationAndCoding>{{31}, {41}, {61}},
                      {},
                      {}}}});
    }
};

/// A radio whose product numbers come in turn, a further one at each question.
class OddProduct : public OddNeighbour {
protected:
    class Handler : public SimulatedCapabilityHandler {
    public:
        using SimulatedCapabilityHandler::SimulatedCapabilityHandler;

        std::string getTmuHwProductNumber() const override {
            return products[questions++ % products.size()];
        }

        std::vector<std::string> products;
        mutable std::size_t questions = 0;
    };

    Powers powersWith(const std::vector<std::string>& products) {
        Handler handler(node.answers.capabilityHandler);
        handler.products = products;
        OddHardware hardwareOf7;
        InterfaceBroker& broker = InterfaceBroker::getInstance();
        broker.registerInterface(IHardwareConfigurationHandler::interfaceName(), &hardwareOf7);
        start(ICapabilityHandler::interfaceName(1), handler);
        return powersById7();
    }
};

TEST_F(OddProduct, thatChangesWithinAQueryHasEachModulationAnsweredByItsOwnFamily) {
    // Their reference modulations differ. The first question is that of the compensation.
    calibrate(1, {28, 0, 56, 0});
    const std::string outdoor = "QZT 846 57";
    const std::string radioUnit = "on no list";
    Powers ofOutdoor = powersWith({outdoor});
    Powers ofRadioUnit = powersWith({radioUnit});

    const Powers changing = powersWith({outdoor, radioUnit});

    EXPECT_NE(ofOutdoor, ofRadioUnit);
    EXPECT_EQ(changing,
              (Powers{{31, ofRadioUnit[31]}, {41, ofOutdoor[41]}, {61, ofRadioUnit[61]}}));
}

TEST_F(OddProduct, thatChangesWithinAQueryLeavesNoReferenceBehind) {
    // That of the outdoor family is 64QAM, that of the radio unit 256QAM, which has no row.
    calibrate(1, {28, 0, 56, 0});
    node.answers.capabilityHandler.pmaxDpd2Etsi = std::vector<int>{4, 2900, 16, 2700, 64, 2500};
    node.apply();
    TraceCapture trace(1);

    const Powers powers = powersWith({"QZT 846 57", "QZT 846 57", "on no list", "QZT 846 57"});

    EXPECT_EQ(powers.count(31), 1U);
    EXPECT_EQ(powers.count(41), 0U);
    EXPECT_EQ(powers.count(61), 1U);
    EXPECT_EQ(trace.lines(),
              (Lines{"1 raw 0x8008 TxRfMaxPowerCapability.getPower: getPower, unknown modulation "
                     "type: 256QAM",
                     msg(1, "getAdModMaxPower",
                         "Could not get max output power for reference offset 0QAM")}));
}

/// The hardware configuration with records of its own.
class MinimumPowerById : public OddNeighbour {
protected:
    class Records : public OddHardware {
    public:
        void getFrameFormatRecords(bool, std::vector<FrameFormatRecord>& out) const override {
            out = records;
        }

        std::vector<FrameFormatRecord> records;
    };

    /// With (id, channel spacing) records.
    long minimumOf(unsigned id, const std::vector<std::pair<long, int>>& records) {
        handler.records.clear();
        for (const auto& [recordId, channelSpacing] : records) {
            handler.records.push_back({recordId, EChannelSpacingType{channelSpacing}});
        }
        return Inside::getMinOutputPowerUsingRfid(sut, id);
    }

    void SetUp() override { start(handler); }

    Records handler;
};

} // namespace

TEST_F(OddNeighbour, marketWrittenByAFailedQueryCounts) {
    class Handler : public OddHardware {
    public:
        unsigned getTelecomMarket(RadioChannel, long, EFrameFormatMarket& market) const override {
            market = ansi;
            return 32768;
        }
    } handler;
    start(handler);

    EXPECT_EQ(powersById7(), (Powers{{31, 2450}, {41, 2350}, {61, 2250}}));
}

TEST_F(OddNeighbour, codesWrittenByAFailedQueryCount) {
    class Handler : public OddHardware {
    public:
        unsigned getModulationAndCodeArray(RadioChannel, long,
                                           std::vector<ModulationAndCoding>& codes) const override {
            codes = {{61}};
            return 32768;
        }
    } handler;
    start(handler);
    TraceCapture trace(2);

    EXPECT_EQ(powersById7(), (Powers{{61, 2300}}));
    EXPECT_EQ(trace.lines(),
              Lines{msg(1, "getMaxOutputPowerArrayUsingRfid",
                        "Failed to get modulation and code array, wrong channel or FFID?")});
}

TEST_F(OddNeighbour, codesWrittenWithTheHighestCodeBelowFailureCountSilently) {
    class Handler : public OddHardware {
    public:
        unsigned getModulationAndCodeArray(RadioChannel, long,
                                           std::vector<ModulationAndCoding>& codes) const override {
            codes = {{61}};
            return 32767;
        }
    } handler;
    start(handler);
    TraceCapture trace(2);

    EXPECT_EQ(powersById7(), (Powers{{61, 2300}}));
    EXPECT_EQ(trace.lines(), Lines{});
}

TEST_F(OddNeighbour, selectionWrittenByAHandlerCountsUpToTheHighestCodeBelowFailure) {
    class Handler : public IAcmHandler {
    public:
        unsigned getMinMaxModulationAndCode(ModulationAndCoding& min,
                                            ModulationAndCoding& max) override {
            min = {33};
            max = {73};
            return result;
        }
        unsigned result = 0;
    } handler;
    start("IAcmHandler_1", handler);
    const struct {
        unsigned result;
        int min;
        int max;
        Lines trace;
    } cases[] = {
        {0, 33, 73, {}},
        {1, 33, 73, {}},
        {32767, 33, 73, {}},
        {32768,
         163,
         163,
         {msg(2, "getSelectedMinMaxAcm", "failed to get min and max modulation from ACM handler")}},
        {4294967295,
         163,
         163,
         {msg(2, "getSelectedMinMaxAcm",
              "failed to get min and max modulation from ACM handler")}}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.result);
        handler.result = each.result;
        ModulationAndCoding min{71};
        ModulationAndCoding max{72};
        TraceCapture trace(6);

        const int result = Inside::getSelectedMinMaxAcm(sut, min, max);

        EXPECT_EQ(result, 0);
        EXPECT_EQ(min.code, each.min);
        EXPECT_EQ(max.code, each.max);
        EXPECT_EQ(trace.lines(), each.trace);
    }
}

TEST_F(OddNeighbour, selectionThatIsNotWrittenIsUndefined) {
    class Handler : public IAcmHandler {
    public:
        unsigned getMinMaxModulationAndCode(ModulationAndCoding&, ModulationAndCoding&) override {
            return 0;
        }
    } handler;
    start("IAcmHandler_1", handler);
    ModulationAndCoding min{71};
    ModulationAndCoding max{72};

    EXPECT_EQ(Inside::getSelectedMinMaxAcm(sut, min, max), 0);
    EXPECT_EQ(min.code, 163);
    EXPECT_EQ(max.code, 163);
}

TEST_F(OddNeighbour, codeThatStandsTwiceCountsOnceAndNothingBehindTheMapIsWritten) {
    class Handler : public OddHardware {
    public:
        unsigned getModulationAndCodeArray(RadioChannel, long,
                                           std::vector<ModulationAndCoding>& codes) const override {
            codes = {{31}, {31}};
            return 0;
        }
    } handler;
    start(handler);
    // Behind its last entry a map keeps their number, which must not be taken for a code.
    struct {
        std::map<ModulationAndCoding, long> map;
        long behind = untouched;
    } powers;
    for (int code = 0; code < 30; ++code) {
        powers.map[{code}] = untouched;
    }

    EXPECT_EQ(sut.getMinMaxOutputPowerVsModulationArray(7, noCode, noCode, rsec2, minOutputPower,
                                                        powers.map),
              0U);
    EXPECT_EQ(powers.map.size(), 31U);
    // Pmax 2900 and a compensation of -200.
    EXPECT_EQ(powers.map[{31}], 2700);
    EXPECT_EQ(powers.behind, untouched);
}

TEST_F(OddNeighbour, offsetThatIsFoundAndNotWrittenCountsAs0) {
    class Controller : public SimulatedSystemPowerController {
    public:
        bool getMinOutputPowerOffset(EChannelSpacingType, long&) const override { return true; }
    } controller;
    start(controller);
    TraceCapture trace(6);

    EXPECT_EQ(Inside::getMinOutputPower(sut, 28), -1000);
    EXPECT_EQ(trace.lines(), Lines{enter("getMinOutputPower", "28")});
}

TEST_F(OddNeighbour, offsetThatIsWrittenAndNotFoundIsIgnored) {
    class Controller : public SimulatedSystemPowerController {
    public:
        bool getMinOutputPowerOffset(EChannelSpacingType, long& offset) const override {
            offset = 250;
            return false;
        }
    } controller;
    start(controller);

    EXPECT_EQ(Inside::getMinOutputPower(sut, 28), -1000);
}

TEST_F(OddNeighbour, dpdVersionUnknownIsAskedForAgainForTheTrace) {
    class FrameFormat : public SimulatedFrameFormat {
    public:
        EDpdVersion getDpdVersion() const override { return EDpdVersion{m_next++}; }

    private:
        mutable int m_next = 4;
    } frameFormat;
    start("IFrameFormat_1", frameFormat);
    TraceCapture trace(1);
    long pmin = untouched;
    long pmax = untouched;

    EXPECT_EQ(sut.findPminPmax(pmin, pmax), 32768);
    EXPECT_EQ(trace.lines(), Lines{msg(1, "findPminPmax", "Unknown DPD version 5")});
}

TEST_F(OddNeighbour, numbersThatChangeWhereTheyStandAreFollowed) {
    class Handler : public SimulatedCapabilityHandler {
    public:
        unsigned getPmaxCapabilityDpd1Etsi(const int** out, const int** outCount) const override {
            *out = table;
            *outCount = &count;
            return 0;
        }
        unsigned getMinOutputPower(const int** out) const override {
            *out = &minimum;
            return 0;
        }
        int table[2] = {4, 2800};
        int count = 2;
        int minimum = -1000;
    } handler;
    start("ICapabilityHandler_1", handler);
    long power = untouched;

    handler.table[1] = 1111;
    handler.minimum = -400;

    EXPECT_EQ(Inside::getMaxPower(sut, dpd1, etsi, Modulation::QAM4, power), 0);
    EXPECT_EQ(power, 1111);
    EXPECT_EQ(Inside::getMinOutputPower(sut, 28), -150);

    handler.count = -2; // no whole row
    long pmin = untouched;
    EXPECT_EQ(sut.findPminPmax(pmin, power), 0);
    EXPECT_EQ(power, -2147483648);
}

TEST_F(OddNeighbour, productNumberThatChangesWithinAQueryIsFollowed) {
    // The compensation comes from the first outdoor family, the power from the older radio units.
    class Handler : public SimulatedCapabilityHandler {
    public:
        using SimulatedCapabilityHandler::SimulatedCapabilityHandler;
        std::string getTmuHwProductNumber() const override {
            return m_isFirst ? m_isFirst = false, "QZT 846 57" : "QZT35201/1";
        }

    private:
        mutable bool m_isFirst = true;
    } handler(node.answers.capabilityHandler);
    start("ICapabilityHandler_1", handler);
    TraceCapture trace(5);
    long minPower = untouched;
    long maxPower = untouched;

    const int result =
        sut.calculateAdmodPowerCapabilities(Modulation::QAM16, rsec2, minPower, maxPower);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(maxPower, 2400); // 2200 + 200
    EXPECT_EQ(trace.lines(),
              Lines{"5 msg CalculatorVo4.getMaxPower: Max power = 2400 for 16QAM, RSEC-2, using "
                    "ref acm 256QAM"});
}

TEST_F(MinimumPowerById, isThatOfTheFirstRecordWithTheId) {
    EXPECT_EQ(minimumOf(7, {{7, 56}}), -600);                     // -1000 + 400
    EXPECT_EQ(minimumOf(7, {{9, 56}, {7, 28}, {7, 56}}), -750);   // -1000 + 250
    EXPECT_EQ(minimumOf(7, {{9, 56}, {7, 3000}, {7, 28}}), -990); // -1000 + 10
}

TEST_F(MinimumPowerById, ofAnUnknownIdOrOfSpacing3000IsThatOfSpacing0) {
    for (const unsigned id : {0U, 6U, 8U, 4294967295U}) {
        EXPECT_EQ(minimumOf(id, {{7, 56}}), -990) << id;
    }
    EXPECT_EQ(minimumOf(7, {{7, 3000}}), -990);
    TraceCapture trace(6);

    EXPECT_EQ(minimumOf(7, {}), -990);
    EXPECT_EQ(trace.lines(), (Lines{enter("getMinOutputPowerUsingRfid", "rfid=7"),
                                    enter("getMinOutputPower", "0")}));
}

TEST_F(MinimumPowerById, isOfTheRecordsSpacingNotTheQuerys) {
    minimumOf(7, {{7, 28}});

    EXPECT_EQ(powersById7(), (Powers{{31, 2500}, {41, 2400}, {61, 2300}})); // at 56 MHz
    EXPECT_EQ(minOutputPower, -750);
}

// What no public operation passes on

TEST_F(StartedServiceTest, minimumOfASpacingBeyond31BitsPrintsItUnsigned) {
    recordCalls();
    TraceCapture trace(6);

    EXPECT_EQ(Inside::getMinOutputPower(sut, 4294967291), -1000);
    EXPECT_EQ(calls.texts(), Lines{"ISystemPowerController::getMinOutputPowerOffset(-5)"});
    EXPECT_EQ(trace.lines(),
              (Lines{enter("getMinOutputPower", "4294967291"),
                     msg(2, "getMinOutputPower", " no match for channel spacing : 4294967291")}));
}

TEST_F(StartedServiceTest, tableOfAnUnknownDpdVersionLeavesTheOutputAlone) {
    for (const int version : {0, 4, -1, 2147483647, -2147483647 - 1}) {
        SCOPED_TRACE(version);
        TxRfMaxPowerCapability table;
        ASSERT_EQ(Inside::getMaxPowerArray(sut, dpd1, ansi, table), 0);
        TraceCapture trace(6);

        EXPECT_EQ(Inside::getMaxPowerArray(sut, EDpdVersion{version}, etsi, table), 32768);

        const std::string text = std::to_string(version);
        EXPECT_EQ(trace.lines(),
                  (Lines{enter("getMaxPowerArray", "dpdVersion=" + text + ", market=Etsi"),
                         msg(1, "getMaxPowerArray", "Unknown DPD version " + text)}));
        long power = untouched;
        EXPECT_EQ(table.getPower(Modulation::QAM4, &power), 0);
        EXPECT_EQ(power, 2750);
    }
}

TEST_F(StartedServiceTest, pmaxThatIsNotFoundLeavesTheOutputAlone) {
    long power = untouched;

    EXPECT_EQ(Inside::getMaxPower(sut, dpd1, etsi, Modulation::QAM32, power), 32776);
    EXPECT_EQ(power, untouched);
    EXPECT_EQ(Inside::getMaxPower(sut, EDpdVersion{4}, ansi, Modulation::QAM16, power), 32768);
    EXPECT_EQ(power, untouched);
}

TEST_F(StartedServiceTest, compensationThatFailsLeavesTheOutputAt0) {
    DeskVariableStore::getInstance().clear();
    long compensation = untouched;

    EXPECT_EQ(Inside::getCsPowerCompensation(sut, EChannelSpacingType::MHz28, compensation), 32768);
    EXPECT_EQ(compensation, 0);
}

TEST_F(StartedServiceTest, powersAreNotCutBackUnasked) {
    sut.setPowerCutback(300);
    long power = untouched;

    // Reference 2200 at 256QAM and compensation 150: 2350 + 200 at 16QAM.
    EXPECT_EQ(Inside::getAdModMaxPower(sut, dpd1, etsi, rsec2, Modulation::QAM4, Modulation::QAM256,
                                       Modulation::QAM256, Modulation::QAM16, 150, power, false),
              0);
    EXPECT_EQ(power, 2550);
    EXPECT_EQ(Inside::getFixModMaxPower(sut, dpd1, etsi, Modulation::QAM16, Modulation::QAM64, -50,
                                        power, false),
              0);
    EXPECT_EQ(power, 2350); // 2400 - 50
}

TEST_F(StartedServiceTest, limitWritesTheIdItIsAskedWith) {
    node.answers.capabilityHandler.maxAcmLimitedByHw = true;
    node.answers.capabilityHandler.maxModulationLimitedByHw = Modulation::QAM64;
    node.apply();
    TraceCapture trace(6);

    const Modulation limit = Inside::limitMaxModDueToRadioCapability(
        sut, Inside::UseConfiguredFF::ById, -3, Modulation::UNDEFINED);

    EXPECT_EQ(limit, Modulation::QAM64);
    EXPECT_EQ(trace.lines(), traced::limit("-3", "Yes", "UNDEFINED", "64QAM"));
}
