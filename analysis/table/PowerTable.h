#pragma once

#include "EChannelSpacingType.h"
#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"
#include "OperatingInputs.h"
#include "QueryTrace.h"
#include "RadioChannel.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// The powers of one frame format and what they hold for. Powers in hundredths of a dBm.
struct PowerTable {
    /// One modulation-and-code of the frame format.
    struct Row {
        ModulationAndCoding modulationAndCode;
        Modulation modulation;
        std::optional<long> maxPower;
        std::string reason;  ///< why there is no power; empty if there is one
        std::string warning; ///< why the power is doubtful; empty if it is not
        bool isBelowMinimum = false;
        std::optional<Rule> trouble = {}; ///< what the reason or the warning begins with
    };

    std::string radioFile;     ///< as given
    std::uint32_t channel = 0; ///< as the file gives it
    RadioChannel servedChannel = 0;
    std::string productNumber; ///< may be empty
    QueryTrace::Family family;

    /// The request of the file in whose place is asked, and what it calls:
    /// "calculatePowerCapabilities of 64QAM". Nothing: none.
    std::optional<std::size_t> request;
    std::string requestWords;

    std::int32_t frameFormatId = 0; ///< below 1: the configured one
    EFrameFormatMarket market = EFrameFormatMarket::Etsi;
    EChannelSpacingType channelSpacing{};
    EDpdVersion dpdVersion{};

    EReferenceSEC rsec = EReferenceSEC::UNDEFINED;
    /// Who chose an argument of the query.
    enum class Chooser {
        Radio,  ///< a neighbour: the system power controller or the ACM handler
        Asker,  ///< an input of the question
        Request ///< the request of the file
    };
    Chooser rsecBy = Chooser::Radio;
    Chooser selectedMinBy = Chooser::Radio;
    Chooser selectedMaxBy = Chooser::Radio;
    std::optional<std::string> usedRsec; ///< class that the powers were calculated with, if any was
    ModulationAndCoding selectedMin{ModulationAndCoding::UNDEFINED};
    ModulationAndCoding selectedMax{ModulationAndCoding::UNDEFINED};
    bool isAdaptive = false;
    std::optional<QueryTrace::ModulationLimit> modulationLimit;
    OperatingInputs inputs;

    std::optional<long> minOutputPower; ///< nothing if the query failed
    unsigned result = 0;                ///< of the query
    std::string failure;                ///< why the query failed; empty if it did not
    std::vector<std::string> notes;
    std::vector<Row> rows; ///< in the order of the frame format's array
};
