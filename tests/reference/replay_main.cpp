#include "Node.h"
#include "RandomRadioFile.h"

#include <exception>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

// Prints what a replay must print, or a random radio file to replay.
int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() == 2 && arguments.at(0) == "--random") {
            std::cout << reference::randomRadioFile(std::stoull(arguments.at(1))).dump(2) << '\n';
            return 0;
        }
        if (arguments.size() == 1 || arguments.size() == 2) {
            std::ifstream input(arguments.at(0));
            if (!input) {
                std::cerr << "qor-reference-replay: cannot read " << arguments.at(0) << '\n';
                return 4;
            }
            const nlohmann::json radioFile = nlohmann::json::parse(input, nullptr, true, true);
            const int traceLevel = arguments.size() == 2 ? std::stoi(arguments.at(1)) : 0;
            reference::ProcessState process;
            const std::vector<std::string> lines =
                reference::replay(radioFile, traceLevel, process);
            for (const std::string& line : lines) {
                std::cout << line << '\n';
            }
            return nlohmann::json::parse(lines.front()).at("result") < 32768 ? 0 : 3;
        }
    } catch (const std::exception& problem) {
        std::cerr << "qor-reference-replay: " << problem.what() << '\n';
        return 2;
    }
    std::cerr << "usage: qor-reference-replay FILE [TRACE-LEVEL]\n"
                 "       qor-reference-replay --random SEED\n";
    return 4;
}
