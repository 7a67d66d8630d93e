#include "FuzzTarget.h"
#include "LoopStride.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Path = std::filesystem::path;

std::vector<Path> filesAt(const Path& place) {
    if (!std::filesystem::is_directory(place)) {
        return {place};
    }
    std::vector<Path> files;
    for (const auto& entry : std::filesystem::directory_iterator(place)) {
        files.push_back(entry.path());
    }
    if (files.empty()) {
        throw std::runtime_error("no inputs in " + place.string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

void tryFile(const Path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("cannot read " + path.string());
    }
    std::ostringstream content;
    content << stream.rdbuf();
    const std::string text = content.str();
    const std::vector<std::uint8_t> bytes(text.begin(), text.end());
    // Said beforehand: a find ends the process.
    std::cerr << path.filename().string() << '\n';
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

} // namespace

/// Tries the inputs of files and folders, for any compiler and without a fuzzer. The first is the
/// fuzzer's own corpus, with all of which it begins by itself wherever it runs; so it is gone
/// through like a long loop.
int main(int argc, char** argv) {
    try {
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        std::size_t count = 0;
        std::size_t stride = loopStride();
        for (const std::string& argument : arguments) {
            const std::vector<Path> files = filesAt(argument);
            for (std::size_t index = 0; index < files.size(); index += stride) {
                tryFile(files[index]);
                ++count;
            }
            stride = 1;
        }
        std::cerr << count << " inputs tried\n";
        return count == 0 ? 1 : 0;
    } catch (const std::exception& trouble) {
        std::cerr << trouble.what() << '\n';
        return 1;
    }
}
