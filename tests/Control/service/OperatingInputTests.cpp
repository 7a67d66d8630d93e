#include "ServiceTest.h"

#include <ostream>

using traced::enter;
using traced::msg;

namespace {

/// The setters, on a service that is not initialised.
class OperatingInputs : public ServiceTest {
protected:
    /// All of them once.
    void setAll() {
        EXPECT_EQ(sut.setPowerCutback(4294967295), 0U);
        EXPECT_EQ(sut.setTemporaryPowerCutback(true, 300), 0U);
        EXPECT_EQ(sut.setTemperature(-40), 0U);
        EXPECT_EQ(sut.setBoosterPresence(1, -1000, 1500, Modulation::QAM1024), 0U);
    }
};

const Lines linesOfAll = {
    enter("setPowerCutback", "4294967295"),
    enter("setTemporaryPowerCutback", "useTemporaryPowerCutback=1, temporaryPowerCutback=300"),
    enter("setTemperature", "-40"),
    msg(5, "setTemperature", "New temperature = -40"),
    msg(5, "setBoosterPresence", "New boosterPresence = 1"),
    msg(5, "setBoosterPresence",
        "New boosterGain = -1000, new boosterMaxInputPower = 1500, "
        "new boosterMaxModulation = 1024QAM")};

struct CutbackCase {
    long power;
    unsigned long cutback;
    long expected;

    friend std::ostream& operator<<(std::ostream& stream, const CutbackCase& shown) {
        return stream << shown.power << " - " << shown.cutback;
    }
};

class Cutback : public OperatingInputs, public ::testing::WithParamInterface<CutbackCase> {};

} // namespace

TEST_F(OperatingInputs, allOfThemStartAtZero) {
    EXPECT_EQ(Inside::temperature(sut), 0);
    EXPECT_FALSE(Inside::useTemporaryPowerCutback(sut));
    EXPECT_EQ(Inside::temporaryPowerCutback(sut), 0U);
    EXPECT_EQ(Inside::powerCutback(sut), 0U);
    EXPECT_EQ(Inside::boosterPresence(sut), 0);
    EXPECT_EQ(Inside::boosterGain(sut), 0);
    EXPECT_EQ(Inside::boosterMaxInputPower(sut), 0);
    EXPECT_EQ(Inside::boosterMaxModulation(sut), Modulation::CW);
    EXPECT_EQ(Inside::minOutputPower(sut), nullptr);
}

TEST_F(OperatingInputs, allOfThemAreStoredUncheckedAndTraced) {
    TraceCapture trace(6);

    setAll();

    EXPECT_EQ(Inside::powerCutback(sut), 4294967295U);
    EXPECT_TRUE(Inside::useTemporaryPowerCutback(sut));
    EXPECT_EQ(Inside::temporaryPowerCutback(sut), 300U);
    EXPECT_EQ(Inside::temperature(sut), -40);
    EXPECT_EQ(Inside::boosterPresence(sut), 1);
    EXPECT_EQ(Inside::boosterGain(sut), -1000);
    EXPECT_EQ(Inside::boosterMaxInputPower(sut), 1500);
    EXPECT_EQ(Inside::boosterMaxModulation(sut), Modulation::QAM1024);
    EXPECT_EQ(trace.lines(), linesOfAll);
}

TEST_F(OperatingInputs, traceTheirResultsAtLevel5AndNothingBelow) {
    TraceCapture trace(5);
    setAll();
    EXPECT_EQ(trace.lines(), (Lines{linesOfAll[3], linesOfAll[4], linesOfAll[5]}));

    for (const int level : {4, 0, -1}) {
        TraceCapture below(level);
        setAll();
        EXPECT_EQ(below.lines(), Lines{}) << level;
    }
}

TEST_F(OperatingInputs, areTracedAtTheLevelOfTheMoment) {
    TraceCapture trace(6);
    sut.setPowerCutback(0);
    DeskTrace::getInstance().setLevel(5);
    sut.setPowerCutback(0);
    DeskTrace::getInstance().setLevel(6);
    sut.setPowerCutback(0);

    EXPECT_EQ(trace.lines(), Lines(2, enter("setPowerCutback", "0")));
}

