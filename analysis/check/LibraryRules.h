#pragma once

#include "CheckedNode.h"
#include "PowerTable.h"

#include <cstddef>
#include <cstdint>
#include <optional>

/// The rules of `qor-power check` that tell what the library itself makes of a radio: which table
/// answers, which query fails, which code gets no power. Each is asked of the library in a node of
/// its own, with no operating input set.
class LibraryRules {
public:
    explicit LibraryRules(FindingList& findings)
        : m_findings(findings) {}

    /// Every frame format of a node whose service starts.
    void checkFrameFormats(const CheckedNode& node);

    /// The powers of one frame format for a class; nothing when enough has been asked or
    /// the service does not start.
    std::optional<PowerTable> powersOf(const CheckedNode& node,
                                       const CheckedFrameFormat& frameFormat,
                                       EReferenceSEC rsec = EReferenceSEC::UNDEFINED);

    /// Whether nothing more is asked of the library.
    bool isExhausted() const { return m_queriesLeft == 0; }

private:
    FindingList& m_findings;

    /// A file can list thousands of frame formats and patches. What a file may ask for is bounded,
    /// so that every file is checked in seconds.
    std::size_t m_queriesLeft = 1000;
};
