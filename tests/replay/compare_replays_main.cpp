#include "CompareReplays.h"

#include <cstdlib>
#include <iostream>

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
        if (lines.library != lines.reference) {
            std::size_t i = 0;
            while (i < lines.library.size() && i < lines.reference.size() &&
                   lines.library[i] == lines.reference[i]) {
                ++i;
            }
            const auto lineAt = [i](const std::vector<std::string>& all) {
                return i < all.size() ? all[i] : std::string("(no line)");
            };
            std::cout << "random radio file " << seed << ", line " << i + 1
                      << "\nlibrary:   " << lineAt(lines.library)
                      << "\nreference: " << lineAt(lines.reference) << '\n';
            return 1;
        }
        lineCount += lines.library.size();
    }
    std::cout << count << " random radio files, " << lineCount << " lines: equal\n";
    return 0;
}
