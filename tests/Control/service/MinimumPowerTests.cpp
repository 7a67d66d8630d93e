#include "ServiceTest.h"

#include <ostream>

using ::testing::_;
using ::testing::DoAll;
using ::testing::ElementsAre;
using ::testing::InSequence;
using ::testing::Return;
using ::testing::SetArgReferee;
using traced::enter;
using traced::msg;

namespace {

class MinimumPower : public StartedServiceTest {};

class MinimumPowerById : public StartedServiceTest {
protected:
    /// Gives the hardware configuration (id, channel spacing) records.
    void record(const std::vector<std::pair<long, int>>& records) {
        hardware.answers.records.clear();
        for (const auto& [id, channelSpacing] : records) {
            hardware.answers.records.push_back({id, EChannelSpacingType{channelSpacing}});
        }
    }
};

class MinimumPowerCalls : public StrictServiceTest {};

class PminPmax : public StartedServiceTest {
protected:
    int findPminPmax() { return sut.findPminPmax(pmin, pmax); }

    /// Gives the service another table for DPD 1 and ETSI.
    void takeTable(const std::vector<int>& integers, int count) {
        node.answers.pmaxDpd1Etsi = PmaxAnswer(integers);
        node.answers.pmaxDpd1Etsi.count = count;
        ASSERT_EQ(sut.initialize(), 0U);
    }

    long pmin = untouched;
    long pmax = untouched;
};

struct PmaxCase {
    int dpdVersion;
    int market;
    long pmax;

    friend std::ostream& operator<<(std::ostream& stream, const PmaxCase& table) {
        return stream << "DPD " << table.dpdVersion << ", market " << table.market;
    }
};

class PminPmaxOf : public PminPmax, public ::testing::WithParamInterface<PmaxCase> {};

class PminPmaxOfUnknownDpdVersion : public PminPmax, public ::testing::WithParamInterface<int> {};

} // namespace

// By channel spacing

TEST_F(MinimumPower, isTheRadiosRaisedByTheOffsetOfTheSpacing) {
    TraceCapture trace(6);

    const long power = Inside::getMinOutputPower(sut, 28);

    EXPECT_EQ(power, -750); // -1000 + 250
    EXPECT_THAT(trace.lines(), ElementsAre(enter("getMinOutputPower", "28")));
}

TEST_F(MinimumPower, withoutAnOffsetIsTheRadiosOwn) {
    TraceCapture trace(6);

    const long power = Inside::getMinOutputPower(sut, 29);

    EXPECT_EQ(power, -1000);
    EXPECT_THAT(trace.lines(),
                ElementsAre(enter("getMinOutputPower", "29"),
                            msg(2, "getMinOutputPower", " no match for channel spacing : 29")));
}

TEST_F(MinimumPower, followsAnOffsetOf0AndBelow) {
    node.answers.minOutputPowerOffsets = {{28, 0}, {56, -300}};

    EXPECT_EQ(Inside::getMinOutputPower(sut, 28), -1000);
    EXPECT_EQ(Inside::getMinOutputPower(sut, 56), -1300);
}

TEST_F(MinimumPower, takesTheSpacingUnsigned) {
    EXPECT_CALL(node.systemPowerController, getMinOutputPowerOffset(EChannelSpacingType{-5}, _));
    TraceCapture trace(6);

    const long power = Inside::getMinOutputPower(sut, 4294967291);

    EXPECT_EQ(power, -1000);
    EXPECT_THAT(trace.lines(), ElementsAre(enter("getMinOutputPower", "4294967291"),
                                           msg(2, "getMinOutputPower",
                                               " no match for channel spacing : 4294967291")));
}

TEST_F(MinimumPower, reads0WhereNoTableWasHandedOut) {
    ON_CALL(node.capabilityHandler, getMinOutputPower).WillByDefault(Return(0U));
    OutputPowerCalculator withoutTable(1);
    ASSERT_EQ(withoutTable.initialize(), 0U);

    EXPECT_EQ(Inside::getMinOutputPower(withoutTable, 28), 250);
    EXPECT_EQ(Inside::getMinOutputPower(withoutTable, 29), 0);
}

TEST_F(MinimumPower, followsAMinimumThatTheHandlerChanges) {
    node.answers.minOutputPower = -400;

    EXPECT_EQ(Inside::getMinOutputPower(sut, 28), -150);
}

