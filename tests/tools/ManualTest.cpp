#include "ToolProcess.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// A run of the tool as a document shows it.
struct Shown {
    std::string document;
    std::string commandLine;
    std::string output; ///< both streams, standard output first
};

/// The README and every page below docs/.
std::vector<fs::path> documents() {
    std::vector<fs::path> found{QOR_PROJECT "/README.md"};
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(QOR_PROJECT "/docs")) {
        if (entry.path().extension() == ".md") {
            found.push_back(entry.path());
        }
    }
    return found;
}

/// Adds every "$ qor-power ..." of a document's console blocks with the lines that follow it.
void addShownIn(const fs::path& document, std::vector<Shown>& runs) {
    std::ifstream text(document);
    bool isInConsole = false;
    for (std::string line; std::getline(text, line);) {
        if (line.starts_with("```")) {
            isInConsole = line == "```console";
        } else if (isInConsole && line.starts_with("$ ")) {
            runs.push_back({document.string(), line.substr(2), ""});
        } else if (isInConsole && !runs.empty() && runs.back().document == document) {
            runs.back().output += line + '\n';
        }
    }
}

TEST(Manual, ShowsWhatTheToolPrints) {
    std::vector<Shown> runs;
    for (const fs::path& document : documents()) {
        addShownIn(document, runs);
    }

    ASSERT_GE(runs.size(), 18U);
    for (const Shown& run : runs) {
        std::istringstream words(run.commandLine);
        std::vector<std::string> arguments(std::istream_iterator<std::string>(words), {});
        ASSERT_EQ(arguments.front(), "qor-power");
        arguments.erase(arguments.begin());

        const ToolResult result = ToolProcess(arguments).inFolder(QOR_PROJECT).run();

        EXPECT_EQ(result.output + result.errors, run.output)
            << run.document << ": " << run.commandLine;
    }
}

TEST(Manual, AndEveryShellsCompletionTellEveryCommand) {
    const std::vector<std::string> documents[] = {
        {"manual"}, {"completion", "bash"}, {"completion", "zsh"}, {"completion", "fish"}};
    for (const std::vector<std::string>& document : documents) {
        const ToolResult result = runTool(document);

        for (const std::string command :
             {"table", "explain", "why-not", "sweep", "diff", "plot", "check", "replay", "batch",
              "report", "page", "examples", "manual", "completion"}) {
            // The manual page writes a minus as its formatter wants it.
            const bool isEscaped = document.front() == "manual" && command == "why-not";
            const std::string written = isEscaped ? "why\\-not" : command;
            EXPECT_NE(result.output.find(written), std::string::npos)
                << document.back() << " does not tell " << command;
        }
    }
}

} // namespace
