#include "RadioFileReader.h"

#include <gtest/gtest.h>

#include <ostream>
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

struct BadFile {
    const char* name;
    std::string text;
    const char* error;
};

std::ostream& operator<<(std::ostream& stream, const BadFile& bad) {
    return stream << bad.name;
}

/// A file of a channel and one more member.
BadFile with(const char* name, const std::string& member, const char* error) {
    return {name, R"({"channel": 1, )" + member + "}", error};
}

/// A file of one capability.
BadFile capability(const char* name, const std::string& member, const char* error) {
    return with(name, R"("capabilityHandler": {)" + member + "}", error);
}

/// A file with a frame format that has one member replaced or added.
BadFile frameFormat(const char* name, const std::string& key, const std::string& value,
                    const char* error) {
    std::string members = "\"" + key + "\": " + value;
    const std::pair<const char*, const char*> all[] = {
        {"modulation", "\"4QAM\""},   {"maxAvailableModulation", "\"4QAM\""},
        {"modulationAndCodes", "[]"}, {"channelSpacing", "28"},
        {"dpdVersion", "1"},          {"market", "\"Etsi\""},
    };
    for (const auto& [other, good] : all) {
        if (key != other) {
            members += ", \"" + std::string(other) + "\": " + good;
        }
    }
    return with(name, R"("frameFormat": {)" + members + "}", error);
}

/// A file with a frame-format record that has one member replaced or added.
BadFile record(const char* name, const std::string& key, const std::string& value,
               const char* error) {
    std::string members = "\"" + key + "\": " + value;
    const std::pair<const char*, const char*> all[] = {
        {"id", "7"},
        {"channelSpacing", "28"},
        {"dpdVersion", "1"},
        {"market", "\"Etsi\""},
        {"modulationAndCodes", "[]"},
    };
    for (const auto& [other, good] : all) {
        if (key != other) {
            members += ", \"" + std::string(other) + "\": " + good;
        }
    }
    return with(name, R"("hardwareConfigurationHandler": {"frameFormats": [{)" + members + "}]}",
                error);
}

/// A file of one request.
BadFile request(const char* name, const std::string& members, const char* error) {
    return with(name, R"("requests": [{)" + members + "}]", error);
}

class RadioFileErrorsTest : public testing::TestWithParam<BadFile> {};

TEST_P(RadioFileErrorsTest, isRefusedWithPlaceAndReason) {
    EXPECT_EQ(errorOf(GetParam().text), GetParam().error);
}

std::string nameOf(const testing::TestParamInfo<BadFile>& info) {
    return info.param.name;
}

const BadFile badDocuments[] = {
    {"syntaxError", "{\"channel\": 1,, }",
     "1:15: syntax error while parsing object key - unexpected ','; expected string literal"},
    {"list", "[]", "(document): expected an object, found a list"},
    {"number", "1", "(document): expected an object, found 1"},
    {"null", "null", "(document): expected an object, found null"},
    {"withoutChannel", "{}", "/channel: required key is missing"},
    {"mistypedChannel", R"({"chanel": 1})", "/chanel: unknown key; did you mean \"channel\"?"},
    {"unknownKey", R"({"channel": 1, "zzz": 1})",
     "/zzz: unknown key; known: \"channel\", \"board\", \"capabilityHandler\", \"acmHandler\", "
     "\"frameFormat\", \"systemPowerController\", \"hardwareConfigurationHandler\", "
     "\"variables\", \"requests\""},
    {"keyGivenTwice", R"({"channel": 1, "channel": 1})", "/channel: key given twice"},
    {"negativeChannel", R"({"channel": -1})",
     "/channel: -1 is out of range; expected 0 to 4294967295"},
    {"largeChannel", R"({"channel": 4294967296})",
     "/channel: 4294967296 is out of range; expected 0 to 4294967295"},
    {"hugeChannel", R"({"channel": 18446744073709551615})",
     "/channel: 18446744073709551615 is out of range; expected 0 to 4294967295"},
    {"channelBeyond64Bits", R"({"channel": 18446744073709551616})",
     "/channel: 18446744073709551616 is out of range; expected 0 to 4294967295"},
    {"fractionalChannel", R"({"channel": 1.0})", "/channel: expected an integer, found 1.0"},
    {"channelWithExponent", R"({"channel": 1e0})", "/channel: expected an integer, found 1e0"},
    {"channelAsText", R"({"channel": "1"})", "/channel: expected an integer, found \"1\""},
    {"channelAsFlag", R"({"channel": true})", "/channel: expected an integer, found true"},
    {"channelAsNull", R"({"channel": null})", "/channel: expected an integer, found null"},
    {"channelAsObject", R"({"channel": {}})", "/channel: expected an integer, found an object"},
    {"channelAsList", R"({"channel": [1]})", "/channel: expected an integer, found a list"},
};
INSTANTIATE_TEST_SUITE_P(Documents, RadioFileErrorsTest, testing::ValuesIn(badDocuments), nameOf);

