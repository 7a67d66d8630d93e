#pragma once

#include "DeskTrace.h"
#include "EChannelSpacingType.h"
#include "EDpdVersion.h"
#include "EFrameFormatMarket.h"
#include "Modulation.h"
#include "RadioFile.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Where in a radio file the figures stand that the library reports, as JSON Pointers. A place is
/// given only if that very figure stands there.
class RadioFilePlaces {
public:
    /// @param startTrace what the library reported while the service started: which Pmax tables it
    ///        took.
    /// @param dpdVersion and market of the frame format that is asked for.
    RadioFilePlaces(const RadioFile& file, const std::vector<TraceRecord>& startTrace,
                    EDpdVersion dpdVersion, EFrameFormatMarket market);

    /// The Pmax table that the service looks up in, in words, with the fallback that led to it.
    std::string pmaxTable() const;

    /// The power of a modulation's row in that table; empty if the row is not found.
    std::string pmaxRow(Modulation modulation, std::int32_t power) const;

    /// The key of that table; empty without one.
    std::string pmaxTableKey() const;

    using PmaxAnswer = std::optional<CapabilityHandlerAnswers::Pmax> CapabilityHandlerAnswers::*;

    /// Where the capability handler's answers hold the table with a key; null for another key.
    static PmaxAnswer pmaxAnswer(const std::string& tableKey);

    /// The channel-spacing compensation of the served channel; empty for the 0 dB of a spacing that
    /// is not calibrated.
    std::string compensation(EChannelSpacingType spacing, std::int32_t compensation) const;

    /// A member of a request, for example "/requests/0/cutback".
    static std::string request(std::size_t index, const std::string& member);

private:
    /// What became of one of the service's four Pmax tables.
    struct Fetched {
        std::optional<int> table; ///< number of the handler's table; nothing if all failed
        std::vector<int> failed;
    };

    const RadioFile& m_file;
    std::optional<Fetched> m_fetched; ///< nothing if the trace does not tell
};
