#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// A run of the tool as the manual shows it.
struct Shown {
    std::string commandLine;
    std::string output; ///< both streams, standard output first
};

/// Every "$ qor-power ..." of the manual's console blocks with the lines that follow it.
std::vector<Shown> shownIn(const std::string& path) {
    std::ifstream manual(path);
    std::vector<Shown> runs;
    bool isInConsole = false;
    for (std::string line; std::getline(manual, line);) {
        if (line.starts_with("```")) {
            isInConsole = line == "```console";
        } else if (isInConsole && line.starts_with("$ ")) {
            runs.push_back({line.substr(2), ""});
        } else if (isInConsole && !runs.empty()) {
            runs.back().output += line + '\n';
        }
    }
    return runs;
}

TEST(Manual, ShowsWhatTheToolPrints) {
    const std::vector<Shown> runs = shownIn(QOR_PROJECT "/docs/qor-power.md");

    ASSERT_GE(runs.size(), 6U);
    for (const Shown& run : runs) {
        std::istringstream words(run.commandLine);
        std::vector<std::string> arguments(std::istream_iterator<std::string>(words), {});
        ASSERT_EQ(arguments.front(), "qor-power");
        arguments.erase(arguments.begin());

        const ToolResult result = ToolProcess(arguments).inFolder(QOR_PROJECT).run();

        EXPECT_EQ(result.output + result.errors, run.output) << run.commandLine;
    }
}

} // namespace
