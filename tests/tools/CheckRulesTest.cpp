#include "CheckRules.h"
#include "JsonPointer.h"
#include "KnownProducts.h"
#include "PowerTableQuery.h"
#include "RadioFileCheck.h"
#include "RadioFileReader.h"
#include "reference/RandomRadioFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace {

using nlohmann::json;

/// A radio in which nothing is to be found, of the first outdoor family on channel 1. Minimum 8
/// dBm; 26 dBm at 4QAM, 14.5 dBm at 1024QAM. At 28 MHz the calibration takes half a dB off.
json soundRadio() {
    return json::parse(R"({
        "channel": 1,
        "capabilityHandler": {
            "productNumber": "QZT 846 001",
            "minOutputPower": 800,
            "pmaxDpd1Etsi": [["4QAM", 2600], ["16QAM", 2300], ["64QAM", 1800], ["256QAM", 1700]],
            "pmaxDpd2Etsi": [["4QAM", 2700], ["16QAM", 2400], ["64QAM", 2000], ["256QAM", 1900]],
            "pmaxDpd1Ansi": [["4QAM", 2500], ["16QAM", 2200], ["64QAM", 1700], ["256QAM", 1600]],
            "pmaxDpd2Ansi": [["4QAM", 2600], ["16QAM", 2300], ["64QAM", 1900], ["256QAM", 1800]]
        },
        "acmHandler": {"min": "4QAM", "max": "256QAM"},
        "frameFormat": {
            "modulation": "16QAM",
            "maxAvailableModulation": "256QAM",
            "modulationAndCodes": ["4QAM", "16QAM", "64QAM", "256QAM"],
            "channelSpacing": 28,
            "dpdVersion": 1,
            "market": "Etsi",
            "performanceProfiles": [1, 2]
        },
        "systemPowerController": {
            "referenceSec": "4L",
            "minOutputPowerOffsets": [[28, 50], [56, 100]]
        },
        "hardwareConfigurationHandler": {
            "frameFormats": [
                {"id": 7, "channelSpacing": 56, "dpdVersion": 2, "market": "Ansi",
                 "modulationAndCodes": ["4QAM", "16QAM"], "performanceProfiles": [1]}
            ]
        },
        "variables": {
            "channel.1.tx.rf.pmax.cs.comp.v2.array": [28, -50, 56, -150],
            "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 4
        },
        "requests": []
    })");
}

/// "QP-101 /capabilityHandler/pmaxDpd1Etsi/1" for each finding, in the order found.
std::vector<std::string> findingsIn(const std::string& text) {
    std::vector<std::string> findings;
    for (const RadioFileCheck::PlacedFinding& placed : RadioFileCheck::run(text).findings) {
        std::string line = placed.finding.rule->code;
        line += ' ';
        for (const std::string& key : placed.finding.place.path) {
            line += '/' + key;
        }
        findings.push_back(line);
    }
    return findings;
}

/// The sound radio with one thing changed, which makes exactly one finding.
struct Change {
    const CheckRule* rule;
    const char* what;  ///< a JSON Merge Patch
    const char* place; ///< of the finding
};

std::ostream& operator<<(std::ostream& stream, const Change& change) {
    return stream << change.rule->code << " by " << change.what;
}

class ChangedRadio : public testing::TestWithParam<Change> {};

TEST_P(ChangedRadio, HasThisFindingAndNoOther) {
    json radio = soundRadio();
    radio.merge_patch(json::parse(GetParam().what));

    const std::vector<std::string> expected{std::string(GetParam().rule->code) + ' ' +
                                            GetParam().place};
    EXPECT_EQ(findingsIn(radio.dump()), expected);
}

