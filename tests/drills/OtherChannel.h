#pragma once

#include "OutputPowerCalculator.h"
#include "ScriptedNeighbours.h"

#include <cstddef>
#include <cstdint>

/// The other channel of a node: neighbours that answer differently, and a started service with
/// operating inputs of its own. Whoever takes it for the channel under test gets other powers.
class OtherChannel {
public:
    /// @param channelUnderTest its surroundings are there; they hold what both channels share.
    explicit OtherChannel(std::uint32_t channelUnderTest);

    /// How often its neighbours were asked since its service has started.
    std::size_t calls() const;

private:
    Script m_script;
    ScriptedChannel m_neighbours;
    OutputPowerCalculator m_service;
};
