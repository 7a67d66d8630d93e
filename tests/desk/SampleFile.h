#pragma once

#include "RadioFile.h"
#include "RadioFileReader.h"

#include <nlohmann/json.hpp>

#include <string>

/// A radio file of the first outdoor family on channel 1, without requests, for tests to change.
///
/// DPD version 2 falls back to the table of version 1. The offset at 28 MHz is 250, the stored
/// compensation there 150.
inline nlohmann::json sampleFile() {
    return nlohmann::json::parse(R"({
        "channel": 1,
        "capabilityHandler": {
            "productNumber": "QZT 846 001",
            "minOutputPower": -1000,
            "pmaxDpd1Etsi": [["4QAM", 2800], ["16QAM", 2600], ["64QAM", 2400], ["256QAM", 2200]],
            "pmaxDpd2Etsi": {"result": 32768},
            "maxAcmLimitedByHw": true,
            "performanceProfileIndex": 2,
            "maxModulationLimitedByHw": {"1": "512QAM", "3": "1024QAM", "5": "16QAM"}
        },
        "acmHandler": {"min": "4QAM_STRONG", "max": "256QAM"},
        "frameFormat": {
            "modulation": "128QAM",
            "maxAvailableModulation": "1024QAM",
            "modulationAndCodes": ["4QAM_STRONG", "4QAM", "16QAM", "64QAM", "256QAM"],
            "channelSpacing": 28,
            "dpdVersion": 2,
            "market": "Etsi",
            "performanceProfiles": [1, 2, 3],
            "carrierAggregationPerformanceProfiles": [4, 4, 5]
        },
        "systemPowerController": {
            "referenceSec": "4L",
            "minOutputPowerOffsets": [[28, 250], [56, 400]]
        },
        "hardwareConfigurationHandler": {
            "frameFormats": [
                {"id": 7, "channelSpacing": 56, "dpdVersion": 1, "market": "Ansi",
                 "modulationAndCodes": ["4QAM", "16QAM"], "performanceProfiles": [1]}
            ]
        },
        "variables": {
            "channel.1.tx.rf.pmax.cs.comp.v2.array": [28, 150, 56, -200],
            "channel.1.tx.rf.pmax.cs.comp.v2.arraysize": 4
        }
    })");
}

/// The sample file with requests, a JSON list.
inline nlohmann::json sampleFileWith(const std::string& requests) {
    nlohmann::json file = sampleFile();
    file["requests"] = nlohmann::json::parse(requests);
    return file;
}

inline RadioFile readFile(const nlohmann::json& file) {
    return RadioFileReader::read(file.dump());
}
