#include "ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

// The powers, worked out by hand in dBm and dB, from those of TableCommandTest.cpp.
//
// outdoor1.json. Compensation 1.50; the reference is 256QAM, Pmax 22.00, offset 0: base 23.50 less
// the cutback. At RSEC 4L
//     cutback     0.00                        3.00                     6.00
//     4QAM        25.50                       22.50                    19.50      base + 2
//     16QAM       25.50                       22.50                    19.50      base + 2
//     64QAM       min(24.50, 24) = 24.00      21.00                    18.00      Pmax less cutback
//     256QAM      min(23.50, 22) = 22.00      19.00                    16.00      Pmax less cutback
// At RSEC 6B the offset is 1 up to 64QAM: 4QAM and 16QAM have 1.00 less, 64QAM and 256QAM stay at
// their Pmax.
//
// Over the channel spacing: 56 MHz has a compensation of -2.00 in place of 1.50 and no offset to
// the minimum of -10.00. Cutback 3.00, base 22 - 2 - 3 = 17.00: 19.00, 19.00, 18.00, 17.00.
//
// radio-unit-booster.json with a booster of gain 15, at most 14 at its input, up to 256QAM:
//     4QAM 14.00, 16QAM 14.00, 64QAM 11.00 (all as there), 256QAM min(18, 18) + 5 + 2 - 15 = 10.00
// and with presence 7, whose band adds nothing in place of 2:
//     13.00, min(27 - 15, 14) = 12.00, 9.00, 8.00

namespace {

ToolResult sweep(const std::string& file, std::vector<std::string> options) {
    options.insert(options.begin(), {"sweep", file});
    return runTool(options);
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t place = text.find(from);
    if (place == std::string::npos) {
        throw std::runtime_error("not found: " + from);
    }
    return text.replace(place, from.size(), to);
}

/// The powers of one point of the JSON form, null where there is none.
std::vector<nlohmann::json> powersAt(const nlohmann::json& point) {
    std::vector<nlohmann::json> powers;
    for (const auto& row : point.at("rows")) {
        powers.push_back(row.at("maxPowerCentiDbm"));
    }
    return powers;
}

using Powers = std::vector<nlohmann::json>;

TEST(Sweep, PutsThePowersOfAnInputSideBySide) {
    const ToolResult result = sweep("radios/outdoor1.json", {"--over", "cutback=0..6:3"});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.output, contentOf("golden/sweep-cutback.txt"));
    EXPECT_EQ(result.errors, "");
}

TEST(Sweep, PutsASecondInputBelow) {
    const ToolResult result =
        sweep("radios/outdoor1.json", {"--over", "cutback=0,3", "--over", "rsec=4L,6B"});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.output, contentOf("golden/sweep-cutback-rsec.txt"));
}

TEST(Sweep, GivesOneLineForEachPowerAsCsv) {
    const ToolResult result = sweep("radios/outdoor1.json", {"--over", "cutback=0,3", "--over",
                                                             "rsec=4L,6B", "--format", "csv"});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.output, contentOf("golden/sweep-cutback-rsec.csv"));
}

TEST(Sweep, GivesEveryPointAsJson) {
    const ToolResult result =
        sweep("radios/outdoor1.json", {"--over", "channel-spacing", "--format", "json"});

    EXPECT_EQ(result.status, done) << result;
    const auto document = nlohmann::json::parse(result.output);
    EXPECT_EQ(document.at("radioFile"), "radios/outdoor1.json");
    EXPECT_EQ(document.at("over"),
              R"([{"input": "channel-spacing", "unit": "MHz", "values": ["28", "56"]}])"_json);
    const auto& points = document.at("points");
    ASSERT_EQ(points.size(), 2U);
    EXPECT_EQ(points[0].at("inputs"), R"({"channelSpacingMHz": 28})"_json);
    EXPECT_EQ(points[0].at("minPowerCentiDbm"), -750);
    EXPECT_EQ(powersAt(points[0]), (Powers{2250, 2250, 2250, 2100, 1900, nullptr}));
    EXPECT_EQ(points[1].at("inputs"), R"({"channelSpacingMHz": 56})"_json);
    EXPECT_EQ(points[1].at("minPowerCentiDbm"), -1000);
    EXPECT_EQ(powersAt(points[1]), (Powers{1900, 1900, 1900, 1800, 1700, nullptr}));
    EXPECT_EQ(points[0].at("rows").at(3).at("rule"), "pmax-row");
    EXPECT_EQ(points[1].at("rows").at(5).at("rule"), "hardware-limit");
}

