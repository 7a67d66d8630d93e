#pragma once

#include "Command.h"

/// Commands by which the tool documents itself: the build writes the installed manual page and the
/// shells' completions with them.

/// `qor-power manual`: the manual page.
struct ManualCommand {
    static Command describe();
};

/// `qor-power completion SHELL`: a script for a shell.
struct CompletionCommand {
    static Command describe();
};