const Change changes[] = {
    {&CheckRules::NotARadioFile, R"({"frameFormat": {"market": "etsi"}})", "/frameFormat/market"},
    {&CheckRules::NotARadioFile, R"({"channel": null})", "/channel"},
    {&CheckRules::NotARadioFile, R"({"requests": [{"call": "patch", "file": {"board": 1}}]})",
     "/requests/0/file/board"},

    {&CheckRules::DoesNotStart, R"({"acmHandler": null})", ""},
    {&CheckRules::DoesNotStart, R"({"capabilityHandler": {"minOutputPower": {"result": 32768}}})",
     "/capabilityHandler/minOutputPower"},
    {&CheckRules::OtherChannel, R"({"channel": 3})", "/channel"},

    // 64QAM above 16QAM
    {&CheckRules::PmaxRises,
     R"({"capabilityHandler": {"pmaxDpd1Etsi": [["256QAM", 1700], ["64QAM", 2310], ["16QAM", 2300],
                                                ["4QAM", 2600]],
                               "pmaxDpd2Etsi": {"result": 32768}}})",
     "/capabilityHandler/pmaxDpd1Etsi/1"},
    {&CheckRules::PmaxRises,
     R"({"capabilityHandler": {"pmaxDpd1Etsi": {"integers": [4, 2600, 16, 2300, 64, 2301, 256, 1700]},
                               "pmaxDpd2Etsi": {"result": 32768}}})",
     "/capabilityHandler/pmaxDpd1Etsi/integers/4"},
    {&CheckRules::PmaxTwice,
     R"({"capabilityHandler": {"pmaxDpd1Ansi": [["4QAM", 2500], ["16QAM", 2200], ["4QAM", 2400]]}})",
     "/capabilityHandler/pmaxDpd1Ansi/2"},
    {&CheckRules::PmaxBrokenRow,
     R"({"capabilityHandler": {"pmaxDpd1Ansi": {"integers": [4, 2500, 16, 2200, 64]}}})",
     "/capabilityHandler/pmaxDpd1Ansi/integers/4"},
    {&CheckRules::PmaxNoModulation,
     R"({"capabilityHandler": {"pmaxDpd1Ansi": [["4QAM", 2500], [8, 2300], ["16QAM", 2200]]}})",
     "/capabilityHandler/pmaxDpd1Ansi/1"},
    {&CheckRules::PmaxNoModulation,
     R"({"capabilityHandler": {"pmaxDpd1Ansi": [["4QAM", 2500], ["UNDEFINED", 2300]]}})",
     "/capabilityHandler/pmaxDpd1Ansi/1"},
    {&CheckRules::PmaxEmpty, R"({"capabilityHandler": {"pmaxDpd1Ansi": []}})",
     "/capabilityHandler/pmaxDpd1Ansi"},
    {&CheckRules::PredistortionLowers,
     R"({"capabilityHandler": {"pmaxDpd2Etsi": [["4QAM", 2600], ["16QAM", 2290]]}})",
     "/capabilityHandler/pmaxDpd2Etsi/1"},

    {&CheckRules::NearProduct, R"({"capabilityHandler": {"productNumber": "qzt35202/1"},
                                   "variables": null})",
     "/capabilityHandler/productNumber"},
    {&CheckRules::UnknownProduct, R"({"capabilityHandler": {"productNumber": "QZT 860 13"},
                                      "variables": null})",
     "/capabilityHandler/productNumber"},
    {&CheckRules::NoProduct, R"({"capabilityHandler": {"productNumber": null}})",
     "/capabilityHandler"},
    {&CheckRules::NoProduct, R"({"capabilityHandler": {"productNumber": ""}})",
     "/capabilityHandler/productNumber"},

    {&CheckRules::LimitNotAsked, R"({"capabilityHandler": {"maxModulationLimitedByHw": "256QAM"}})",
     "/capabilityHandler/maxModulationLimitedByHw"},
    {&CheckRules::LimitNotAsked,
     R"({"capabilityHandler": {"maxModulationWithoutLimitation": "256QAM",
                               "maxAcmLimitedByHw": true}})",
     "/capabilityHandler/maxModulationWithoutLimitation"},
    {&CheckRules::LimitMissing, R"({"capabilityHandler": {"maxAcmLimitedByHw": true}})",
     "/capabilityHandler/maxAcmLimitedByHw"},
    // Element 1 is profile 2 in the configured frame format and missing in the record.
    {&CheckRules::ProfileWithoutLimit,
     R"({"capabilityHandler": {"maxAcmLimitedByHw": true, "performanceProfileIndex": 1,
                               "maxModulationLimitedByHw": {"2": "256QAM"}}})",
     "/hardwareConfigurationHandler/frameFormats/0"},
    {&CheckRules::ProfileWithoutLimit,
     R"({"capabilityHandler": {"maxAcmLimitedByHw": true, "performanceProfileIndex": 0,
                               "maxModulationLimitedByHw": {"1": "256QAM"}},
         "board": {"carrierAggregation": true},
         "frameFormat": {"carrierAggregationPerformanceProfiles": [3]},
         "hardwareConfigurationHandler": {"frameFormats": []},
         "variables": {"channel.1.tx.rf.pmax.cs.comp.v2.array": [28, -50],
                       "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 2}})",
     "/frameFormat"},
    {&CheckRules::MarketWithoutLimit,
     R"({"capabilityHandler": {"maxModulationWithoutLimitation": {"Ansi": "256QAM"}}})",
     "/frameFormat/market"},

    {&CheckRules::ArrayFails,
     R"({"frameFormat": {"modulationAndCodes": ["4QAM", "16QAM", "UNDEFINED", "256QAM"]}})",
     "/frameFormat/modulationAndCodes/2"},
    {&CheckRules::ArrayFails,
     R"({"hardwareConfigurationHandler": {"frameFormats": [
         {"id": 7, "channelSpacing": 56, "dpdVersion": 2, "market": "Ansi",
          "modulationAndCodes": []}]}})",
     "/hardwareConfigurationHandler/frameFormats/0/modulationAndCodes"},
    {&CheckRules::NoPmaxRow,
     R"({"capabilityHandler": {"pmaxDpd1Etsi": [["4QAM", 2600], ["16QAM", 2300], ["256QAM", 1700]]}})",
     "/frameFormat/modulationAndCodes/2"},
    {&CheckRules::UnknownDpd, R"({"frameFormat": {"dpdVersion": 4}})", "/frameFormat/dpdVersion"},
    {&CheckRules::DpdFallback, R"({"capabilityHandler": {"pmaxDpd2Ansi": {"result": 32768}}})",
     "/capabilityHandler/pmaxDpd2Ansi"},
    {&CheckRules::MarketFallback,
     R"({"capabilityHandler": {"pmaxDpd2Ansi": {"result": 32768},
                               "pmaxDpd1Ansi": {"result": 32768}}})",
     "/capabilityHandler/pmaxDpd2Ansi"},
    {&CheckRules::TableAbsent, R"({"capabilityHandler": {"pmaxDpd2Ansi": null}})",
     "/capabilityHandler"},
    {&CheckRules::TableAbsent, R"({"capabilityHandler": {"pmaxDpd1Etsi": {"result": 32768}}})",
     "/capabilityHandler/pmaxDpd1Etsi"},
    {&CheckRules::OtherTableForPmax, R"({"frameFormat": {"market": "Global"}})",
     "/frameFormat/market"},
    {&CheckRules::AboveRadio,
     R"({"capabilityHandler": {"maxModulationWithoutLimitation": {"Etsi": "64QAM",
                                                                   "Ansi": "64QAM"}}})",
     "/frameFormat/modulationAndCodes/3"},
    // The offset table of the family ends at 16384QAM.
    {&CheckRules::NoPower,
     R"({"capabilityHandler": {"minOutputPower": -2000,
                               "pmaxDpd2Ansi": [["4QAM", 2600], ["16QAM", 2300], ["65536QAM", 900]]},
         "hardwareConfigurationHandler": {"frameFormats": [
         {"id": 7, "channelSpacing": 56, "dpdVersion": 2, "market": "Ansi",
          "modulationAndCodes": ["4QAM", "16QAM", "65536QAM"]}]}})",
     "/hardwareConfigurationHandler/frameFormats/0/modulationAndCodes/2"},
    // One fixed modulation without a Pmax row counts as 0 dBm, and so do the others with it.
    {&CheckRules::DoubtfulPower,
     R"({"acmHandler": {"min": "16QAM", "max": "16QAM"},
         "frameFormat": {"modulationAndCodes": ["16QAM"], "maxAvailableModulation": "16QAM"},
         "capabilityHandler": {"minOutputPower": -1000,
                               "pmaxDpd2Ansi": [["4QAM", 2600]]},
         "hardwareConfigurationHandler": {"frameFormats": [
         {"id": 7, "channelSpacing": 56, "dpdVersion": 2, "market": "Ansi",
          "modulationAndCodes": ["4QAM"]}]}})",
     "/hardwareConfigurationHandler/frameFormats/0/modulationAndCodes/0"},
    // 17 - 0.5 dBm at 256QAM, 18 - 0.5 dBm at 64QAM; the minimum is 17.2 + 0.5 dBm.
    {&CheckRules::BelowMinimum,
     R"({"capabilityHandler": {"minOutputPower": 1720},
         "hardwareConfigurationHandler": {"frameFormats": []},
         "variables": {"channel.1.tx.rf.pmax.cs.comp.v2.array": [28, -50],
                       "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 2}})",
     "/frameFormat/modulationAndCodes/2"},
    {&CheckRules::NoMinimumOffset,
     R"({"systemPowerController": {"minOutputPowerOffsets": [[28, 50]]}})",
     "/hardwareConfigurationHandler/frameFormats/0/channelSpacing"},
    {&CheckRules::AnswerMissing,
     R"({"hardwareConfigurationHandler": {"frameFormats": [
         {"id": 7, "channelSpacing": 56, "dpdVersion": 2, "market": {"result": 32768},
          "modulationAndCodes": ["4QAM", "16QAM"]}]}})",
     "/hardwareConfigurationHandler/frameFormats/0"},
    {&CheckRules::CodeTwice,
     R"({"frameFormat": {"modulationAndCodes": ["4QAM", "16QAM", "64QAM", "16QAM", "256QAM"]}})",
     "/frameFormat/modulationAndCodes/3"},
    {&CheckRules::NoSuchCode,
     R"({"frameFormat": {"modulationAndCodes": ["4QAM", "16QAM", 43, "64QAM", "256QAM"]}})",
     "/frameFormat/modulationAndCodes/2"},
    {&CheckRules::OddSpacing,
     R"({"frameFormat": {"channelSpacing": 2800},
         "systemPowerController": {"minOutputPowerOffsets": [[2800, 50], [56, 100]]},
         "variables": {"channel.1.tx.rf.pmax.cs.comp.v2.array": [2800, -50, 56, -150]}})",
     "/frameFormat/channelSpacing"},
    {&CheckRules::NotCalibrated,
     R"({"variables": {"channel.1.tx.rf.pmax.cs.comp.v2.array": [28, -50],
                       "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 2}})",
     "/hardwareConfigurationHandler/frameFormats/0/channelSpacing"},
    {&CheckRules::MaxModulationDiffers, R"({"frameFormat": {"maxAvailableModulation": "512QAM"}})",
     "/frameFormat/maxAvailableModulation"},
    {&CheckRules::ModulationWithoutCode, R"({"frameFormat": {"modulation": "32QAM"}})",
     "/frameFormat/modulation"},
    {&CheckRules::IdTwice,
     R"({"hardwareConfigurationHandler": {"frameFormats": [
         {"id": 7, "channelSpacing": 56, "dpdVersion": 2, "market": "Ansi",
          "modulationAndCodes": ["4QAM", "16QAM"]},
         {"id": 7, "channelSpacing": 28, "dpdVersion": 2, "market": "Ansi",
          "modulationAndCodes": ["4QAM", "16QAM"]}]}})",
     "/hardwareConfigurationHandler/frameFormats/1/id"},
    {&CheckRules::IdOutOfReach,
     R"({"hardwareConfigurationHandler": {"frameFormats": [
         {"id": 1, "channelSpacing": 56, "dpdVersion": 2, "market": "Ansi",
          "modulationAndCodes": ["4QAM", "16QAM"]},
         {"id": 0, "channelSpacing": 56, "dpdVersion": 2, "market": "Ansi",
          "modulationAndCodes": ["4QAM", "16QAM"]}]}})",
     "/hardwareConfigurationHandler/frameFormats/1/id"},

    {&CheckRules::SelectionReversed, R"({"acmHandler": {"min": "64QAM", "max": "16QAM"}})",
     "/acmHandler/min"},
    {&CheckRules::SelectionNotCarried, R"({"acmHandler": {"max": "256QAM_LIGHT"}})",
     "/acmHandler/max"},
    {&CheckRules::NoSelection, R"({"acmHandler": {"min": null, "max": null}})", "/acmHandler"},
    {&CheckRules::NoSelection, R"({"acmHandler": {"min": "UNDEFINED", "max": "UNDEFINED"}})",
     "/acmHandler"},
    {&CheckRules::OffsetTwice,
     R"({"systemPowerController": {"minOutputPowerOffsets": [[28, 50], [56, 100], [28, 0]]}})",
     "/systemPowerController/minOutputPowerOffsets/2"},
    {&CheckRules::ClassByNumber, R"({"systemPowerController": {"referenceSec": 2}})",
     "/systemPowerController/referenceSec"},

    {&CheckRules::ArraySizeDiffers,
     R"({"variables": {"channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 2}})",
     "/variables/channel.1.tx.rf.pmax.cs.comp.v2.arraysize"},
    {&CheckRules::HalfPair,
     R"({"variables": {"channel.1.tx.rf.pmax.cs.comp.v2.array": [28, -50, 56],
                       "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 3}})",
     "/variables/channel.1.tx.rf.pmax.cs.comp.v2.array/2"},
    {&CheckRules::CalibratedTwice,
     R"({"variables": {"channel.1.tx.rf.pmax.cs.comp.v2.array": [28, -50, 56, 0, 28, 0],
                       "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 6}})",
     "/variables/channel.1.tx.rf.pmax.cs.comp.v2.array/4"},
    {&CheckRules::CalibrationUnused,
     R"({"variables": {"channel.1.tx.rf.pmax.cs.comp.v2.array": [28, -50, 40, 0, 56, 0, 7, 0],
                       "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 8}})",
     "/variables/channel.1.tx.rf.pmax.cs.comp.v2.array/2"},
    {&CheckRules::VariableUnread, R"({"variables": {"channel.1.tx.temperature": 20}})",
     "/variables/channel.1.tx.temperature"},
    {&CheckRules::VariableUnread,
     R"({"variables": {"channel.2.tx.rf.pmax.cs.comp.v2.array": [28, 0]}})",
     "/variables/channel.2.tx.rf.pmax.cs.comp.v2.array"},
    {&CheckRules::VariableUnread,
     R"({"capabilityHandler": {"productNumber": "QZT35202/1",
             "pmaxDpd2Ansi": [["4QAM", 2600], ["16QAM", 2300], ["256QAM", 1800]]},
         "variables": {"channel.1.tx.rf.pmax.cs.comp.v2.arraysize": null}})",
     "/variables/channel.1.tx.rf.pmax.cs.comp.v2.array"},

    {&CheckRules::OddStep, R"({"requests": [{"call": "setPowerCutback", "cutback": 3}]})",
     "/requests/0/cutback"},
    {&CheckRules::OddStep,
     R"({"requests": [{"call": "setTemporaryPowerCutback", "use": true, "cutback": 15}]})",
     "/requests/0/cutback"},
    {&CheckRules::OddStep,
     R"({"requests": [{"call": "setBoosterPresence", "presence": 1, "gain": 15,
                       "maxInputPower": 1400, "maxModulation": "256QAM"}]})",
     "/requests/0/gain"},
    {&CheckRules::OddStep,
     R"({"requests": [{"call": "setBoosterPresence", "presence": 1, "gain": 1500,
                       "maxInputPower": 1405, "maxModulation": "256QAM"}]})",
     "/requests/0/maxInputPower"},
    {&CheckRules::OddPresence,
     R"({"requests": [{"call": "setBoosterPresence", "presence": -1, "gain": 1500,
                       "maxInputPower": 1400, "maxModulation": "256QAM"}]})",
     "/requests/0/presence"},
    {&CheckRules::BoosterWithoutLimit,
     R"({"requests": [{"call": "setBoosterPresence", "presence": 1, "gain": 1500,
                       "maxInputPower": 1400, "maxModulation": "UNDEFINED"}]})",
     "/requests/0/maxModulation"},
    // The highest Pmax is 27 dBm, the minimum 8 dBm.
    {&CheckRules::CutbackTooLarge,
     R"({"requests": [{"call": "setPowerCutback", "cutback": 1901}]})", "/requests/0/cutback"},
    {&CheckRules::CutbackTooLarge,
     R"({"requests": [{"call": "setPowerCutback", "cutback": 4294967290}]})",
     "/requests/0/cutback"},
    {&CheckRules::CutbackLifted,
     R"({"requests": [{"call": "setPowerCutback", "cutback": 300},
                      {"call": "setTemporaryPowerCutback", "use": true, "cutback": 0}]})",
     "/requests/1/cutback"},
    {&CheckRules::RequestReversed,
     R"({"requests": [{"call": "getMinMaxOutputPowerVsModulationArray",
                       "minModulationAndCode": "64QAM", "maxModulationAndCode": "16QAM"}]})",
     "/requests/0/minModulationAndCode"},
    {&CheckRules::RequestReversed,
     R"({"acmHandler": {"min": "16QAM"},
         "requests": [{"call": "getMinMaxOutputPowerVsModulationArray",
                       "maxModulationAndCode": "4QAM"}]})",
     "/requests/0/maxModulationAndCode"},
    {&CheckRules::RequestNotCarried,
     R"({"requests": [{"call": "getMinMaxOutputPowerVsModulationArray", "frameFormatId": 7,
                       "maxModulationAndCode": "64QAM"}]})",
     "/requests/0/maxModulationAndCode"},
    {&CheckRules::ModulationNotCarried,
     R"({"requests": [{"call": "calculatePowerCapabilities", "modulation": "32QAM"}]})",
     "/requests/0/modulation"},
    {&CheckRules::NoFrameFormat,
     R"({"requests": [{"call": "getMinMaxOutputPowerVsModulationArray", "frameFormatId": 8}]})",
     "/requests/0/frameFormatId"},
    // The table of offsets has no row for an undefined class.
    {&CheckRules::RequestFails,
     R"({"requests": [{"call": "calculateAdmodPowerCapabilities", "modulation": "16QAM",
                       "rsec": "UNDEFINED"}]})",
     "/requests/0"},
    {&CheckRules::ClassIgnored,
     R"({"requests": [{"call": "getMinMaxOutputPowerVsModulationArray", "frameFormatId": 7,
                       "referenceSec": "6LB"}]})",
     "/requests/0/referenceSec"},
    {&CheckRules::ClassByNumber,
     R"({"requests": [{"call": "calculateAdmodPowerCapabilities", "modulation": "16QAM",
                       "rsec": 2}]})",
     "/requests/0/rsec"},
    {&CheckRules::MapEntryTwice,
     R"({"requests": [{"call": "getMinMaxOutputPowerVsModulationArray",
                       "powerMap": [["4QAM", 0], [31, 100]]}]})",
     "/requests/0/powerMap"},
    // 17 - 0.5 - 8.5 dBm at 256QAM; the minimum is 8 + 0.5 dBm.
    {&CheckRules::BelowMinimum,
     R"({"requests": [{"call": "setPowerCutback", "cutback": 850},
                      {"call": "calculatePowerCapabilities", "modulation": "256QAM"}]})",
     "/requests/1"},
    {&CheckRules::PatchNotSeen,
     R"({"requests": [{"call": "initialize"},
                      {"call": "patch", "file": {"capabilityHandler": {"minOutputPower": 700}}}]})",
     "/requests/1/file/capabilityHandler"},
    {&CheckRules::PatchEmpty,
     R"({"requests": [{"call": "patch", "file": {"frameFormat": {"dpdVersion": 1}}}]})",
     "/requests/0/file"},

    // In a patch: where the patch says it, or the patch as a whole.
    {&CheckRules::CodeTwice,
     R"({"requests": [{"call": "findPminPmax"},
                      {"call": "patch", "file": {"frameFormat": {
                          "modulationAndCodes": ["4QAM", "16QAM", "16QAM", "256QAM"]}}}]})",
     "/requests/1/file/frameFormat/modulationAndCodes/2"},
    {&CheckRules::DoesNotStart,
     R"({"requests": [{"call": "patch", "file": {"capabilityHandler": {
                          "minOutputPower": {"result": 32768}}}}, {"call": "initialize"}]})",
     "/requests/0/file/capabilityHandler/minOutputPower"},
    {&CheckRules::SelectionNotCarried,
     R"({"requests": [{"call": "patch", "file": {"frameFormat": {
                          "modulationAndCodes": ["16QAM", "256QAM"]}}}]})",
     "/requests/0/file"},
};

