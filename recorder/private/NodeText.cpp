#include "NodeText.h"

#include "EFrameFormatMarket.h"
#include "EReferenceSEC.h"
#include "Modulation.h"
#include "ModulationAndCoding.h"
#include "ResultCode.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace {

using Word = Tape::Word;

constexpr std::uint64_t questionsOf(Question first, Question last) {
    return (NodeText::bitOf(last) << 1) - NodeText::bitOf(first);
}

constexpr std::uint64_t ofCapabilityHandler =
    questionsOf(Question::ProductNumber, Question::MaxModulationWithoutLimitation) |
    questionsOf(Question::LastMaxModulationLimitedByHw,
                Question::LastMaxModulationWithoutLimitation);
constexpr std::uint64_t ofAcmHandler = NodeText::bitOf(Question::AcmSelection);
constexpr std::uint64_t ofFrameFormat =
    questionsOf(Question::Modulation, Question::CarrierAggregationPerformanceProfiles);
constexpr std::uint64_t ofSystemPowerController =
    questionsOf(Question::ReferenceSec, Question::MinOutputPowerOffset);
constexpr std::uint64_t ofHardwareConfigurationHandler =
    questionsOf(Question::FrameFormatRecords, Question::IdCarrierAggregationPerformanceProfiles);
constexpr std::uint64_t ofVariables =
    questionsOf(Question::CompensationArray, Question::CompensationSize);
constexpr std::uint64_t ofBoard = NodeText::bitOf(Question::CarrierAggregation);

/// Texts of the enumerations; a value without one is written as a number.
void textOrNumber(JsonText& json, const std::string& text, bool isUndefined, Word value) {
    if (text == "UNDEFINED" && !isUndefined) {
        json.number(value);
    } else {
        json.text(text);
    }
}

std::string marketText(Word value) {
    std::ostringstream text;
    text << EFrameFormatMarket{value};
    return text.str();
}

void market(JsonText& json, Word value) {
    const std::string text = marketText(value);
    if (text.empty()) {
        json.number(value);
    } else {
        json.text(text);
    }
}

bool isShape(const Word* words, Shape shape) {
    return words[0] == static_cast<Word>(shape);
}

/// Whether the answers by id are those of an id that no record has.
bool isUnknownId(const Word* dpdVersion, const Word* market, const Word* codes,
                 const Word* spacing) {
    const auto isUnknown = [](const Word* words) {
        return words == nullptr || (isShape(words, Shape::ResultOnly) &&
                                    words[1] == static_cast<Word>(ResultCode::Failure));
    };
    return (dpdVersion == nullptr || *dpdVersion == 0) && isUnknown(market) && isUnknown(codes) &&
           isUnknown(spacing);
}

} // namespace

void NodeText::modulation(JsonText& json, Word value) {
    textOrNumber(json, convertAcmEnumToString(Modulation{value}),
                 Modulation{value} == Modulation::UNDEFINED, value);
}

void NodeText::code(JsonText& json, Word value) {
    textOrNumber(json, convertCodeAndModulationEnumToString({value}),
                 value == ModulationAndCoding::UNDEFINED, value);
}

void NodeText::rsec(JsonText& json, Word value) {
    textOrNumber(json, convertRsecEnumToString(EReferenceSEC{value}),
                 EReferenceSEC{value} == EReferenceSEC::UNDEFINED, value);
}

NodeText::NodeText(const Tape& tape, unsigned met)
    : m_tape(tape)
    , m_met(met) {}

void NodeText::survey() {
    const auto look = [this](const Tape::Slot& slot, std::uint32_t value) {
        if (value == 0 || m_tape.wordsOf(value)[0] == static_cast<Word>(Modulation::UNDEFINED)) {
            return;
        }
        if (slot.question == Question::MaxModulationLimitedByHw && slot.argument == noProfile) {
            m_isLimitedOne = true;
        }
        if (slot.question == Question::MaxModulationWithoutLimitation &&
            marketText(slot.argument).empty()) {
            m_isWithoutLimitationOne = true;
        }
    };
    for (std::uint32_t index = 0; index < m_tape.slotCount(); ++index) {
        look(m_tape.slot(index), m_tape.slot(index).before);
    }
    for (std::uint32_t index = 0; index < m_tape.stepCount(); ++index) {
        const Tape::Step& step = m_tape.step(index);
        if (step.slot != Tape::Step::request) {
            look(m_tape.slot(step.slot), step.value);
        }
    }
}

