#pragma once

#include "RadioFile.h"
#include "replay/CompareReplays.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <set>

/// Holds what the library and the tool answer to a radio file against the plain restatement of the
/// power rules. Whatever differs is a find.
class Comparison {
public:
    /// Plays the requests and compares line by line, trace records included.
    /// @param document what the file was read from.
    void replay(const RadioFile& file, const nlohmann::json& document, int traceLevel);

    /// The frame formats that are asked for: the configured one and the first of the file's.
    static std::set<std::int32_t> frameFormatIds(const nlohmann::json& document);

    /// Asks for the power tables of those frame formats and compares the powers; their forms have
    /// to be well formed.
    void tables(const RadioFile& file, const nlohmann::json& document);

private:
    void table(const RadioFile& file, const nlohmann::json& document, std::int32_t frameFormatId);

    CompareReplays m_replays;
};