TEST_F(MinimumPower, addsTheOffsetIn32Bits) {
    node.answers.minOutputPowerOffsets = {{28, 1}, {56, -1}};

    node.answers.minOutputPower = 2147483647;
    EXPECT_EQ(Inside::getMinOutputPower(sut, 28), -2147483648);

    node.answers.minOutputPower = -2147483647 - 1;
    EXPECT_EQ(Inside::getMinOutputPower(sut, 56), 2147483647);
}

TEST_F(MinimumPower, countsAnOffsetThatIsFoundAndNotWrittenAs0) {
    EXPECT_CALL(node.systemPowerController, getMinOutputPowerOffset).WillOnce(Return(true));
    TraceCapture trace(6);

    const long power = Inside::getMinOutputPower(sut, 28);

    EXPECT_EQ(power, -1000);
    EXPECT_THAT(trace.lines(), ElementsAre(enter("getMinOutputPower", "28")));
}

TEST_F(MinimumPower, ignoresAnOffsetThatIsWrittenAndNotFound) {
    EXPECT_CALL(node.systemPowerController, getMinOutputPowerOffset)
        .WillOnce(DoAll(SetArgReferee<1>(250), Return(false)));

    EXPECT_EQ(Inside::getMinOutputPower(sut, 28), -1000);
}

// By frame-format id

TEST_F(MinimumPowerById, isThatOfTheRecordsSpacing) {
    TraceCapture trace(6);

    const long power = Inside::getMinOutputPowerUsingRfid(sut, 7);

    EXPECT_EQ(power, -600); // -1000 + 400
    EXPECT_THAT(trace.lines(), ElementsAre(enter("getMinOutputPowerUsingRfid", "rfid=7"),
                                           enter("getMinOutputPower", "56")));
}

TEST_F(MinimumPowerById, ofAnUnknownIdIsThatOfSpacing0) {
    for (const unsigned id : {0U, 6U, 8U, 4294967295U}) {
        TraceCapture trace(6);

        const long power = Inside::getMinOutputPowerUsingRfid(sut, id);

        EXPECT_EQ(power, -990); // -1000 + 10
        EXPECT_THAT(trace.lines(),
                    ElementsAre(enter("getMinOutputPowerUsingRfid", "rfid=" + std::to_string(id)),
                                enter("getMinOutputPower", "0")));
    }
}

TEST_F(MinimumPowerById, ofAnEmptyListIsThatOfSpacing0) {
    record({});
    TraceCapture trace(6);

    const long power = Inside::getMinOutputPowerUsingRfid(sut, 7);

    EXPECT_EQ(power, -990);
    EXPECT_THAT(trace.lines(), ElementsAre(enter("getMinOutputPowerUsingRfid", "rfid=7"),
                                           enter("getMinOutputPower", "0")));
}

TEST_F(MinimumPowerById, ofARecordWithSpacing3000IsThatOfSpacing0) {
    record({{7, 3000}});
    TraceCapture trace(6);

    const long power = Inside::getMinOutputPowerUsingRfid(sut, 7);

    EXPECT_EQ(power, -990);
    EXPECT_THAT(trace.lines(), ElementsAre(enter("getMinOutputPowerUsingRfid", "rfid=7"),
                                           enter("getMinOutputPower", "0")));
}

TEST_F(MinimumPowerById, ofASpacingBesides3000IsThatOfTheSpacing) {
    for (const int channelSpacing : {2999, 3001}) {
        record({{7, channelSpacing}});
        TraceCapture trace(6);

        const long power = Inside::getMinOutputPowerUsingRfid(sut, 7);

        const std::string text = std::to_string(channelSpacing);
        EXPECT_EQ(power, -1000);
        EXPECT_THAT(trace.lines(), ElementsAre(enter("getMinOutputPowerUsingRfid", "rfid=7"),
                                               enter("getMinOutputPower", text),
                                               msg(2, "getMinOutputPower",
                                                   " no match for channel spacing : " + text)));
    }
}