const BadFile badBoards[] = {
    with("boardNull", R"("board": null)", "/board: expected an object, found null"),
    with("boardKey", R"("board": {"carierAggregation": true})",
         "/board/carierAggregation: unknown key; did you mean \"carrierAggregation\"?"),
    with("boardNumber", R"("board": {"carrierAggregation": 1})",
         "/board/carrierAggregation: expected true or false, found 1"),
};
INSTANTIATE_TEST_SUITE_P(Boards, RadioFileErrorsTest, testing::ValuesIn(badBoards), nameOf);

const BadFile badCapabilities[] = {
    with("capabilityHandlerNull", R"("capabilityHandler": null)",
         "/capabilityHandler: expected an object, found null"),
    capability("unknownCapability", R"("pmaxDpd3Etsi": [])",
               "/capabilityHandler/pmaxDpd3Etsi: unknown key; did you mean \"pmaxDpd1Etsi\"?"),
    capability("productNumberAsNumber", R"("productNumber": 846)",
               "/capabilityHandler/productNumber: expected a string, found 846"),
    capability("minOutputPowerAsText", R"("minOutputPower": "low")",
               "/capabilityHandler/minOutputPower: expected an integer or {\"result\": N}, found "
               "\"low\""),
    capability("minOutputPowerOutOfRange", R"("minOutputPower": 2147483648)",
               "/capabilityHandler/minOutputPower: 2147483648 is out of range; expected "
               "-2147483648 to 2147483647"),
    capability("resultMistyped", R"("minOutputPower": {"reslt": 1})",
               "/capabilityHandler/minOutputPower/reslt: unknown key; did you mean \"result\"?"),
    capability("resultMissing", R"("minOutputPower": {})",
               "/capabilityHandler/minOutputPower/result: required key is missing"),
    capability("resultNegative", R"("minOutputPower": {"result": -1})",
               "/capabilityHandler/minOutputPower/result: -1 is out of range; expected 0 to "
               "4294967295"),
    capability("pmaxAsNumber", R"("pmaxDpd1Etsi": 2800)",
               "/capabilityHandler/pmaxDpd1Etsi: expected a list of rows, {\"integers\": [..]} or "
               "{\"result\": N}, found 2800"),
    capability("pmaxFlat", R"("pmaxDpd1Ansi": ["4QAM", 2800])",
               "/capabilityHandler/pmaxDpd1Ansi/0: expected a row [modulation, power], found "
               "\"4QAM\""),
    capability("pmaxShortRow", R"("pmaxDpd2Ansi": [["4QAM", 2800], ["16QAM"]])",
               "/capabilityHandler/pmaxDpd2Ansi/1: expected a row [modulation, power], found a "
               "list of 1"),
    capability("pmaxLongRow", R"("pmaxDpd2Etsi": [["4QAM", 2800, 1]])",
               "/capabilityHandler/pmaxDpd2Etsi/0: expected a row [modulation, power], found a "
               "list of 3"),
    capability("pmaxModulation", R"("pmaxDpd1Etsi": [["4QM", 2800]])",
               "/capabilityHandler/pmaxDpd1Etsi/0/0: unknown modulation \"4QM\"; did you mean "
               "\"4QAM\"?"),
    capability("pmaxPower", R"("pmaxDpd1Etsi": [["4QAM", 28.5]])",
               "/capabilityHandler/pmaxDpd1Etsi/0/1: expected an integer, found 28.5"),
    capability("pmaxBothForms", R"("pmaxDpd1Etsi": {"integers": [], "result": 0})",
               "/capabilityHandler/pmaxDpd1Etsi: expected exactly one of \"integers\" and "
               "\"result\""),
    capability("pmaxNeitherForm", R"("pmaxDpd1Etsi": {})",
               "/capabilityHandler/pmaxDpd1Etsi: expected exactly one of \"integers\" and "
               "\"result\""),
    capability("pmaxUnknownForm", R"("pmaxDpd1Etsi": {"rows": []})",
               "/capabilityHandler/pmaxDpd1Etsi/rows: unknown key; known: \"integers\", "
               "\"result\""),
    capability("pmaxIntegersAsNumber", R"("pmaxDpd1Etsi": {"integers": 1})",
               "/capabilityHandler/pmaxDpd1Etsi/integers: expected a list, found 1"),
    capability("pmaxIntegersOfText", R"("pmaxDpd1Etsi": {"integers": [4, "4QAM"]})",
               "/capabilityHandler/pmaxDpd1Etsi/integers/1: expected an integer, found \"4QAM\""),
    capability("limitedAsNumber", R"("maxAcmLimitedByHw": 1)",
               "/capabilityHandler/maxAcmLimitedByHw: expected true or false, found 1"),
    capability("profileIndexOutOfRange", R"("performanceProfileIndex": 32768)",
               "/capabilityHandler/performanceProfileIndex: 32768 is out of range; expected -32768 "
               "to 32767"),
    capability("limitAsList", R"("maxModulationLimitedByHw": [])",
               "/capabilityHandler/maxModulationLimitedByHw: expected a text or an integer "
               "(modulation) or an object by profile value, found a list"),
    capability("limitModulation", R"("maxModulationLimitedByHw": {"1": "512QM"})",
               "/capabilityHandler/maxModulationLimitedByHw/1: unknown modulation \"512QM\"; did "
               "you mean \"512QAM\"?"),
    capability("marketLimitAsFlag", R"("maxModulationWithoutLimitation": false)",
               "/capabilityHandler/maxModulationWithoutLimitation: expected a text or an integer "
               "(modulation) or an object by market, found false"),
    capability("marketLimitMarket", R"("maxModulationWithoutLimitation": {"ETSI": "4QAM"})",
               "/capabilityHandler/maxModulationWithoutLimitation/ETSI: unknown market \"ETSI\"; "
               "did you mean \"Etsi\"?"),
    capability("marketLimitNumber", R"("maxModulationWithoutLimitation": {"0": "4QAM"})",
               "/capabilityHandler/maxModulationWithoutLimitation/0: unknown market \"0\"; known: "
               "\"Etsi\", \"Ansi\", \"Global\", \"Unknown\""),
    capability("marketLimitModulation", R"("maxModulationWithoutLimitation": {"Etsi": null})",
               "/capabilityHandler/maxModulationWithoutLimitation/Etsi: expected a text or an "
               "integer (modulation), found null"),
};
INSTANTIATE_TEST_SUITE_P(Capabilities, RadioFileErrorsTest, testing::ValuesIn(badCapabilities),
                         nameOf);

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

