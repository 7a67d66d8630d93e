#include "ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

/// The values that name a table of the radio: nothing for the configured frame format, then every
/// id.
std::vector<std::vector<std::string>> frameFormatsOf(const std::string& path) {
    std::ifstream file(path);
    const auto radio = nlohmann::json::parse(file, nullptr, true, true);
    std::vector<std::vector<std::string>> options = {{}};
    for (const auto& record : radio.at("hardwareConfigurationHandler").at("frameFormats")) {
        options.push_back({"--frame-format", std::to_string(record.at("id").get<long>())});
    }
    return options;
}

class ExampleRadio : public testing::TestWithParam<std::string> {};

TEST_P(ExampleRadio, GivesATableOfEveryFrameFormatInEveryFormat) {
    for (const std::vector<std::string>& frameFormat : frameFormatsOf(GetParam())) {
        for (const char* const format : {"text", "csv", "json"}) {
            std::vector<std::string> arguments = {"table", GetParam(), "--format", format};
            arguments.insert(arguments.end(), frameFormat.begin(), frameFormat.end());

            const ToolResult result = runTool(arguments);

            EXPECT_EQ(result.status, done) << result;
            EXPECT_EQ(result.errors, "");
            EXPECT_FALSE(result.output.empty());
        }
    }
}

// Limits of the radio, of the selection and of the booster belong to an example. Missing rows,
// missing table entries and unknown versions do not.
TEST_P(ExampleRadio, LeavesACodeWithoutPowerOnlyBecauseOfALimit) {
    for (const std::vector<std::string>& frameFormat : frameFormatsOf(GetParam())) {
        std::vector<std::string> arguments = {"table", GetParam(), "--format", "json"};
        arguments.insert(arguments.end(), frameFormat.begin(), frameFormat.end());

        const auto table = nlohmann::json::parse(runTool(arguments).output);

        EXPECT_TRUE(table.at("notes").empty()) << table.dump(2);
        ASSERT_FALSE(table.at("rows").empty());
        EXPECT_FALSE(table.at("rows").front().at("maxPowerCentiDbm").is_null()) << table.dump(2);
        for (const auto& row : table.at("rows")) {
            EXPECT_TRUE(row.at("warning").is_null()) << row;
            EXPECT_FALSE(row.at("belowMinimum").get<bool>()) << row;
            if (row.at("maxPowerCentiDbm").is_null()) {
                EXPECT_TRUE(row.at("reason").get<std::string>().starts_with("above the ")) << row;
            }
        }
    }
}

TEST_P(ExampleRadio, IsReplayed) {
    const ToolResult result = runTool({"replay", GetParam(), "--trace", "6"});

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.errors, "");
}

INSTANTIATE_TEST_SUITE_P(Examples, ExampleRadio, testing::ValuesIn(exampleRadios()),
                         [](const testing::TestParamInfo<std::string>& path) {
                             std::string name = std::filesystem::path(path.param).stem().string();
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(ExampleRadios, AreReplayedTogether) {
    std::vector<std::string> arguments = exampleRadios();
    ASSERT_GE(arguments.size(), 4U);
    arguments.insert(arguments.begin(), "replay");

    const ToolResult result = runTool(arguments);

    EXPECT_EQ(result.status, done) << result;
    EXPECT_EQ(result.errors, "");
}

} // namespace