TEST_F(MinimumPowerById, isThatOfTheFirstRecordWithTheId) {
    record({{9, 56}, {7, 28}, {7, 56}});
    EXPECT_EQ(Inside::getMinOutputPowerUsingRfid(sut, 7), -750);

    record({{9, 56}, {7, 3000}, {7, 28}});
    EXPECT_EQ(Inside::getMinOutputPowerUsingRfid(sut, 7), -990);
}

TEST_F(MinimumPowerCalls, byIdGoToTheNeighboursInOrder) {
    const InSequence order;
    EXPECT_CALL(hardware.handler, getFrameFormatRecords(false, _));
    EXPECT_CALL(node.systemPowerController, getMinOutputPowerOffset(EChannelSpacingType::MHz56, _));

    Inside::getMinOutputPowerUsingRfid(sut, 7);
}

TEST_F(MinimumPowerCalls, byIdAskForSpacing0IfTheListIsLeftAlone) {
    const InSequence order;
    EXPECT_CALL(hardware.handler, getFrameFormatRecords(false, _)).WillOnce(Return());
    EXPECT_CALL(node.systemPowerController, getMinOutputPowerOffset(EChannelSpacingType{0}, _));

    Inside::getMinOutputPowerUsingRfid(sut, 7);
}

// The pair of the configured frame format

TEST_P(PminPmaxOf, dpdVersionAndMarketReadTheirTable) {
    node.answers.dpdVersion = EDpdVersion{GetParam().dpdVersion};
    node.answers.market = EFrameFormatMarket{GetParam().market};
    TraceCapture trace(6);

    const int result = findPminPmax();

    EXPECT_EQ(result, 0);
    EXPECT_EQ(pmin, -750);
    EXPECT_EQ(pmax, GetParam().pmax);
    EXPECT_THAT(trace.lines(),
                ElementsAre(enter("findPminPmax"), enter("getMinOutputPower", "28")));
}

// Every market but Etsi reads the Ansi table, unlike the power queries.
INSTANTIATE_TEST_SUITE_P(
    , PminPmaxOf,
    ::testing::Values(PmaxCase{1, 0, 2800}, PmaxCase{1, 1, 2750}, PmaxCase{1, 2, 2750},
                      PmaxCase{1, 3, 2750}, PmaxCase{1, 4, 2750}, PmaxCase{1, -1, 2750},
                      PmaxCase{2, 0, 2900}, PmaxCase{2, 1, 2850}, PmaxCase{2, 2, 2850},
                      PmaxCase{2, 3, 2850}, PmaxCase{2, 4, 2850}, PmaxCase{2, -1, 2850},
                      PmaxCase{3, 0, 2900}, PmaxCase{3, 1, 2850}, PmaxCase{3, 2, 2850},
                      PmaxCase{3, 3, 2850}, PmaxCase{3, 4, 2850}, PmaxCase{3, -1, 2850}));

TEST_F(PminPmax, ofTheGlobalMarketReadAnotherTableThanThePowerQueries) {
    node.answers.market = EFrameFormatMarket::Global;
    node.answers.modulation = Modulation::QAM4;
    long unrestricted = untouched;

    findPminPmax();
    sut.getUnrestrictedPmax(unrestricted);

    EXPECT_EQ(pmax, 2750);
    EXPECT_EQ(unrestricted, 2950); // 2800 + 150
}

TEST_P(PminPmaxOfUnknownDpdVersion, failAndWriteNothing) {
    node.answers.dpdVersion = EDpdVersion{GetParam()};
    TraceCapture trace(6);

    const int result = findPminPmax();

    EXPECT_EQ(result, 32768);
    EXPECT_EQ(pmin, untouched);
    EXPECT_EQ(pmax, untouched);
    EXPECT_THAT(
        trace.lines(),
        ElementsAre(enter("findPminPmax"),
                    msg(1, "findPminPmax", "Unknown DPD version " + std::to_string(GetParam()))));
}

TEST_P(PminPmaxOfUnknownDpdVersion, failWithoutTracingToo) {
    node.answers.dpdVersion = EDpdVersion{GetParam()};

    const int result = findPminPmax();

    EXPECT_EQ(result, 32768);
    EXPECT_EQ(pmin, untouched);
    EXPECT_EQ(pmax, untouched);
}

INSTANTIATE_TEST_SUITE_P(, PminPmaxOfUnknownDpdVersion,
                         ::testing::Values(0, 4, -1, 2147483647, -2147483647 - 1));

