#pragma once

#include "Finding.h"
#include "NodeAnswers.h"
#include "RadioFile.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A frame format as a radio file gives it: the configured one or a record of the hardware
/// configuration. What a record refuses to answer is not there.
struct CheckedFrameFormat {
    FilePlace place;
    std::int32_t id = 0; ///< 0: the configured one
    EDpdVersion dpdVersion{};
    std::optional<EFrameFormatMarket> market;
    std::optional<EChannelSpacingType> channelSpacing;
    std::optional<std::vector<ModulationAndCoding>> codes;
    std::vector<short> performanceProfiles; ///< those that the board selects

    bool isConfigured() const { return id == 0; }
    std::string name() const; ///< "the configured frame format", "frame format 7"
    std::optional<std::size_t> highestCode() const; ///< its index; nothing without codes
    bool carries(const ModulationAndCoding& code) const;
    bool carries(Modulation modulation) const;
};

/// The document of a radio file. States of one radio share the members that no patch has changed.
class SharedDocument {
public:
    /// @param document an object.
    explicit SharedDocument(nlohmann::json document);

    /// The document with a patch, an object too, merged into it.
    SharedDocument patched(const nlohmann::json& patch) const;

    /// The value at a path of one or more keys and indexes; null if there is none.
    const nlohmann::json* at(const std::vector<std::string>& path) const;

    bool operator==(const SharedDocument& other) const;

private:
    std::map<std::string, std::shared_ptr<const nlohmann::json>> m_members;
};

/// A radio node as a radio file or one of its patches leaves it.
class CheckedNode {
public:
    /// @param document that the answers were read from; must outlive this object.
    CheckedNode(std::uint32_t channel, const NodeAnswers& answers, const SharedDocument& document);

    const NodeAnswers& answers() const { return m_answers; }

    /// The file for the library to work on, without requests.
    RadioFile radioFile() const;

    /// Likewise, with no record but that of a frame format: a node is built for each question.
    RadioFile radioFileWith(const CheckedFrameFormat& frameFormat) const;

    /// The configured frame format, then the records that can be asked for.
    const std::vector<CheckedFrameFormat>& frameFormats() const { return m_frameFormats; }

    const CheckedFrameFormat* configured() const { return find(0); }

    /// The frame format that a query by id means; below 1 the configured one. Null if there is
    /// none.
    const CheckedFrameFormat* find(std::int32_t id) const;

    /// The integers of a Pmax table; null if it is absent or refused.
    const std::vector<int>* pmaxTable(const PmaxTableName& name) const;

    /// The place of a row of a Pmax table, which can be written in two ways.
    FilePlace pmaxRow(const PmaxTableName& name, std::size_t row) const;

    /// The value at a place; null if there is none.
    const nlohmann::json* at(const FilePlace& place) const;

    /// The names of the two calibration variables of the channel that is served.
    std::string calibrationName() const;
    std::string calibrationSizeName() const { return calibrationName() + "size"; }

    /// A variable's elements; null if it is absent.
    const std::vector<std::int32_t>* variable(const std::string& name) const;

private:
    std::uint32_t m_channel;
    NodeAnswers m_answers;
    const SharedDocument* m_document;
    std::vector<CheckedFrameFormat> m_frameFormats;
};
