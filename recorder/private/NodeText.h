#pragma once

#include "JsonText.h"
#include "Tape.h"

#include <cstdint>
#include <string>
#include <vector>

/// What the broker had when a recorder was attached, as bits.
namespace Met {
constexpr unsigned capabilityHandler = 1;
constexpr unsigned capabilityHandlerAsGiven = 2; ///< under the number that the recorder was given
constexpr unsigned acmHandler = 4;
constexpr unsigned frameFormat = 8;
constexpr unsigned systemPowerController = 16;
constexpr unsigned hardwareConfigurationHandler = 32;
constexpr unsigned service = 64;
} // namespace Met

/// Writes the sections of a radio file that describe the node, from the slots of a tape. The answer
/// before the tape's first step counts.
class NodeText {
public:
    using Word = Tape::Word;

    /// What one of the sections, or a key that a radio file must have, leaves to be said.
    struct Remarks {
        std::vector<std::string> neverAsked; ///< JSON pointers of keys that stand in for an answer
        std::vector<std::string> unlike;     ///< answers that the format has no words for
    };

    NodeText(const Tape& tape, unsigned met);

    /// Looks at every answer of the tape: modulations by profile or by market that no key can stand
    /// for are written as one, that of the last question.
    void survey();

    /// The questions whose answers are written, as bits.
    std::uint64_t written() const;

    /// Writes the keys of all sections, or of those that hold one of the questions.
    /// @param questions as bits.
    void write(JsonText& json, std::uint64_t questions, bool isPatch, Remarks& remarks);

    /// What a reader keeps of the sections that hold one of the questions, in bytes.
    std::size_t costOf(std::uint64_t questions);

    static constexpr std::uint64_t all = ~std::uint64_t{0};
    static constexpr std::uint64_t bitOf(Question question) {
        return std::uint64_t{1} << static_cast<unsigned>(question);
    }

    static void modulation(JsonText& json, Word value);
    static void code(JsonText& json, Word value);
    static void rsec(JsonText& json, Word value);

private:
    /// A section while it is written.
    struct Page {
        JsonText& json;
        std::uint64_t questions;
        bool isPatch;
        Remarks& remarks;

        bool wants(Question question) const { return (questions & bitOf(question)) != 0; }
    };

    void capabilityHandler(Page& page);
    void acmHandler(Page& page);
    void frameFormat(Page& page);
    void systemPowerController(Page& page);
    void hardwareConfigurationHandler(Page& page);
    void variables(Page& page);
    void board(Page& page);

    void pmax(Page& page, const char* name, Question question);
    void byKey(Page& page, const char* name, Question question, Question last, bool isOne);
    void profiles(Page& page, const char* name, Question question, Word id);
    void frameFormatOf(Page& page, Word id, bool isListed, Word listedSpacing, std::size_t index);
    void variable(Page& page, const std::string& name, Question question);
    Word required(Page& page, Question question, const char* pointer, Word otherwise);
    static void onlyResult(Page& page, Word code, const char* other);

    /// The answer of a question; null if it was never asked.
    const Word* answer(Question question, Word argument = 0) const;
    std::size_t wordCount(Question question, Word argument = 0) const;
    std::uint32_t valueOf(Question question, Word argument) const;

    const Tape& m_tape;
    unsigned m_met;
    bool m_isLimitedOne = false;
    bool m_isWithoutLimitationOne = false;
};