TEST(Sweep, NamesEveryInputsValueWithItsUnit) {
    const std::vector<std::pair<std::string, std::string>> valuesAndKeys = {
        {"rsec=7B", R"({"rsec": "7B"})"},
        {"market=Ansi", R"({"market": "Ansi"})"},
        {"dpd=3", R"({"dpdVersion": 3})"},
        {"cutback=1.5", R"({"cutbackCentiDb": 150})"},
        {"temporary-cutback=2", R"({"temporaryCutbackCentiDb": 200})"},
        {"temporary-cutback=none", R"({"temporaryCutbackCentiDb": null})"},
        {"booster=none", R"({"booster": null})"},
        {"booster=1,15,14,64QAM", R"({"booster": {"presence": 1, "gainCentiDb": 1500,
            "maxInputPowerCentiDbm": 1400, "maxModulation": "64QAM"}})"},
        {"product=QZT 846 003", R"({"productNumber": "QZT 846 003"})"},
        {"product=none", R"({"productNumber": null})"},
        {"min=16QAM", R"({"selectedMin": "16QAM"})"},
        {"max=16QAM", R"({"selectedMax": "16QAM"})"},
    };
    for (const auto& [over, inputs] : valuesAndKeys) {
        const ToolResult result =
            sweep("radios/outdoor1.json", {"--over", over, "--format", "json"});

        EXPECT_EQ(result.status, done) << over << '\n' << result;
        EXPECT_EQ(nlohmann::json::parse(result.output).at("points").at(0).at("inputs"),
                  nlohmann::json::parse(inputs));
    }
}

// What `table` can set by an option of its own gives the same powers there.
TEST(Sweep, AgreesWithTheTableOfEachValue) {
    for (const auto& entry : std::filesystem::directory_iterator(QOR_EXAMPLE_RADIOS)) {
        const std::string file = entry.path().string();
        for (const auto& [input, value] :
             std::vector<std::pair<std::string, std::string>>{{"rsec", "6LB"},
                                                              {"cutback", "2.5"},
                                                              {"temporary-cutback", "7"},
                                                              {"booster", "7,15,14,256QAM"}}) {
            const auto points = nlohmann::json::parse(
                sweep(file, {"--over", input + '=' + value, "--format", "json"}).output);
            const auto table = nlohmann::json::parse(
                runTool({"table", file, "--" + input, value, "--format", "json"}).output);

            EXPECT_EQ(powersAt(points.at("points").at(0)), powersAt(table)) << file << ' ' << input;
        }
    }
}

TEST(Sweep, OverTheBoosterShowsItsBandsAndNone) {
    const ToolResult result =
        sweep("radios/radio-unit-booster.json",
              {"--over", "booster=none/1,15,14,256QAM/7,15,14,256QAM", "--format", "json"});

    const auto points = nlohmann::json::parse(result.output).at("points");
    ASSERT_EQ(points.size(), 3U);
    // BPSK has no offset, 32QAM no row, 512QAM is above the selected maximum.
    EXPECT_EQ(powersAt(points[0]),
              (Powers{nullptr, 2100, 2000, nullptr, 1900, 1900, 1800, nullptr}));
    EXPECT_EQ(powersAt(points[1]),
              (Powers{nullptr, 1400, 1400, nullptr, 1100, 1100, 1000, nullptr}));
    EXPECT_EQ(powersAt(points[2]), (Powers{nullptr, 1300, 1200, nullptr, 900, 900, 800, nullptr}));
}

// The usual products: one for each family, and two for the first.
TEST(Sweep, OverProductsNamesTheirCalculators) {
    const ToolResult result = sweep("radios/outdoor1.json", {"--over", "product"});

    EXPECT_EQ(result.status, done) << result;
    const std::size_t place = result.output.find("Calculator ");
    ASSERT_NE(place, std::string::npos) << result;
    std::istringstream words(result.output.substr(place));
    std::vector<std::string> names;
    for (std::string word; words >> word;) {
        names.push_back(word);
    }
    names.resize(6);
    EXPECT_EQ(names,
              (std::vector<std::string>{"Calculator", "CalculatorKam", "CalculatorKam",
                                        "CalculatorKamV3", "CalculatorVo4", "CalculatorVo5"}));
}

