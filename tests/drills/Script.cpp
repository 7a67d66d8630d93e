#include "Script.h"

#include <utility>

const char* nameOf(Call call) {
    constexpr std::array<const char*, callCount> names = {
        "getTmuHwProductNumber",
        "getMinOutputPower",
        "getPmaxCapabilityDpd1Ansi",
        "getPmaxCapabilityDpd2Ansi",
        "getPmaxCapabilityDpd1Etsi",
        "getPmaxCapabilityDpd2Etsi",
        "isMaxAcmLimitedByHw",
        "getPerformanceProfileIndex",
        "getMaxModulationLimitedByHw",
        "getMaxModulationWithoutLimitation",
        "getMinMaxModulationAndCode",
        "getModulation",
        "getMaxAvailableModulation",
        "getModulationAndCodeArray",
        "getChannelSpacing",
        "getDpdVersion",
        "getTelecomMarket",
        "getPerformanceProfiles",
        "getCarrierAggregationPerformanceProfiles",
        "getReferenceSec",
        "getMinOutputPowerOffset",
        "getFrameFormatRecords",
        "getDpdVersion by id",
        "getTelecomMarket by id",
        "getModulationAndCodeArray by id",
        "getChannelSpacing by id",
        "getPerformanceProfiles by id",
        "getCarrierAggregationPerformanceProfiles by id",
        "isFftypeCarrierAggregation",
        "stored compensation array",
        "stored size of the compensation array",
    };
    return names[static_cast<std::size_t>(call)];
}

std::string textOf(const ScriptedAnswer& answer) {
    std::string text = "result " + std::to_string(answer.result);
    text += answer.isWritten ? ", values" : ", not written";
    for (const std::int32_t value : answer.values) {
        text += ' ' + std::to_string(value);
    }
    return text + ", text \"" + answer.text + '"';
}

void Script::restart(Call call, std::size_t nth, const ScriptedAnswer& odd) {
    restart({{call, nth, odd}});
}

void Script::restart(std::vector<OddCall> odd) {
    restart();
    m_odd = std::move(odd);
}

void Script::restartThrowing(Call call, std::size_t nth) {
    restart(call, nth, {});
    m_oddThrows = true;
}

void Script::restart() {
    // With its memory, which some drills count.
    m_odd = std::vector<OddCall>();
    m_oddThrows = false;
    m_times.fill(0);
    for (auto& calls : m_arguments) {
        calls.clear();
    }
}

const ScriptedAnswer& Script::ask(Call call, std::vector<std::int32_t> arguments) {
    const std::size_t index = indexOf(call);
    ++m_times[index];
    if (!arguments.empty()) {
        m_arguments[index].push_back(std::move(arguments));
    }
    for (const OddCall& odd : m_odd) {
        if (call != odd.call || m_times[index] != odd.nth) {
            continue;
        }
        if (m_oddThrows) {
            throw NeighbourIsGone();
        }
        return odd.answer;
    }
    return m_usual[index];
}
