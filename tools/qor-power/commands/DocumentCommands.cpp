#include "Commands.h"

#include "Arguments.h"
#include "ManualPage.h"
#include "ShellCompletion.h"

#include <memory>
#include <string>
#include <vector>

namespace {

constexpr const char* documentGroup = "Commands that document the tool";

const std::vector<std::string> shells{"bash", "zsh", "fish"};

std::string completionFor(const std::string& shell, const std::vector<Command>& commands) {
    if (shell == "bash") {
        return ShellCompletion::forBash(commands);
    }
    return shell == "zsh" ? ShellCompletion::forZsh(commands) : ShellCompletion::forFish(commands);
}

} // namespace

Command Commands::manual() {
    return {
        .name = "manual",
        .summary = "Print the manual page, for man to format",
        .examples = {{"qor-power manual | man -l -", "read the manual page"},
                     {"qor-power manual > qor-power.1"}},
        .run =
            [](Output& output) {
                output.write(manualPage(allCommands()));
                return Outcome::Done;
            },
        .group = documentGroup,
    };
}

Command Commands::completion() {
    const auto shell = std::make_shared<std::string>();
    return {
        .name = "completion",
        .summary = "Print the script by which a shell completes the tool's command line",
        .examples =
            {
                {"source <(qor-power completion bash)", "complete commands and options with Tab"},
                {"source <(qor-power completion zsh)"},
                {"qor-power completion fish | source"},
            },
        .about = {"The package installs these scripts where the shells look for them."},
        .options = {{"SHELL", "", "bash, zsh or fish", shell.get(), true,
                     CommandOption::Completion::Words, shells}},
        .run =
            [shell](Output& output) {
                output.write(
                    completionFor(Arguments::word("SHELL", *shell, shells), allCommands()));
                return Outcome::Done;
            },
        .group = documentGroup,
    };
}

std::vector<Command> allCommands() {
    using namespace Commands;
    return {table(),     explain(), whyNot(), sweep(),  diff(), plot(),     check(),  replay(),
            importLog(), batch(),   fleet(),  report(), page(), examples(), manual(), completion()};
}