const BadFile badNeighbours[] = {
    with("acmHandlerAsList", R"("acmHandler": [])",
         "/acmHandler: expected an object, found a list"),
    with("acmHandlerKey", R"("acmHandler": {"mim": 30, "max": 81})",
         "/acmHandler/mim: unknown key; did you mean \"min\"?"),
    with("acmHandlerMinAlone", R"("acmHandler": {"min": 30})",
         "/acmHandler/max: required key is missing"),
    with("acmHandlerMaxAlone", R"("acmHandler": {"max": 30})",
         "/acmHandler/min: required key is missing"),
    with("acmHandlerResultBesideRange", R"("acmHandler": {"min": 30, "max": 81, "result": 0})",
         "/acmHandler: expected \"result\" alone, or \"min\" and \"max\""),
    with("acmHandlerResultOutOfRange", R"("acmHandler": {"result": 4294967296})",
         "/acmHandler/result: 4294967296 is out of range; expected 0 to 4294967295"),
    with("acmHandlerUnknownCode", R"("acmHandler": {"min": "4QAM_STRONK", "max": 81})",
         "/acmHandler/min: unknown modulation-and-code \"4QAM_STRONK\"; did you mean "
         "\"4QAM_STRONG\"?"),
    with("acmHandlerFraction", R"("acmHandler": {"min": 30, "max": 81.5})",
         "/acmHandler/max: expected a text or an integer (modulation-and-code), found 81.5"),
    with("acmHandlerCodeOutOfRange", R"("acmHandler": {"min": -2147483649, "max": 81})",
         "/acmHandler/min: -2147483649 is out of range; expected -2147483648 to 2147483647"),
    with("controllerKeys", R"("systemPowerController": {"referenceSec": "2"})",
         "/systemPowerController/minOutputPowerOffsets: required key is missing"),
    with("controllerRsec",
         R"("systemPowerController": {"referenceSec": "9X", "minOutputPowerOffsets": []})",
         "/systemPowerController/referenceSec: unknown RSEC \"9X\"; known: \"2\", \"4L\", \"4H\", "
         "\"5B\", \"6B\", \"5LB\", \"5HB\", \"6LB\", \"6HB\", \"7B\", \"UNDEFINED\""),
    with("controllerOffsetsAsObject",
         R"("systemPowerController": {"referenceSec": 1, "minOutputPowerOffsets": {"28": 250}})",
         "/systemPowerController/minOutputPowerOffsets: expected a list, found an object"),
    with("controllerOffsetsFlat",
         R"("systemPowerController": {"referenceSec": 1, "minOutputPowerOffsets": [28, 250]})",
         "/systemPowerController/minOutputPowerOffsets/0: expected a pair [channel spacing, "
         "offset], found 28"),
    with("controllerOffsetAlone",
         R"("systemPowerController": {"referenceSec": 1, "minOutputPowerOffsets": [[28]]})",
         "/systemPowerController/minOutputPowerOffsets/0: expected a pair [channel spacing, "
         "offset], found a list of 1"),
    with("controllerSpacingAsText",
         R"("systemPowerController": {"referenceSec": 1, "minOutputPowerOffsets": [["28", 1]]})",
         "/systemPowerController/minOutputPowerOffsets/0/0: expected an integer, found \"28\""),
    with("controllerOffsetAsText",
         R"("systemPowerController": {"referenceSec": 1, "minOutputPowerOffsets": [[28, "1"]]})",
         "/systemPowerController/minOutputPowerOffsets/0/1: expected an integer, found \"1\""),
    with("hardwareKey", R"("hardwareConfigurationHandler": {"frameFormat": []})",
         "/hardwareConfigurationHandler/frameFormat: unknown key; did you mean \"frameFormats\"?"),
    with("hardwareFrameFormatsAsObject", R"("hardwareConfigurationHandler": {"frameFormats": {}})",
         "/hardwareConfigurationHandler/frameFormats: expected a list, found an object"),
    with("hardwareRecordAsNumber", R"("hardwareConfigurationHandler": {"frameFormats": [7]})",
         "/hardwareConfigurationHandler/frameFormats/0: expected an object, found 7"),
    with("hardwareRecordEmpty", R"("hardwareConfigurationHandler": {"frameFormats": [{}]})",
         "/hardwareConfigurationHandler/frameFormats/0/id: required key is missing"),
    with("variablesAsList", R"("variables": [])", "/variables: expected an object, found a list"),
    with("variableAsText", R"("variables": {"a": "1"})",
         "/variables/a: expected an integer or a list of integers, found \"1\""),
    with("variableFraction", R"("variables": {"a": 1.5})",
         "/variables/a: expected an integer or a list of integers, found 1.5"),
    with("variableTooLow", R"("variables": {"a": -2147483649})",
         "/variables/a: -2147483649 is out of range; expected -2147483648 to 4294967295"),
    with("variableTooHigh", R"("variables": {"a": 4294967296})",
         "/variables/a: 4294967296 is out of range; expected -2147483648 to 4294967295"),
    with("variableElementTooHigh", R"("variables": {"a/b": [0, 2147483648]})",
         "/variables/a~1b/1: 2147483648 is out of range; expected -2147483648 to 2147483647"),
    with("variableElementNull", R"("variables": {"a": [null]})",
         "/variables/a/0: expected an integer, found null"),
};
INSTANTIATE_TEST_SUITE_P(Neighbours, RadioFileErrorsTest, testing::ValuesIn(badNeighbours), nameOf);