std::uint64_t NodeText::written() const {
    const auto choose = [](bool isOne, Question byKey, Question last) {
        return bitOf(isOne ? byKey : last);
    };
    return ~(choose(m_isLimitedOne, Question::MaxModulationLimitedByHw,
                    Question::LastMaxModulationLimitedByHw) |
             choose(m_isWithoutLimitationOne, Question::MaxModulationWithoutLimitation,
                    Question::LastMaxModulationWithoutLimitation));
}

void NodeText::write(JsonText& json, std::uint64_t questions, bool isPatch, Remarks& remarks) {
    Page page{json, questions, isPatch, remarks};
    if ((questions & ofBoard) != 0) {
        board(page);
    }
    if ((questions & ofCapabilityHandler) != 0 &&
        (m_met & (Met::capabilityHandler | Met::capabilityHandlerAsGiven)) != 0) {
        json.key("capabilityHandler").openObject();
        capabilityHandler(page);
        json.closeObject();
    }
    if ((questions & ofAcmHandler) != 0 && (m_met & Met::acmHandler) != 0) {
        json.key("acmHandler").openObject();
        acmHandler(page);
        json.closeObject();
    }
    if ((questions & ofFrameFormat) != 0 && (m_met & Met::frameFormat) != 0) {
        json.key("frameFormat").openObject();
        frameFormat(page);
        json.closeObject();
    }
    if ((questions & ofSystemPowerController) != 0 && (m_met & Met::systemPowerController) != 0) {
        json.key("systemPowerController").openObject();
        systemPowerController(page);
        json.closeObject();
    }
    if ((questions & ofHardwareConfigurationHandler) != 0 &&
        (m_met & Met::hardwareConfigurationHandler) != 0) {
        json.key("hardwareConfigurationHandler").openObject();
        hardwareConfigurationHandler(page);
        json.closeObject();
    }
    if ((questions & ofVariables) != 0) {
        variables(page);
    }
}

std::size_t NodeText::costOf(std::uint64_t questions) {
    std::uint64_t sections = 0;
    for (const std::uint64_t section :
         {ofCapabilityHandler, ofAcmHandler, ofFrameFormat, ofSystemPowerController,
          ofHardwareConfigurationHandler, ofVariables, ofBoard}) {
        if ((questions & section) != 0) {
            sections |= section;
        }
    }
    JsonText json;
    Remarks remarks;
    write(json, sections, false, remarks);
    return json.cost();
}

std::uint32_t NodeText::valueOf(Question question, Word argument) const {
    for (std::uint32_t index = 0; index < m_tape.slotCount(); ++index) {
        const Tape::Slot& slot = m_tape.slot(index);
        if (slot.question == question && slot.argument == argument) {
            return slot.before;
        }
    }
    return 0;
}

const Word* NodeText::answer(Question question, Word argument) const {
    const std::uint32_t value = valueOf(question, argument);
    return value == 0 ? nullptr : m_tape.wordsOf(value);
}

std::size_t NodeText::wordCount(Question question, Word argument) const {
    return m_tape.lengthOf(valueOf(question, argument)) / sizeof(Word);
}

Word NodeText::required(Page& page, Question question, const char* pointer, Word otherwise) {
    const Word* const words = answer(question);
    if (words == nullptr) {
        page.remarks.neverAsked.emplace_back(pointer);
        return otherwise;
    }
    return words[0];
}

/// A patch is merged: what stood there in another form goes.
void NodeText::onlyResult(Page& page, Word code, const char* other) {
    page.json.openObject();
    page.json.key("result").number(static_cast<std::uint32_t>(code));
    if (page.isPatch && other != nullptr) {
        page.json.key(other).null();
    }
    page.json.closeObject();
}

