#pragma once

#include "CheckedNode.h"
#include "LibraryRules.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <cstdint>

/// The rules of `qor-power check` for the requests of a radio file.
class RequestRules {
public:
    /// @param requests as the file writes them, in the order of file.requests.
    /// @param known findings on the radio itself, which are not repeated for a request.
    RequestRules(const RadioFile& file, const nlohmann::json& requests, LibraryRules& library,
                 const FindingList& known, FindingList& findings);

    /// One request.
    /// @param node as it answers the request; for a patch, as it answered before.
    void check(std::size_t index, const CheckedNode& node);

    /// The answer to one request, as Replay reports it with the library's warnings.
    /// @param node as it answers the request.
    void checkAnswer(std::size_t index, const nlohmann::json& line, const CheckedNode& node);

private:
    class Visitor;

    static FilePlace placeOf(std::size_t index) { return FilePlace{{"requests"}} / index; }
    bool isKnownToFail(std::size_t index, const CheckedNode& node) const;
    void checkMinimum(std::size_t index, const nlohmann::json& line, const CheckedNode& node);

    const RadioFile& m_file;
    const nlohmann::json* m_requests;
    LibraryRules& m_library;
    const FindingList& m_known;
    FindingList& m_findings;
    std::uint32_t m_permanentCutback = 0;
};
