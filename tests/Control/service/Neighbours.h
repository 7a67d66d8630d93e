#pragma once

#include "SimulatedAcmHandler.h"
#include "SimulatedCapabilityHandler.h"
#include "SimulatedFrameFormat.h"
#include "SimulatedHardwareConfigurationHandler.h"
#include "SimulatedSystemPowerController.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

/// What the neighbours of one radio channel answer until a test says otherwise: a radio of the
/// first outdoor family, with one frame format besides the configured one.
struct RadioAnswers {
    RadioAnswers();

    CapabilityHandlerAnswers capabilityHandler;
    AcmHandlerAnswers acmHandler;
    FrameFormatAnswers frameFormat;
    SystemPowerControllerAnswers systemPowerController;
};

/// The neighbours that one radio channel has for itself, published in the broker while they live.
class ChannelNeighbours {
public:
    explicit ChannelNeighbours(RadioChannel channel);
    ~ChannelNeighbours();

    ChannelNeighbours(const ChannelNeighbours&) = delete;
    ChannelNeighbours& operator=(const ChannelNeighbours&) = delete;

    /// Answers as `answers` says by now.
    void apply();

    RadioAnswers answers;
    SimulatedCapabilityHandler capabilityHandler;
    SimulatedAcmHandler acmHandler;
    SimulatedFrameFormat frameFormat;
    SimulatedSystemPowerController systemPowerController;

private:
    RadioChannel m_channel;
};

/// A test with a radio node around the service: the neighbours of channel 1 in the broker, channel
/// spacings 28 and 56 calibrated on channels 1 and 2, a board without carrier aggregation, and
/// tracing off. The node is taken down at the end.
class NodeFixture : public ::testing::Test {
protected:
    NodeFixture();
    ~NodeFixture() override;

    /// Stores (channel spacing, compensation) pairs for a channel.
    static void calibrate(RadioChannel channel, const std::vector<std::int32_t>& pairs);

    /// Records from now on what the neighbours are asked.
    void recordCalls();

    ChannelNeighbours node{1};
    SimulatedHardwareConfigurationHandler hardware;
    CallLog calls;
};