// The radio hardware

void NodeText::capabilityHandler(Page& page) {
    JsonText& json = page.json;
    const std::uint32_t number = valueOf(Question::ProductNumber, 0);
    if (number != 0 && page.wants(Question::ProductNumber)) {
        const auto* const bytes = reinterpret_cast<const char*>(m_tape.wordsOf(number));
        const std::size_t length = m_tape.lengthOf(number);
        json.key("productNumber").text(bytes, length);
        if (!JsonText::isUtf8(bytes, length)) {
            std::string remark =
                "/capabilityHandler/productNumber: the node's is not UTF-8, U+FFFD "
                "stands for each byte that is none; its bytes are";
            for (std::size_t index = 0; index < length; ++index) {
                char hexadecimal[8];
                std::snprintf(hexadecimal, sizeof hexadecimal, " %02x",
                              static_cast<unsigned>(static_cast<unsigned char>(bytes[index])));
                remark += hexadecimal;
            }
            page.remarks.unlike.push_back(remark);
        }
    }
    const Word* const minimum = answer(Question::MinOutputPower);
    if (minimum != nullptr && page.wants(Question::MinOutputPower)) {
        if (isShape(minimum, Shape::Value)) {
            json.key("minOutputPower").number(minimum[1]);
        } else if (minimum[1] != 0) {
            json.key("minOutputPower");
            onlyResult(page, minimum[1], nullptr);
        } else if (page.isPatch) {
            json.key("minOutputPower").null();
        }
        if (isShape(minimum, Shape::WroteAndFailed)) {
            page.remarks.unlike.emplace_back(
                "/capabilityHandler/minOutputPower: the node's failed and wrote a table");
        }
    }
    pmax(page, "pmaxDpd1Etsi", Question::PmaxDpd1Etsi);
    pmax(page, "pmaxDpd2Etsi", Question::PmaxDpd2Etsi);
    pmax(page, "pmaxDpd1Ansi", Question::PmaxDpd1Ansi);
    pmax(page, "pmaxDpd2Ansi", Question::PmaxDpd2Ansi);
    const Word* const isLimited = answer(Question::MaxAcmLimitedByHw);
    if (isLimited != nullptr && page.wants(Question::MaxAcmLimitedByHw)) {
        json.key("maxAcmLimitedByHw").flag(*isLimited != 0);
    }
    const Word* const index = answer(Question::PerformanceProfileIndex);
    if (index != nullptr && page.wants(Question::PerformanceProfileIndex)) {
        json.key("performanceProfileIndex").number(*index);
    }
    byKey(page, "maxModulationLimitedByHw", Question::MaxModulationLimitedByHw,
          Question::LastMaxModulationLimitedByHw, m_isLimitedOne);
    byKey(page, "maxModulationWithoutLimitation", Question::MaxModulationWithoutLimitation,
          Question::LastMaxModulationWithoutLimitation, m_isWithoutLimitationOne);
}

void NodeText::pmax(Page& page, const char* name, Question question) {
    const Word* const words = answer(question);
    if (words == nullptr || !page.wants(question)) {
        return;
    }
    const auto remark = [&](const char* text) {
        page.remarks.unlike.push_back(std::string("/capabilityHandler/") + name + ": " + text);
    };
    JsonText& json = page.json;
    if (isShape(words, Shape::ResultOnly) || isShape(words, Shape::WroteAndFailed)) {
        if (isShape(words, Shape::WroteAndFailed)) {
            remark("the node's failed and wrote a table");
        }
        if (words[1] != 0) {
            json.key(name);
            onlyResult(page, words[1], "integers");
        } else if (page.isPatch) {
            json.key(name).null();
        }
        return;
    }
    if (isShape(words, Shape::HiddenPower)) {
        remark("behind the odd count of the node's stands a power other than 0");
    }
    const std::size_t count = wordCount(question) - 1;
    json.key(name);
    if (count % 2 != 0) {
        json.openObject();
        json.key("integers").openList();
        std::for_each_n(words + 1, count, [&json](Word word) { json.number(word); });
        json.closeList();
        if (page.isPatch) {
            json.key("result").null();
        }
        json.closeObject();
        return;
    }
    json.openList();
    for (std::size_t at = 1; at < count; at += 2) {
        json.openList();
        modulation(json, words[at]);
        json.number(words[at + 1]);
        json.closeList();
    }
    json.closeList();
}

