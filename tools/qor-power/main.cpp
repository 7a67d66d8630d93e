#include "CommandLine.h"
#include "Commands.h"
#include "Messages.h"
#include "OneLine.h"
#include "ToolError.h"

#include <csignal>
#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    // A closed pipe is then a failed write, which is reported like any other.
    std::signal(SIGPIPE, SIG_IGN);
    ExitStatus status = ExitStatus::OtherTrouble;
    try {
        Output output(stdout);
        status = CommandLine(allCommands()).run(argc, argv, output);
        output.flush();
    } catch (const ToolError& error) {
        complain(error.what());
        status = error.status();
    } catch (const std::exception& error) {
        complain(oneLine(error.what()));
        status = ExitStatus::OtherTrouble;
    }
    return static_cast<int>(status);
}