INSTANTIATE_TEST_SUITE_P(Each, ChangedRadio, testing::ValuesIn(changes),
                         [](const testing::TestParamInfo<Change>& change) {
                             std::string name = change.param.rule->code;
                             name.erase(name.find('-'), 1);
                             return name + "_" + std::to_string(change.index);
                         });

TEST(CheckRules, FindNothingInASoundRadio) {
    EXPECT_EQ(findingsIn(soundRadio().dump()), std::vector<std::string>());
}

// What repairs a changed radio is the sound one. These stand just inside a limit.
TEST(CheckRules, FindNothingJustInsideTheirLimits) {
    for (
        const char* const change : {
            R"({"channel": 2, "variables": {"channel.1.tx.rf.pmax.cs.comp.v2.array": null,
                                             "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": null,
                                             "channel.2.tx.rf.pmax.cs.comp.v2.array": [28, 0, 56, 0],
                                             "channel.2.tx.rf.pmax.cs.comp.v2.arraysize": 4}})",
            // equal neighbours do not rise
            R"({"capabilityHandler": {"pmaxDpd1Etsi": [["4QAM", 2300], ["16QAM", 2300],
                                                        ["64QAM", 1800], ["256QAM", 1700]]}})",
            R"({"capabilityHandler": {"pmaxDpd2Etsi": [["4QAM", 2600], ["16QAM", 2300]]}})",
            R"({"frameFormat": {"dpdVersion": 3}})",
            R"({"acmHandler": {"min": "16QAM", "max": "16QAM"}})",
            R"({"systemPowerController": {"minOutputPowerOffsets": []}})",
            R"({"systemPowerController": {"referenceSec": 3}})",
            R"({"requests": [{"call": "setPowerCutback", "cutback": 1900}]})",
            R"({"requests": [{"call": "setPowerCutback", "cutback": 50}]})",
            R"({"requests": [{"call": "setTemporaryPowerCutback", "use": false, "cutback": 0}]})",
            R"({"requests": [{"call": "setBoosterPresence", "presence": 0, "gain": 1,
                               "maxInputPower": 1, "maxModulation": "UNDEFINED"}]})",
            R"({"requests": [{"call": "setBoosterPresence", "presence": 7, "gain": 1510,
                               "maxInputPower": 100, "maxModulation": "256QAM"}]})",
            R"({"requests": [{"call": "getMinMaxOutputPowerVsModulationArray", "frameFormatId": -1,
                               "referenceSec": "6LB", "powerMap": [["4QAM", 0], ["16QAM", 0]]}]})",
            R"({"requests": [{"call": "patch", "file": {"capabilityHandler": {"minOutputPower": 700}}},
                              {"call": "initialize"}]})",
            // 17 - 0.5 - 8 dBm at 256QAM, and a minimum of 8.5 dBm
            R"({"requests": [{"call": "setPowerCutback", "cutback": 800},
                              {"call": "calculatePowerCapabilities", "modulation": "256QAM"}]})",
        }) {
        json radio = soundRadio();
        radio.merge_patch(json::parse(change));

        EXPECT_EQ(findingsIn(radio.dump()), std::vector<std::string>()) << change;
    }
}