void NodeText::byKey(Page& page, const char* name, Question question, Question last, bool isOne) {
    if (isOne) {
        const Word* const modulationNow = answer(last);
        if (modulationNow != nullptr && page.wants(last)) {
            page.json.key(name);
            modulation(page.json, *modulationNow);
            page.remarks.unlike.push_back(
                std::string("/capabilityHandler/") + name +
                ": the node answers what no key can stand for; one modulation stands for all, as "
                "the next request was answered");
        }
        return;
    }
    if (!page.wants(question)) {
        return;
    }
    JsonText& json = page.json;
    bool isOpen = false;
    for (std::uint32_t index = 0; index < m_tape.slotCount(); ++index) {
        const Tape::Slot& slot = m_tape.slot(index);
        if (slot.question != question || slot.before == 0) {
            continue;
        }
        const std::string key = question == Question::MaxModulationLimitedByHw
                                    ? std::to_string(slot.argument)
                                    : marketText(slot.argument);
        // What cannot be listed answers UNDEFINED, as it does when it is not listed.
        if (key.empty() || slot.argument == noProfile) {
            continue;
        }
        if (!isOpen) {
            json.key(name).openObject();
            isOpen = true;
        }
        json.key(key.c_str());
        modulation(json, m_tape.wordsOf(slot.before)[0]);
    }
    if (isOpen) {
        json.closeObject();
    }
}

// The other neighbours

void NodeText::acmHandler(Page& page) {
    const Word* const words = answer(Question::AcmSelection);
    if (words == nullptr) {
        return;
    }
    JsonText& json = page.json;
    if (isShape(words, Shape::Value)) {
        json.key("min");
        code(json, words[1]);
        json.key("max");
        code(json, words[2]);
        if (page.isPatch) {
            json.key("result").null();
        }
        return;
    }
    json.key("result").number(static_cast<std::uint32_t>(words[1]));
    if (page.isPatch) {
        json.key("min").null();
        json.key("max").null();
    }
}

void NodeText::frameFormat(Page& page) {
    JsonText& json = page.json;
    if (page.wants(Question::Modulation)) {
        json.key("modulation");
        modulation(json, required(page, Question::Modulation, "/frameFormat/modulation",
                                  static_cast<Word>(Modulation::UNDEFINED)));
    }
    if (page.wants(Question::MaxAvailableModulation)) {
        json.key("maxAvailableModulation");
        modulation(json, required(page, Question::MaxAvailableModulation,
                                  "/frameFormat/maxAvailableModulation",
                                  static_cast<Word>(Modulation::UNDEFINED)));
    }
    if (page.wants(Question::ModulationAndCodes)) {
        const Word* const words = answer(Question::ModulationAndCodes);
        json.key("modulationAndCodes").openList();
        if (words == nullptr) {
            page.remarks.neverAsked.emplace_back("/frameFormat/modulationAndCodes");
        } else {
            std::for_each_n(words + 1, wordCount(Question::ModulationAndCodes) - 1,
                            [&json](Word word) { code(json, word); });
        }
        json.closeList();
    }
    if (page.wants(Question::ChannelSpacing)) {
        json.key("channelSpacing")
            .number(required(page, Question::ChannelSpacing, "/frameFormat/channelSpacing", 0));
    }
    if (page.wants(Question::DpdVersion)) {
        json.key("dpdVersion")
            .number(required(page, Question::DpdVersion, "/frameFormat/dpdVersion", 0));
    }
    if (page.wants(Question::Market)) {
        json.key("market");
        market(json, required(page, Question::Market, "/frameFormat/market",
                              static_cast<Word>(EFrameFormatMarket::Unknown)));
    }
    profiles(page, "performanceProfiles", Question::PerformanceProfiles, 0);
    profiles(page, "carrierAggregationPerformanceProfiles",
             Question::CarrierAggregationPerformanceProfiles, 0);
}

