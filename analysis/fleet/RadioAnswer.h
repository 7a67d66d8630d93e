#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a batch has answered for one radio: a line of its JSON, read. Powers in hundredths of a
/// dBm, amounts in hundredths of a dB. The words of rules and families stay texts, as another
/// release of the tool may have others.
struct RadioAnswer {
    /// Bytes of a line; a longer one is no answer.
    static constexpr std::size_t maxSize = std::size_t{8} << 20;

    struct Row {
        std::int64_t code = 0;
        std::string name;
        std::string modulation;
        std::optional<std::int64_t> power;
        std::string rule;                     ///< the binding one, or what denied the power
        std::optional<std::int64_t> headroom; ///< up to the next bound; nothing: none, or not told
        std::string cutbackRule;              ///< of a cutback that lowers the power; or empty
    };

    /// @throw AnalysisError OtherTrouble, in words that follow "line 7: ".
    static RadioAnswer read(std::string_view line);

    /// By which the radio is found again: the id, else the path; empty without either.
    const std::string& name() const { return id.empty() ? radioFile : id; }

    bool isBad() const { return !error.empty(); }

    std::string id;
    std::string radioFile;
    std::string error; ///< why there are no powers, or none to go by; empty if there are

    // Of a radio with an error they may be empty.
    std::string family;
    std::string productNumber;
    std::string market;
    std::string rsec;
    std::int64_t channelSpacing = 0; ///< in MHz
    std::int64_t dpdVersion = 0;
    std::int64_t cutback = 0; ///< in force
    std::optional<std::int64_t> minPower;
    std::vector<Row> rows;
};
