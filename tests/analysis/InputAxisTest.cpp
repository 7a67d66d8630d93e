#include "InputAxis.h"

#include "AnalysisError.h"
#include "RadioFileReader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

const InputAxis& axis(const std::string& name) {
    return InputAxis::named("--over", name);
}

/// The values of a list as texts.
std::vector<std::string> valuesOf(const std::string& name, const std::string& list) {
    std::vector<std::string> texts;
    for (const Inputs::Value& value : axis(name).valuesOf("--over", list)) {
        texts.push_back(Inputs::textOf(value));
    }
    return texts;
}

std::vector<std::string> usualValuesOf(const std::string& name, const RadioCase& radio) {
    std::vector<std::string> texts;
    for (const Inputs::Value& value : axis(name).usualValues("--over", radio)) {
        texts.push_back(Inputs::textOf(value));
    }
    return texts;
}

/// What a list is refused with.
std::string refusalOf(const std::string& name, const std::string& list) {
    try {
        valuesOf(name, list);
    } catch (const QuestionError& error) {
        return error.what();
    }
    return "nothing was refused";
}

using Texts = std::vector<std::string>;

RadioCase outdoorRadio() {
    std::ifstream file(QOR_ANALYSIS_TESTS "/radios/outdoor1.json");
    return {RadioFileReader::read(std::string(std::istreambuf_iterator<char>(file), {})), {}};
}

TEST(InputAxis, HasEveryInputUnderItsName) {
    Texts names;
    for (const InputAxis& one : InputAxis::all()) {
        names.push_back(one.name());
    }

    EXPECT_EQ(names, (Texts{"rsec", "market", "dpd", "channel-spacing", "cutback",
                            "temporary-cutback", "booster", "product", "min", "max"}));
}

TEST(InputAxis, OfAnUnknownNameSuggestsTheNearest) {
    try {
        axis("chanel-spacing");
        FAIL() << "nothing was refused";
    } catch (const QuestionError& error) {
        EXPECT_STREQ(error.what(),
                     R"(--over "chanel-spacing": unknown; did you mean "channel-spacing"?)");
    }
}

TEST(InputAxis, SaysInWhichUnitItCounts) {
    EXPECT_EQ(axis("channel-spacing").heading(), "channel spacing in MHz");
    EXPECT_EQ(axis("temporary-cutback").heading(), "temporary cutback in dB");
    EXPECT_EQ(axis("rsec").heading(), "RSEC");
}

TEST(InputAxisList, IsSeparatedByCommas) {
    EXPECT_EQ(valuesOf("rsec", "2,4L,UNDEFINED"), (Texts{"2", "4L", "UNDEFINED"}));
    EXPECT_EQ(valuesOf("market", "Ansi,Unknown"), (Texts{"Ansi", "Unknown"}));
    EXPECT_EQ(valuesOf("product", "none,QZT 846 003"), (Texts{"none", "QZT 846 003"}));
    EXPECT_EQ(valuesOf("max", "4QAM_STRONG,256QAM"), (Texts{"4QAM_STRONG", "256QAM"}));
}

TEST(InputAxisList, OfBoostersIsSeparatedBySlashes) {
    EXPECT_EQ(valuesOf("booster", "none/7,15,-0.5,64QAM"), (Texts{"none", "7,15.00,-0.50,64QAM"}));
}

TEST(InputAxisList, TakesTheLimitsOfNumbers) {
    EXPECT_EQ(valuesOf("dpd", "-2147483648,2147483647"), (Texts{"-2147483648", "2147483647"}));
    EXPECT_EQ(valuesOf("cutback", "0,42949672.95"), (Texts{"0.00", "42949672.95"}));
    EXPECT_EQ(refusalOf("dpd", "2147483648"),
              R"(--over dpd "2147483648": out of range, -2147483648 to 2147483647)");
    EXPECT_EQ(refusalOf("cutback", "42949672.96"),
              R"(--over cutback "42949672.96": out of range, 0.00 to 42949672.95 dB)");
}

TEST(InputAxisRange, CountsByOneUnlessAStepIsGiven) {
    EXPECT_EQ(valuesOf("dpd", "1..3"), (Texts{"1", "2", "3"}));
    EXPECT_EQ(valuesOf("cutback", "0.25..2"), (Texts{"0.25", "1.25"}));
    EXPECT_EQ(valuesOf("cutback", "0..1:0.5,4"), (Texts{"0.00", "0.50", "1.00", "4.00"}));
    EXPECT_EQ(valuesOf("channel-spacing", "-7..7:7"), (Texts{"-7", "0", "7"}));
    EXPECT_EQ(valuesOf("temporary-cutback", "none,3..3"), (Texts{"none", "3.00"}));
}

