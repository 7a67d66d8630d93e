#include "RadioFileReader.h"
#include "ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

// The powers, worked out by hand in dBm and dB.
//
// outdoor1.json, configured frame format. Compensation of 28 MHz 1.50, cutback 3.00: -1.50
// together. The radio stops at 256QAM, the reference: Pmax 22.00, offset 0 at RSEC 4L, so the base
// is 20.50.
//     4QAM    base + 2 = 22.50          Pmax 28 - 3 = 25   ->  22.50
//     16QAM   base + 2 = 22.50          Pmax 26 - 3 = 23   ->  22.50
//     64QAM   base + 1 = 21.50          Pmax 24 - 3 = 21   ->  21.00
//     256QAM  base     = 20.50          Pmax 22 - 3 = 19   ->  19.00
// The bounds of the selected minimum, 4QAM, are 22.50 and 25. The minimum is -10.00 + 2.50.
//
// The same with a temporary cutback of 5.50 in place of the 3.00: base 18.00; 20.00, 20.00,
// min(19.00, 18.50), min(18.00, 16.50).
//
// Frame format 7: no spacing, so no compensation and no offset to the minimum. The highest code is
// 16QAM, the reference: Pmax 26.00, offset 2. Base 26 - 2 - 3 = 21.00; both codes base + 2 = 23.00,
// within 25 and 23.
//
// radio-unit-booster.json: the ANSI market counts as RSEC 2, reference and selected maximum are
// 256QAM, Pmax 18.00. With the booster's adjustments 7, 7 and 5 and 2 for its band, less the gain
// of 15, at most 14 at its input:
//     4QAM    min(18 + 3, 24) = 21;  21 + 7 + 2 - 15 = 15  ->  14.00
//     16QAM   min(18 + 2, 23) = 20;  20 + 7 + 2 - 15 = 14  ->  14.00
//     64QAM   min(18 + 1, 19) = 19;  19 + 5 + 2 - 15 = 11  ->  11.00, below the minimum of 12.00
// Without the booster: 21.00, 20.00, 19.00 and 18.00 at 256QAM.
//
// fixed-modulation.json, counted from the lowest code, 4QAM. Cutback 2.00, compensation -0.50.
//     4QAM    26 - 2 = 24            ->  23.50
//     16QAM   min(24, 23 - 2) = 21   ->  20.50
//     128QAM  min(24, 0 - 2) = -2    ->  -2.50: no row counts as 0
//
// fixed-booster.json with presence 7 (a band that adds nothing), gain 3, 20 at its input, up to
// 64QAM, at RSEC 4H: reference 256QAM, Pmax 17.00.
//     16QAM   min(17 + 2, 22) = 19;  19 + 7 + 0 - 3 = 23   ->  20.00, also the selected one's
//     4QAM    min(17 + 2, 23) = 19;  likewise              ->  20.00
//     256QAM  does not apply and counts as 0               ->   0.00