const BadFile badFrameFormats[] = {
    with("empty", R"("frameFormat": {})", "/frameFormat/modulation: required key is missing"),
    frameFormat("unknownKey", "chanelSpacing", "28",
                "/frameFormat/chanelSpacing: unknown key; did you mean \"channelSpacing\"?"),
    frameFormat("modulation", "modulation", "\"4QAMS\"",
                "/frameFormat/modulation: unknown modulation \"4QAMS\"; did you mean \"4QAM\"?"),
    frameFormat("modulationIsNoCode", "modulation", "\"4QAM_STRONG\"",
                "/frameFormat/modulation: unknown modulation \"4QAM_STRONG\"; known: \"CW\", "
                "\"BPSK\", \"4QAM\", \"16QAM\", \"32QAM\", \"64QAM\", \"128QAM\", \"256QAM\", "
                "\"512QAM\", \"1024QAM\", \"2048QAM\", \"4096QAM\", \"8192QAM\", \"16384QAM\", "
                "\"65536QAM\", \"UNDEFINED\""),
    frameFormat("maxAvailableModulation", "maxAvailableModulation", "null",
                "/frameFormat/maxAvailableModulation: expected a text or an integer (modulation), "
                "found null"),
    frameFormat("codesAsText", "modulationAndCodes", "\"4QAM\"",
                "/frameFormat/modulationAndCodes: expected a list of modulation-and-codes, found "
                "\"4QAM\""),
    frameFormat(
        "codesAsResult", "modulationAndCodes", R"({"result": 1})",
        "/frameFormat/modulationAndCodes: expected a list of modulation-and-codes, found an "
        "object"),
    frameFormat("code", "modulationAndCodes", "[31, \"16QAM_LITE\"]",
                "/frameFormat/modulationAndCodes/1: unknown modulation-and-code \"16QAM_LITE\"; "
                "did you mean \"16QAM_LIGHT\"?"),
    frameFormat("channelSpacingAsText", "channelSpacing", "\"28MHz\"",
                "/frameFormat/channelSpacing: expected an integer, found \"28MHz\""),
    frameFormat("dpdVersionOutOfRange", "dpdVersion", "2147483648",
                "/frameFormat/dpdVersion: 2147483648 is out of range; expected -2147483648 to "
                "2147483647"),
    frameFormat("market", "market", "\"etsi\"",
                "/frameFormat/market: unknown market \"etsi\"; did you mean \"Etsi\"?"),
    frameFormat("marketAsResult", "market", R"({"result": 1})",
                "/frameFormat/market: expected a text or an integer (market), found an object"),
    frameFormat("profilesAsNumber", "performanceProfiles", "1",
                "/frameFormat/performanceProfiles: expected a list, found 1"),
    frameFormat("profileOutOfRange", "carrierAggregationPerformanceProfiles", "[0, -32769]",
                "/frameFormat/carrierAggregationPerformanceProfiles/1: -32769 is out of range; "
                "expected -32768 to 32767"),
};
INSTANTIATE_TEST_SUITE_P(FrameFormats, RadioFileErrorsTest, testing::ValuesIn(badFrameFormats),
                         nameOf);

