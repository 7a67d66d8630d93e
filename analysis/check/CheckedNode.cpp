#include "CheckedNode.h"

#include "JsonPointer.h"
#include "Node.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <set>
#include <utility>
#include <variant>

using nlohmann::json;

namespace {

template <class Value>
std::optional<Value> valueOf(const Answer<Value>& answer) {
    const Value* const value = std::get_if<Value>(&answer);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

/// A configured frame format and a record have their profile lists under the same names.
template <class FrameFormat>
const std::vector<short>& profilesOf(const FrameFormat& frameFormat, bool carrierAggregation) {
    return carrierAggregation ? frameFormat.carrierAggregationPerformanceProfiles
                              : frameFormat.performanceProfiles;
}

CheckedFrameFormat configuredFrameFormat(const FrameFormatAnswers& answers, bool aggregation) {
    return {{{"frameFormat"}},
            0,
            answers.dpdVersion,
            answers.market,
            answers.channelSpacing,
            answers.modulationAndCodes,
            profilesOf(answers, aggregation)};
}

CheckedFrameFormat recordOf(const HardwareConfigurationHandlerAnswers::FrameFormat& record,
                            std::size_t index, bool aggregation) {
    return {FilePlace{{"hardwareConfigurationHandler", "frameFormats"}} / index,
            static_cast<std::int32_t>(record.id),
            record.dpdVersion,
            valueOf(record.market),
            valueOf(record.channelSpacing),
            valueOf(record.modulationAndCodes),
            profilesOf(record, aggregation)};
}

} // namespace

std::string CheckedFrameFormat::name() const {
    return isConfigured() ? "the configured frame format" : "frame format " + std::to_string(id);
}

std::optional<std::size_t> CheckedFrameFormat::highestCode() const {
    if (!codes || codes->empty()) {
        return std::nullopt;
    }
    const auto highest = std::ranges::max_element(
        *codes, [](const ModulationAndCoding& left, const ModulationAndCoding& right) {
            return left.code < right.code;
        });
    return static_cast<std::size_t>(highest - codes->begin());
}

bool CheckedFrameFormat::carries(const ModulationAndCoding& code) const {
    return codes && std::ranges::any_of(*codes, [&code](const ModulationAndCoding& carried) {
               return carried.code == code.code;
           });
}

bool CheckedFrameFormat::carries(Modulation modulation) const {
    return codes && std::ranges::any_of(*codes, [modulation](const ModulationAndCoding& carried) {
               return convertCodeToModulation(carried) == modulation;
           });
}

SharedDocument::SharedDocument(json document) {
    for (auto& [key, value] : document.get_ref<json::object_t&>()) {
        m_members[key] = std::make_shared<const json>(std::move(value));
    }
}

SharedDocument SharedDocument::patched(const json& patch) const {
    SharedDocument result = *this;
    for (const auto& [key, change] : patch.items()) {
        if (change.is_null()) {
            result.m_members.erase(key);
            continue;
        }
        const auto before = m_members.find(key);
        json member = before == m_members.end() ? json() : *before->second;
        member.merge_patch(change);
        result.m_members[key] = std::make_shared<const json>(std::move(member));
    }
    return result;
}

const json* SharedDocument::at(const std::vector<std::string>& path) const {
    const auto member = path.empty() ? m_members.end() : m_members.find(path.front());
    return member == m_members.end() ? nullptr
                                     : valueAt(*member->second, {path.begin() + 1, path.end()});
}

bool SharedDocument::operator==(const SharedDocument& other) const {
    return std::ranges::equal(m_members, other.m_members, [](const auto& left, const auto& right) {
        return left.first == right.first &&
               (left.second == right.second || *left.second == *right.second);
    });
}

CheckedNode::CheckedNode(std::uint32_t channel, const NodeAnswers& answers,
                         const SharedDocument& document)
    : m_channel(channel)
    , m_answers(answers)
    , m_document(&document) {
    if (answers.frameFormat) {
        m_frameFormats.push_back(
            configuredFrameFormat(*answers.frameFormat, answers.carrierAggregation));
    }
    if (!answers.hardwareConfigurationHandler) {
        return;
    }
    std::set<long> ids;
    std::size_t index = 0;
    for (const auto& record : answers.hardwareConfigurationHandler->frameFormats) {
        if (record.id >= 1 && ids.insert(record.id).second) {
            m_frameFormats.push_back(recordOf(record, index, answers.carrierAggregation));
        }
        ++index;
    }
}

RadioFile CheckedNode::radioFile() const {
    RadioFile file;
    file.channel = m_channel;
    file.node = m_answers;
    return file;
}

RadioFile CheckedNode::radioFileWith(const CheckedFrameFormat& frameFormat) const {
    RadioFile file = radioFile();
    if (!m_answers.hardwareConfigurationHandler) {
        return file;
    }
    HardwareConfigurationHandlerAnswers one;
    const auto& records = m_answers.hardwareConfigurationHandler->frameFormats;
    const auto record = std::ranges::find_if(
        records, [&](const auto& candidate) { return candidate.id == frameFormat.id; });
    if (record != records.end()) {
        one.frameFormats.push_back(*record);
    }
    file.node.hardwareConfigurationHandler =
        std::make_shared<const HardwareConfigurationHandlerAnswers>(std::move(one));
    return file;
}

const CheckedFrameFormat* CheckedNode::find(std::int32_t id) const {
    const std::int32_t wanted = std::max(id, 0);
    const auto found = std::ranges::find(m_frameFormats, wanted, &CheckedFrameFormat::id);
    return found == m_frameFormats.end() ? nullptr : &*found;
}

const std::vector<int>* CheckedNode::pmaxTable(const PmaxTableName& name) const {
    if (!m_answers.capabilityHandler) {
        return nullptr;
    }
    const auto& answer = (*m_answers.capabilityHandler).*(name.answer);
    return answer ? std::get_if<std::vector<int>>(&*answer) : nullptr;
}

FilePlace CheckedNode::pmaxRow(const PmaxTableName& name, std::size_t row) const {
    const FilePlace table{{"capabilityHandler", name.key}};
    const nlohmann::json* const written = at(table);
    return written != nullptr && written->is_object() ? table / "integers" / (2 * row)
                                                      : table / row;
}

const nlohmann::json* CheckedNode::at(const FilePlace& place) const {
    return m_document->at(place.path);
}

std::string CheckedNode::calibrationName() const {
    return Node::calibrationOf(m_channel);
}

const std::vector<std::int32_t>* CheckedNode::variable(const std::string& name) const {
    if (!m_answers.variables) {
        return nullptr;
    }
    const auto found = m_answers.variables->find(name);
    return found == m_answers.variables->end() ? nullptr : &found->second;
}