TEST(InputAxisRange, ReachesTheGreatestNumbers) {
    EXPECT_EQ(valuesOf("dpd", "2147483646..2147483647"), (Texts{"2147483646", "2147483647"}));
    EXPECT_EQ(valuesOf("cutback", "42949672.94..42949672.95:0.01"),
              (Texts{"42949672.94", "42949672.95"}));
}

TEST(InputAxisRange, HoldsAsManyValuesAsAreAllowed) {
    EXPECT_EQ(valuesOf("dpd", "1..256").size(), 256U);
    EXPECT_EQ(refusalOf("dpd", "1..257"), "--over dpd: more than 256 values");
    EXPECT_EQ(refusalOf("dpd", "-2147483648..2147483647"), "--over dpd: more than 256 values");
    EXPECT_EQ(refusalOf("dpd", "1..200,301..400"), "--over dpd: more than 256 values");
}

TEST(InputAxisRange, OfOddFormIsRefused) {
    const std::string wanted = ": FIRST..LAST or FIRST..LAST:STEP is wanted, for example 0..6:2";
    for (const char* const range : {"3..1", "1..3:0", "1..3:-1", "1..3:", "1..3:0.5", "1..3:x"}) {
        EXPECT_EQ(refusalOf("dpd", range), std::string("--over dpd \"") + range + '"' + wanted);
    }
    EXPECT_EQ(refusalOf("dpd", "..3"), R"(--over dpd "": an integer is wanted)");
    EXPECT_EQ(refusalOf("dpd", "1...3"), R"(--over dpd ".3": an integer is wanted)");
    EXPECT_EQ(refusalOf("dpd", "1.."), R"(--over dpd "": an integer is wanted)");
    EXPECT_EQ(refusalOf("rsec", "2..4L"),
              R"(--over rsec "2..4L": unknown RSEC; known: "2", "4L", "4H", "5B", "6B", "5LB", )"
              R"("5HB", "6LB", "6HB", "7B", "UNDEFINED")");
}

TEST(InputAxisList, WithAnUnknownTextSuggestsTheNearest) {
    EXPECT_EQ(refusalOf("rsec", "2,4l"), R"(--over rsec "4l": unknown RSEC; did you mean "4L"?)");
    EXPECT_EQ(refusalOf("market", "etsi"),
              R"(--over market "etsi": unknown market; did you mean "Etsi"?)");
    EXPECT_EQ(refusalOf("min", "64QM"),
              R"(--over min "64QM": unknown modulation-and-code; did you mean "64QAM"?)");
    EXPECT_EQ(refusalOf("booster", "none/1,2,3,64QM"),
              R"(--over booster MAXMODULATION "64QM": unknown modulation; did you mean "64QAM"?)");
}

TEST(InputAxisList, WithoutAValueOrWithOneTwiceIsRefused) {
    EXPECT_EQ(refusalOf("product", ""), R"(--over product "": a product number or none is wanted)");
    EXPECT_EQ(refusalOf("dpd", "1,,2"), R"(--over dpd "": an integer is wanted)");
    EXPECT_EQ(refusalOf("cutback", "1,0..2"), R"(--over cutback "1.00": is given twice)");
}

TEST(UsualValues, OfNumbersAreWholeDecibels) {
    const RadioCase radio = outdoorRadio();

    EXPECT_EQ(usualValuesOf("cutback", radio),
              (Texts{"0.00", "1.00", "2.00", "3.00", "4.00", "5.00", "6.00", "7.00", "8.00", "9.00",
                     "10.00"}));
    EXPECT_EQ(usualValuesOf("temporary-cutback", radio).front(), "none");
    EXPECT_EQ(usualValuesOf("temporary-cutback", radio).size(), 12U);
    EXPECT_EQ(usualValuesOf("dpd", radio), (Texts{"1", "2", "3"}));
}

// Of the frame formats and of the offsets to the minimum power; a spacing that is a failure is
// none.
TEST(UsualValues, OfTheChannelSpacingAreWhatTheRadioNames) {
    EXPECT_EQ(usualValuesOf("channel-spacing", outdoorRadio()), (Texts{"28", "56"}));
}

TEST(UsualValues, OfTheSelectionAreOneCodeForEachModulation) {
    const RadioCase radio = outdoorRadio();

    EXPECT_EQ(usualValuesOf("min", radio),
              (Texts{"4QAM_STRONG", "16QAM", "64QAM", "256QAM", "512QAM"}));
    EXPECT_EQ(usualValuesOf("max", radio), (Texts{"4QAM", "16QAM", "64QAM", "256QAM", "512QAM"}));
}

