#include "Input.h"

#include "AnalysisError.h"
#include "InputFile.h"
#include "Messages.h"
#include "OneLine.h"
#include "RadioFileReader.h"

#include <algorithm>
#include <cstddef>

std::string readText(const std::string& path) {
    InputFile file(path);
    constexpr std::size_t limit = RadioFileReader::maxSize + 1;
    constexpr std::size_t block = std::size_t{64} << 10;
    std::string text;
    while (text.size() < limit) {
        const std::size_t start = text.size();
        text.resize(start + std::min(block, limit - start));
        const std::size_t count = file.read(&text[start], text.size() - start);
        text.resize(start + count);
        if (count == 0) {
            break;
        }
    }
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
