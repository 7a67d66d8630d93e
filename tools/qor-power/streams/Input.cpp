#include "Input.h"

#include "AnalysisError.h"
#include "InputFile.h"
#include "Messages.h"
#include "OneLine.h"
#include "RadioFileReader.h"

#include <algorithm>
#include <cstddef>
#include <memory>

std::string readText(const std::string& path) {
    InputFile file(path);
    constexpr std::size_t limit = RadioFileReader::maxSize + 1;
    constexpr std::size_t blockSize = std::size_t{64} << 10;
    const auto block = std::make_unique_for_overwrite<char[]>(blockSize);
    std::string text;
    std::size_t count = 0;
    do {
        count = file.read(block.get(), std::min(blockSize, limit - text.size()));
        text.append(block.get(), count);
    } while (count > 0 && text.size() < limit);
    return text;
}

RadioFile loadRadioFile(const std::string& path) {
    const std::string text = readText(path);
    try {
        return RadioFileReader::read(text);
    } catch (const RadioFileError& error) {
        throw AnalysisError(Outcome::BadRadioFile, inputName(path) + ": " + oneLine(error.what()));
    }
}

void complainOfRadioAsList(const std::string& path) {
    if (path == standardInput) {
        return;
    }
    try {
        loadRadioFile(path);
    } catch (const AnalysisError&) {
        return;
    }
    complain(inputName(path) +
             ": this is a radio file itself; a list has the path of one on each line");
}
