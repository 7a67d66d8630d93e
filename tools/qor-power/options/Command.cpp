#include "Command.h"

#include <algorithm>
#include <iterator>
#include <sstream>

std::vector<std::string> CommandOption::names() const {
    std::vector<std::string> all;
    if (isArgument()) {
        return all;
    }
    std::istringstream text(name);
    for (std::string one; std::getline(text, one, ',');) {
        all.push_back(one);
    }
    return all;
}

std::vector<CommandOption> Command::arguments() const {
    std::vector<CommandOption> found;
    std::ranges::copy_if(options, std::back_inserter(found),
                         [](const CommandOption& option) { return option.isArgument(); });
    return found;
}
