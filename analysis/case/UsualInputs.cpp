#include "UsualInputs.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <optional>
#include <set>
#include <type_traits>

namespace {

using Values = std::vector<Inputs::Value>;
using FormatRecord = HardwareConfigurationHandlerAnswers::FrameFormat;

template <class Type>
Values valuesFrom(std::initializer_list<Type> list) {
    return Values(list.begin(), list.end());
}

void addSpacings(const SystemPowerControllerAnswers& controller, std::set<std::int32_t>& spacings) {
    for (const auto& offset : controller.minOutputPowerOffsets) {
        spacings.insert(static_cast<std::int32_t>(offset.channelSpacing));
    }
}

void addSpacings(const HardwareConfigurationHandlerAnswers& handler,
                 std::set<std::int32_t>& spacings) {
    for (const FormatRecord& record : handler.frameFormats) {
        if (const auto* const spacing = std::get_if<EChannelSpacingType>(&record.channelSpacing)) {
            spacings.insert(static_cast<std::int32_t>(*spacing));
        }
    }
}

constexpr std::uint32_t usualStep = 100; // one decibel
constexpr std::uint32_t greatestUsualCutback = 10 * usualStep;

std::optional<OperatingInputs::Booster> boosterOf(const RadioCase& radio) {
    std::optional<OperatingInputs::Booster> booster;
    for (const Request& request : radio.file.requests) {
        if (const auto* const call = std::get_if<Calls::SetBoosterPresence>(&request.call);
            call != nullptr && call->presence != 0) {
            booster = {call->presence, call->gain, call->maxInputPower, call->maxModulation};
        }
    }
    if (radio.query.inputs.booster && radio.query.inputs.booster->presence != 0) {
        booster = radio.query.inputs.booster;
    }
    return booster;
}

std::vector<ModulationAndCoding> codesOf(const FormatRecord& record) {
    const auto* const codes =
        std::get_if<std::vector<ModulationAndCoding>>(&record.modulationAndCodes);
    return codes == nullptr ? std::vector<ModulationAndCoding>() : *codes;
}

/// The codes of the frame format that is asked for, in ascending order.
std::vector<ModulationAndCoding> codesOf(const RadioCase& radio) {
    const NodeAnswers& node = radio.file.node;
    const std::int32_t id = radio.query.frameFormatId;
    std::vector<ModulationAndCoding> codes;
    if (id < 1 && node.frameFormat != nullptr) {
        codes = node.frameFormat->modulationAndCodes;
    } else if (id >= 1 && node.hardwareConfigurationHandler != nullptr) {
        const auto& records = node.hardwareConfigurationHandler->frameFormats;
        const auto found =
            std::find_if(records.begin(), records.end(),
                         [id](const FormatRecord& record) { return record.id == id; });
        codes = found == records.end() ? codes : codesOf(*found);
    }
    std::sort(codes.begin(), codes.end());
    return codes;
}

template <class Selected>
Values usualSelections(const RadioCase& radio) {
    std::vector<ModulationAndCoding> codes = codesOf(radio);
    constexpr bool isMax = std::is_same_v<Selected, Inputs::SelectedMax>;
    // Of one modulation the lowest code is selected as minimum and the highest as maximum, so that
    // selecting one modulation as both still leaves a range.
    if (isMax) {
        std::reverse(codes.begin(), codes.end());
    }
    const auto isSameModulation = [](const ModulationAndCoding& left,
                                     const ModulationAndCoding& right) {
        return convertCodeToModulation(left) == convertCodeToModulation(right);
    };
    codes.erase(std::unique(codes.begin(), codes.end(), isSameModulation), codes.end());
    if (isMax) {
        std::reverse(codes.begin(), codes.end());
    }
    Values values;
    for (const ModulationAndCoding& code : codes) {
        values.emplace_back(Selected{code});
    }
    return values;
}

} // namespace

std::vector<Inputs::Value> UsualInputs::rsecs(const RadioCase&) {
    return valuesFrom({EReferenceSEC::Class2, EReferenceSEC::Class4L, EReferenceSEC::Class4H,
                       EReferenceSEC::Class5LB, EReferenceSEC::Class5HB, EReferenceSEC::Class5B,
                       EReferenceSEC::Class6LB, EReferenceSEC::Class6HB, EReferenceSEC::Class6B,
                       EReferenceSEC::Class7B});
}

std::vector<Inputs::Value> UsualInputs::markets(const RadioCase&) {
    return valuesFrom(
        {EFrameFormatMarket::Etsi, EFrameFormatMarket::Ansi, EFrameFormatMarket::Global});
}

std::vector<Inputs::Value> UsualInputs::dpdVersions(const RadioCase&) {
    return valuesFrom({EDpdVersion::Dpd1, EDpdVersion::Dpd2, EDpdVersion::Dpd3});
}

std::vector<Inputs::Value> UsualInputs::channelSpacings(const RadioCase& radio) {
    const NodeAnswers& node = radio.file.node;
    std::set<std::int32_t> spacings;
    if (node.frameFormat != nullptr) {
        spacings.insert(static_cast<std::int32_t>(node.frameFormat->channelSpacing));
    }
    if (node.hardwareConfigurationHandler != nullptr) {
        addSpacings(*node.hardwareConfigurationHandler, spacings);
    }
    if (node.systemPowerController != nullptr) {
        addSpacings(*node.systemPowerController, spacings);
    }
    Values values;
    for (const std::int32_t spacing : spacings) {
        values.emplace_back(static_cast<EChannelSpacingType>(spacing));
    }
    return values;
}

std::vector<Inputs::Value> UsualInputs::cutbacks(const RadioCase&) {
    Values values;
    for (std::uint32_t cutback = 0; cutback <= greatestUsualCutback; cutback += usualStep) {
        values.emplace_back(Inputs::PermanentCutback{cutback});
    }
    return values;
}

std::vector<Inputs::Value> UsualInputs::temporaryCutbacks(const RadioCase&) {
    Values values{OperatingInputs::TemporaryCutback{}};
    for (std::uint32_t cutback = 0; cutback <= greatestUsualCutback; cutback += usualStep) {
        values.emplace_back(OperatingInputs::TemporaryCutback{true, cutback});
    }
    return values;
}

std::vector<Inputs::Value> UsualInputs::boosters(const RadioCase& radio) {
    const std::optional<OperatingInputs::Booster> own = boosterOf(radio);
    if (!own) {
        return {};
    }
    constexpr std::int32_t secondBand = 7;
    OperatingInputs::Booster first = *own;
    first.presence = own->presence == secondBand ? 1 : own->presence;
    OperatingInputs::Booster second = *own;
    second.presence = secondBand;
    return {OperatingInputs::Booster{}, first, second};
}

std::vector<Inputs::Value> UsualInputs::products(const RadioCase&) {
    return valuesFrom({Inputs::ProductNumber{""}, Inputs::ProductNumber{"QZT 846 001"},
                       Inputs::ProductNumber{"QZT 846 003"}, Inputs::ProductNumber{"QZT35201/1"},
                       Inputs::ProductNumber{"QZT 860 13"}});
}

std::vector<Inputs::Value> UsualInputs::minima(const RadioCase& radio) {
    return usualSelections<Inputs::SelectedMin>(radio);
}

std::vector<Inputs::Value> UsualInputs::maxima(const RadioCase& radio) {
    return usualSelections<Inputs::SelectedMax>(radio);
}
