#include "Commands.h"

std::vector<Command> allCommands() {
    using namespace Commands;
    return {table(), explain(), whyNot(), sweep(),    diff(),   plot(),
            check(), replay(),  batch(),  examples(), manual(), completion()};
}