namespace {

/// A run whose standard output is kept in a file.
struct Golden {
    std::vector<std::string> arguments; ///< behind "table"
    const char* output;
    int status = done;
    std::string errors = {};
};

void PrintTo(const Golden& golden, std::ostream* stream) {
    *stream << golden.output;
}

class GoldenTable : public testing::TestWithParam<Golden> {};

TEST_P(GoldenTable, IsPrinted) {
    std::vector<std::string> arguments = GetParam().arguments;
    arguments.insert(arguments.begin(), "table");

    const ToolResult result = runTool(arguments);

    EXPECT_EQ(result.output, contentOf(std::string("golden/") + GetParam().output));
    EXPECT_EQ(result.errors, GetParam().errors);
    EXPECT_EQ(result.status, GetParam().status);
}

const std::string noModulation =
    "qor-power: radios/outdoor1.json: no powers: the highest code of the "
    "frame format has no modulation\n";
const std::string noFrameFormat = "qor-power: radios/outdoor1.json: no powers: the hardware "
                                  "configuration has no frame format 10; it has 7, 8, 9\n";

INSTANTIATE_TEST_SUITE_P(
    Outdoor, GoldenTable,
    testing::Values(
        Golden{{"radios/outdoor1.json"}, "outdoor1.txt"},
        Golden{{"radios/outdoor1.json", "--format", "text", "--frame-format", "0"}, "outdoor1.txt"},
        Golden{{"--format", "csv", "radios/outdoor1.json"}, "outdoor1.csv"},
        Golden{{"--format=json", "radios/outdoor1.json"}, "outdoor1.json"},
        Golden{{"radios/outdoor1.json", "--temporary-cutback", "5.5"}, "outdoor1-temporary.txt"},
        Golden{{"radios/outdoor1.json", "--frame-format", "7"}, "outdoor1-by-id.txt"},
        Golden{{"radios/outdoor1.json", "--frame-format", "9"}, "outdoor1-no-dpd.txt"},
        Golden{{"radios/fixed-modulation.json"}, "fixed-modulation.txt"}));

INSTANTIATE_TEST_SUITE_P(
    FailedQuery, GoldenTable,
    testing::Values(Golden{{"radios/outdoor1.json", "--frame-format", "8"},
                           "outdoor1-no-modulation.txt",
                           otherTrouble,
                           noModulation},
                    Golden{{"radios/outdoor1.json", "--frame-format", "8", "--format", "csv"},
                           "outdoor1-no-modulation.csv",
                           otherTrouble,
                           noModulation},
                    Golden{{"radios/outdoor1.json", "--frame-format", "8", "--format", "json"},
                           "outdoor1-no-modulation.json",
                           otherTrouble,
                           noModulation},
                    Golden{{"radios/outdoor1.json", "--frame-format", "10"},
                           "outdoor1-no-frame-format.txt",
                           otherTrouble,
                           noFrameFormat}));

INSTANTIATE_TEST_SUITE_P(
    RadioUnit, GoldenTable,
    testing::Values(
        Golden{{"radios/radio-unit-booster.json"}, "radio-unit-booster.txt"},
        Golden{{"radios/radio-unit-booster.json", "--format", "csv"}, "radio-unit-booster.csv"},
        Golden{{"radios/radio-unit-booster.json", "--format", "json"}, "radio-unit-booster.json"},
        Golden{{"radios/radio-unit-booster.json", "--booster", "none"},
               "radio-unit-no-booster.txt"},
        Golden{{"radios/fixed-booster.json", "--booster", "7,3,20,64QAM", "--rsec", "2"},
               "fixed-booster.txt"}));

/// The powers of a table by code, in hundredths of a dBm, from its JSON form.
std::vector<long> powersOf(std::vector<std::string> arguments, const std::string& input = "") {
    arguments.insert(arguments.begin(), "table");
    arguments.insert(arguments.end(), {"--format", "json"});
    const ToolResult result = ToolProcess(arguments).withInput(input).run();
    EXPECT_EQ(result.status, done) << result;
    std::vector<long> powers;
    const auto object = nlohmann::json::parse(result.output);
    for (const auto& row : object.at("rows")) {
        if (!row.at("maxPowerCentiDbm").is_null()) {
            powers.push_back(row.at("maxPowerCentiDbm").get<long>());
        }
    }
    return powers;
}

nlohmann::json outdoor1() {
    return nlohmann::json::parse(contentOf("radios/outdoor1.json"), nullptr, true, true);
}

TEST(Table, GivesTheHandWorkedPowers) {
    EXPECT_EQ(powersOf({"radios/outdoor1.json"}),
              (std::vector<long>{2250, 2250, 2250, 2100, 1900}));
    EXPECT_EQ(powersOf({"radios/outdoor1.json", "--temporary-cutback", "5.5"}),
              (std::vector<long>{2000, 2000, 2000, 1850, 1650}));
    EXPECT_EQ(powersOf({"radios/outdoor1.json", "--frame-format", "7"}),
              (std::vector<long>{2300, 2300}));
    EXPECT_EQ(powersOf({"radios/radio-unit-booster.json"}),
              (std::vector<long>{1400, 1400, 1100, 1100}));
    EXPECT_EQ(powersOf({"radios/radio-unit-booster.json", "--booster", "none"}),
              (std::vector<long>{2100, 2000, 1900, 1900, 1800}));
    EXPECT_EQ(powersOf({"radios/fixed-modulation.json"}), (std::vector<long>{2350, 2050, -250}));
    EXPECT_EQ(powersOf({"radios/fixed-booster.json", "--booster", "7,3,20,64QAM"}),
              (std::vector<long>{2000, 2000, 0}));
}

TEST(Table, ACutbackOnTheCommandLineReplacesTheFilesOwn) {
    // 0.01 of cutback: base 23.49; 25.49, 25.49, min(24.49, 23.99), min(23.49, 21.99).
    EXPECT_EQ(powersOf({"radios/outdoor1.json", "--cutback", "0.01"}),
              (std::vector<long>{2549, 2549, 2549, 2399, 2199}));
}

TEST(Table, ATemporaryCutbackOfTheFileStaysInForceUntilItIsLifted) {
    auto file = outdoor1();
    file["requests"] = nlohmann::json::parse(
        R"([{"call": "setTemporaryPowerCutback", "use": true, "cutback": 550}])");

    EXPECT_EQ(powersOf({"-", "--cutback", "3"}, file.dump()),
              (std::vector<long>{2000, 2000, 2000, 1850, 1650}));
    EXPECT_EQ(powersOf({"-", "--cutback", "3", "--temporary-cutback", "none"}, file.dump()),
              (std::vector<long>{2250, 2250, 2250, 2100, 1900}));
}

TEST(Table, AClassOnTheCommandLineReplacesTheSystemPowerControllers) {
    // At RSEC 5B 4QAM and 16QAM have 1 dB instead of 2: 21.50.
    EXPECT_EQ(powersOf({"radios/outdoor1.json", "--rsec", "5B"}),
              (std::vector<long>{2150, 2150, 2150, 2100, 1900}));
    EXPECT_EQ(powersOf({"radios/outdoor1.json", "--rsec", "UNDEFINED"}),
              (std::vector<long>{2250, 2250, 2250, 2100, 1900}));
}

TEST(Table, ACutbackAtTheLimitWrapsAsTheLibraryDoes) {
    // 42949672.95 dB are 2^32 - 1 hundredths, in 32 bits one hundredth more power: base 23.51.
    EXPECT_EQ(powersOf({"radios/outdoor1.json", "--cutback", "42949672.95"}),
              (std::vector<long>{2551, 2551, 2551, 2401, 2201}));
}

TEST(Table, ReadsStandardInput) {
    const ToolResult result =
        ToolProcess({"table", "-"}).withInput(contentOf("radios/outdoor1.json")).run();

    std::string expected = contentOf("golden/outdoor1.txt");
    const std::string path = "radios/outdoor1.json";
    expected.replace(expected.find(path), path.size(), "standard input");
    EXPECT_EQ(result.output, expected);
    EXPECT_EQ(result.status, done);
}

TEST(Table, AServiceThatDoesNotStartIsReportedWithTheLibrarysMessage) {
    auto file = outdoor1();
    file.erase("frameFormat");
    file["requests"] = nlohmann::json::array();

    const ToolResult result = ToolProcess({"table", "-"}).withInput(file.dump()).run();

    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "qor-power: standard input: the service did not start: Failed to get "
                             "interfaceIFrameFormat_1\n");
    EXPECT_EQ(result.status, serviceDidNotStart);
}

