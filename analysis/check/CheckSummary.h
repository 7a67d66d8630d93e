#pragma once

#include "RadioFileCheck.h"
#include "TextLook.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// What was found in any number of radio files, by the codes of the findings.
class CheckSummary {
public:
    /// Of each code so many places are named, each in another file.
    static constexpr std::size_t firstPlaces = 3;

    struct Place {
        std::string file; ///< as given
        RadioFileCheck::PlacedFinding finding;
    };

    struct Count {
        const CheckRule* rule;
        std::uint64_t findings = 0;
        std::uint64_t files = 0;
        std::vector<Place> first;
    };

    void add(const CheckedFile& file);

    /// The worst first, of equally bad ones that in most files.
    std::vector<Count> counts() const;

    std::uint64_t files() const { return m_files; }
    std::uint64_t clean() const { return m_clean; } ///< in which nothing was found

private:
    std::map<std::string, Count> m_counts; ///< by code
    std::uint64_t m_files = 0;
    std::uint64_t m_clean = 0;
};

/// A line for each code, with its first places, and a line that counts the files.
std::string textForm(const CheckSummary& summary, const TextLook& look);

/// One JSON object.
std::string jsonForm(const CheckSummary& summary);
