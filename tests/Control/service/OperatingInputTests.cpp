#include "ServiceTest.h"

#include <ostream>

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using traced::enter;
using traced::msg;

namespace {

/// The setters, on a service that is not initialised: its neighbours expect no call at all.
class OperatingInputs : public ServiceFixture<::testing::StrictMock> {};

} // namespace

TEST_F(OperatingInputs, powerCutbackIsStoredAndTraced) {
    TraceCapture trace(6);

    const unsigned result = sut.setPowerCutback(300);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(Inside::powerCutback(sut), 300U);
    EXPECT_EQ(Inside::temporaryPowerCutback(sut), 0U);
    EXPECT_THAT(trace.lines(), ElementsAre(enter("setPowerCutback", "300")));
}

TEST_F(OperatingInputs, powerCutbackIsNotChecked) {
    TraceCapture trace(6);

    const unsigned result = sut.setPowerCutback(4294967295);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(Inside::powerCutback(sut), 4294967295U);
    EXPECT_THAT(trace.lines(), ElementsAre(enter("setPowerCutback", "4294967295")));
}

TEST_F(OperatingInputs, temporaryPowerCutbackIsStoredAndTracedWithItsFlag) {
    TraceCapture trace(6);

    const unsigned put = sut.setTemporaryPowerCutback(true, 4294967295);

    EXPECT_EQ(put, 0U);
    EXPECT_TRUE(Inside::useTemporaryPowerCutback(sut));
    EXPECT_EQ(Inside::temporaryPowerCutback(sut), 4294967295U);

    const unsigned lifted = sut.setTemporaryPowerCutback(false, 250);

    EXPECT_EQ(lifted, 0U);
    EXPECT_FALSE(Inside::useTemporaryPowerCutback(sut));
    EXPECT_EQ(Inside::temporaryPowerCutback(sut), 250U);
    EXPECT_EQ(Inside::powerCutback(sut), 0U);
    EXPECT_THAT(trace.lines(),
                ElementsAre(enter("setTemporaryPowerCutback",
                                  "useTemporaryPowerCutback=1, temporaryPowerCutback=4294967295"),
                            enter("setTemporaryPowerCutback",
                                  "useTemporaryPowerCutback=0, temporaryPowerCutback=250")));
}

TEST_F(OperatingInputs, temperatureIsStoredAndTracedTwice) {
    TraceCapture trace(6);

    const unsigned result = sut.setTemperature(-40);

    EXPECT_EQ(result, 0U);
    EXPECT_EQ(Inside::temperature(sut), -40);
    EXPECT_THAT(trace.lines(), ElementsAre(enter("setTemperature", "-40"),
                                           msg(5, "setTemperature", "New temperature = -40")));
}

TEST_F(OperatingInputs, temperatureAtBothEndsOf32BitsIsStored) {
    for (const long temperature : {-2147483647L - 1, 2147483647L}) {
        EXPECT_EQ(sut.setTemperature(temperature), 0U);
        EXPECT_EQ(Inside::temperature(sut), temperature);
    }
}

TEST_F(OperatingInputs, boosterOfPresence1OrMoreIsStoredAndTracedWhole) {
    for (const int presence : {1, 2, 7, 2147483647}) {
        TraceCapture trace(6);

        const unsigned result = sut.setBoosterPresence(presence, -1000, 1500, Modulation::QAM1024);

        EXPECT_EQ(result, 0U);
        EXPECT_EQ(Inside::boosterPresence(sut), presence);
        EXPECT_EQ(Inside::boosterGain(sut), -1000);
        EXPECT_EQ(Inside::boosterMaxInputPower(sut), 1500);
        EXPECT_EQ(Inside::boosterMaxModulation(sut), Modulation::QAM1024);
        EXPECT_THAT(trace.lines(),
                    ElementsAre(msg(5, "setBoosterPresence",
                                    "New boosterPresence = " + std::to_string(presence)),
                                msg(5, "setBoosterPresence",
                                    "New boosterGain = -1000, new boosterMaxInputPower = 1500, "
                                    "new boosterMaxModulation = 1024QAM")));
    }
}

