#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// The questions that the service puts to what surrounds it: its neighbours, the board and the
/// store of named variables.
enum class Call : std::size_t {
    // The capability handler's
    ProductNumber,
    MinOutputPower,
    PmaxDpd1Ansi,
    PmaxDpd2Ansi,
    PmaxDpd1Etsi,
    PmaxDpd2Etsi,
    IsMaxAcmLimited,
    ProfileIndex,
    MaxModulationLimited,
    MaxModulationUnlimited,
    // The ACM handler's
    AcmRange,
    // The configured frame format's
    Modulation,
    MaxAvailableModulation,
    Codes,
    ChannelSpacing,
    DpdVersion,
    Market,
    Profiles,
    CarrierAggregationProfiles,
    // The system power controller's
    ReferenceSec,
    Offset,
    // The hardware configuration's, by frame-format id
    Records,
    DpdVersionById,
    MarketById,
    CodesById,
    ChannelSpacingById,
    ProfilesById,
    CarrierAggregationProfilesById,
    // The board's and the variable store's
    IsCarrierAggregation,
    CompensationArray,
    CompensationArraySize
};

constexpr std::size_t callCount = static_cast<std::size_t>(Call::CompensationArraySize) + 1;

const char* nameOf(Call call);

/// What a call answers. A call uses those fields that it has something to answer with.
struct ScriptedAnswer {
    std::uint32_t result = 0;
    bool isWritten = true; ///< false: nothing is written to the outputs; an offset: none is known

    /// One number, or the elements of a list. The ACM range: minimum and maximum. A Pmax table: the
    /// count handed out, then the integers. The records: id and channel spacing of each in turn.
    std::vector<std::int32_t> values;
    std::string text; ///< the product number

    std::int32_t value() const { return values.at(0); }
};

std::string textOf(const ScriptedAnswer& answer);

using UsualAnswers = std::array<ScriptedAnswer, callCount>;

/// What a neighbour throws instead of answering: nothing that anybody could expect.
struct NeighbourIsGone {};

/// A call that is answered otherwise than usual.
struct OddCall {
    Call call;
    std::size_t nth; ///< of this kind, counted from 1
    ScriptedAnswer answer;
};

/// What is answered to every call in turn: the usual, but for one call of all or a few.
///
/// A call is told apart from others by what it asks and by how often that was asked before, so that
/// the order in which a step of the service asks several independent questions is left to it.
class Script {
public:
    explicit Script(const UsualAnswers& usual)
        : m_usual(usual) {}

    /// Starts anew. The nth call, counted from 1, of this kind gets the odd answer.
    void restart(Call call, std::size_t nth, const ScriptedAnswer& odd);

    /// Starts anew, with the odd answers of several calls.
    void restart(std::vector<OddCall> odd);

    /// Starts anew. The nth call of this kind throws NeighbourIsGone.
    void restartThrowing(Call call, std::size_t nth);

    /// Starts anew, with nothing but usual answers.
    void restart();

    /// Counts a call and answers it.
    const ScriptedAnswer& ask(Call call, std::vector<std::int32_t> arguments = {});

    const ScriptedAnswer& usual(Call call) const { return m_usual[indexOf(call)]; }
    void setUsual(Call call, const ScriptedAnswer& answer) { m_usual[indexOf(call)] = answer; }

    /// How often a call was made since the start.
    std::size_t timesOf(Call call) const { return m_times[indexOf(call)]; }

    /// The same of every kind.
    using Times = std::array<std::size_t, callCount>;
    const Times& times() const { return m_times; }

    /// The kinds of calls that take arguments, each with the arguments of all its calls in turn.
    using Arguments = std::array<std::vector<std::vector<std::int32_t>>, callCount>;
    const Arguments& arguments() const { return m_arguments; }

private:
    static std::size_t indexOf(Call call) { return static_cast<std::size_t>(call); }

    UsualAnswers m_usual;
    std::vector<OddCall> m_odd;
    bool m_oddThrows = false;
    Times m_times{};
    Arguments m_arguments;
};
