#include "OtherChannel.h"

#include "Sides.h"

#include <numeric>
#include <stdexcept>
#include <utility>
#include <vector>

namespace {

std::uint32_t otherThan(std::uint32_t channel) {
    return channel == 1 ? 2 : 1;
}

UsualAnswers otherAnswers() {
    UsualAnswers answers = usualAnswers({families.back(), false, false, Limit::None});
    const auto set = [&answers](Call call, std::vector<std::int32_t> values) {
        answers[static_cast<std::size_t>(call)].values = std::move(values);
    };
    for (const Call table :
         {Call::PmaxDpd1Ansi, Call::PmaxDpd2Ansi, Call::PmaxDpd1Etsi, Call::PmaxDpd2Etsi}) {
        std::vector<std::int32_t>& values = answers[static_cast<std::size_t>(table)].values;
        for (std::size_t power = 2; power < values.size(); power += 2) {
            values[power] -= 637;
        }
    }
    answers[static_cast<std::size_t>(Call::ProductNumber)].text = "QZT 846 57";
    set(Call::MinOutputPower, {-555});
    set(Call::ProfileIndex, {0});
    set(Call::MaxModulationLimited, {64});
    set(Call::MaxModulationUnlimited, {128});
    set(Call::AcmRange, {11, 51});
    set(Call::Modulation, {128});
    set(Call::MaxAvailableModulation, {256});
    set(Call::Codes, {41, 71});
    set(Call::ChannelSpacing, {56});
    set(Call::DpdVersion, {1});
    set(Call::Market, {1});
    set(Call::Profiles, {9});
    set(Call::CarrierAggregationProfiles, {8});
    set(Call::ReferenceSec, {0});
    set(Call::Offset, {-300});
    return answers;
}

} // namespace

OtherChannel::OtherChannel(std::uint32_t channelUnderTest)
    : m_script(otherAnswers())
    , m_neighbours(m_script, otherThan(channelUnderTest))
    , m_service(otherThan(channelUnderTest)) {
    if (m_service.initialize() != 0) {
        throw std::logic_error("the other channel's service does not start");
    }
    m_service.setPowerCutback(7777);
    m_service.setTemporaryPowerCutback(true, 5555);
    m_service.setTemperature(77);
    m_service.setBoosterPresence(7, 1111, 222, Modulation::QAM16);
    m_script.restart();
}

std::size_t OtherChannel::calls() const {
    const Script::Times& times = m_script.times();
    return std::accumulate(times.begin(), times.end(), std::size_t{0});
}