TEST(Sweep, GoesOnAfterAPointThatFails) {
    // The calibration is unreadable for one frame format of two: every query of it fails.
    const std::string radio =
        replaced(contentOf("radios/outdoor1.json"), R"("channel.1.tx.rf.pmax.cs.comp.v2.array")",
                 R"("another")");
    const ToolResult result =
        ToolProcess({"sweep", "-", "--over", "product=QZT 846 001,QZT35201/1", "--format", "json"})
            .withInput(radio)
            .run();

    EXPECT_EQ(result.status, otherTrouble) << result;
    EXPECT_TRUE(result.hasOneErrorLine()) << result;
    EXPECT_NE(result.errors.find("no powers at product number QZT 846 001: "), std::string::npos);
    const auto points = nlohmann::json::parse(result.output).at("points");
    ASSERT_EQ(points.size(), 2U);
    EXPECT_FALSE(points[0].at("failure").is_null());
    EXPECT_TRUE(points[0].at("rows").at(0).at("maxPowerCentiDbm").is_null());
    EXPECT_TRUE(points[1].at("failure").is_null());
    // The older radio units use no calibration: Pmax 22.00 + 2 at RSEC 4L, within 28 - 3.
    EXPECT_EQ(points[1].at("rows").at(0).at("maxPowerCentiDbm"), 2400);
}

TEST(Sweep, OfAnUnknownVersionSaysSoInItsColumn) {
    const ToolResult result = sweep("radios/outdoor1.json", {"--over", "dpd=0,1"});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_NE(result.output.find("  30  4QAM_STRONG    4QAM            - [1]  22.50"),
              std::string::npos)
        << result;
    EXPECT_NE(result.output.find("\n[1] DPD version 0 is unknown\n"), std::string::npos) << result;
}

TEST(Sweep, RefusesWhatItCannotVary) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> refusals = {
        {{"--over", "rsek"}, R"(--over "rsek": unknown; did you mean "rsec"?)"},
        {{"--over", "cutback=1,two"},
         R"(--over cutback "two": a decimal number of dB with at most two decimals is wanted, )"
         R"(for example 1.5)"},
        {{"--over", "dpd", "--over", "dpd=1"}, "--over dpd is given twice"},
        {{"--over", "dpd", "--over", "min", "--over", "max"}, "--over is given more than twice"},
        {{"--over", "rsec", "--rsec", "4L"},
         "--rsec fixes what --over rsec varies; leave one of them out"},
        {{"--over", "cutback", "--cutback", "1"},
         "--cutback fixes what --over cutback varies; leave one of them out"},
        {{"--over", "dpd=1..100", "--over", "cutback=1..100"},
         "--over: 10000 combinations of values; at most 4096 are answered"},
        {{"--over", "dpd", "--format", "jsn"}, R"(--format "jsn": unknown; did you mean "json"?)"},
        {{}, "--over is missing; try qor-power sweep --help"},
    };
    for (const auto& [options, message] : refusals) {
        const ToolResult result = sweep("radios/outdoor1.json", options);

        EXPECT_EQ(result.status, otherTrouble) << result;
        EXPECT_EQ(result.errors, "qor-power: " + message + '\n');
        EXPECT_EQ(result.output, "");
    }
}

TEST(Sweep, OfABadFileOrAServiceThatDoesNotStartGivesNothing) {
    const ToolResult bad = ToolProcess({"sweep", "-", "--over", "dpd"}).withInput("{}").run();
    EXPECT_EQ(bad.status, badRadioFile) << bad;
    EXPECT_TRUE(bad.hasOneErrorLine()) << bad;

    const ToolResult lone =
        ToolProcess({"sweep", "-", "--over", "dpd"}).withInput(R"({"channel": 1})").run();
    EXPECT_EQ(lone.status, serviceDidNotStart) << lone;
    EXPECT_TRUE(lone.hasOneErrorLine()) << lone;
    EXPECT_EQ(lone.output, "");
}

TEST(Sweep, ThatCannotBeWrittenIsATrouble) {
    const ToolResult result = ToolProcess({"sweep", "radios/outdoor1.json", "--over", "dpd"})
                                  .withOutputTo("/dev/full")
                                  .run();

    EXPECT_EQ(result.status, otherTrouble) << result;
    EXPECT_TRUE(result.hasOneErrorLine()) << result;
}

} // namespace