TEST(UsualValues, OfTheSelectionAreThoseOfTheFrameFormatThatIsAskedFor) {
    RadioCase radio = outdoorRadio();
    radio.query.frameFormatId = 7;

    EXPECT_EQ(usualValuesOf("min", radio), (Texts{"4QAM", "16QAM"}));
}

TEST(UsualValues, OfTheBoosterAreNoneAndItsTwoBands) {
    RadioCase radio = outdoorRadio();
    radio.query.inputs.booster = OperatingInputs::Booster{7, 1500, 1400, Modulation::QAM64};

    EXPECT_EQ(usualValuesOf("booster", radio),
              (Texts{"none", "1,15.00,14.00,64QAM", "7,15.00,14.00,64QAM"}));
}

TEST(UsualValues, WhereTheRadioNamesNoneAreAskedFor) {
    try {
        usualValuesOf("booster", outdoorRadio());
        FAIL() << "nothing was refused";
    } catch (const QuestionError& error) {
        EXPECT_STREQ(error.what(), "--over booster: the radio file names no booster; list the "
                                   "values, --over booster=LIST");
    }
}

TEST(VariedRadio, HasTheValueInTheConfiguredFrameFormat) {
    const RadioCase radio = outdoorRadio();

    const RadioCase varied = Inputs::varied(Inputs::varied(radio, EFrameFormatMarket::Ansi),
                                            EChannelSpacingType::MHz112);

    EXPECT_EQ(varied.file.node.frameFormat->market, EFrameFormatMarket::Ansi);
    EXPECT_EQ(varied.file.node.frameFormat->channelSpacing, EChannelSpacingType::MHz112);
    EXPECT_EQ(radio.file.node.frameFormat->market, EFrameFormatMarket::Etsi);
}

TEST(VariedRadio, HasTheValueInTheRecordThatIsAskedFor) {
    RadioCase radio = outdoorRadio();
    radio.query.frameFormatId = 8;

    const RadioCase varied = Inputs::varied(radio, EDpdVersion::Dpd3);

    const auto& records = varied.file.node.hardwareConfigurationHandler->frameFormats;
    EXPECT_EQ(records.at(0).dpdVersion, EDpdVersion::Dpd1);
    EXPECT_EQ(records.at(1).dpdVersion, EDpdVersion::Dpd3);
    EXPECT_EQ(varied.file.node.frameFormat->dpdVersion, EDpdVersion::Dpd2);
}

TEST(VariedRadio, TakesTheClassFromTheSystemPowerControllerAlone) {
    RadioCase radio = outdoorRadio();
    radio.query.rsec = EReferenceSEC::Class7B;

    const RadioCase varied = Inputs::varied(radio, EReferenceSEC::Class2);

    EXPECT_EQ(varied.file.node.systemPowerController->referenceSec, EReferenceSEC::Class2);
    EXPECT_EQ(varied.query.rsec, EReferenceSEC::UNDEFINED);
}

TEST(VariedRadio, KeepsTheOtherEndOfTheSelection) {
    constexpr ModulationAndCoding sixteen{41};

    const RadioCase varied = Inputs::varied(outdoorRadio(), Inputs::SelectedMin{sixteen});

    const auto range = std::get<AcmHandlerAnswers::Range>(*varied.file.node.acmHandler->selection);
    EXPECT_EQ(range.min.code, 41);
    EXPECT_EQ(range.max.code, 81);
}

TEST(VariedRadio, IsLeftWithoutWhatItDoesNotHave) {
    RadioCase radio = outdoorRadio();
    radio.file.node.systemPowerController = nullptr;
    radio.query.frameFormatId = 99;

    const RadioCase varied =
        Inputs::varied(Inputs::varied(radio, EReferenceSEC::Class2), EFrameFormatMarket::Ansi);

    EXPECT_EQ(varied.file.node.systemPowerController, nullptr);
    EXPECT_EQ(varied.file.node.frameFormat->market, EFrameFormatMarket::Etsi);
}

TEST(LabelOfAnInput, HasItsUnit) {
    EXPECT_EQ(InputAxis::labelOf(EChannelSpacingType::MHz28), "28 MHz");
    EXPECT_EQ(InputAxis::labelOf(Inputs::PermanentCutback{150}), "1.50 dB");
    EXPECT_EQ(InputAxis::labelOf(OperatingInputs::TemporaryCutback{}), "none");
    EXPECT_EQ(InputAxis::labelOf(OperatingInputs::Booster{1, 1500, 1400, Modulation::QAM256}),
              "presence 1, gain 15.00 dB, input at most 14.00 dBm, up to 256QAM");
    EXPECT_EQ(InputAxis::labelOf(Inputs::ProductNumber{""}), "none");
}

} // namespace