void NodeText::profiles(Page& page, const char* name, Question question, Word id) {
    const Word* const words = answer(question, id);
    if (words == nullptr || !page.wants(question)) {
        return;
    }
    page.json.key(name).openList();
    std::for_each_n(words + 1, wordCount(question, id) - 1,
                    [&page](Word word) { page.json.number(word); });
    page.json.closeList();
}

void NodeText::systemPowerController(Page& page) {
    JsonText& json = page.json;
    if (page.wants(Question::ReferenceSec)) {
        json.key("referenceSec");
        rsec(json, required(page, Question::ReferenceSec, "/systemPowerController/referenceSec",
                            static_cast<Word>(EReferenceSEC::UNDEFINED)));
    }
    if (page.wants(Question::MinOutputPowerOffset)) {
        json.key("minOutputPowerOffsets").openList();
        for (std::uint32_t index = 0; index < m_tape.slotCount(); ++index) {
            const Tape::Slot& slot = m_tape.slot(index);
            if (slot.question != Question::MinOutputPowerOffset || slot.before == 0) {
                continue;
            }
            const Word* const words = m_tape.wordsOf(slot.before);
            if (words[0] != 0) {
                json.openList();
                json.number(slot.argument);
                json.number(words[1]);
                json.closeList();
            }
        }
        json.closeList();
    }
}

void NodeText::hardwareConfigurationHandler(Page& page) {
    // All of them, whatever changed: a patch replaces a list.
    std::vector<Word> ids;
    const Word* const listed = answer(Question::FrameFormatRecords);
    const std::size_t listedCount =
        listed == nullptr ? 0 : wordCount(Question::FrameFormatRecords) / 2;
    page.json.key("frameFormats").openList();
    for (std::size_t index = 0; index < listedCount; ++index) {
        const Word id = listed[2 * index];
        frameFormatOf(page, id, true, listed[2 * index + 1], ids.size());
        ids.push_back(id);
    }
    for (std::uint32_t index = 0; index < m_tape.slotCount(); ++index) {
        const Tape::Slot& slot = m_tape.slot(index);
        if (slot.question < Question::IdDpdVersion ||
            slot.question > Question::IdCarrierAggregationPerformanceProfiles || slot.before == 0 ||
            std::find(ids.begin(), ids.end(), slot.argument) != ids.end()) {
            continue;
        }
        const Word id = slot.argument;
        const Word* const profilesOf = answer(Question::IdPerformanceProfiles, id);
        const Word* const aggregated =
            answer(Question::IdCarrierAggregationPerformanceProfiles, id);
        const bool hasProfiles =
            (profilesOf != nullptr && wordCount(Question::IdPerformanceProfiles, id) > 1) ||
            (aggregated != nullptr &&
             wordCount(Question::IdCarrierAggregationPerformanceProfiles, id) > 1);
        if (hasProfiles ||
            !isUnknownId(answer(Question::IdDpdVersion, id), answer(Question::IdMarket, id),
                         answer(Question::IdModulationAndCodes, id),
                         answer(Question::IdChannelSpacing, id))) {
            frameFormatOf(page, id, false, 0, ids.size());
            ids.push_back(id);
        }
    }
    page.json.closeList();
}

