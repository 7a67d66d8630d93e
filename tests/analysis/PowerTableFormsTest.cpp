#include "PowerTableForms.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

namespace {

/// A table with one row, to be changed by the tests.
PowerTable smallTable() {
    PowerTable table;
    table.radioFile = "radio.json";
    table.channel = 1;
    table.servedChannel = 1;
    table.family = {"CalculatorKam", "first outdoor family"};
    table.channelSpacing = EChannelSpacingType::MHz28;
    table.dpdVersion = EDpdVersion::Dpd1;
    table.minOutputPower = 800;
    table.rows.push_back({{31}, Modulation::QAM4, 2250, "", "", false});
    return table;
}

std::string lineWith(const std::string& label, const std::string& text) {
    const std::size_t start = text.find(label);
    return start == std::string::npos ? "" : text.substr(start, text.find('\n', start) - start);
}

TEST(CsvForm, QuotesOnlyWhatNeedsIt) {
    PowerTable table = smallTable();
    table.rows.front().maxPower.reset();
    table.rows.front().reason = "no row for \"4QAM\", sorry";
    table.rows.front().warning = "in words";

    EXPECT_EQ(csvForm(table), "code,name,modulation,max_power_dBm,min_power_dBm,reason,warning\n"
                              "31,4QAM,4QAM,,8.00,\"no row for \"\"4QAM\"\", sorry\",in words\n");
}

TEST(CsvForm, WithoutAnAnswerHasEmptyFields) {
    PowerTable table = smallTable();
    table.minOutputPower.reset();
    table.rows.front().maxPower.reset();

    EXPECT_EQ(csvForm(table), "code,name,modulation,max_power_dBm,min_power_dBm,reason,warning\n"
                              "31,4QAM,4QAM,,,,\n");
}

TEST(CsvForm, WithoutCodesIsItsHeader) {
    PowerTable table = smallTable();
    table.rows.clear();

    EXPECT_EQ(csvForm(table), "code,name,modulation,max_power_dBm,min_power_dBm,reason,warning\n");
}

TEST(JsonForm, CountsInHundredths) {
    const auto object = nlohmann::json::parse(jsonForm(smallTable()));

    EXPECT_EQ(object.at("minPowerCentiDbm"), 800);
    EXPECT_EQ(object.at("rows").at(0).at("maxPowerCentiDbm"), 2250);
}

TEST(JsonForm, HasNullForWhatIsNotThere) {
    PowerTable table = smallTable();
    table.minOutputPower.reset();
    table.rows.front().maxPower.reset();

    const auto object = nlohmann::json::parse(jsonForm(table));

    EXPECT_TRUE(object.at("minPowerCentiDbm").is_null());
    EXPECT_TRUE(object.at("rows").at(0).at("maxPowerCentiDbm").is_null());
    EXPECT_TRUE(object.at("frameFormat").at("id").is_null());
    EXPECT_TRUE(object.at("booster").is_null());
    EXPECT_TRUE(object.at("temperature").is_null());
    EXPECT_TRUE(object.at("maxModulation").is_null());
    EXPECT_TRUE(object.at("failure").is_null());
    EXPECT_TRUE(object.at("rsec").at("used").is_null());
}

TEST(JsonForm, SurvivesTextsThatAreNoUtf8) {
    PowerTable table = smallTable();
    table.productNumber = "caf\xE9";

    EXPECT_EQ(nlohmann::json::parse(jsonForm(table)).at("productNumber"), "caf\xEF\xBF\xBD");
}

TEST(JsonForm, GivesTheNumberOfAMarketWithoutText) {
    PowerTable table = smallTable();
    table.market = static_cast<EFrameFormatMarket>(9);

    EXPECT_EQ(nlohmann::json::parse(jsonForm(table)).at("frameFormat").at("market"), "9");
}

TEST(JsonForm, ShowsWhichCutbackIsInForce) {
    PowerTable table = smallTable();
    table.inputs.permanentCutback = 300;
    table.inputs.temporaryCutback = {true, 4294967295U};

    const auto cutback = nlohmann::json::parse(jsonForm(table)).at("cutback");

    EXPECT_EQ(cutback.at("inForceCentiDb"), 4294967295U);
    EXPECT_EQ(cutback.at("isTemporary"), true);
    EXPECT_EQ(cutback.at("permanentCentiDb"), 300);
    EXPECT_EQ(cutback.at("temporaryCentiDb"), 4294967295U);
}

TEST(TextForm, AlignsItsColumns) {
    PowerTable table = smallTable();
    table.rows.push_back({{133}, Modulation::QAM16384, -5, "", "odd", true});
    table.rows.push_back(
        {{163}, Modulation::UNDEFINED, {}, "no modulation has this code", "", false});

    const std::string text = textForm(table);

    EXPECT_EQ(text.substr(text.find("\n\n") + 2),
              "Code  Name                   Modulation  Max power/dBm  Remark\n"
              "  31  4QAM                   4QAM                22.50\n"
              " 133  16384QAM_ULTRA_STRONG  16384QAM            -0.05  below the minimum power; "
              "odd\n"
              " 163  UNDEFINED              UNDEFINED               -  no modulation has this "
              "code\n");
}

TEST(TextForm, KeepsProductNumbersOnTheirLine) {
    PowerTable table = smallTable();
    table.productNumber = "QZT\n\x1b[2J";

    EXPECT_EQ(lineWith("Product number", textForm(table)),
              "Product number      QZT\\n\\x1b[2J -> first outdoor family (CalculatorKam)");
}

TEST(TextForm, TellsALimitOfTheRadioFromNone) {
    PowerTable table = smallTable();

    table.modulationLimit = {"512QAM", "512QAM", false};
    EXPECT_EQ(lineWith("Highest modulation", textForm(table)),
              "Highest modulation  512QAM of the frame format; the radio sets no lower limit");
    table.modulationLimit = {"512QAM", "64QAM", false};
    EXPECT_EQ(lineWith("Highest modulation", textForm(table)),
              "Highest modulation  64QAM by the radio, 512QAM of the frame format");
    table.modulationLimit = {"512QAM", "64QAM", true};
    EXPECT_EQ(lineWith("Highest modulation", textForm(table)),
              "Highest modulation  64QAM by the radio's performance profile, 512QAM of the frame "
              "format");
}

TEST(TextForm, SaysWhichClassCounts) {
    PowerTable table = smallTable();
    table.rsec = EReferenceSEC::Class4L;

    table.usedRsec = "4L";
    EXPECT_EQ(lineWith("RSEC ", textForm(table)),
              "RSEC                4L, from the system power controller");
    table.usedRsec.reset();
    EXPECT_EQ(lineWith("RSEC ", textForm(table)),
              "RSEC                4L, from the system power controller; no power depends on it "
              "here");
    table.rsecBy = PowerTable::Chooser::Asker;
    table.market = EFrameFormatMarket::Ansi;
    table.usedRsec = "2";
    EXPECT_EQ(lineWith("RSEC ", textForm(table)),
              "RSEC                4L, as given; counts as 2 on the ANSI market");
    table.rsec = static_cast<EReferenceSEC>(12);
    table.market = EFrameFormatMarket::Etsi;
    table.usedRsec = "UNDEFINED";
    EXPECT_EQ(lineWith("RSEC ", textForm(table)),
              "RSEC                UNDEFINED, number 12, as given");
}

TEST(TextForm, ShowsABoosterByAnyPresenceButZero) {
    PowerTable table = smallTable();

    table.inputs.booster = {0, 1500, 1400, Modulation::QAM256};
    EXPECT_EQ(lineWith("Booster", textForm(table)), "Booster             none");
    table.inputs.booster = {-1, 1500, -1400, Modulation::QAM256};
    EXPECT_EQ(lineWith("Booster", textForm(table)),
              "Booster             presence -1, gain 15.00 dB, input at most -14.00 dBm, up to "
              "256QAM");
}

} // namespace