TEST(CheckRules, NameAVariableThatIsAlmostRead) {
    json radio = soundRadio();
    radio["variables"] = {{"channel.1.tx.rf.pmax.cs.comp.v2.aray", {28, -50, 56, -150}},
                          {"channel.1.tx.rf.pmax.cs.comp.v2.arraysize", 4}};

    // Without the variable itself no array query succeeds.
    EXPECT_EQ(findingsIn(radio.dump()),
              (std::vector<std::string>{"QP-201 /frameFormat",
                                        "QP-201 /hardwareConfigurationHandler/frameFormats/0",
                                        "QP-405 /variables/channel.1.tx.rf.pmax.cs.comp.v2.aray"}));
}

TEST(CheckRules, PlaceASyntaxErrorByLineAndColumn) {
    const RadioFileCheck check = RadioFileCheck::run("{\n  \"channel\": 1,\n}");

    ASSERT_EQ(check.findings.size(), 1U);
    EXPECT_FALSE(check.isRadioFile);
    EXPECT_EQ(check.findings[0].finding.rule, &CheckRules::NotJson);
    EXPECT_FALSE(check.findings[0].hasPointer);
    EXPECT_EQ(check.findings[0].textPlace.line, 3U);
    EXPECT_EQ(check.findings[0].textPlace.column, 1U);
}