const BadFile badRecords[] = {
    record("unknownKey", "modulation", "\"4QAM\"",
           "/hardwareConfigurationHandler/frameFormats/0/modulation: unknown key; did you mean "
           "\"modulationAndCodes\"?"),
    record("id", "id", "7.0",
           "/hardwareConfigurationHandler/frameFormats/0/id: expected an integer, found 7.0"),
    record("channelSpacing", "channelSpacing", "[]",
           "/hardwareConfigurationHandler/frameFormats/0/channelSpacing: expected an integer or "
           "{\"result\": N}, found a list"),
    record("channelSpacingResult", "channelSpacing", R"({"result": 1, "value": 2})",
           "/hardwareConfigurationHandler/frameFormats/0/channelSpacing/value: unknown key; known: "
           "\"result\""),
    record("dpdVersionCannotFail", "dpdVersion", R"({"result": 1})",
           "/hardwareConfigurationHandler/frameFormats/0/dpdVersion: expected an integer, found an "
           "object"),
    record("market", "market", "[]",
           "/hardwareConfigurationHandler/frameFormats/0/market: expected a text or an integer "
           "(market) or {\"result\": N}, found a list"),
    record("codes", "modulationAndCodes", "31",
           "/hardwareConfigurationHandler/frameFormats/0/modulationAndCodes: expected a list of "
           "modulation-and-codes or {\"result\": N}, found 31"),
    record("profiles", "performanceProfiles", "[true]",
           "/hardwareConfigurationHandler/frameFormats/0/performanceProfiles/0: expected an "
           "integer, found true"),
};
INSTANTIATE_TEST_SUITE_P(Records, RadioFileErrorsTest, testing::ValuesIn(badRecords), nameOf);

