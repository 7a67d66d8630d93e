#include "Comparison.h"
#include "Find.h"
#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "RadioFileReader.h"
#include "reference/RandomRadioFile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>

/// The bytes are a radio node and a run of calls: what each neighbour answers, and what is asked of
/// the service in which order. Every answer, output and trace record is compared with the
/// restatement.

namespace {

using nlohmann::json;

/// Breaks one value of a valid file, so that it is wrong wherever it stands.
/// @return the place of the value.
std::string breakOneValue(json& document, FuzzInput& input) {
    const json flat = document.flatten();
    auto leaf = flat.begin();
    std::advance(leaf, static_cast<std::ptrdiff_t>(input.number() % flat.size()));
    const std::string place = leaf.key();

    json& value = document[json::json_pointer(place)];
    switch (input.below(4)) {
    case 0:
        value = 1.5;
        break;
    case 1:
        value = 4294967296; // one above what any field holds
        break;
    case 2:
        value = -2147483649; // one below
        break;
    default:
        value = value.is_boolean() ? json(0) : json(true);
        break;
    }
    return place;
}

void expectRefused(const json& document, const std::string& place) {
    try {
        static_cast<void>(RadioFileReader::read(document.dump()));
    } catch (const RadioFileError& error) {
        // What is wrong in a patch may be wrong in the section as a whole.
        const bool isInPatch = place.find("/file/") != std::string::npos;
        const std::string expected = isInPatch ? place.substr(0, place.find("/file/") + 5) : place;
        if (error.place().rfind(expected, 0) != 0 || (!isInPatch && error.place() != expected)) {
            reportFind("refused at " + error.place() + " instead of " + place + ": " +
                       document.dump());
        }
        return;
    }
    reportFind("accepted, but " + place + " is wrong: " + document.dump());
}

RadioFile readValid(const json& document) {
    try {
        return RadioFileReader::read(document.dump());
    } catch (const RadioFileError& error) {
        reportFind(std::string("a valid file is refused: ") + error.what() +
                   "\nradio file: " + document.dump());
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static Comparison comparison;

    FuzzInput input(bytes, size);
    const unsigned kind = input.choice();
    json document = reference::makeRadioFile(input);
    if (kind >= 240) {
        const std::string place = breakOneValue(document, input);
        expectRefused(document, place);
        return 0;
    }

    const RadioFile file = readValid(document);
    constexpr unsigned levels = 8;
    const auto level = static_cast<int>(kind % levels);
    comparison.replay(file, document, level == 0 ? 6 : level);
    if (kind / levels % 4 == 0) {
        comparison.tables(file, document);
    }
    return 0;
}
