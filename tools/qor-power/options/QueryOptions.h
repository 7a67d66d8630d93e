#pragma once

#include "AskedInputs.h"
#include "Command.h"

#include <vector>

/// The options by which a command line says which powers are asked for and under which operating
/// inputs.
struct QueryOptions : AskedInputs {
    QueryOptions() { prefix = "--"; }

    /// For a Command; they are read into this object, which must outlive them.
    std::vector<CommandOption> describe();
};
