#include "Inputs.h"

#include "Arguments.h"
#include "Decibels.h"
#include "OneLine.h"
#include "RadioFilePlaces.h"
#include "TextForms.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace {

using FormatRecord = HardwareConfigurationHandlerAnswers::FrameFormat;

/// Changes a part of a node in a copy of its own; a part that is not there stays away.
template <class Answers, class Change>
void change(std::shared_ptr<const Answers>& answers, Change how) {
    if (answers != nullptr) {
        auto changed = std::make_shared<Answers>(*answers);
        how(*changed);
        answers = std::move(changed);
    }
}

/// Changes the frame format that is asked for.
/// @param how takes a FrameFormatAnswers or a FormatRecord.
template <class Change>
void changeFrameFormat(RadioCase& radio, Change how) {
    const std::int32_t id = radio.query.frameFormatId;
    if (id < 1) {
        change(radio.file.node.frameFormat, how);
        return;
    }
    change(radio.file.node.hardwareConfigurationHandler,
           [id, &how](HardwareConfigurationHandlerAnswers& handler) {
               auto& records = handler.frameFormats;
               const auto found = std::ranges::find(records, id, &FormatRecord::id);
               if (found != records.end()) {
                   how(*found);
               }
           });
}

/// Changes the selected range; where the neighbour answers none, the other end stays undefined.
template <class Change>
void changeSelection(RadioCase& radio, Change how) {
    change(radio.file.node.acmHandler, [&how](AcmHandlerAnswers& handler) {
        AcmHandlerAnswers::Range range;
        if (handler.selection) {
            if (const auto* const answered =
                    std::get_if<AcmHandlerAnswers::Range>(&*handler.selection)) {
                range = *answered;
            }
        }
        how(range);
        handler.selection = range;
    });
}

struct Varier {
    RadioCase& radio;

    void operator()(EReferenceSEC rsec) const {
        change(
            radio.file.node.systemPowerController,
            [rsec](SystemPowerControllerAnswers& controller) { controller.referenceSec = rsec; });
        // The class of the query would be taken instead; a call for one modulation has no other.
        radio.query.rsec = radio.query.onePower ? rsec : EReferenceSEC::UNDEFINED;
    }
    void operator()(EFrameFormatMarket market) const {
        changeFrameFormat(radio, [market](auto& format) { format.market = market; });
    }
    void operator()(EDpdVersion version) const {
        changeFrameFormat(radio, [version](auto& format) { format.dpdVersion = version; });
    }
    void operator()(EChannelSpacingType spacing) const {
        changeFrameFormat(radio, [spacing](auto& format) { format.channelSpacing = spacing; });
    }
    // The inputs of the query come after what the file's requests set.
    void operator()(const Inputs::PermanentCutback& permanent) const {
        radio.query.inputs.permanentCutback = permanent.cutback;
    }
    void operator()(const OperatingInputs::TemporaryCutback& temporary) const {
        radio.query.inputs.temporaryCutback = temporary;
    }
    void operator()(const OperatingInputs::Booster& booster) const {
        radio.query.inputs.booster = booster;
    }
    void operator()(const Inputs::ProductNumber& number) const {
        change(radio.file.node.capabilityHandler, [&number](CapabilityHandlerAnswers& handler) {
            handler.productNumber = number.text;
        });
    }
    void operator()(const Inputs::SelectedMin& selected) const {
        radio.query.min = {ModulationAndCoding::UNDEFINED};
        changeSelection(
            radio, [&selected](AcmHandlerAnswers::Range& range) { range.min = selected.code; });
    }
    void operator()(const Inputs::SelectedMax& selected) const {
        radio.query.max = {ModulationAndCoding::UNDEFINED};
        changeSelection(
            radio, [&selected](AcmHandlerAnswers::Range& range) { range.max = selected.code; });
    }
};

struct TextMaker {
    std::string operator()(EReferenceSEC rsec) const { return convertRsecEnumToString(rsec); }
    std::string operator()(EFrameFormatMarket market) const { return marketText(market); }
    std::string operator()(EDpdVersion version) const { return number(version); }
    std::string operator()(EChannelSpacingType spacing) const { return number(spacing); }
    std::string operator()(const Inputs::PermanentCutback& permanent) const {
        return Decibels::format(permanent.cutback);
    }
    std::string operator()(const OperatingInputs::TemporaryCutback& temporary) const {
        return temporary.inForce ? Decibels::format(temporary.cutback) : Arguments::none;
    }
    std::string operator()(const OperatingInputs::Booster& booster) const {
        return booster.presence == 0
                   ? Arguments::none
                   : std::to_string(booster.presence) + ',' + Decibels::format(booster.gain) + ',' +
                         Decibels::format(booster.maxInputPower) + ',' +
                         convertAcmEnumToString(booster.maxModulation);
    }
    std::string operator()(const Inputs::ProductNumber& product) const {
        return product.text.empty() ? Arguments::none : oneLine(product.text);
    }
    std::string operator()(const Inputs::SelectedMin& selected) const {
        return convertCodeAndModulationEnumToString(selected.code);
    }
    std::string operator()(const Inputs::SelectedMax& selected) const {
        return convertCodeAndModulationEnumToString(selected.code);
    }

    template <class Enumeration>
    static std::string number(Enumeration value) {
        return std::to_string(static_cast<std::int32_t>(value));
    }
};

} // namespace

RadioCase Inputs::varied(const RadioCase& radio, const Value& value) {
    RadioCase changed = radio;
    std::visit(Varier{changed}, value);
    return changed;
}

std::string Inputs::textOf(const Value& value) {
    return std::visit(TextMaker{}, value);
}

RadioFile Inputs::withPmax(const RadioFile& file, const std::string& tableKey,
                           Modulation modulation, std::int32_t power) {
    const RadioFilePlaces::PmaxAnswer table = RadioFilePlaces::pmaxAnswer(tableKey);
    if (table == nullptr) {
        return file;
    }
    RadioFile changed = file;
    change(changed.node.capabilityHandler, [&](CapabilityHandlerAnswers& handler) {
        auto& answer = handler.*table;
        auto* const integers = answer ? std::get_if<std::vector<int>>(&*answer) : nullptr;
        if (integers == nullptr) {
            return;
        }
        std::size_t row = 0;
        while (row < integers->size() && (*integers)[row] != static_cast<int>(modulation)) {
            row += 2;
        }
        integers->resize(std::max(integers->size(), row + 2));
        (*integers)[row] = static_cast<int>(modulation);
        (*integers)[row + 1] = power;
    });
    return changed;
}