TEST(CheckRules, PlaceAFindingAtItsKey) {
    const RadioFileCheck check = RadioFileCheck::run(
        "{ // one\n  \"board\": {\"carierAggregation\": true},\n  \"channel\": 1\n}");

    ASSERT_EQ(check.findings.size(), 1U);
    EXPECT_EQ(check.findings[0].finding.rule, &CheckRules::NotARadioFile);
    EXPECT_EQ(check.findings[0].textPlace.line, 2U);
    EXPECT_EQ(check.findings[0].textPlace.column, 13U);
}

TEST(CheckRules, StopAtAHundredFindingsOfAKind) {
    json radio = soundRadio();
    for (int index = 0; index < 150; ++index) {
        radio["variables"]["unread" + std::to_string(index)] = 1;
    }

    const std::vector<std::string> findings = findingsIn(radio.dump());

    EXPECT_EQ(findings.size(), 101U);
    EXPECT_EQ(findings.front(), "QP-406 ");
}

TEST(CheckRules, StopAtAsManyPatchesAndQueriesAsAreChecked) {
    json radio = soundRadio();
    for (int index = 0; index < 65; ++index) {
        radio["requests"].push_back(
            {{"call", "patch"},
             {"file",
              {{"systemPowerController", {{"referenceSec", index % 2 == 0 ? "6LB" : "4L"}}}}}});
    }
    EXPECT_EQ(findingsIn(radio.dump()), std::vector<std::string>{"QP-012 /requests/64"});

    radio = soundRadio();
    json& records = radio["hardwareConfigurationHandler"]["frameFormats"];
    while (records.size() < 1000) {
        records.push_back(records[0]);
        records.back()["id"] = records.size() + 7;
    }
    EXPECT_EQ(findingsIn(radio.dump()), std::vector<std::string>{"QP-012 "});
}

