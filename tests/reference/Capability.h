#pragma once

#include "Types.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace reference {

// The four Pmax tables of a capability handler.
inline constexpr std::int32_t pmaxTableDpd1Ansi = 0;
inline constexpr std::int32_t pmaxTableDpd2Ansi = 1;
inline constexpr std::int32_t pmaxTableDpd1Etsi = 2;
inline constexpr std::int32_t pmaxTableDpd2Etsi = 3;

// One table as handed out: pairs (modulation, power), and how many integers count. An odd count
// is followed by one more integer, so that the last pair can be read.
struct PmaxStorage {
    std::vector<std::int32_t> integers;
    std::int32_t count = 0;
};

using PmaxPointer = std::shared_ptr<const PmaxStorage>;

// What a table getter did: its result, and the table if it wrote one.
struct PmaxAnswer {
    std::uint32_t result = 0;
    std::optional<PmaxPointer> written;
};

using PmaxGetter = std::function<PmaxAnswer(std::int32_t pmaxTable)>;

// The Pmax of a modulation in a flat table: 0 and the power written, or 0x8008 and a raw trace.
std::uint32_t powerInTable(const std::vector<std::int32_t>& integers, std::int32_t count,
                           std::int32_t modulation, std::int32_t& power, Trace& trace);

// The highest power of a flat table; the lowest 32-bit value when it holds no complete row.
std::int32_t highestPowerInTable(const std::vector<std::int32_t>& integers, std::int32_t count);

// The view of one Pmax table for a channel, a DPD version and a market.
struct Capability {
    std::uint32_t channel = 0;
    std::int32_t dpdVersion = 0;
    std::int32_t market = 0;
    PmaxPointer table; // null until a getter wrote it

    // `handler` is null when no capability handler goes by the name of this channel.
    std::uint32_t initialize(const PmaxGetter* handler, Trace& trace);
    std::uint32_t getPower(std::int32_t modulation, std::int32_t& power, Trace& trace) const;
    std::int32_t getMaxPower() const;
};

} // namespace reference
