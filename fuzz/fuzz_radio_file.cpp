#include "Comparison.h"
#include "ExampleRadios.h"
#include "Find.h"
#include "FuzzTarget.h"
#include "RadioFileReader.h"
#include "TextChecks.h"
#include "ToolForms.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

/// The bytes are the text of a radio file on its way through the tool: read and checked, and if it
/// is accepted replayed, shown as power tables, explained and drawn.

namespace {

using nlohmann::json;

std::optional<RadioFile> read(std::string_view text) {
    try {
        return RadioFileReader::read(text);
    } catch (const RadioFileError& error) {
        TextChecks::checkError(error, text);
        return std::nullopt;
    }
}

constexpr int noTrace = 0;
constexpr int everyTrace = 6;

/// What is done with some inputs only under libFuzzer: each of these costs many times what reading
/// and replaying without traces does.
struct Parts {
    bool check;   ///< every rule of the check
    bool traces;  ///< replayed with every trace
    bool tables;  ///< shown as power tables
    bool explain; ///< explained and drawn
    bool rewrite; ///< read again, written in another way
};

/// The parts for an input. Its content chooses them, so that the same input is always treated
/// alike. The ordinary test tries all of them.
Parts partsFor(const std::string& text) {
#ifdef QOR_FUZZ_SAMPLES_PARTS
    std::uint32_t hash = 2166136261U; // FNV-1a
    for (const char letter : text) {
        hash = (hash ^ static_cast<unsigned char>(letter)) * 16777619U;
    }
    const auto oneIn = [&hash](std::uint32_t share) {
        const bool isChosen = hash % share == 0;
        hash = (hash ^ (hash >> 15U)) * 2246822519U;
        return isChosen;
    };
    return {oneIn(20), oneIn(20), oneIn(60), oneIn(200), oneIn(10)};
#else
    static_cast<void>(text);
    return {true, true, true, true, true};
#endif
}

/// The comparison, with what happens once in a process behind it: the commands that ask the library
/// by themselves would else use it up unseen by the restatement.
Comparison started() {
    Comparison comparison;
    for (const ExampleRadio& radio : exampleRadios()) {
        comparison.replay(RadioFileReader::read(radio.text),
                          json::parse(radio.text, nullptr, true, true), everyTrace);
    }
    return comparison;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static Comparison comparison = started();

    const std::string text(bytes, bytes + size);
    const Parts parts = partsFor(text);
    const std::optional<RadioFile> file = read(text);
    if (parts.check) {
        ToolForms::check(text, file.has_value());
    }
    if (!file) {
        return 0;
    }
    const json document = json::parse(text, nullptr, true, true);
    comparison.replay(*file, document, parts.traces ? everyTrace : noTrace);
    if (parts.tables) {
        comparison.tables(*file, document);
    }
    if (parts.explain) {
        ToolForms::explain(*file, document);
    }
    if (parts.rewrite) {
        // Blanks, comments and the order of keys mean nothing.
        expect(read(document.dump(2)).has_value(), "refused when it is written out another way");
    }
    return 0;
}