// Odd values are strewn in, so that most of these files have many findings.
TEST(CheckRules, TellPlacesThatRandomFilesHave) {
    std::set<std::string> codes;
    for (std::uint64_t seed = 0; seed < 150; ++seed) {
        const json radio = reference::randomRadioFile(seed);

        const RadioFileCheck check = RadioFileCheck::run(radio.dump(1));

        EXPECT_TRUE(check.isRadioFile) << seed;
        for (const RadioFileCheck::PlacedFinding& placed : check.findings) {
            const std::vector<std::string>& path = placed.finding.place.path;
            EXPECT_NE(valueAt(radio, path), nullptr)
                << seed << ": " << placed.finding.rule->code << ' ' << pointerText(path);
            codes.insert(placed.finding.rule->code);
        }
    }
    EXPECT_GT(codes.size(), 25U);
}

TEST(CheckRules, HaveCodesOfTheirOwnInOrder) {
    const std::vector<const CheckRule*>& rules = CheckRules::all();
    for (std::size_t index = 1; index < rules.size(); ++index) {
        EXPECT_LT(std::string(rules[index - 1]->code), rules[index]->code);
    }
}

TEST(CheckRules, AreEachTried) {
    std::set<std::string> tried{CheckRules::NotJson.code, CheckRules::NotAllChecked.code,
                                CheckRules::NearVariable.code};
    for (const Change& change : changes) {
        tried.insert(change.rule->code);
    }
    for (const CheckRule* const rule : CheckRules::all()) {
        EXPECT_EQ(tried.count(rule->code), 1U) << rule->code;
    }
}

TEST(KnownProducts, AreThoseThatTheLibraryKnows) {
    for (const std::string& number : knownProducts()) {
        json radio = soundRadio();
        radio["capabilityHandler"]["productNumber"] = number;

        const PowerTable table = PowerTableQuery().run(RadioFileReader::read(radio.dump()));

        EXPECT_NE(table.family.className, "CalculatorVo5") << number;
    }
    EXPECT_EQ(knownProducts().size(), 23U);
}

} // namespace