TEST_F(MinimumPowerCalls, ofThePairGoToTheNeighboursInOrder) {
    const InSequence order;
    EXPECT_CALL(node.frameFormat, getDpdVersion);
    EXPECT_CALL(node.frameFormat, getTelecomMarket);
    expectMinOutputPower();
    long pmin = untouched;
    long pmax = untouched;

    const int result = sut.findPminPmax(pmin, pmax);

    EXPECT_EQ(result, 0);
}

TEST_F(MinimumPowerCalls, ofThePairWithAnUnknownDpdVersionAskForItAgainForTheTrace) {
    const TraceCapture trace(1);
    EXPECT_CALL(node.frameFormat, getDpdVersion)
        .WillOnce(Return(EDpdVersion{4}))
        .WillOnce(Return(EDpdVersion{5}));
    long pmin = untouched;
    long pmax = untouched;

    const int result = sut.findPminPmax(pmin, pmax);

    EXPECT_EQ(result, 32768);
    EXPECT_THAT(DeskTrace::getInstance().records(), ::testing::SizeIs(1));
    EXPECT_EQ(DeskTrace::getInstance().records().back().text, "Unknown DPD version 5");
}

TEST_F(PminPmax, ofATableWithoutAWholeRowGiveTheLowestPmax) {
    const struct {
        std::vector<int> table;
        int count;
    } cases[] = {{{4, 2500}, 0}, {{4, 2500}, 1}, {{4, 2500}, -2}};
    for (const auto& each : cases) {
        takeTable(each.table, each.count);

        const int result = findPminPmax();

        EXPECT_EQ(result, 0) << each.count;
        EXPECT_EQ(pmin, -750) << each.count;
        EXPECT_EQ(pmax, -2147483648) << each.count;
    }
}

TEST_F(PminPmax, ofATableThatWasNeverHandedOutGiveTheLowestPmax) {
    ON_CALL(node.capabilityHandler, getPmaxCapabilityDpd1Etsi).WillByDefault(Return(0U));
    OutputPowerCalculator withoutTable(1);
    ASSERT_EQ(withoutTable.initialize(), 0U);

    const int result = withoutTable.findPminPmax(pmin, pmax);

    EXPECT_EQ(result, 0);
    EXPECT_EQ(pmin, -750);
    EXPECT_EQ(pmax, -2147483648);
}

TEST_F(PminPmax, takeTheHighestPowerWhereverItStands) {
    const struct {
        std::vector<int> table;
        long pmax;
    } cases[] = {{{4, 2500, 16, 2400, 64, 2300}, 2500},
                 {{4, 2300, 16, 2500, 64, 2400}, 2500},
                 {{64, 2300, 16, 2400, 4, 2500}, 2500},
                 {{4, -300, 16, -200, 64, -400}, -200},
                 {{4, 2500}, 2500},
                 {{65536, 100, 16384, 90}, 100}};
    for (const auto& each : cases) {
        takeTable(each.table, static_cast<int>(each.table.size()));

        EXPECT_EQ(findPminPmax(), 0);
        EXPECT_EQ(pmax, each.pmax);
    }
}

TEST_F(PminPmax, leaveAnIncompleteLastRowOut) {
    takeTable({4, 2500, 16, 2600}, 3);

    findPminPmax();

    EXPECT_EQ(pmax, 2500);
}

TEST_F(PminPmax, areNotCutBackAndNotCompensated) {
    sut.setPowerCutback(300);
    sut.setTemporaryPowerCutback(true, 500);
    sut.setBoosterPresence(1, 900, 1000, Modulation::QAM4);

    findPminPmax();

    EXPECT_EQ(pmin, -750);
    EXPECT_EQ(pmax, 2800);
}

TEST_F(PminPmax, takeANegativeSpacingUnsigned) {
    node.answers.channelSpacing = EChannelSpacingType{-1};
    TraceCapture trace(6);

    const int result = findPminPmax();

    EXPECT_EQ(result, 0);
    EXPECT_EQ(pmin, -1000);
    EXPECT_THAT(
        trace.lines(),
        ElementsAre(enter("findPminPmax"), enter("getMinOutputPower", "4294967295"),
                    msg(2, "getMinOutputPower", " no match for channel spacing : 4294967295")));
}