TEST(Table, ARefusedMinimumPowerKeepsTheServiceFromStarting) {
    auto file = outdoor1();
    file["capabilityHandler"]["minOutputPower"] = {{"result", 32768}};

    const ToolResult result = ToolProcess({"table", "-"}).withInput(file.dump()).run();

    EXPECT_EQ(result.errors, "qor-power: standard input: the service did not start: Failed to get "
                             "Pmin from capability handler\n");
    EXPECT_EQ(result.status, serviceDidNotStart);
}

TEST(Table, AnEmptyArrayIsAQueryThatFails) {
    auto file = outdoor1();
    file["frameFormat"]["modulationAndCodes"] = nlohmann::json::array();

    const ToolResult result =
        ToolProcess({"table", "-", "--format", "json"}).withInput(file.dump()).run();

    const auto object = nlohmann::json::parse(result.output);
    EXPECT_EQ(object.at("result"), 32771);
    EXPECT_EQ(object.at("failure"), "the frame format has no modulation-and-codes");
    EXPECT_EQ(object.at("calculator"), "CalculatorKam");
    EXPECT_TRUE(object.at("rows").empty());
    EXPECT_EQ(result.errors, "qor-power: standard input: no powers: the frame format has no "
                             "modulation-and-codes\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST(Table, AMissingCompensationIsTheReasonOfEveryRow) {
    auto file = outdoor1();
    file["variables"].erase("channel.1.tx.rf.pmax.cs.comp.v2.arraysize");

    const ToolResult result =
        ToolProcess({"table", "-", "--format", "json"}).withInput(file.dump()).run();

    const std::string reason = "the channel-spacing compensation is unknown, because the stored "
                               "variable \"channel.1.tx.rf.pmax.cs.comp.v2.arraysize\" cannot be "
                               "read";
    const auto object = nlohmann::json::parse(result.output);
    EXPECT_EQ(object.at("result"), 32768);
    EXPECT_EQ(object.at("rows").size(), 6U);
    for (const auto& row : object.at("rows")) {
        EXPECT_EQ(row.at("reason"), "the query failed: " + reason);
        EXPECT_TRUE(row.at("maxPowerCentiDbm").is_null());
    }
    EXPECT_EQ(result.errors, "qor-power: standard input: no powers: " + reason + "\n");
    EXPECT_EQ(result.status, otherTrouble);
}

TEST(Table, ALimitByThePerformanceProfileIsCalledSo) {
    auto file = outdoor1();
    file["capabilityHandler"]["maxAcmLimitedByHw"] = true;
    file["capabilityHandler"]["maxModulationLimitedByHw"] = "64QAM";

    const ToolResult result =
        ToolProcess({"table", "-", "--format", "json"}).withInput(file.dump()).run();

    const auto object = nlohmann::json::parse(result.output);
    EXPECT_EQ(object.at("rows").at(4).at("reason"),
              "above the radio's highest modulation, 64QAM (by its performance profile)");
    EXPECT_EQ(object.at("maxModulation").at("byPerformanceProfile"), true);
}

TEST(Table, AFamilyWithoutARuleForAClassIsDoubtful) {
    auto file = outdoor1();
    file["capabilityHandler"]["productNumber"] = "QZT 846 003";
    file["systemPowerController"]["referenceSec"] = 12;

    const ToolResult result =
        ToolProcess({"table", "-", "--format", "json"}).withInput(file.dump()).run();

    const auto object = nlohmann::json::parse(result.output);
    EXPECT_EQ(object.at("calculator"), "CalculatorKamV3");
    EXPECT_EQ(object.at("rsec").at("class"), "UNDEFINED");
    EXPECT_EQ(object.at("rsec").at("value"), 12);
    // The power starts at 0 and gains 1.50 - 3.00 with every modulation.
    EXPECT_EQ(object.at("rows").at(0).at("maxPowerCentiDbm"), -150);
    EXPECT_EQ(object.at("rows").at(2).at("maxPowerCentiDbm"), -300);
    EXPECT_EQ(object.at("rows").at(2).at("warning"),
              "the family has no rule for this RSEC and goes on from the power of the modulation "
              "before");
    EXPECT_EQ(result.status, done);
}

TEST(Table, HoldsAsManyCodesAsARadioFileMayList) {
    auto file = outdoor1();
    auto& codes = file["frameFormat"]["modulationAndCodes"];
    codes = nlohmann::json::array();
    for (std::size_t index = 0; index < RadioFileReader::maxListLength; ++index) {
        codes.push_back(index % 2 == 0 ? 31 : 41);
    }

    const ToolResult result =
        ToolProcess({"table", "-", "--format", "csv"}).withInput(file.dump()).run();

    EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'),
              static_cast<long>(RadioFileReader::maxListLength) + 1);
    EXPECT_EQ(result.status, done) << result.errors;
}

TEST(Table, AFileThatAnswersOddlyStillGivesATable) {
    auto file = outdoor1();
    file["capabilityHandler"] = nlohmann::json::object();
    file["acmHandler"] = {{"result", 32768}};
    file["frameFormat"]["market"] = 7;
    file["frameFormat"]["modulation"] = "UNDEFINED";
    file["frameFormat"]["channelSpacing"] = -28;
    file["systemPowerController"]["minOutputPowerOffsets"] = nlohmann::json::array();

    const ToolResult result = ToolProcess({"table", "-"}).withInput(file.dump()).run();

    EXPECT_NE(result.output.find("Market              unknown, number 7\n"), std::string::npos)
        << result;
    EXPECT_NE(result.output.find("Channel spacing     -28 MHz\n"), std::string::npos);
    EXPECT_NE(result.output.find("Minimum power       0.00 dBm\n"), std::string::npos);
    EXPECT_EQ(result.status, done);
}

} // namespace