const BadFile badRequests[] = {
    with("asObject", R"("requests": {})", "/requests: expected a list, found an object"),
    with("asNumber", R"("requests": [1])", "/requests/0: expected an object, found 1"),
    request("empty", "", "/requests/0/call: required key is missing"),
    request("mistypedCallKey", R"("cal": "initialize")",
            "/requests/0/cal: unknown key; did you mean \"call\"?"),
    request("missingCallBesideArguments", R"("cutback": 1)",
            "/requests/0/call: required key is missing"),
    request("callAsNumber", R"("call": 1)", "/requests/0/call: expected a string, found 1"),
    request("mistypedCall", R"("call": "setPowerCutbak")",
            "/requests/0/call: unknown call \"setPowerCutbak\"; did you mean "
            "\"setPowerCutback\"?"),
    request("unknownCall", R"("call": "zzz")",
            "/requests/0/call: unknown call \"zzz\"; known: \"initialize\", \"setPowerCutback\", "
            "\"setTemporaryPowerCutback\", \"setTemperature\", \"setBoosterPresence\", "
            "\"calculatePowerCapabilities\", \"calculateAdmodPowerCapabilities\", "
            "\"findPminPmax\", \"getUnrestrictedPmax\", "
            "\"getMinMaxOutputPowerVsModulationArray\", \"patch\""),
    request("argumentOfAnotherCall", R"("call": "initialize", "cutback": 1)",
            "/requests/0/cutback: unknown key; known: \"call\", \"preset\""),
    request("mistypedArgument", R"("call": "setPowerCutback", "cutbck": 1)",
            "/requests/0/cutbck: unknown key; did you mean \"cutback\"?"),
    request("missingArgument", R"("call": "setPowerCutback")",
            "/requests/0/cutback: required key is missing"),
    request("negativeCutback", R"("call": "setPowerCutback", "cutback": -1)",
            "/requests/0/cutback: -1 is out of range; expected 0 to 4294967295"),
    request("largeCutback", R"("call": "setPowerCutback", "cutback": 4294967296)",
            "/requests/0/cutback: 4294967296 is out of range; expected 0 to 4294967295"),
    request("useAsNumber", R"("call": "setTemporaryPowerCutback", "use": 1, "cutback": 1)",
            "/requests/0/use: expected true or false, found 1"),
    request("temporaryCutback", R"("call": "setTemporaryPowerCutback", "use": true, "cutback": "")",
            "/requests/0/cutback: expected an integer, found \"\""),
    request("temperature", R"("call": "setTemperature", "temperature": 2147483648)",
            "/requests/0/temperature: 2147483648 is out of range; expected -2147483648 to "
            "2147483647"),
    request("boosterPresence",
            R"("call": "setBoosterPresence", "presence": true, "gain": 1, "maxInputPower": 1,
               "maxModulation": 1)",
            "/requests/0/presence: expected an integer, found true"),
    request("boosterModulation",
            R"("call": "setBoosterPresence", "presence": 1, "gain": 1, "maxInputPower": 1,
               "maxModulation": "8QAM")",
            "/requests/0/maxModulation: unknown modulation \"8QAM\"; did you mean \"4QAM\"?"),
    request("boosterIncomplete", R"("call": "setBoosterPresence", "presence": 1)",
            "/requests/0/gain: required key is missing"),
    request("modulation", R"("call": "calculatePowerCapabilities", "modulation": [])",
            "/requests/0/modulation: expected a text or an integer (modulation), found a list"),
    request("rsec", R"("call": "calculateAdmodPowerCapabilities", "modulation": 4, "rsec": "4l")",
            "/requests/0/rsec: unknown RSEC \"4l\"; did you mean \"4L\"?"),
    request("frameFormatId",
            R"("call": "getMinMaxOutputPowerVsModulationArray", "frameFormatId": 2147483648)",
            "/requests/0/frameFormatId: 2147483648 is out of range; expected -2147483648 to "
            "2147483647"),
    request("powerMapAsObject",
            R"("call": "getMinMaxOutputPowerVsModulationArray", "powerMap": {"4QAM": 1})",
            "/requests/0/powerMap: expected a list, found an object"),
    request("powerMapEntry",
            R"("call": "getMinMaxOutputPowerVsModulationArray", "powerMap": [[31]])",
            "/requests/0/powerMap/0: expected a pair [modulation-and-code, power], found a list of "
            "1"),
    request("powerMapCode",
            R"("call": "getMinMaxOutputPowerVsModulationArray", "powerMap": [[1, 2], ["x", 1]])",
            "/requests/0/powerMap/1/0: unknown modulation-and-code \"x\"; known: "
            "\"HALF_BPSK_STRONG\", \"HALF_BPSK\", \"HALF_BPSK_LIGHT\", \"BPSK_STRONG\", \"BPSK\", "
            "\"BPSK_LIGHT\", \"4QAM_ULTRA_STRONG\", \"4QAM_STRONG\", \"4QAM\", \"4QAM_LIGHT\", "
            "\"16QAM_ULTRA_STRONG\", \"16QAM_STRONG\", \"16QAM\", \"16QAM_LIGHT\", "
            "\"32QAM_STRONG\", \"32QAM\", \"32QAM_LIGHT\", \"64QAM_ULTRA_STRONG\", "
            "\"64QAM_STRONG\", \"64QAM\", \"64QAM_LIGHT\", \"128QAM_STRONG\", \"128QAM\", "
            "\"128QAM_LIGHT\", \"256QAM_ULTRA_STRONG\", \"256QAM_STRONG\", \"256QAM\", "
            "\"256QAM_LIGHT\", \"512QAM_STRONG\", \"512QAM\", \"512QAM_LIGHT\", "
            "\"1024QAM_ULTRA_STRONG\", \"1024QAM_STRONG\", \"1024QAM\", \"1024QAM_LIGHT\", "
            "\"2048QAM_STRONG\", \"2048QAM\", \"2048QAM_LIGHT\", \"4096QAM_ULTRA_STRONG\", "
            "\"4096QAM_STRONG\", \"4096QAM\", \"4096QAM_LIGHT\", \"8192QAM_STRONG\", "
            "\"8192QAM\", \"8192QAM_LIGHT\", \"16384QAM_ULTRA_STRONG\", \"16384QAM_STRONG\", "
            "\"16384QAM\", \"16384QAM_LIGHT\", \"65536QAM_ULTRA_STRONG\", \"65536QAM_STRONG\", "
            "\"65536QAM\", \"65536QAM_LIGHT\", \"UNDEFINED\""),
    request("powerMapPower",
            R"("call": "getMinMaxOutputPowerVsModulationArray", "powerMap": [[31, 2.5]])",
            "/requests/0/powerMap/0/1: expected an integer, found 2.5"),
    request("preset", R"("call": "initialize", "preset": 2147483648)",
            "/requests/0/preset: 2147483648 is out of range; expected -2147483648 to 2147483647"),
    with("secondRequest", R"("requests": [{"call": "initialize"}, {"call": "findPminPmx"}])",
         "/requests/1/call: unknown call \"findPminPmx\"; did you mean \"findPminPmax\"?"),
};
INSTANTIATE_TEST_SUITE_P(Requests, RadioFileErrorsTest, testing::ValuesIn(badRequests), nameOf);

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