TEST_F(OperatingInputs, boosterOfPresenceBelow1IsStoredWholeAndTracedByItsPresenceAlone) {
    for (const int presence : {0, -1, -2147483647 - 1}) {
        TraceCapture trace(6);

        const unsigned result = sut.setBoosterPresence(presence, 900, -1500, Modulation::QAM64);

        EXPECT_EQ(result, 0U);
        EXPECT_EQ(Inside::boosterPresence(sut), presence);
        EXPECT_EQ(Inside::boosterGain(sut), 900);
        EXPECT_EQ(Inside::boosterMaxInputPower(sut), -1500);
        EXPECT_EQ(Inside::boosterMaxModulation(sut), Modulation::QAM64);
        EXPECT_THAT(trace.lines(),
                    ElementsAre(msg(5, "setBoosterPresence",
                                    "New boosterPresence = " + std::to_string(presence))));
    }
}

TEST_F(OperatingInputs, boosterModulationWithoutATextIsTracedAsUndefined) {
    TraceCapture trace(6);

    sut.setBoosterPresence(1, 0, 0, Modulation{8});

    EXPECT_THAT(trace.lines(), ElementsAre(msg(5, "setBoosterPresence", "New boosterPresence = 1"),
                                           msg(5, "setBoosterPresence",
                                               "New boosterGain = 0, new boosterMaxInputPower = 0, "
                                               "new boosterMaxModulation = UNDEFINED")));
}

TEST_F(OperatingInputs, cutbackInForceIsTheTemporaryOneUntilItIsLifted) {
    sut.setTemporaryPowerCutback(true, 300);
    sut.setPowerCutback(500);
    long temporarily = 2000;
    sut.applyCutbackToMaxPower(temporarily);
    sut.setTemporaryPowerCutback(false, 300);
    long permanently = 2000;
    sut.applyCutbackToMaxPower(permanently);

    EXPECT_EQ(temporarily, 1700);
    EXPECT_EQ(permanently, 1500);
}

TEST_F(OperatingInputs, temporaryCutbackOf0HidesThePermanentOne) {
    sut.setPowerCutback(500);
    sut.setTemporaryPowerCutback(true, 0);
    long power = 2000;

    sut.applyCutbackToMaxPower(power);

    EXPECT_EQ(power, 2000);
}

TEST_F(OperatingInputs, cutbackTracesItsEntryWithoutText) {
    sut.setPowerCutback(500);
    TraceCapture trace(6);
    long power = 2000;

    sut.applyCutbackToMaxPower(power);

    EXPECT_THAT(trace.lines(), ElementsAre(enter("applyCutbackToMaxPower")));
}

namespace {

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

TEST_P(Cutback, permanentIsSubtractedIn32BitsWithoutABound) {
    sut.setPowerCutback(GetParam().cutback);
    long power = GetParam().power;

    sut.applyCutbackToMaxPower(power);

    EXPECT_EQ(power, GetParam().expected);
}

TEST_P(Cutback, temporaryIsSubtractedIn32BitsWithoutABound) {
    sut.setPowerCutback(77);
    sut.setTemporaryPowerCutback(true, GetParam().cutback);
    long power = GetParam().power;

    sut.applyCutbackToMaxPower(power);

    EXPECT_EQ(power, GetParam().expected);
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

TEST_F(StrictServiceTest, settersNotifyNobodyAndRecalculateNothing) {
    EXPECT_EQ(sut.setPowerCutback(1), 0U);
    EXPECT_EQ(sut.setTemporaryPowerCutback(true, 2), 0U);
    EXPECT_EQ(sut.setTemperature(3), 0U);
    EXPECT_EQ(sut.setBoosterPresence(4, 5, 6, Modulation::QAM16), 0U);
}

TEST_F(StartedServiceTest, cutbacksSetBeforeAndAfterInitializeTakeEffectAtTheNextQuery) {
    OutputPowerCalculator early(1);
    early.setPowerCutback(400);
    ASSERT_EQ(early.initialize(), 0U);
    long minPower = untouched;
    long maxPower = untouched;

    early.calculatePowerCapabilities(Modulation::QAM16, minPower, maxPower);
    EXPECT_EQ(maxPower, 2350); // 2600 - 400 + 150

    early.setPowerCutback(100);
    early.calculatePowerCapabilities(Modulation::QAM16, minPower, maxPower);
    EXPECT_EQ(maxPower, 2650); // 2600 - 100 + 150
}

TEST_F(StartedServiceTest, temperatureHasNoEffectOnAnyPower) {
    long before = untouched;
    long after = untouched;
    long minPower = untouched;
    sut.calculatePowerCapabilities(Modulation::QAM16, minPower, before);
    sut.setTemperature(90);

    sut.calculatePowerCapabilities(Modulation::QAM16, minPower, after);

    EXPECT_EQ(before, 2750); // 2600 + 150
    EXPECT_EQ(after, 2750);
}

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
