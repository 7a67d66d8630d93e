#pragma once

#include "NodeAnswers.h"

#include <cstdint>
#include <list>
#include <optional>
#include <string>

/// A radio node in memory: the neighbours in the interface broker, the stored variables and the
/// board, as long as the object lives. The desk's variable store and board belong to the process,
/// so only one node can stand at a time.
///
/// The node owns nothing of the service: create the service after the node and end it before.
class Node {
public:
    /// Registers the neighbours for the channel that a service built with the number serves, and
    /// the capability handler also under the number as given, where the Pmax tables look it up.
    /// @param channel the number that the service is built with.
    Node(std::uint32_t channel, const NodeAnswers& answers);

    /// Withdraws every neighbour, empties the variable store and resets the board.
    ~Node();

    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    /// Changes what the node answers from now on. Must not run beside queries.
    /// @param answers with the same neighbours present as before.
    /// @throw std::invalid_argument otherwise; nothing has changed then.
    void apply(const NodeAnswers& answers);

    /// Records the calls to every neighbour in one log; null stops that.
    void recordTo(CallLog* log);

    // The neighbours; null for one that is not registered.
    SimulatedCapabilityHandler* capabilityHandler();
    SimulatedAcmHandler* acmHandler();
    SimulatedFrameFormat* frameFormat();
    SimulatedSystemPowerController* systemPowerController();
    SimulatedHardwareConfigurationHandler* hardwareConfigurationHandler();

    /// The channel that a service built with a number serves: the number if it is 1 or 2, else 1.
    static RadioChannel servedChannel(std::uint32_t channel);

    /// The variable that holds the channel-spacing calibration of such a service.
    static std::string calibrationOf(std::uint32_t channel);

private:
    /// An object's name in the broker, for as long as this lives.
    class Publication {
    public:
        Publication(const std::string& name, IInterface* object);
        ~Publication();
        Publication(const Publication&) = delete;
        Publication& operator=(const Publication&) = delete;

    private:
        std::string m_name;
    };

    /// Calls visit(neighbour, member of NodeAnswers) for each of the five.
    template <class Visit>
    void forEachNeighbour(Visit visit);

    void publish(const std::string& name, IInterface* object);
    void storeVariables();

    NodeAnswers m_answers;
    std::optional<SimulatedCapabilityHandler> m_capabilityHandler;
    std::optional<SimulatedAcmHandler> m_acmHandler;
    std::optional<SimulatedFrameFormat> m_frameFormat;
    std::optional<SimulatedSystemPowerController> m_systemPowerController;
    std::optional<SimulatedHardwareConfigurationHandler> m_hardwareConfigurationHandler;
    std::list<Publication> m_publications; ///< the last member: neighbours are withdrawn first
};
