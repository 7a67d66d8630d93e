#pragma once

#include "DeskTrace.h"
#include "OutputPowerCalculator.h"
#include "ScriptedNeighbours.h"
#include "ScriptedNode.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

// The library's service and that of the plain restatement, in the same surroundings.

struct Family {
    const char* name;
    const char* productNumber;
};

/// The families that product numbers lead to.
extern const std::vector<Family> families;

/// How the radio limits the modulation.
enum class Limit {
    None,
    ByProfile,
    ByCarrierAggregationProfile
};

/// Where a drill takes place.
struct Scene {
    Family family;
    bool hasBooster;
    bool isAdaptive;
    Limit limit;
    std::uint32_t channel = 1;
};

/// As a test's name.
std::string nameOf(const Scene& scene);

UsualAnswers usualAnswers(const Scene& scene);

/// One trace record, from either side.
struct Record {
    int kind;
    int level;
    unsigned code;
    std::string file;
    std::string function;
    std::string text;

    friend bool operator==(const Record&, const Record&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const Record& record) {
        return stream << record.kind << ' ' << record.level << ' ' << record.code << ' '
                      << record.file << ' ' << record.function << ": " << record.text;
    }
};

std::vector<Record> recordsOf(const std::vector<TraceRecord>& trace);
std::vector<Record> recordsOf(const reference::Trace& trace);

/// What an operation leaves behind.
struct Outcome {
    std::uint32_t result = 0;
    std::vector<long> outputs;
    std::map<std::int32_t, long> powerMap;
    std::vector<Record> trace;
    Script::Arguments arguments;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

/// The library's service in the scripted surroundings.
class LibrarySide {
public:
    explicit LibrarySide(const UsualAnswers& usual, std::uint32_t channelServed = 1)
        : channel(channelServed)
        , script(usual)
        , surroundings(script, channel) {
        build();
    }

    /// Ends the service and makes a fresh one.
    void build();

    std::vector<Record> takeTrace();

    const std::uint32_t channel;
    Script script;
    ScriptedSurroundings surroundings;
    std::unique_ptr<OutputPowerCalculator> service;
};

/// The restatement's service in the same surroundings.
class ReferenceSide {
public:
    explicit ReferenceSide(const UsualAnswers& usual, std::uint32_t channelServed = 1)
        : channel(channelServed)
        , script(usual)
        , node(script, channel) {
        build();
    }

    void build();

    std::vector<Record> takeTrace();

    const std::uint32_t channel;
    Script script;
    ScriptedNode node;
    std::optional<reference::Service> service;
};

/// Both in a scene, both started, with the scene's operating inputs.
class BothSides {
public:
    explicit BothSides(const Scene& scene);

    /// Starts both scripts anew.
    void restart();

    UsualAnswers usual;
    LibrarySide library;
    ReferenceSide reference;
};