void NodeText::frameFormatOf(Page& page, Word id, bool isListed, Word listedSpacing,
                             std::size_t index) {
    const std::string pointer =
        "/hardwareConfigurationHandler/frameFormats/" + std::to_string(index) + "/";
    JsonText& json = page.json;
    const auto neverAsked = [&](const char* key) {
        page.remarks.neverAsked.push_back(pointer + key);
    };
    const auto unlike = [&](const char* key, const char* what) {
        page.remarks.unlike.push_back(pointer + key + ": " + what);
    };
    Page whole{json, all, false, page.remarks};
    json.openObject();
    json.key("id").number(id);

    const Word* const spacing = answer(Question::IdChannelSpacing, id);
    const Word asked = spacing != nullptr && isShape(spacing, Shape::Value) ? spacing[1] : 0;
    json.key("channelSpacing");
    if (spacing == nullptr) {
        json.number(listedSpacing);
        if (!isListed) {
            neverAsked("channelSpacing");
        }
    } else if (isShape(spacing, Shape::Value)) {
        json.number(asked);
    } else {
        onlyResult(whole, spacing[1], nullptr);
        if (isShape(spacing, Shape::WroteAndFailed)) {
            unlike("channelSpacing", "the node's failed and wrote a spacing");
        }
    }
    if (spacing != nullptr && answer(Question::FrameFormatRecords) != nullptr &&
        (isListed ? asked != listedSpacing : asked != 0)) {
        unlike("channelSpacing", "the node's list of frame formats has another one");
    }

    const Word* const dpdVersion = answer(Question::IdDpdVersion, id);
    json.key("dpdVersion").number(dpdVersion == nullptr ? 0 : *dpdVersion);
    if (dpdVersion == nullptr) {
        neverAsked("dpdVersion");
    }

    json.key("market");
    const Word* const marketOf = answer(Question::IdMarket, id);
    if (marketOf != nullptr && isShape(marketOf, Shape::Value)) {
        market(json, marketOf[1]);
    } else {
        onlyResult(whole, marketOf == nullptr ? Word{ResultCode::Failure} : marketOf[1], nullptr);
        if (marketOf == nullptr) {
            neverAsked("market");
        } else if (isShape(marketOf, Shape::WroteAndFailed)) {
            unlike("market", "the node's failed and wrote a market");
        }
    }

    json.key("modulationAndCodes");
    const Word* const codes = answer(Question::IdModulationAndCodes, id);
    if (codes != nullptr && isShape(codes, Shape::Value)) {
        json.openList();
        std::for_each_n(codes + 1, wordCount(Question::IdModulationAndCodes, id) - 1,
                        [&json](Word word) { code(json, word); });
        json.closeList();
    } else {
        onlyResult(whole, codes == nullptr ? Word{ResultCode::Failure} : codes[1], nullptr);
        if (codes == nullptr) {
            neverAsked("modulationAndCodes");
        } else if (isShape(codes, Shape::WroteAndFailed)) {
            unlike("modulationAndCodes", "the node's failed and wrote codes");
        }
    }
    profiles(whole, "performanceProfiles", Question::IdPerformanceProfiles, id);
    profiles(whole, "carrierAggregationPerformanceProfiles",
             Question::IdCarrierAggregationPerformanceProfiles, id);
    json.closeObject();
}

// The store and the board

void NodeText::variables(Page& page) {
    if (answer(Question::CompensationArray) == nullptr &&
        answer(Question::CompensationSize) == nullptr) {
        return;
    }
    page.json.key("variables").openObject();
    const std::string name =
        "channel." + std::to_string(m_tape.channel()) + ".tx.rf.pmax.cs.comp.v2.array";
    variable(page, name, Question::CompensationArray);
    variable(page, name + "size", Question::CompensationSize);
    page.json.closeObject();
}

void NodeText::variable(Page& page, const std::string& name, Question question) {
    const Word* const words = answer(question);
    if (words == nullptr || !page.wants(question)) {
        return;
    }
    JsonText& json = page.json;
    if (isShape(words, Shape::ResultOnly)) {
        if (page.isPatch) {
            json.key(name.c_str()).null();
        }
        return;
    }
    json.key(name.c_str());
    if (question == Question::CompensationSize && isShape(words, Shape::Value)) {
        json.number(words[1]);
        return;
    }
    if (isShape(words, Shape::NoAddress)) {
        page.remarks.unlike.push_back("/variables/" + name +
                                      ": the node's store says that it has it, and not where");
    }
    json.openList();
    std::for_each_n(words + 1, wordCount(question) - 1, [&json](Word word) { json.number(word); });
    json.closeList();
}

void NodeText::board(Page& page) {
    const Word* const words = answer(Question::CarrierAggregation);
    if (words != nullptr) {
        page.json.key("board").openObject();
        page.json.key("carrierAggregation").flag(*words != 0);
        page.json.closeObject();
    }
}
