#pragma once

#include "Command.h"
#include "PowerTableQuery.h"

#include <optional>
#include <string>
#include <vector>

/// The options by which a command line says which powers are asked for and under which operating
/// inputs. What is not given is left to the radio file.
struct QueryOptions {
    std::optional<std::string> frameFormat;
    std::optional<std::string> cutback;
    std::optional<std::string> temporaryCutback;
    std::optional<std::string> booster;
    std::optional<std::string> rsec;

    /// For a Command; they are read into this object, which must outlive them.
    std::vector<CommandOption> describe();

    /// @throw UsageError
    PowerTableQuery query() const;
};
