#include "DrivenTool.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <stdexcept>

namespace {

std::string variable(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

} // namespace

std::vector<std::string> DrivenTool::commandLine(const std::vector<std::string>& arguments) {
    const std::string tool = variable("QOR_POWER_TOOL");
    if (tool.empty()) {
        throw std::runtime_error(
            "QOR_POWER_TOOL is not set: it is the path of the tool to test, and ctest sets it");
    }
    std::vector<std::string> words;
    std::istringstream emulator(variable("QOR_POWER_EMULATOR"));
    for (std::string word; std::getline(emulator, word, '|');) {
        words.push_back(word);
    }
    words.push_back(tool);
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

bool DrivenTool::isMeasured() {
    return variable("QOR_POWER_UNMEASURED").empty();
}

std::size_t DrivenTool::stride() {
    const std::string wanted = variable("QOR_LOOP_STRIDE");
    if (!wanted.empty()) {
        return std::max<std::size_t>(std::stoul(wanted), 1);
    }
    return isMeasured() ? 1 : 11;
}
