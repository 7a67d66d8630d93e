#include "Find.h"
#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "RadioFileReader.h"
#include "RadioFileRecorder.h"
#include "RecordedAnswers.h"
#include "Replay.h"
#include "reference/RandomRadioFile.h"

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

/// The bytes are a radio node, a run of calls and changes, and a recorder with more or less memory
/// that is attached, detached and armed in between. No answer may change, and what is written has
/// to be a radio file that gets the answers that it holds.

namespace {

using Lines = std::vector<std::string>;

Lines played(const Replay& replay, const RadioFile& file) {
    Lines lines;
    replay.play(file, [&lines](const std::string& line) { lines.push_back(line); });
    return lines;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzInput input(bytes, size);
    const std::size_t memory = std::size_t{8192} << (input.choice() % 4);
    const unsigned repetitions = 1 + input.choice() % 8;
    const unsigned trigger = input.choice();
    nlohmann::json document = reference::makeRadioFile(input);
    const nlohmann::json once = document["requests"];
    for (unsigned time = 1; time < repetitions; ++time) {
        document["requests"].insert(document["requests"].end(), once.begin(), once.end());
    }
    const RadioFile file = RadioFileReader::read(document.dump());

    RadioFileRecorder recorder(file.channel, memory);
    if (trigger % 8 == 0) {
        recorder.writeWhen(RecordingTriggers::failure());
    } else if (trigger % 8 == 1) {
        recorder.writeWhen(RecordingTriggers::powerChanged());
    }
    Replay recorded;
    recorded.whenStarted([&recorder] { recorder.attach(); });
    const Lines lines = played(recorded, file);
    if (lines != played(Replay(), file)) {
        reportFind("the recorder changes an answer: " + document.dump());
    }

    std::ostringstream stream;
    if (!recorder.write(stream)) {
        return 0; // not triggered
    }
    try {
        const RadioFile written = RadioFileReader::read(stream.str());
        // A start that was refused and has been left behind is named in the file.
        bool isExact = true;
        for (const std::string& note : written.notes) {
            isExact = isExact && note.find("may differ") == std::string::npos &&
                      note.find("are lost") == std::string::npos;
        }
        const Lines replayed = played(Replay(), written);
        if (isExact && !RecordedAnswers::differences(written, replayed).empty()) {
            reportFind(RecordedAnswers::differences(written, replayed).front() +
                       "\nradio file: " + document.dump() + "\nwritten: " + stream.str());
        }
    } catch (const RadioFileError& error) {
        reportFind(std::string("what was written is refused: ") + error.what() +
                   "\nradio file: " + document.dump());
    }
    return 0;
}
