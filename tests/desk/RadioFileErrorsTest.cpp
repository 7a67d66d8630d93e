#include "RadioFileReader.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace {

std::string errorOf(const std::string& text) {
    try {
        RadioFileReader::read(text);
    } catch (const RadioFileError& error) {
        return error.what();
    }
    return std::string();
}

// refused-radio-files.txt holds files, one a line, each with its error in the line below.
TEST(RadioFileErrorsTest, namePlaceAndReason) {
    std::ifstream stream(QOR_DESK_TESTS "/refused-radio-files.txt");
    int count = 0;
    std::string file;
    std::string error;
    while (std::getline(stream, file)) {
        if (file.empty() || file.front() == '#') {
            continue;
        }
        ASSERT_TRUE(std::getline(stream, error)) << file;
        EXPECT_EQ("    " + errorOf(file), error) << file;
        ++count;
    }
    EXPECT_EQ(count, 133);
}

TEST(RadioFileErrorsProfileKeyTest, refusesWhateverIsNoProfileValueInItsOnlySpelling) {
    for (const std::string key : {"", "01", "+1", "-0", "-", "1.0", " 1", "1 ", "0x1", "32768",
                                  "-32769", "99999999999999999999", "Etsi", "result"}) {
        EXPECT_EQ(errorOf(R"({"channel": 1, "capabilityHandler": {"maxModulationLimitedByHw": {")" +
                          key + R"(": "4QAM"}}})"),
                  "/capabilityHandler/maxModulationLimitedByHw/" + key +
                      ": key is no profile value; expected -32768 to 32767, without plus sign or "
                      "leading zeros");
    }
}

TEST(RadioFileErrorsMessageTest, givesPlaceProblemAndRemedyApart) {
    try {
        RadioFileReader::read(R"({"chanel": 1})");
        FAIL() << "not refused";
    } catch (const RadioFileError& error) {
        EXPECT_EQ(error.place(), "/chanel");
        EXPECT_EQ(error.problem(), "unknown key");
        EXPECT_EQ(error.remedy(), "did you mean \"channel\"?");
    }
}

TEST(RadioFileErrorsMessageTest, aWrongTypeHasNoRemedy) {
    try {
        RadioFileReader::read("[]");
        FAIL() << "not refused";
    } catch (const RadioFileError& error) {
        EXPECT_EQ(error.remedy(), "");
    }
}

TEST(RadioFileErrorsMessageTest, staysOneShortLineWhateverTheFileHolds) {
    const std::string longText(100000, 'x');

    EXPECT_EQ(errorOf(R"({"channel": "a\nb\u001b"})"),
              "/channel: expected an integer, found \"a\\u000ab\\u001b\"");
    EXPECT_EQ(errorOf(R"({"channel": ")" + longText + "\"}"),
              "/channel: expected an integer, found \"" + std::string(80, 'x') + "...\"");
    EXPECT_EQ(errorOf(R"({"channel": 1, "variables": {")" + longText + "\": true}}"),
              "/variables/" + std::string(80, 'x') +
                  "...: expected an integer or a list of integers, found true");
    EXPECT_EQ(errorOf(R"({"channel": )" + std::string(300, '9') + "}"),
              "/channel: " + std::string(80, '9') +
                  "... is out of range; expected 0 to 4294967295");
}

TEST(RadioFileErrorsMessageTest, refusesMoreThan2MiB) {
    const std::string file = R"({"channel": 1})";
    const std::string largest = file + std::string(2097152 - file.size(), ' ');

    EXPECT_EQ(errorOf(largest), "");
    EXPECT_EQ(errorOf(largest + " "), "(document): larger than 2097152 bytes");
}

TEST(RadioFileErrorsMessageTest, refusesAListOfMoreThan1024Elements) {
    const auto fileWith = [](int elements) {
        std::string file = R"({"channel": 1, "variables": {"a": [0)";
        for (int element = 1; element < elements; ++element) {
            file += ",0";
        }
        return file + "]}}";
    };

    EXPECT_EQ(errorOf(fileWith(1024)), "");
    EXPECT_EQ(errorOf(fileWith(1025)), "/variables/a: longer than 1024 elements");
}

TEST(RadioFileErrorsMessageTest, refusesMoreThan256CodesAndPmaxRows) {
    const auto fileWith = [](const std::string& begin, const std::string& element, int count,
                             const std::string& end) {
        std::string file = begin + element;
        for (int index = 1; index < count; ++index) {
            file += ',' + element;
        }
        return file + end;
    };
    const std::string handler = R"({"channel": 1, "capabilityHandler": {"pmaxDpd1Etsi": [)";
    const std::string frame = R"({"channel": 1, "hardwareConfigurationHandler": {"frameFormats": [
{"id": 1, "channelSpacing": 28, "dpdVersion": 1, "market": "Etsi", "modulationAndCodes": [)";

    EXPECT_EQ(errorOf(fileWith(handler, R"(["4QAM", 2600])", 256, "]}}")), "");
    EXPECT_EQ(errorOf(fileWith(handler, R"(["4QAM", 2600])", 257, "]}}")),
              "/capabilityHandler/pmaxDpd1Etsi: longer than 256 elements");
    EXPECT_EQ(errorOf(fileWith(frame, "31", 256, "]}]}}")), "");
    EXPECT_EQ(errorOf(fileWith(frame, "31", 257, "]}]}}")),
              "/hardwareConfigurationHandler/frameFormats/0/modulationAndCodes: longer than 256 "
              "elements");
}

TEST(RadioFileErrorsMessageTest, refusesMoreThan1024Variables) {
    const auto fileWith = [](int variables) {
        std::string file = R"({"channel": 1, "variables": {"v": 0)";
        for (int variable = 1; variable < variables; ++variable) {
            file += ", \"v" + std::to_string(variable) + "\": 0";
        }
        return file + "}}";
    };

    EXPECT_EQ(errorOf(fileWith(1024)), "");
    EXPECT_EQ(errorOf(fileWith(1025)), "/variables: more than 1024 variables");
}

TEST(RadioFileErrorsMessageTest, letsTheRequestsBeMoreThan1024) {
    std::string file = R"({"channel": 1, "requests": [{"call": "findPminPmax"})";
    for (int request = 1; request < 5000; ++request) {
        file += R"(, {"call": "findPminPmax"})";
    }

    EXPECT_EQ(errorOf(file + "]}"), "");
}

} // namespace
