#include "CompareReplays.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

/// Compares a run of random radio files at trace level 6; prints the first line that differs.
int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: qor-compare-replays FIRST-SEED COUNT\n";
        return 4;
    }
    const std::uint64_t first = std::strtoull(argv[1], nullptr, 10);
    const std::uint64_t count = std::strtoull(argv[2], nullptr, 10);

    CompareReplays comparison;
    std::size_t lineCount = 0;
    for (std::uint64_t seed = first; seed < first + count; ++seed) {
        const CompareReplays::Lines lines = comparison.playRandom(seed, 6);
        if (const std::string difference = lines.difference(); !difference.empty()) {
            std::cout << "random radio file " << seed << ", " << difference << '\n';
            return 1;
        }
        lineCount += lines.library.size();
    }
    std::cout << count << " random radio files, " << lineCount << " lines: equal\n";
    return 0;
}
