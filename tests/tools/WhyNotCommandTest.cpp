#include "ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

// The powers of the radios are worked out by hand in TableCommandTest.cpp.

namespace {

ToolResult whyNot(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "why-not");
    return runTool(arguments);
}

nlohmann::json jsonOf(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--format", "json"});
    return nlohmann::json::parse(whyNot(arguments).output);
}

/// The change of an input, or null.
nlohmann::json changeOf(const nlohmann::json& answer, const std::string& input) {
    for (const auto& change : answer.at("changes")) {
        if (change.at("input") == input) {
            return change;
        }
    }
    return nullptr;
}

// outdoor1.json, 64QAM: 21.50 by the offset table, 24.00 - 3.00 = 21.00 by Pmax. For 22.00 the
// cutback must fall to 2.00: then 22.50 and 22.00. One row of the Pmax table alone does not do it,
// as the other bound stays. With the selected minimum as the maximum too there is one fixed
// modulation: the lower of 28.00 and 24.00, less 3.00, and 1.50 of compensation, 22.50.
TEST(WhyNot, ShowsEachChangeThatAllowsThePower) {
    const ToolResult result = whyNot({"radios/outdoor1.json", "64QAM", "22"});

    EXPECT_EQ(
        result.output,
        "64QAM gets 21.00 dBm, 1.00 dB less than 22.00 dBm; limited by: at most Pmax of 64QAM "
        "less the cutback (pmax-row)\n"
        "Any one of these changes alone allows it:\n"
        "\n"
        "Change             From     To           By/dB  Power/dBm  Where\n"
        "permanent cutback  3.00 dB  2.00 dB      -1.00      22.00  /requests/4/cutback\n"
        "selected maximum   256QAM   4QAM_STRONG             22.50  /acmHandler/max\n"
        "\n"
        "No change alone allows it of: selected minimum, Pmax of 4QAM, Pmax of 64QAM, Pmax of "
        "256QAM, RSEC, DPD version, market, channel spacing\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, done);
}

// 256QAM: 20.50 by the offset table, 22.00 - 3.00 = 19.00 by Pmax. 19.01 needs 22.01 there.
TEST(WhyNot, FindsTheSmallestNumberToAHundredth) {
    const nlohmann::json answer = jsonOf({"radios/outdoor1.json", "256QAM", "19.01"});

    const nlohmann::json cutback = changeOf(answer, "cutback");
    EXPECT_EQ(cutback.at("to"), "2.99 dB");
    EXPECT_EQ(cutback.at("amountCentiDb"), -1);
    EXPECT_EQ(cutback.at("maxPowerCentiDbm"), 1901);
    const nlohmann::json row = changeOf(answer, "pmax-row");
    EXPECT_EQ(row.at("words"), "Pmax of 256QAM");
    EXPECT_EQ(row.at("to"), "22.01 dBm");
    EXPECT_EQ(row.at("pointer"), "/capabilityHandler/pmaxDpd1Etsi/3/1");
    EXPECT_EQ(answer.at("rule"), "pmax-row");
    EXPECT_EQ(answer.at("allowed"), false);
}

// fixed-modulation.json has no row for 128QAM, which counts as 0: -2.50. For 10.00 a row of 12.50
// is needed: 12.50 - 2.00 - 0.50.
TEST(WhyNot, AddsARowThatIsMissing) {
    const nlohmann::json answer = jsonOf({"radios/fixed-modulation.json", "128QAM", "10"});

    const nlohmann::json row = changeOf(answer, "pmax-row");
    EXPECT_EQ(row.at("from"), "no row");
    EXPECT_EQ(row.at("to"), "12.50 dBm");
    EXPECT_EQ(row.at("amountCentiDb"), nullptr);
    EXPECT_EQ(row.at("maxPowerCentiDbm"), 1000);
}

// radio-unit-booster.json, 64QAM: 19.00 + 5 + 2 - 15 = 11.00; 19.00 without the booster. A gain of
// 13.00 allows 13.00, still below the 14.00 at the booster's input.
TEST(WhyNot, TriesWhatBelongsToABooster) {
    const nlohmann::json answer = jsonOf({"radios/radio-unit-booster.json", "64QAM", "13"});

    EXPECT_EQ(changeOf(answer, "booster").at("maxPowerCentiDbm"), 1900);
    const nlohmann::json gain = changeOf(answer, "booster-gain");
    EXPECT_EQ(gain.at("to"), "13.00 dB");
    EXPECT_EQ(gain.at("maxPowerCentiDbm"), 1300);
    EXPECT_EQ(gain.at("pointer"), "/requests/1/gain");
    EXPECT_EQ(answer.at("changes").size(), 2U);
}

// 4QAM: 21.00 + 7 + 2 - 15 = 15.00, at most 14.00 at the input. For 15.00 the input must
// take 15.00.
TEST(WhyNot, RaisesTheInputOfABooster) {
    const nlohmann::json answer = jsonOf({"radios/radio-unit-booster.json", "4QAM", "15"});

    const nlohmann::json input = changeOf(answer, "booster-max-input");
    EXPECT_EQ(input.at("from"), "14.00 dBm");
    EXPECT_EQ(input.at("to"), "15.00 dBm");
    EXPECT_EQ(input.at("pointer"), "/requests/1/maxInputPower");
    EXPECT_EQ(changeOf(answer, "booster-gain"), nullptr) << "the input bounds whatever the gain";
}

// 256QAM is above the booster's highest modulation, 64QAM. Let up to it: 18.00 + 5 + 2 - 15
// = 10.00.
TEST(WhyNot, RaisesTheHighestModulationOfABooster) {
    const nlohmann::json answer = jsonOf({"radios/radio-unit-booster.json", "256QAM", "10"});

    const nlohmann::json highest = changeOf(answer, "booster-max-modulation");
    EXPECT_EQ(highest.at("from"), "64QAM");
    EXPECT_EQ(highest.at("to"), "256QAM");
    EXPECT_EQ(highest.at("maxPowerCentiDbm"), 1000);
    EXPECT_EQ(answer.at("rule"), "booster-max-modulation");
}

// At RSEC 2 16QAM may have no more than at 4L in this family, but 4QAM may: 22.00 + 1.50 - 3.00
// + 3.
TEST(WhyNot, NamesEveryClassThatAllowsThePower) {
    const nlohmann::json answer = jsonOf({"radios/outdoor1.json", "4QAM", "23.5"});

    const nlohmann::json rsec = changeOf(answer, "rsec");
    EXPECT_EQ(rsec.at("from"), "4L");
    EXPECT_EQ(rsec.at("to"), "2");
    EXPECT_EQ(rsec.at("maxPowerCentiDbm"), 2350);
    EXPECT_EQ(rsec.at("pointer"), "/systemPowerController/referenceSec");
}

TEST(WhyNot, SaysWhatIsAllowedAlready) {
    const ToolResult result = whyNot({"radios/outdoor1.json", "64QAM", "21"});

    EXPECT_EQ(result.output, "64QAM gets 21.00 dBm, so 21.00 dBm is allowed already\n");
    EXPECT_EQ(result.status, done);
}

TEST(WhyNot, AnswersNoWithOne) {
    const ToolResult result = whyNot({"radios/outdoor1.json", "512QAM", "1"});

    EXPECT_EQ(result.output,
              "512QAM gets no power: above the radio's highest modulation, 256QAM "
              "(hardware-limit)\n"
              "No single change allows it of: permanent cutback, selected minimum, selected "
              "maximum, RSEC, DPD version, market, channel spacing\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, answerIsNo);
}

TEST(WhyNot, TakesACodeAndAPowerBelowZero) {
    const ToolResult result = whyNot({"radios/outdoor1.json", "4QAM_STRONG", "--", "-3.5"});

    EXPECT_EQ(result.output, "4QAM_STRONG gets 22.50 dBm, so -3.50 dBm is allowed already\n");
}

TEST(WhyNot, RefusesWhatIsNoPower) {
    const ToolResult result = whyNot({"radios/outdoor1.json", "64QAM", "much"});

    EXPECT_EQ(result.errors, "qor-power: DBM \"much\": a decimal number of dBm with at most two "
                             "decimals is wanted, for example 1.5\n");
    EXPECT_EQ(result.status, otherTrouble);
}

} // namespace