TEST_F(OperatingInputs, temporaryPowerCutbackKeepsItsValueWhileItIsLifted) {
    sut.setTemporaryPowerCutback(true, 4294967295);
    TraceCapture trace(6);

    sut.setTemporaryPowerCutback(false, 250);

    EXPECT_FALSE(Inside::useTemporaryPowerCutback(sut));
    EXPECT_EQ(Inside::temporaryPowerCutback(sut), 250U);
    EXPECT_EQ(Inside::powerCutback(sut), 0U);
    EXPECT_EQ(trace.lines(), Lines{enter("setTemporaryPowerCutback",
                                         "useTemporaryPowerCutback=0, temporaryPowerCutback=250")});
}

TEST_F(OperatingInputs, temperatureAtBothEndsOf32BitsIsStored) {
    for (const long temperature : {-2147483647L - 1, 2147483647L}) {
        EXPECT_EQ(sut.setTemperature(temperature), 0U);
        EXPECT_EQ(Inside::temperature(sut), temperature);
    }
}

TEST_F(OperatingInputs, boosterIsStoredWholeAndTracedWholeFromPresence1On) {
    for (const int presence : {1, 2, 7, 2147483647, 0, -1, -2147483647 - 1}) {
        SCOPED_TRACE(presence);
        TraceCapture trace(6);

        sut.setBoosterPresence(presence, 900, -1500, Modulation{8});

        EXPECT_EQ(Inside::boosterPresence(sut), presence);
        EXPECT_EQ(Inside::boosterGain(sut), 900);
        EXPECT_EQ(Inside::boosterMaxInputPower(sut), -1500);
        EXPECT_EQ(Inside::boosterMaxModulation(sut), Modulation{8});
        Lines expected = {
            msg(5, "setBoosterPresence", "New boosterPresence = " + std::to_string(presence))};
        if (presence >= 1) {
            expected.push_back(msg(5, "setBoosterPresence",
                                   "New boosterGain = 900, new boosterMaxInputPower = -1500, "
                                   "new boosterMaxModulation = UNDEFINED"));
        }
        EXPECT_EQ(trace.lines(), expected);
    }
}

TEST_F(OperatingInputs, cutbackInForceIsTheTemporaryOneUntilItIsLifted) {
    sut.setPowerCutback(500);
    const struct {
        bool use;
        unsigned long temporary;
        long expected;
    } cases[] = {{true, 300, 1700}, {false, 300, 1500}, {true, 0, 2000}};
    for (const auto& each : cases) {
        sut.setTemporaryPowerCutback(each.use, each.temporary);
        TraceCapture trace(6);
        long power = 2000;

        sut.applyCutbackToMaxPower(power);

        EXPECT_EQ(power, each.expected);
        EXPECT_EQ(trace.lines(), Lines{enter("applyCutbackToMaxPower")});
    }
}

TEST_P(Cutback, isSubtractedIn32BitsWithoutABound) {
    long permanently = GetParam().power;
    long temporarily = GetParam().power;

    sut.setPowerCutback(GetParam().cutback);
    sut.applyCutbackToMaxPower(permanently);
    sut.setPowerCutback(77);
    sut.setTemporaryPowerCutback(true, GetParam().cutback);
    sut.applyCutbackToMaxPower(temporarily);

    EXPECT_EQ(permanently, GetParam().expected);
    EXPECT_EQ(temporarily, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(, Cutback,
                         ::testing::Values(CutbackCase{2000, 0, 2000},                 //
                                           CutbackCase{2000, 1, 1999},                 //
                                           CutbackCase{2000, 2000, 0},                 //
                                           CutbackCase{2000, 2001, -1},                //
                                           CutbackCase{2000, 4294967295, 2001},        //
                                           CutbackCase{2000, 4294967294, 2002},        //
                                           CutbackCase{0, 2147483647, -2147483647},    //
                                           CutbackCase{0, 2147483648, -2147483648},    //
                                           CutbackCase{0, 2147483649, 2147483647},     //
                                           CutbackCase{2000, 2147483648, -2147481648}, //
                                           CutbackCase{-2147483648, 0, -2147483648},   //
                                           CutbackCase{-2147483648, 1, 2147483647},    //
                                           CutbackCase{2147483647, 4294967295, -2147483648}));

TEST_F(OperatingInputs, setBeforeInitializeTakeEffect) {
    sut.setPowerCutback(400);
    ASSERT_EQ(sut.initialize(), 0U);
    long minPower = untouched;
    long maxPower = untouched;

    sut.calculatePowerCapabilities(Modulation::QAM16, minPower, maxPower);

    EXPECT_EQ(maxPower, 2350); // 2600 - 400 + 150
}
