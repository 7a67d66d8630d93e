#include "CommandLine.h"
#include "Commands.h"
#include "ExitStatus.h"
#include "Messages.h"
#include "OneLine.h"

#include <csignal>
#include <cstdio>
#include <exception>

int main(int argc, char** argv) {
    // A closed pipe and a file that may not grow are then failed writes.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    Outcome outcome = Outcome::OtherTrouble;
    try {
        Output output(stdout);
        outcome = runCommandLine(allCommands(), argc, argv, output);
        output.flush();
    } catch (const AnalysisError& error) {
        if (*error.what() != '\0') {
            complain(error.what());
        }
        outcome = error.outcome();
    } catch (const std::exception& error) {
        complain(oneLine(error.what()));
        outcome = Outcome::OtherTrouble;
    }
    return exitStatusOf(outcome);
}