TEST(RadioFileErrorsMessageTest, refusesAListOfMoreThan4096Elements) {
    const auto fileWith = [](int elements) {
        std::string file = R"({"channel": 1, "variables": {"a": [0)";
        for (int element = 1; element < elements; ++element) {
            file += ",0";
        }
        return file + "]}}";
    };

    EXPECT_EQ(errorOf(fileWith(4096)), "");
    EXPECT_EQ(errorOf(fileWith(4097)), "/variables/a: longer than 4096 elements");
}

TEST(RadioFileErrorsMessageTest, refusesMoreThan4096Variables) {
    const auto fileWith = [](int variables) {
        std::string file = R"({"channel": 1, "variables": {"v": 0)";
        for (int variable = 1; variable < variables; ++variable) {
            file += ", \"v" + std::to_string(variable) + "\": 0";
        }
        return file + "}}";
    };

    EXPECT_EQ(errorOf(fileWith(4096)), "");
    EXPECT_EQ(errorOf(fileWith(4097)), "/variables: more than 4096 variables");
}

TEST(RadioFileErrorsMessageTest, letsTheRequestsBeMoreThan4096) {
    std::string file = R"({"channel": 1, "requests": [{"call": "findPminPmax"})";
    for (int request = 1; request < 5000; ++request) {
        file += R"(, {"call": "findPminPmax"})";
    }

    EXPECT_EQ(errorOf(file + "]}"), "");
}

} // namespace
