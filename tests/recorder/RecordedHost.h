#pragma once

#include "InterfaceBroker.h"
#include "Node.h"
#include "OutputPowerCalculator.h"
#include "RadioFileReader.h"
#include "RadioFileRecorder.h"
#include "RecordedAnswers.h"
#include "Replay.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

/// A radio of the first outdoor family, whose powers are easy to tell: 64QAM has 18 dBm.
inline nlohmann::json recordedRadio(unsigned channel = 1) {
    const std::string name = "channel." + std::to_string(channel) + ".tx.rf.pmax.cs.comp.v2.array";
    nlohmann::json radio = nlohmann::json::parse(R"({
        "capabilityHandler": {"productNumber": "QZT 846 001", "minOutputPower": 800,
            "pmaxDpd1Etsi": [["4QAM", 2600], ["16QAM", 2300], ["64QAM", 1800]]},
        "acmHandler": {"min": "4QAM", "max": "64QAM"},
        "frameFormat": {"modulation": "16QAM", "maxAvailableModulation": "64QAM",
            "modulationAndCodes": ["4QAM", "16QAM", "64QAM"], "channelSpacing": 28,
            "dpdVersion": 1, "market": "Etsi"},
        "systemPowerController": {"referenceSec": "4L", "minOutputPowerOffsets": [[28, 50]]},
        "hardwareConfigurationHandler": {"frameFormats": [{"id": 7, "channelSpacing": 28,
            "dpdVersion": 1, "market": "Etsi", "modulationAndCodes": ["4QAM", "16QAM"]}]}})");
    radio["channel"] = channel;
    radio["variables"] = {{name, {28, -50}}, {name + "size", 2}};
    return radio;
}

/// A node with a service whose requests and neighbours are recorded.
class RecordedHost {
public:
    explicit RecordedHost(const nlohmann::json& radio = recordedRadio(),
                          std::size_t bytes = RadioFileRecorder::usualSize)
        : file(RadioFileReader::read(radio.dump()))
        , node(std::make_unique<Node>(file.channel, file.node))
        , recorder(std::make_unique<RadioFileRecorder>(file.channel, bytes)) {}

    /// Starts the service as the manual of the recorder says.
    void start() {
        EXPECT_TRUE(recorder->attach());
        service = std::make_unique<OutputPowerCalculator>(file.channel);
        service->initialize();
        EXPECT_TRUE(recorder->attach());
    }

    /// What callers find under the service's name.
    IOutputPowerCalculator* asked() const {
        return published<IOutputPowerCalculator>(
            IOutputPowerCalculator::interfaceName(file.channel));
    }

    template <class Interface>
    static Interface* published(const std::string& name) {
        return InterfaceBroker::getInstance().getInterface<Interface>(name);
    }

    /// Maximum power at a modulation for a fixed modulation.
    long power(Modulation modulation = Modulation::QAM64) const {
        long minPower = 0;
        long maxPower = 0;
        asked()->calculatePowerCapabilities(modulation, minPower, maxPower);
        return maxPower;
    }

    std::string written() const {
        std::ostringstream stream;
        EXPECT_TRUE(recorder->write(stream));
        return stream.str();
    }

    /// What differs when what was written is replayed. Ends the node, as there is one at a time.
    std::vector<std::string> differences(const std::string& text) {
        recorder->detach();
        service.reset();
        node.reset();
        return differencesOf(text);
    }

    static std::vector<std::string> differencesOf(const std::string& text) {
        const RadioFile recorded = RadioFileReader::read(text);
        std::vector<std::string> lines;
        Replay().play(recorded, [&lines](const std::string& line) { lines.push_back(line); });
        return RecordedAnswers::differences(recorded, lines);
    }

    /// The notes of a file, one to a line.
    static std::string notesOf(const std::string& text) {
        std::string notes;
        for (const std::string& note : RadioFileReader::read(text).notes) {
            notes += note + "\n";
        }
        return notes;
    }

    RadioFile file;
    std::unique_ptr<Node> node;
    std::unique_ptr<RadioFileRecorder> recorder;
    std::unique_ptr<OutputPowerCalculator> service;
};
